// The monitor with the host's real ping over the lab's cables: hosts that answer, are down, don't exist, and
// go away with a pulled cable.
#include "app/clients/ping_monitor.h"
#include "app/model/network_reader.h"
#include "core/support/text.h"
#include "tests/app/support/lab_model.h"

#include <QProcess>

#include <algorithm>

using namespace corvane;
using namespace corvane::testing;
using Kind = PingOutcome::Kind;

static PingTarget target(const std::string& host) {
    PingTarget made;
    made.id = Uuid::generate();
    made.name = host;
    made.host = host;
    return made;
}

static void far(const QString& change, const QString& address) {
    QCOMPARE(QProcess::execute("lab-far", {"ip", "address", change, address, "dev", "net5"}), 0);
}

class LabPingTest : public QObject {
    Q_OBJECT

  private:
    QTemporaryDir dir_;
    std::unique_ptr<Host> host_;
    std::unique_ptr<PingMonitor> monitor_;

    const PingMonitor::State* state(const PingTarget& of) const {
        const auto found = monitor_->states().find(of.id);
        return found == monitor_->states().end() ? nullptr : &found->second;
    }
    std::size_t probes(const PingTarget& of) const { return state(of) ? state(of)->history.size() : 0; }
    bool is(const PingTarget& of, Kind kind) const { return state(of) && state(of)->outcome->kind() == kind; }
    bool waitForProbes(const PingTarget& of, std::size_t count) {
        return QTest::qWaitFor([&] { return probes(of) >= count; }, patience);
    }
    bool waitFor(const PingTarget& of, Kind kind) {
        return QTest::qWaitFor([&] { return is(of, kind); }, patience);
    }
    /// As the program gets them: from what the tools say of each service.
    std::vector<Ping::LocalInterface> interfaces() const {
        std::vector<Ping::LocalInterface> list;
        for (const auto& service : NetworkReader(*host_->shell).readAll())
            if (service.device && service.config && service.config->ip && service.config->subnet)
                list.push_back({*service.device, *service.config->ip, *service.config->subnet});
        return list;
    }
    std::optional<std::string> route(const std::string& to) const {
        return Ping::localInterface(to, interfaces());
    }

  private slots:
    void initTestCase() {
        host_ = makeLinuxHost({.toolRoot = QStringLiteral(WENDREL_NM_ROOT),
                               .applicationSupport = dir_.path(),
                               .settingsFile = dir_.filePath("app.ini")});
        QTRY_COMPARE_WITH_TIMEOUT(interfaces().size(), std::size_t(2), patience);
    }
    void init() { monitor_ = std::make_unique<PingMonitor>(*host_->tools); }
    void cleanup() { monitor_.reset(); }

    void repliesSilenceAndUnknownNames() {
        const auto router = target("10.5.0.1"), camera = target(" 10.7.0.20\t"),
                   beyond = target("203.0.113.7"), dead = target("10.5.0.99"),
                   nameless = target("nowhere.invalid"), option = target("-f"), own = target("localhost");
        monitor_->update({router, camera, beyond, dead, nameless, option, own});
        for (const auto& each : {router, camera, beyond, dead, nameless, option, own})
            QVERIFY2(waitForProbes(each, 3), each.host.c_str());
        for (const auto& each : {router, camera, beyond, own}) {
            QVERIFY2(is(each, Kind::reply), each.host.c_str());
            QVERIFY(state(each)->outcome->ms() > 0 && state(each)->outcome->ms() < 800);
            QVERIFY(std::ranges::count(state(each)->history, false) == 0);
            QVERIFY(state(each)->lastReply->msecsTo(QDateTime::currentDateTimeUtc()) < 2500);
        }
        QVERIFY(is(dead, Kind::timeout) && is(nameless, Kind::unresolved) && is(option, Kind::unresolved));
        for (const auto& each : {dead, nameless, option}) {
            QVERIFY(std::ranges::count(state(each)->history, true) == 0);
            QVERIFY(!state(each)->lastReply);
        }
    }

    void aHostGoesDownAndComesBack() {
        far("add", "10.5.0.21/24");
        const auto host = target("10.5.0.21");
        monitor_->update({host});
        QVERIFY(waitForProbes(host, 2) && is(host, Kind::reply));
        far("del", "10.5.0.21/24");
        QVERIFY(waitFor(host, Kind::timeout));
        const auto last = state(host)->lastReply;
        const auto answered = std::ranges::count(state(host)->history, true);
        QVERIFY(waitForProbes(host, probes(host) + 2));
        QVERIFY(is(host, Kind::timeout));
        QVERIFY(last && state(host)->lastReply == last);
        // What "last … ago" is told from.
        const auto ago = last->secsTo(QDateTime::currentDateTimeUtc());
        QVERIFY2(ago >= 2 && ago <= 6, qPrintable(QString::number(ago)));
        far("add", "10.5.0.21/24");
        QVERIFY(waitFor(host, Kind::reply));
        QVERIFY(*state(host)->lastReply > *last);
        const auto& history = state(host)->history;
        const auto silence = std::ranges::find(history, false);
        QCOMPARE(silence - history.begin(), answered);
        QVERIFY(std::all_of(silence, history.end() - 1, [](bool reply) { return !reply; }) && history.back());
        far("del", "10.5.0.21/24");
    }

