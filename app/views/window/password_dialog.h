// Asks for the administrator password.
#pragma once

#include "app/model/dialogs.h"
#include "app/views/widgets/panel.h"

#include <QPointer>

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace corvane {

/// The dialog itself.
class PasswordPanel : public Panel {
    Q_OBJECT

  public:
    PasswordPanel(const QString& purpose, bool retry, const QString& userName, const QString& help,
                  QWidget* parent = nullptr);
    ~PasswordPanel() override;
    /// What was entered; nothing without a password. The field is emptied and its text overwritten.
    std::optional<PasswordPrompt::Answer> takeAnswer();

  private:
    void wipeField();

    QLineEdit *user_, *password_;
    QCheckBox* remember_;
};

class PasswordDialog : public PasswordPrompt {
  public:
    /// `help` is a second line about this host's password; may be empty.
    PasswordDialog(QString userName, QString help) : userName_(std::move(userName)), help_(std::move(help)) {}
    /// The dialog is shown over this window while it is in sight.
    void setWindow(QWidget* window) { window_ = window; }
    std::optional<Answer> ask(const QString& purpose, bool retry) override;

  private:
    QString userName_, help_;
    QPointer<QWidget> window_;
};

} // namespace corvane
