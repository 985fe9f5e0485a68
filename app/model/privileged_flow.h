// The one way to run commands with administrator rights: saved password (behind the owner check when wanted),
// else the password dialog, again while it is wrong; then the script, then the success or the error told.
//
// One flow at a time. While it asks and while the script runs the main event loop turns; a quit of the
// program waits for a script that runs.
#pragma once

#include "app/model/background.h"
#include "app/model/dialogs.h"
#include "app/model/touch_id_gate.h"
#include "platform/host.h"

#include <QObject>
#include <QPointer>

namespace corvane {

class PrivilegedFlow : public QObject {
    Q_OBJECT

  public:
    struct Job {
        std::vector<NetworkSetup::Command> commands;
        /// Completes "Wendrel needs an administrator password to ".
        QString purpose;
        QString success;
        /// The alert's text when it failed; what went wrong stands under it.
        QString failure;
    };

    PrivilegedFlow(Host& host, PasswordPrompt& prompt, Alerts& alerts, QObject* parent = nullptr);

    /// Whether the commands ran and succeeded. False at once while another flow is under way.
    bool run(const Job& job);
    bool busy() const { return busy_; }
    TouchIDGate& gate() { return gate_; }

    bool hasSavedPassword() const { return hasSavedPassword_; }
    /// Asks the keychain; the answer comes by passwordStateChanged.
    void lookForSavedPassword();
    /// Removes it under both names, then tells whether it's gone.
    void forgetSavedPassword();

  signals:
    void busyChanged();
    void passwordStateChanged();
    /// The commands ran; the text says so.
    void succeeded(const QString& text);
    /// The commands couldn't be run, or not all of them; the alert follows.
    void failed();
    void passwordForgotten();
    /// What went wrong with the keychain.
    void keychainFailed(const QString& sentence);

  private:
    ApplyResult perform(const Job& job);
    ApplyResult askAndPerform(const Job& job, const PrivilegedRequest& request, bool retry);
    ApplyResult runScript(const PrivilegedRequest& request, const std::optional<Credentials>& credentials);
    void removeSaved();
    void setBusy(bool busy);
    void setHasSavedPassword(bool has);

    Host& host_;
    PasswordPrompt& prompt_;
    Alerts& alerts_;
    TouchIDGate gate_;
    bool busy_ = false;
    bool hasSavedPassword_ = false;
    QString keychainProblem_;
    Background background_;
};

} // namespace corvane