    void aCableIsPulledAndPutBack() {
        const auto five = target("10.5.0.20"), seven = target("10.7.0.20");
        monitor_->update({five, seven});
        QVERIFY(waitFor(five, Kind::reply) && waitFor(seven, Kind::reply));
        QCOMPARE(QProcess::execute("lab-cable", {"en5", "down"}), 0);
        QVERIFY(waitFor(five, Kind::timeout));
        const auto last = state(five)->lastReply;
        QVERIFY(waitForProbes(five, probes(five) + 2));
        QVERIFY(is(five, Kind::timeout) && state(five)->lastReply == last);
        QCOMPARE(QProcess::execute("lab-cable", {"en5", "up"}), 0);
        QVERIFY(waitFor(five, Kind::reply));
        QVERIFY(*state(five)->lastReply > *last);
        QVERIFY2(std::ranges::count(state(seven)->history, false) == 0, "the other cable isn't concerned");
    }

    void theWayOutFollowsTheAddresses() {
        QTRY_COMPARE_WITH_TIMEOUT(interfaces().size(), std::size_t(2), patience);
        for (const auto& interface : interfaces())
            QVERIFY(kernelAddresses(QString::fromStdString(interface.name))
                        .contains(QString::fromStdString(interface.address) + "/24"));
        QVERIFY(route("10.5.0.20") == "en5" && route("10.7.0.20") == "en7");
        QVERIFY(!route("203.0.113.7") && !route("10.6.0.20") && !route("nowhere.invalid"));
        output("nmcli",
               {"connection", "modify", "Lights", "ipv4.method", "manual", "ipv4.addresses", "10.6.0.9/22"});
        output("nmcli", {"connection", "up", "Lights"});
        QTRY_VERIFY_WITH_TIMEOUT(route("10.6.3.20") == "en7" && !route("10.7.0.20"), patience);
    }

    void everyWayToSend_data() {
        QTest::addColumn<bool>("asRoot");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("a raw socket") << true << false;
        QTest::newRow("the kernel's ping socket, as root") << true << true;
        QTest::newRow("the kernel's ping socket") << false << true;
        QTest::newRow("the system's ping") << false << false;
    }
    void everyWayToSend() {
        QFETCH(bool, asRoot);
        QFETCH(bool, allowed);
        QFile range("/proc/sys/net/ipv4/ping_group_range");
        QVERIFY(range.open(QIODevice::WriteOnly));
        range.write(allowed ? "0 2147483647" : "1 0");
        range.close();
        const auto ping = [&](const std::string& host, const QStringList& options = {}) {
            QStringList words{"--reuid=0", "--", WENDREL_NM_ROOT "/sbin/ping"};
            if (!asRoot) words[0] = "--reuid=" + output("id", {"-u", qEnvironmentVariable("LAB_USER")});
            words += options;
            for (const auto& word : Ping::arguments(host, 300)) words << QString::fromStdString(word);
            QProcess tool;
            tool.setProcessChannelMode(QProcess::MergedChannels);
            tool.start("setpriv", words);
            tool.waitForFinished(patience);
            const std::string text = tool.readAll().toStdString();
            const PingOutcome outcome = Ping::parse(text, tool.exitCode());
            if (outcome.isReply() != (tool.exitCode() == 0))
                qWarning("%d: %s", tool.exitCode(), text.c_str());
            return outcome;
        };
        const auto reply = ping("10.5.0.20");
        QVERIFY(reply.isReply() && reply.ms() > 0 && reply.ms() < 300);
        QVERIFY(ping("10.5.0.20", {"-b", "en5"}).isReply());
        QVERIFY(ping("10.5.0.20", {"-b", "en7"}) == PingOutcome::timeout());
        QVERIFY(ping("10.5.0.20", {"-b", "en9"}) == PingOutcome::timeout());
        QVERIFY(ping("10.5.0.98") == PingOutcome::timeout());
        QVERIFY(ping("nowhere.invalid") == PingOutcome::unresolved());
    }
};

int main(int argc, char** argv) {
    return runInLab<LabPingTest>(argc, argv);
}
#include "lab_ping_test.moc"
