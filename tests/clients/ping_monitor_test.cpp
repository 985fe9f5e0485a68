// The monitor's loops over tools whose results the test bends.
#include "app/clients/ping_monitor.h"
#include "tests/clients/support/fake_tools.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace corvane;
using corvane::testing::FakeTools;
using Result = ToolStarter::Result;
using namespace std::chrono_literals;

static PingTarget target(const std::string& name, const std::string& host) {
    PingTarget made;
    made.id = Uuid::generate();
    made.name = name;
    made.host = host;
    return made;
}

static const Result replied{true, 0, "64 bytes from 10.0.0.5: icmp_seq=0 ttl=64 time=0.045 ms\n"};
static const Result silent{true, 2, "1 packets transmitted, 0 packets received, 100.0% packet loss\n"};
static const Result unknownName{true, 68, "ping: cannot resolve nowhere: Unknown host\n"};
static const Result unlaunchable{};

class PingMonitorTest : public QObject {
    Q_OBJECT

  private:
    /// Quick enough for a test, slow enough to be measured.
    static constexpr PingMonitor::Pace quick{.period = 20ms, .shortestPause = 5ms, .waitMs = 800};
    FakeTools tools_;
    std::unique_ptr<PingMonitor> monitor_;

    const PingMonitor::State& state(const PingTarget& of) const { return monitor_->states().at(of.id); }
    bool has(const PingTarget& of) const { return monitor_->states().contains(of.id); }
    /// The target's next probe ends so; false when there is none.
    bool next(const std::string& host, const Result& result) {
        return QTest::qWaitFor([&] { return tools_.end(host, result); }, 5000);
    }

  private slots:
    void init() {
        tools_ = FakeTools();
        monitor_ = std::make_unique<PingMonitor>(tools_, quick);
    }
    void cleanup() { monitor_.reset(); }

    void defaultsToOneProbeASecond() {
        const PingMonitor::Pace pace;
        QVERIFY(pace.period == 1000ms && pace.shortestPause == 100ms && pace.waitMs == 800);
        PingMonitor monitor(tools_);
        monitor.update({target("Host", "10.0.0.5")});
        QCOMPARE(tools_.calls.back().arguments,
                 (std::vector<std::string>{"-c", "1", "-W", "800", "-n", "10.0.0.5"}));
    }

    void probesAndRecords() {
        const auto camera = target("Camera", "\xc2\xa0 10.0.0.5\t\xe3\x80\x80");
        const auto blank = target("Blank", " \xe2\x80\xaf ");
        QSignalSpy changes(monitor_.get(), &PingMonitor::stateChanged);
        QSignalSpy targets(monitor_.get(), &PingMonitor::targetsChanged);
        monitor_->update({camera, blank});
        QCOMPARE(tools_.calls.size(), std::size_t(1));
        QCOMPARE(targets.count(), 1);
        QCOMPARE(tools_.calls[0].path, std::string("/sbin/ping"));
        QCOMPARE(tools_.calls[0].arguments,
                 (std::vector<std::string>{"-c", "1", "-W", "800", "-n", "10.0.0.5"}));
        QVERIFY(!has(camera) && !has(blank));

        const QDateTime before = QDateTime::currentDateTimeUtc();
        QVERIFY(next("10.0.0.5", replied));
        QCOMPARE(changes.count(), 1);
        QVERIFY(state(camera).outcome == PingOutcome::reply(0.045));
        const auto at = state(camera).lastReply;
        QVERIFY(at && *at >= before && *at <= QDateTime::currentDateTimeUtc());

        QVERIFY(next("10.0.0.5", silent));
        QVERIFY(state(camera).outcome == PingOutcome::timeout());
        QVERIFY(next("10.0.0.5", unknownName));
        QVERIFY(state(camera).outcome == PingOutcome::unresolved());
        QVERIFY(next("10.0.0.5", unlaunchable));
        QVERIFY(state(camera).outcome == PingOutcome::unresolved());
        QVERIFY(state(camera).lastReply == at);
        QVERIFY(next("10.0.0.5", replied));
        QCOMPARE(state(camera).history, (std::vector<bool>{true, false, false, false, true}));
        QVERIFY(*state(camera).lastReply >= *at);
    }

