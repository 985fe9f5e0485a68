// The privileged flow: saved password, owner check, dialog, wrong passwords, quitting in the middle.
#include "app/model/privileged_flow.h"
#include "tests/app/support/fakes.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace corvane;
using namespace corvane::testing;

namespace {

struct Stage {
    FakePrompt prompt;
    FakeAlerts alerts;
    Host host;
    FakeRunner& runner;
    FakeKeychain& keychain;
    FakeOwnerCheck& owner;
    std::unique_ptr<PrivilegedFlow> flow;
    QStringList told;

    Stage()
        : runner(make(host.privileged, new FakeRunner)), keychain(make(host.keychain, new FakeKeychain)),
          owner(make(host.ownerCheck, new FakeOwnerCheck)) {
        flow = std::make_unique<PrivilegedFlow>(host, prompt, alerts);
        QObject::connect(flow.get(), &PrivilegedFlow::succeeded,
                         [this](const QString& text) { told.append(text); });
        QObject::connect(flow.get(), &PrivilegedFlow::passwordForgotten,
                         [this] { told.append("forgotten"); });
        QObject::connect(flow.get(), &PrivilegedFlow::keychainFailed,
                         [this](const QString& text) { told.append("! " + text); });
    }
    template <typename Base, typename Fake>
    static Fake& make(std::unique_ptr<Base>& place, Fake* fake) {
        place.reset(fake);
        return *fake;
    }
    void savePassword(const char* password, const char* service = Keychain::currentService) {
        keychain.items[service] = {"me", Secret(std::string_view(password))};
        // Known already: a second look would go on behind our back.
        if (!flow->hasSavedPassword()) flow->lookForSavedPassword();
        QTRY_VERIFY(flow->hasSavedPassword());
        keychain.log.clear();
    }
    bool run() { return flow->run({{{"/bin/true"}}, "do it", "Done.", "Couldn't do it."}); }
    /// Neither banner nor alert.
    bool silent() const { return told.isEmpty() && alerts.shown.empty(); }
};

} // namespace

class FlowTest : public QObject {
    Q_OBJECT

  private slots:
    void asksUntilThePasswordIsRight() {
        Stage stage;
        for (const char* password : {"wrong", "worse", "right"}) stage.prompt.willType("me", password);
        QVERIFY(stage.run());
        QCOMPARE(stage.prompt.calls.size(), std::size_t(3));
        for (std::size_t n = 0; n < 3; ++n) {
            QCOMPARE(stage.prompt.calls[n].purpose, QString("do it"));
            QCOMPARE(stage.prompt.calls[n].retry, n > 0);
        }
        QCOMPARE(stage.told, QStringList{"Done."});
        QVERIFY(!stage.flow->busy() && !stage.flow->hasSavedPassword() && stage.keychain.items.empty());
        QVERIFY2(stage.runner.thread != QThread::currentThread(), "the script must not hold the main thread");
        stage.runner.onMainThread = true;
        stage.prompt.willType("me", "right");
        QVERIFY(stage.run());
        QCOMPARE(stage.runner.thread, QThread::currentThread());
    }

    void everyCancelIsSilent() {
        Stage stage;
        QVERIFY(!stage.run());
        stage.prompt.willType("me", "wrong");
        QVERIFY(!stage.run());
        stage.runner.results = {ApplyResult::cancelled()};
        stage.prompt.willType("me", "right", true);
        QVERIFY(!stage.run());
        stage.savePassword("right");
        stage.runner.results = {ApplyResult::cancelled()};
        QVERIFY(!stage.run());
        QVERIFY(stage.silent() && stage.flow->hasSavedPassword());
    }

    void failureIsAnAlert() {
        Stage stage;
        stage.prompt.willType("me", "right", true);
        stage.runner.results = {ApplyResult::failed("** Error: The parameters were not valid.")};
        QVERIFY(!stage.run());
        QCOMPARE(stage.alerts.shown.size(), std::size_t(1));
        QCOMPARE(stage.alerts.shown[0].message, QString("Couldn't do it."));
        QCOMPARE(stage.alerts.shown[0].details, QString("** Error: The parameters were not valid."));
        QVERIFY2(stage.keychain.items.empty(), "only a password that worked is remembered");
        QVERIFY(stage.told.isEmpty());
    }

    void remembersAndUsesThePassword() {
        Stage stage;
        stage.prompt.willType("me", "right", true);
        QVERIFY(stage.run());
        QVERIFY(stage.flow->hasSavedPassword());
        QCOMPARE(stage.keychain.log.mid(stage.keychain.log.size() - 3),
                 (QStringList{QString("remove ") + Keychain::currentService,
                              QString("remove ") + Keychain::olderService,
                              QString("add ") + Keychain::currentService}));
        QVERIFY(stage.run());
        QCOMPARE(stage.prompt.calls.size(), std::size_t(1));
        stage.flow->forgetSavedPassword();
        QTRY_COMPARE(stage.told.last(), QString("forgotten"));
        QVERIFY(!stage.flow->hasSavedPassword() && stage.keychain.items.empty());
        stage.savePassword("right", Keychain::olderService);
        QVERIFY(stage.run());
        QCOMPARE(stage.prompt.calls.size(), std::size_t(1));
        stage.keychain.refusesRemoval = true;
        stage.flow->forgetSavedPassword();
        QTRY_VERIFY(stage.told.last().startsWith("! The saved password couldn't be removed"));
        QVERIFY(stage.flow->hasSavedPassword());
    }

