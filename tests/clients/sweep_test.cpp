// Sweeps over a network that the test bends, and over the simulated Mac's.
#include "app/clients/icmp_sweep.h"
#include "app/clients/subnet_sweep.h"
#include "core/diagnostics/subnet_hosts.h"
#include "core/netconfig/ipv4.h"
#include "hosttools/simulated/state.h"
#include "platform/simulated/simulated_echo_sockets.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <thread>

namespace corvane {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Bytes = std::vector<std::uint8_t>;
using Strings = std::vector<std::string>;

/// What every socket of a fake network shares.
struct Wire {
    struct Request {
        std::uint32_t address = 0;
        Bytes bytes;
        Clock::time_point at;
    };
    /// Called for each request, on the sender's thread; answers by `deliver`.
    std::function<EchoSocket::Sent(Wire&, const Request&)> onRequest;
    std::optional<std::uint16_t> identifier;

    std::mutex lock;
    std::condition_variable arrived;
    std::vector<Request> requests;
    std::multimap<Clock::time_point, Bytes> underWay;

    void deliver(Bytes message, std::chrono::milliseconds after = 0ms) {
        const std::lock_guard guard(lock);
        underWay.emplace(Clock::now() + after, std::move(message));
        arrived.notify_one();
    }
    static Bytes reply(std::uint32_t source, const Bytes& request) {
        Bytes bytes(20);
        bytes[0] = 0x45;
        for (std::size_t i = 0; i < 4; ++i)
            bytes[12 + i] = static_cast<std::uint8_t>(source >> (24 - 8 * i) & 0xFF);
        bytes.insert(bytes.end(), request.begin(), request.end());
        bytes[20] = 0;
        return bytes;
    }
};

class FakeSocket final : public EchoSocket {
  public:
    explicit FakeSocket(std::shared_ptr<Wire> wire) : wire_(std::move(wire)) {}
    std::optional<std::uint16_t> identifier() const override { return wire_->identifier; }
    Sent send(std::uint32_t address, std::span<const std::uint8_t> message) override {
        const Wire::Request request{address, Bytes(message.begin(), message.end()), Clock::now()};
        {
            const std::lock_guard guard(wire_->lock);
            wire_->requests.push_back(request);
        }
        return wire_->onRequest ? wire_->onRequest(*wire_, request) : Sent::yes;
    }
    std::size_t receive(std::span<std::uint8_t> buffer) override {
        std::unique_lock lock(wire_->lock);
        const auto end = Clock::now() + receiveWait;
        while (wire_->underWay.empty() || wire_->underWay.begin()->first > Clock::now()) {
            if (Clock::now() >= end) return 0;
            wire_->arrived.wait_until(
                lock, wire_->underWay.empty() ? end : std::min(end, wire_->underWay.begin()->first));
        }
        const Bytes message = wire_->underWay.extract(wire_->underWay.begin()).mapped();
        std::copy_n(message.begin(), std::min(message.size(), buffer.size()), buffer.begin());
        return std::min(message.size(), buffer.size());
    }

  private:
    std::shared_ptr<Wire> wire_;
};

/// Hands out sockets to one wire, or refuses them.
class FakeSockets final : public EchoSockets {
  public:
    std::unique_ptr<EchoSocket> open(const std::string& device) const override {
        devices.push_back(device);
        return refuse ? nullptr : std::make_unique<FakeSocket>(wire);
    }
    bool refuse = false;
    std::shared_ptr<Wire> wire = std::make_shared<Wire>();
    mutable Strings devices;
};

static EchoSocket::Sent answer(Wire& wire, const Wire::Request& request) {
    wire.deliver(Wire::reply(request.address, request.bytes));
    return EchoSocket::Sent::yes;
}

static std::uint16_t word(const Bytes& bytes, std::size_t at) {
    return static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}

class SweepTest : public QObject {
    Q_OBJECT

    std::unique_ptr<FakeSockets> sockets_;
    std::atomic_bool cancelled_ = false;
    std::vector<int> progress_;

    Wire& wire() { return *sockets_->wire; }
    std::set<std::string> run(const Strings& addresses, int perSecond = 5000, double settle = 0.05) {
        progress_.clear();
        std::set<std::string> told;
        const auto replies = ICMPSweep::run(
            *sockets_, addresses, "en7", perSecond, settle,
            [this](int handled) { progress_.push_back(handled); },
            [&](const std::string& address, double) { told.insert(address); }, cancelled_);
        std::set<std::string> found;
        for (const auto& [address, ms] : replies) found.insert(address);
        if (told != found) qFatal("a reply was told and not returned, or the other way round");
        return found;
    }
    /// Milliseconds between each two requests.
    std::vector<double> gaps() {
        std::vector<double> between;
        for (std::size_t i = 1; i < wire().requests.size(); ++i)
            between.push_back(
                std::chrono::duration<double, std::milli>(wire().requests[i].at - wire().requests[i - 1].at)
                    .count());
        return between;
    }

