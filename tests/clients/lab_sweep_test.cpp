// Sweeps of real subnets in the lab, over both kinds of Linux's ICMP sockets: every live host, and no other.
#include "app/clients/icmp_sweep.h"
#include "core/diagnostics/subnet_hosts.h"
#include "core/netconfig/ipv4.h"
#include "platform/linux/echo_sockets.h"
#include "tests/app/support/lab_model.h"

#include <QElapsedTimer>
#include <QSet>

#include <cstdio>

namespace corvane {

using testing::output;
using testing::patience;

static const std::string device = "en7";
static const QString ownAddress = QStringLiteral("10.8.0.2");

static std::vector<std::string> hostsOf(const char* mask) {
    auto hosts = SubnetHosts::of(ownAddress.toStdString(), mask).addresses;
    std::erase(hosts, ownAddress.toStdString());
    return hosts;
}

static ICMPSweep::Replies sweep(const std::vector<std::string>& addresses, int perSecond) {
    const std::atomic_bool never = false;
    return ICMPSweep::run(LinuxEchoSockets(), addresses, device, perSecond, 1.0, nullptr, nullptr, never);
}

static QSet<QString> names(const ICMPSweep::Replies& replies) {
    QSet<QString> found;
    for (const auto& [address, ms] : replies) found.insert(QString::fromStdString(address));
    return found;
}

class LabSweepTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() {
        // A host at every seventh address of a /21; the /22 has the first half of them.
        QString batch = "address add 10.8.0.1/21 dev far7\n";
        live_.insert("10.8.0.1");
        for (const auto& address : SubnetHosts::of("10.8.0.0", "21").addresses) {
            const auto host = QString::fromStdString(address);
            if (IPv4::parse(address).value_or(0) % 7 != 5 || host == ownAddress) continue;
            live_.insert(host);
            batch += "address add " + host + "/32 dev far7\n";
        }
        run("lab-far", {"ip", "-batch", "-"}, batch);
        run("ip", {"address", "add", ownAddress + "/21", "dev", QString::fromStdString(device)});
        QVERIFY(liveIn("22").size() > 140);
    }
    void init() { output("ip", {"neigh", "flush", "dev", QString::fromStdString(device)}); }

    void rawSocketFindsEveryHost() {
        allowUnprivileged(false);
        const auto socket = LinuxEchoSockets().open(device);
        QVERIFY(socket && !socket->identifier());
        expectAll(sweep(hostsOf("22"), 500), "22");
    }
    void unprivilegedSocketFindsEveryHost() {
        allowUnprivileged(false);
        QCOMPARE(asOperator("22"), (Printed{"refused", {}}));
        allowUnprivileged(true);
        const auto [kind, found] = asOperator("22");
        QCOMPARE(kind, QString("unprivileged"));
        QCOMPARE(found, liveIn("22"));
    }
    // The kernel keeps at most 1,024 neighbours (gc_thresh3), those that don't answer for 3 s.
    void moreAddressesThanTheNeighbourTableHolds_data() {
        QTest::addColumn<bool>("unprivileged");
        QTest::newRow("raw") << false;
        QTest::newRow("unprivileged") << true;
    }
    void moreAddressesThanTheNeighbourTableHolds() {
        QFETCH(bool, unprivileged);
        allowUnprivileged(unprivileged);
        QElapsedTimer took;
        took.start();
        expectAll(sweep(hostsOf("21"), 5000), "21");
        qInfo("2,045 addresses in %lld ms", took.elapsed());
        QVERIFY2(took.elapsed() > 2500, "the table never was full: this proves nothing");
    }
    // Nobody has 10.8.3.254, so its hardware address is looked for where the request would leave.
    void leavesByItsInterface_data() { moreAddressesThanTheNeighbourTableHolds_data(); }
    void leavesByItsInterface() {
        QFETCH(bool, unprivileged);
        allowUnprivileged(unprivileged);
        const auto lookedFor = [] {
            return output("ip", {"neigh", "show", "to", "10.8.3.254", "dev", QString::fromStdString(device)});
        };
        const std::atomic_bool never = false;
        for (const std::string used : {"en5", device.c_str()}) {
            ICMPSweep::run(LinuxEchoSockets(), {"10.8.3.254"}, used, 500, 0, nullptr, nullptr, never);
            QCOMPARE(!lookedFor().isEmpty(), used == device);
        }
    }

  private:
    using Printed = std::pair<QString, QSet<QString>>;

    void run(const QString& program, const QStringList& arguments, const QString& input = {}) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(program, arguments);
        process.write(input.toUtf8());
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(patience) && process.exitCode() == 0);
    }
    void allowUnprivileged(bool allowed) {
        QFile range("/proc/sys/net/ipv4/ping_group_range");
        QVERIFY(range.open(QIODevice::WriteOnly) && range.write(allowed ? "0 2147483647" : "1 0") > 0);
    }
    QSet<QString> liveIn(const char* mask) const {
        QSet<QString> expected;
        for (const auto& address : hostsOf(mask))
            if (live_.contains(QString::fromStdString(address)))
                expected.insert(QString::fromStdString(address));
        return expected;
    }
    void expectAll(const ICMPSweep::Replies& replies, const char* mask) const {
        const auto found = names(replies);
        const auto expected = liveIn(mask);
        qInfo("%lld of %lld live hosts found", static_cast<long long>(found.size()),
              static_cast<long long>(expected.size()));
        QCOMPARE(found - expected, QSet<QString>());
        QCOMPARE(expected - found, QSet<QString>());
        for (const auto& [address, ms] : replies) QVERIFY2(ms >= 0 && ms < 1000, address.c_str());
    }
    /// This program again, as the lab's user: the kind of socket that it got, and what it found.
    Printed asOperator(const char* mask) const {
        const auto lines =
            QString::fromUtf8(output("setpriv", {"--reuid", "1999", "--regid", "1999", "--clear-groups", "--",
                                                 QCoreApplication::applicationFilePath(), "--sweep", mask}))
                .split('\n', Qt::SkipEmptyParts);
        return {lines.value(0), QSet<QString>(lines.begin() + (lines.isEmpty() ? 0 : 1), lines.end())};
    }

    QSet<QString> live_;
};

} // namespace corvane

/// What the test starts as the lab's user.
static int printSweep(const char* mask) {
    using namespace corvane;
    const auto socket = LinuxEchoSockets().open(device);
    std::puts(!socket ? "refused" : socket->identifier() ? "unprivileged" : "raw");
    for (const auto& [address, ms] : sweep(hostsOf(mask), 500)) std::puts(address.c_str());
    return 0;
}

int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == "--sweep") return printSweep(argv[2]);
    return corvane::testing::runInLab<corvane::LabSweepTest>(argc, argv);
}

#include "lab_sweep_test.moc"
