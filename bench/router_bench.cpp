// A router of 288 by 288: its whole dump, with labels, locks and routes, folded into the state; goal: 16 ms
// of the main thread.
#include "app/clients/videohub_client.h"
#include "bench/report.h"
#include "core/support/text.h"
#include "tests/sim/videohub_router.h"

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <future>
#include <thread>

namespace {

using namespace corvane;
using Clock = std::chrono::steady_clock;

constexpr int ports = 288;
constexpr double goalMilliseconds = 16;
constexpr int rounds = 21;

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

std::string dump() {
    sim::VideohubRouter router({.inputs = ports, .outputs = ports, .model = "Universal Videohub 288"});
    return router.prelude("127.0.0.1");
}

bool isWhole(const Videohub::State& state) {
    return state.routing.size() == ports && state.locks.size() == ports &&
           state.inputLabels.size() == ports && state.outputLabels.size() == ports;
}

/// Every event's time on the main thread.
class TimedApplication : public QCoreApplication {
  public:
    using QCoreApplication::QCoreApplication;
    Clock::duration total{}, longest{};
    bool notify(QObject* receiver, QEvent* event) override {
        const auto start = Clock::now();
        const bool handled = QCoreApplication::notify(receiver, event);
        const auto time = Clock::now() - start;
        total += time;
        longest = std::max(longest, time);
        return handled;
    }
};

double parsedAndApplied(const std::string& bytes) {
    const auto start = Clock::now();
    Videohub::Parser parser;
    Videohub::State state;
    for (const auto line : text::split(bytes, "\n")) {
        if (const auto block = parser.feed(line)) state.apply(block->header, block->lines);
    }
    const double time = milliseconds(Clock::now() - start);
    if (!isWhole(state)) std::exit(EXIT_FAILURE);
    return time;
}

struct Load {
    double total, longest;
};

/// The dump over a real socket, from a thread that plays the router.
Load received(TimedApplication& application, const std::string& bytes) {
    std::promise<quint16> port;
    std::promise<void> end;
    std::thread router([&] {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        port.set_value(server.serverPort());
        server.waitForNewConnection(5000);
        auto* client = server.nextPendingConnection();
        client->write(bytes.data(), static_cast<qint64>(bytes.size()));
        while (client->bytesToWrite() > 0) client->waitForBytesWritten();
        end.get_future().wait();
    });
    VideohubClient client;
    QObject::connect(&client, &VideohubClient::stateChanged, &application, [&] {
        if (isWhole(client.state())) QCoreApplication::quit();
    });
    application.total = application.longest = {};
    client.connect(QStringLiteral("127.0.0.1"), port.get_future().get());
    QCoreApplication::exec();
    const Load load{milliseconds(application.total), milliseconds(application.longest)};
    end.set_value();
    router.join();
    return load;
}

} // namespace

int main(int argc, char** argv) {
    TimedApplication application(argc, argv);
    const auto bytes = dump();
    std::printf("A full dump of %d by %d has %zu bytes.\n", ports, ports, bytes.size());
    std::vector<double> codec, total, longest;
    for (int round = 0; round < rounds; ++round) {
        codec.push_back(parsedAndApplied(bytes));
        const auto load = received(application, bytes);
        total.push_back(load.total);
        longest.push_back(load.longest);
    }
    bench::reportLimit("288 x 288 dump parsed and applied", goalMilliseconds, bench::median(codec), "ms");
    bench::reportLimit("  received by the client, main thread in all", goalMilliseconds, bench::median(total),
                       "ms");
    bench::reportLimit("  received by the client, longest single event", goalMilliseconds,
                       *std::max_element(longest.begin(), longest.end()), "ms");
    return 0;
}