    void historyHoldsThirty() {
        const auto host = target("Host", "10.0.0.5");
        monitor_->update({host});
        QVERIFY(next("10.0.0.5", replied));
        for (int i = 0; i < 29; ++i) QVERIFY(next("10.0.0.5", silent));
        QCOMPARE(state(host).history.size(), std::size_t(30));
        QVERIFY(state(host).history.front());
        QVERIFY(next("10.0.0.5", replied));
        QCOMPARE(state(host).history.size(), std::size_t(30));
        QVERIFY(!state(host).history.front() && state(host).history.back());
    }

    void reconciles() {
        auto first = target("First", "10.0.0.5");
        const auto second = target("Second", "10.0.0.9");
        monitor_->update({first, second});
        QVERIFY(next("10.0.0.5", replied));
        QVERIFY(next("10.0.0.9", replied));
        QTRY_COMPARE(tools_.running(), std::size_t(2));
        QSignalSpy targets(monitor_.get(), &PingMonitor::targetsChanged);

        const auto calls = tools_.calls.size();
        first.name = "Renamed";
        first.host = "\n10.0.0.5 ";
        monitor_->update({second, first});
        QCOMPARE(tools_.calls.size(), calls);
        QCOMPARE(targets.count(), 0);
        QVERIFY(has(first));

        first.host = " 10.0.0.6 ";
        monitor_->update({first, second});
        QCOMPARE(tools_.cancelled, 1);
        QVERIFY(!has(first) && has(second));
        QCOMPARE(tools_.calls.back().arguments.back(), std::string("10.0.0.6"));
        QVERIFY(next("10.0.0.6", silent));
        QCOMPARE(state(first).history, std::vector<bool>{false});
        QVERIFY(!state(first).lastReply);

        first.host = "";
        monitor_->update({first, second});
        QVERIFY(!has(first) && has(second) && monitor_->isRunning());
        monitor_->update({});
        QVERIFY(monitor_->states().empty() && !monitor_->isRunning());
        QCOMPARE(tools_.running(), std::size_t(0));
        QCOMPARE(targets.count(), 3);
        const auto started = tools_.calls.size();
        QTest::qWait(60);
        QCOMPARE(tools_.calls.size(), started);
    }

    void pausesForTheRestOfThePeriod() {
        monitor_ =
            std::make_unique<PingMonitor>(tools_, PingMonitor::Pace{.period = 120ms, .shortestPause = 40ms});
        monitor_->update({target("Host", "10.0.0.5")});
        QElapsedTimer watch;
        watch.start();
        QTest::qWait(50);
        QVERIFY(tools_.end("10.0.0.5", replied));
        QTRY_COMPARE(tools_.calls.size(), std::size_t(2));
        QVERIFY2(watch.elapsed() >= 119, "one start a period");
        watch.restart();
        QTest::qWait(150);
        QVERIFY(tools_.end("10.0.0.5", replied));
        const auto ended = watch.elapsed();
        QTRY_COMPARE(tools_.calls.size(), std::size_t(3));
        QVERIFY2(watch.elapsed() - ended >= 39, "never without a pause");
    }

    void mayBeStoppedByWhoeverHearsOfAResult() {
        const auto host = target("Host", "10.0.0.5");
        connect(monitor_.get(), &PingMonitor::stateChanged, this, [this] { monitor_->update({}); });
        monitor_->update({host});
        QVERIFY(next("10.0.0.5", replied));
        QVERIFY(monitor_->states().empty() && !monitor_->isRunning());
        disconnect(monitor_.get(), nullptr, this, nullptr);

        const auto odd = target("Odd", "-f");
        connect(monitor_.get(), &PingMonitor::stateChanged, this, [this] { monitor_.reset(); });
        monitor_->update({odd});
        QTRY_VERIFY(!monitor_);
    }

    void takesNoHostForAnOption() {
        const auto flood = target("Flood", " -f");
        const auto cut = target("Cut", std::string("10.0.0.5\0x", 10));
        const auto spaced = target("Words", "two words; `x`");
        monitor_->update({flood, cut, spaced});
        QVERIFY(!has(flood));
        QTRY_VERIFY(has(flood) && state(flood).history.size() >= 2 && has(cut));
        QVERIFY(state(flood).outcome == PingOutcome::unresolved());
        QVERIFY(state(cut).outcome == PingOutcome::unresolved());
        QCOMPARE(tools_.calls.size(), std::size_t(1));
        QCOMPARE(tools_.calls[0].arguments.back(), std::string("two words; `x`"));
    }
};

QTEST_GUILESS_MAIN(PingMonitorTest)
#include "ping_monitor_test.moc"