  private slots:
    void init() {
        sockets_ = std::make_unique<FakeSockets>();
        cancelled_ = false;
    }

    void asksEachAddressOnce() {
        wire().onRequest = answer;
        const auto found = run({"10.0.0.3", "router", "10.0.0.1", "", "10.0.0.256", " 10.0.0.2 "});
        QCOMPARE(found, (std::set<std::string>{"10.0.0.1", "10.0.0.2", "10.0.0.3"}));
        QCOMPARE(sockets_->devices, Strings{"en7"});
        QCOMPARE(progress_, std::vector<int>{6});
        QCOMPARE(wire().requests.size(), std::size_t(3));
        const std::uint16_t identifier = word(wire().requests[0].bytes, 4);
        QVERIFY(identifier != 0);
        for (std::uint16_t i = 0; i < 3; ++i) {
            const auto expected = ICMPSweep::echoRequest(identifier, static_cast<std::uint16_t>(i + 1));
            QCOMPARE(wire().requests[i].bytes, Bytes(expected.begin(), expected.end()));
        }
    }

    void believesOnlyRepliesToItself() {
        wire().onRequest = [](Wire& wire, const Wire::Request& request) {
            const Bytes good = Wire::reply(request.address, request.bytes);
            Bytes foreign = good;
            foreign[24] ^= 1;
            Bytes request8 = good;
            request8[20] = 8;
            wire.deliver(foreign);
            wire.deliver(request8);
            wire.deliver(Bytes(good.begin(), good.begin() + 27));
            wire.deliver(Bytes(70'000, 0x45));
            wire.deliver({});
            // Of an address that nobody asked.
            wire.deliver(Wire::reply(request.address + 100, request.bytes));
            // Twice, the second with IP options in front.
            if (request.address % 2) {
                Bytes options = good;
                options.insert(options.begin() + 20, 4, 1);
                options[0] = 0x46;
                wire.deliver(good);
                wire.deliver(options);
            }
            return EchoSocket::Sent::yes;
        };
        QCOMPARE(run({"10.0.0.1", "10.0.0.2", "10.0.0.3"}), (std::set<std::string>{"10.0.0.1", "10.0.0.3"}));
    }

    void takesTheSystemsIdentifier() {
        wire().identifier = 77;
        wire().onRequest = [](Wire& wire, const Wire::Request& request) {
            Bytes rewritten = request.bytes;
            rewritten[4] = 0;
            rewritten[5] = request.address == 0x0a000001 ? 77 : 78;
            wire.deliver(Wire::reply(request.address, rewritten));
            return EchoSocket::Sent::yes;
        };
        QCOMPARE(run({"10.0.0.1", "10.0.0.2"}), std::set<std::string>{"10.0.0.1"});
    }

    void awaitsLateRepliesUntilItHasSettled() {
        std::map<std::string, double> ms;
        wire().onRequest = [](Wire& wire, const Wire::Request& request) {
            wire.deliver(Wire::reply(request.address, request.bytes),
                         request.address == 0x0a000001 ? 120ms : 900ms);
            return EchoSocket::Sent::yes;
        };
        QElapsedTimer took;
        took.start();
        const auto replies = ICMPSweep::run(
            *sockets_, {"10.0.0.1", "10.0.0.2"}, "en7", 5000, 0.3, nullptr,
            [&](const std::string& address, double time) { ms[address] = time; }, cancelled_);
        QVERIFY2(took.elapsed() >= 300 && took.elapsed() < 700, qPrintable(QString::number(took.elapsed())));
        QCOMPARE(replies.size(), std::size_t(1));
        QVERIFY(replies.at("10.0.0.1") >= 119 && replies.at("10.0.0.1") < 250);
        QCOMPARE(ms.at("10.0.0.1"), replies.at("10.0.0.1"));
    }

    void paces_data() {
        QTest::addColumn<int>("perSecond");
        QTest::addColumn<int>("batch");
        QTest::newRow("slow") << 49 << 1;
        QTest::newRow("500") << 500 << 10;
        QTest::newRow("5000") << 5000 << 100;
    }
    void paces() {
        QFETCH(int, perSecond);
        QFETCH(int, batch);
        auto addresses = SubnetHosts::of("10.0.0.1", "22").addresses;
        addresses.resize(static_cast<std::size_t>(batch) * 10);
        run(addresses, perSecond, 0);
        QCOMPARE(progress_.size(), std::size_t(11));
        for (int i = 0; i < 10; ++i) QCOMPARE(progress_[static_cast<std::size_t>(i)], batch * (i + 1));
        QCOMPARE(progress_.back(), batch * 10);
        const auto first = wire().requests[0].at;
        for (std::size_t i = 0; i < wire().requests.size(); ++i) {
            // A busy machine wakes late, never early.
            const double ms =
                std::chrono::duration<double, std::milli>(wire().requests[i].at - first).count();
            const double due = 20.0 * static_cast<double>(i / static_cast<std::size_t>(batch));
            QVERIFY2(ms >= due - 5 && ms < due + 500,
                     qPrintable(QString("request %1 after %2 ms").arg(i).arg(ms)));
        }
    }

    void doesNotCatchUpAfterAStall() {
        wire().onRequest = [](Wire& wire, const Wire::Request&) {
            if (wire.requests.size() == 3) std::this_thread::sleep_for(200ms);
            return EchoSocket::Sent::yes;
        };
        auto addresses = SubnetHosts::of("10.0.0.1", "28").addresses;
        run(addresses, 49, 0);
        const auto between = gaps();
        QVERIFY(between[2] >= 200);
        double sum = 0;
        for (std::size_t i = 3; i < between.size(); ++i) sum += between[i];
        QVERIFY2(sum >= 20.0 * static_cast<double>(between.size() - 4), "the batches missed weren't sent");
    }

    void asksAgainWhenTheSystemWasShortOfRoom() {
        int refusals = 4;
        wire().onRequest = [&](Wire& wire, const Wire::Request& request) {
            if (request.address == 0x0a000003) return EchoSocket::Sent::no;
            if (request.address == 0x0a000002 && refusals-- > 0) return EchoSocket::Sent::notNow;
            return answer(wire, request);
        };
        QCOMPARE(run({"10.0.0.1", "10.0.0.2", "10.0.0.3", "10.0.0.4"}),
                 (std::set<std::string>{"10.0.0.1", "10.0.0.2", "10.0.0.4"}));
        QCOMPARE(wire().requests.size(), std::size_t(8));

        // A system that never has room again: the sweep ends all the same.
        wire().onRequest = [](Wire&, const Wire::Request&) { return EchoSocket::Sent::notNow; };
        QElapsedTimer took;
        took.start();
        QCOMPARE(run({"10.0.0.1", "10.0.0.2", "10.0.0.3"}), std::set<std::string>());
        QVERIFY(took.elapsed() < 7000);
    }

    void endsEmptyWithoutASocket() {
        sockets_->refuse = true;
        QCOMPARE(run({"10.0.0.1"}), std::set<std::string>());
        QVERIFY(progress_.empty());
    }

    void endsSoonWhenCancelled() {
        wire().onRequest = answer;
        Clock::time_point asked;
        std::thread canceller([&] {
            std::this_thread::sleep_for(150ms);
            asked = Clock::now();
            cancelled_ = true;
        });
        const auto found = run(SubnetHosts::of("10.0.0.1", "22").addresses, 500, 10);
        const auto took = Clock::now() - asked;
        canceller.join();
        QVERIFY(found.size() >= 10 && found.size() < 200);
        QVERIFY2(took < 150ms, "within about 50 ms, on a busy machine too");
    }

    void tellsAPage() {
        wire().onRequest = [](Wire& wire, const Wire::Request& request) {
            return request.address % 3 ? EchoSocket::Sent::yes : answer(wire, request);
        };
        SubnetSweep sweep(*sockets_);
        QSignalSpy running(&sweep, &SubnetSweep::runningChanged);
        QSignalSpy progressed(&sweep, &SubnetSweep::progressed);
        QElapsedTimer took;
        took.start();
        auto addresses = SubnetHosts::of("10.0.0.1", "24").addresses;
        std::reverse(addresses.begin(), addresses.end());
        sweep.start(addresses, "en7");
        QVERIFY(sweep.isRunning() && sweep.total() == 254 && sweep.found().empty());
        sweep.start({"10.9.9.9"}, "en9");
        QCOMPARE(sockets_->devices, Strings{"en7"});
        QTRY_VERIFY(sweep.handled() > 0 && sweep.handled() < 254);
        QVERIFY(sweep.isRunning());
        QTRY_VERIFY(!sweep.isRunning());
        QCOMPARE(running.count(), 2);
        QVERIFY(progressed.count() > 3 && progressed.count() <= took.elapsed() / 50 + 2);
        QCOMPARE(sweep.handled(), 254);
        Strings expected;
        for (const auto& address : SubnetHosts::of("10.0.0.1", "24").addresses)
            if (*IPv4::parse(address) % 3 == 0) expected.push_back(address);
        QCOMPARE(sweep.found().size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) QCOMPARE(sweep.found()[i].address, expected[i]);

        // Once more, cancelled: what was found stays.
        wire().onRequest = answer;
        sweep.start(SubnetHosts::of("10.0.0.1", "22").addresses, "en7");
        QVERIFY(sweep.found().empty());
        QTRY_VERIFY(!sweep.found().empty());
        sweep.cancel();
        QTRY_VERIFY_WITH_TIMEOUT(!sweep.isRunning(), 500);
        QVERIFY(!sweep.found().empty() && sweep.handled() < sweep.total());

        // A socket that lets nothing out, as a firewall makes it.
        QVERIFY(!sweep.sentNothing());
        wire().onRequest = [](Wire&, const Wire::Request&) { return EchoSocket::Sent::no; };
        sweep.start({"10.0.0.1", "10.0.0.2"}, "en7");
        QTRY_VERIFY(!sweep.isRunning());
        QVERIFY(sweep.sentNothing() && !sweep.refused() && sweep.handled() == 2);
        wire().onRequest = nullptr;
        sweep.start({"10.0.0.1", "10.0.0.2"}, "en7");
        QTRY_VERIFY(!sweep.isRunning());
        QVERIFY(!sweep.sentNothing());

        sockets_->refuse = true;
        sweep.start({"10.0.0.1"}, "en7");
        QVERIFY(sweep.refused() && !sweep.isRunning() && sweep.found().empty());
    }

    void goesAtOnceWhileItRuns() {
        wire().onRequest = answer;
        for (const int after : {0, 5, 60}) {
            auto sweep = std::make_unique<SubnetSweep>(*sockets_);
            sweep->start(SubnetHosts::of("10.0.0.1", "20").addresses, "en7");
            QTest::qWait(after);
            QElapsedTimer took;
            took.start();
            sweep.reset();
            QVERIFY(took.elapsed() < 16);
        }
        // Its page goes with it, from within its own signal.
        auto sweep = std::make_unique<SubnetSweep>(*sockets_);
        connect(sweep.get(), &SubnetSweep::progressed, this, [&] { sweep.reset(); });
        sweep->start({"10.0.0.1"}, "en7");
        QTRY_VERIFY(!sweep);
        // Their threads end by themselves.
        QTRY_VERIFY(sockets_->wire.use_count() == 1);
    }

    void sweepsTheSimulatedNetwork() {
        QTemporaryDir dir;
        const std::string file = dir.filePath("network.json").toStdString();
        const SimulatedEchoSockets simulated(file);
        QVERIFY(simulated::StateFile(file).load().state);
        const auto addresses = SubnetHosts::of("10.0.10.57", "24").addresses;
        const auto sweep = [&](const char* device) {
            return ICMPSweep::run(simulated, addresses, device, 5000, 0.2, nullptr, nullptr, cancelled_);
        };
        const auto wired = sweep("en5");
        QCOMPARE(wired.size(), std::size_t(3));
        // The router, the machine itself and the console, as its ping says.
        for (const auto& [address, least] :
             std::map<std::string, double>{{"10.0.10.1", 0.38}, {"10.0.10.57", 0.061}, {"10.0.10.40", 0.6}})
            QVERIFY2(wired.at(address) >= least && wired.at(address) < least + 50, address.c_str());
        QCOMPARE(sweep("en8").size(), std::size_t(0));
        // The console moves away, then the cable is pulled.
        simulated::StateFile(file).change(
            [](simulated::State& state) { state.answering["10.0.10.40"] = 90; });
        QVERIFY(sweep("en5").at("10.0.10.40") >= 90);
        simulated::StateFile(file).change([](simulated::State& state) { state.devices["en5"].link = false; });
        QCOMPARE(sweep("en5").size(), std::size_t(0));
    }
};

} // namespace corvane

QTEST_GUILESS_MAIN(corvane::SweepTest)
#include "sweep_test.moc"