    void aRejectedSavedPasswordGoes() {
        Stage stage;
        stage.savePassword("stale");
        stage.savePassword("older", Keychain::olderService);
        QVERIFY(!stage.run());
        QCOMPARE(stage.prompt.calls.size(), std::size_t(1));
        QVERIFY(stage.prompt.calls[0].retry);
        QVERIFY(stage.keychain.items.empty() && !stage.flow->hasSavedPassword() && stage.silent());
    }

    void keychainTroubles() {
        Stage stage;
        // One that can't be loaded: asked as if there were none.
        stage.savePassword("right");
        stage.keychain.refusesLoading = true;
        stage.keychain.saveError = "The keychain is locked.";
        stage.prompt.willType("me", "right", true);
        QVERIFY(stage.run());
        QVERIFY(!stage.prompt.calls[0].retry);
        QCOMPARE(stage.told, (QStringList{"Done.", "! The keychain is locked."}));
        QVERIFY(!stage.flow->hasSavedPassword());
    }

    void withTheRightsNobodyIsAsked() {
        Stage stage;
        stage.runner.asks = false;
        QVERIFY(stage.run());
        QVERIFY(stage.prompt.calls.empty() && stage.keychain.log.isEmpty() && !stage.runner.sawCredentials);
    }

    void ownerCheckGuardsTheSavedPassword() {
        Stage stage;
        stage.savePassword("right");
        QVERIFY(stage.run());
        QCOMPARE(stage.owner.asked, 0);
        stage.flow->gate().setEnabled(true);
        stage.owner.answer = false;
        stage.keychain.log.clear();
        const int runs = stage.runner.runs;
        QVERIFY(!stage.run());
        QCOMPARE(stage.owner.asked, 1);
        QCOMPARE(stage.runner.runs.load(), runs);
        QVERIFY(stage.prompt.calls.empty() && stage.keychain.log.filter("load").isEmpty());
        QCOMPARE(stage.told.size(), 1);
        QCOMPARE(stage.owner.reason, std::string("do it"));
        QCOMPARE(stage.owner.fallback, std::string("Use Mac Password"));
        QCOMPARE(stage.owner.reuse, 30.0);
        stage.owner.answer = true;
        QVERIFY(stage.run() && stage.run());
        QCOMPARE(stage.owner.asked, 2);
        stage.owner.present = false;
        QVERIFY(stage.run());
    }

    void ownerCheckHoldsThirtySeconds() {
        FakeOwnerCheck check;
        auto now = std::chrono::steady_clock::time_point(std::chrono::hours(1));
        TouchIDGate gate(check, [&now] { return now; });
        QVERIFY(gate.authorize("look") && check.asked == 0);
        gate.setEnabled(true);
        QVERIFY(gate.authorize("look") && check.asked == 1);
        now += std::chrono::milliseconds(29'999);
        QVERIFY(gate.authorize("look") && check.asked == 1);
        now += std::chrono::milliseconds(1);
        QVERIFY(gate.authorize("look") && check.asked == 2);
        now += std::chrono::seconds(31);
        check.answer = false;
        QVERIFY(!gate.authorize("look") && !gate.authorize("look") && check.asked == 4);
    }

    void onlyOneAtATime() {
        Stage stage;
        stage.prompt.willType("me", "right");
        bool second = true, busyThen = false;
        stage.runner.whileRunning = [] { QThread::msleep(100); };
        QTimer::singleShot(20, stage.flow.get(), [&] {
            busyThen = stage.flow->busy();
            second = stage.run();
        });
        QVERIFY(stage.run());
        QVERIFY(busyThen && !second && stage.runner.runs == 1);
    }

    void quittingWaitsForTheScript() {
        Stage stage;
        stage.prompt.willType("me", "right", true);
        stage.runner.whileRunning = [] { QThread::msleep(200); };
        bool result = false;
        QTimer::singleShot(0, stage.flow.get(), [&] {
            QTimer::singleShot(20, [] { QCoreApplication::quit(); });
            result = stage.run();
        });
        QCoreApplication::exec();
        QVERIFY(result && stage.runner.ended);
        QVERIFY2(!stage.keychain.items.empty(), "what follows the script still happens");
        // A quit while the owner is waited for ends the flow.
        stage.flow->gate().setEnabled(true);
        stage.owner.answersNever = true;
        result = true;
        QTimer::singleShot(0, stage.flow.get(), [&] {
            QTimer::singleShot(120, [] { QCoreApplication::quit(); });
            result = stage.run();
        });
        QCoreApplication::exec();
        QVERIFY(!result && stage.runner.runs == 1);
    }

    void goneWhileTheScriptRuns() {
        Stage stage;
        stage.prompt.willType("me", "right", true);
        stage.runner.whileRunning = [] { QThread::msleep(100); };
        QTimer::singleShot(20, [&stage] { stage.flow.reset(); });
        stage.run();
        QVERIFY(stage.runner.ended && !stage.flow && stage.silent());
    }
};

QTEST_GUILESS_MAIN(FlowTest)
#include "flow_test.moc"
