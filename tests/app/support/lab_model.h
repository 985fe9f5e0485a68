// A model over the lab's NetworkManager, for tests that run inside the lab.
#pragma once

#include "platform/linux/linux_host.h"
#include "tests/app/support/lab_facts.h"
#include "tests/app/support/model_home.h"

#include <QTest>

namespace corvane::testing {

class LabModel : public QObject {
  protected:
    QTemporaryDir dir_;
    std::unique_ptr<Host> host_;
    FakePrompt prompt_;
    FakeAlerts alerts_;
    std::unique_ptr<AppModel> model_;
    /// The services on en5 and en7.
    std::string five_, seven_;

    void startModel() {
        host_ = makeLinuxHost({.toolRoot = QStringLiteral(WENDREL_NM_ROOT),
                               .applicationSupport = dir_.path(),
                               .settingsFile = dir_.filePath("settings/app.ini")});
        // Nothing of a session's password store is there, nor wanted.
        host_->keychain = std::make_unique<FakeKeychain>();
        model_ = std::make_unique<AppModel>(*host_, prompt_, alerts_);
        QTRY_VERIFY_WITH_TIMEOUT(!serviceOn("en5").empty() && !serviceOn("en7").empty(), patience);
        five_ = serviceOn("en5");
        seven_ = serviceOn("en7");
        qInfo("services on en5 and en7: %s, %s; password asked: %s", five_.c_str(), seven_.c_str(),
              asks() ? "yes" : "no");
    }
    std::string serviceOn(const std::string& device) const {
        for (const auto& info : model_->services())
            if (info.device == device) return info.name;
        return {};
    }
    bool asks() const { return host_->privileged->needsPassword(); }
    void authorize() {
        if (asks()) prompt_.willType(qEnvironmentVariable("LAB_USER"), qgetenv("LAB_PASSWORD").toStdString());
    }
    QString banner() const { return model_->banner() ? model_->banner()->text : QString(); }
    void tellAlerts() {
        for (const auto& shown : alerts_.shown)
            qInfo("alert: %s / %s", qPrintable(shown.message), qPrintable(shown.details));
        alerts_.shown.clear();
    }
};

/// Runs a test's slots, or says that this isn't the lab; for main().
template <typename Test>
int runInLab(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("LAB")) {
        puts("SKIPPED: not inside the lab; run it by tests/lab/lab.sh run -- <this program>");
        return 77;
    }
    QCoreApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace corvane::testing
