// The router's desk with 288 by 288 ports on a large window: a whole dump taken over as rows, all of it
// painted, and one route shown; goal: 16 ms of the main thread each.
#include "app/clients/videohub_client.h"
#include "app/views/tools/router/port_list.h"
#include "app/views/tools/router/router_desk.h"
#include "app/views/widgets/theme.h"
#include "bench/report.h"
#include "tests/sim/videohub_router.h"

#include <QApplication>
#include <QTcpServer>
#include <QTcpSocket>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <functional>

namespace {

using namespace corvane;
using Clock = std::chrono::steady_clock;

constexpr int ports = 288, rounds = 21;
constexpr double goalMilliseconds = 16;

/// Names that are as long as people's, and another order of routes in every other dump.
std::string dump(bool odd) {
    sim::VideohubRouter router({.inputs = ports, .outputs = ports, .model = "Universal Videohub 288"});
    std::vector<std::string> inputs, outputs, routes;
    for (int i = 0; i < ports; ++i) {
        const std::string number = std::to_string(i);
        inputs.push_back(number + (odd ? " Camera chain " : " Playback server ") + number);
        outputs.push_back(number + (odd ? " Stage monitor " : " Multiview window ") + number);
        routes.push_back(number + ' ' + std::to_string((i * 5 + (odd ? 7 : 31)) % ports));
    }
    router.take("INPUT LABELS:", inputs, "127.0.0.1");
    router.take("OUTPUT LABELS:", outputs, "127.0.0.1");
    router.take("VIDEO OUTPUT ROUTING:", routes, "127.0.0.1");
    for (int i = odd; i < ports; i += 3)
        router.take("VIDEO OUTPUT LOCKS:", {std::to_string(i) + " O"}, i % 2 ? "127.0.0.1" : "10.0.0.9");
    return router.prelude("127.0.0.1");
}

struct Time {
    /// Milliseconds; the processor's leave out what other programs took.
    double passed = 0, processor = 0;
};

Time timeOf(const std::function<void()>& work) {
    const auto start = Clock::now();
    const auto processor = std::clock();
    work();
    return {std::chrono::duration<double, std::milli>(Clock::now() - start).count(),
            1000.0 * double(std::clock() - processor) / CLOCKS_PER_SEC};
}

double milliseconds(const std::function<void()>& work) {
    return timeOf(work).passed;
}

void waitFor(const std::function<bool()>& done) {
    while (!done()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    theme::apply(application, theme::Appearance::dark);
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost)) return EXIT_FAILURE;
    VideohubClient client;
    RouterDesk desk(client);
    desk.resize(1400, 900);
    desk.show();
    client.connect(QStringLiteral("127.0.0.1"), server.serverPort());
    waitFor([&] { return server.hasPendingConnections(); });
    QTcpSocket* router = server.nextPendingConnection();

    std::vector<double> rows, paint, processor, route;
    for (int round = 0; round < rounds; ++round) {
        const std::string bytes = dump(round % 2);
        router->write(bytes.data(), qint64(bytes.size()));
        const auto last = (287 * 5 + (round % 2 ? 7 : 31)) % ports;
        waitFor([&] {
            const auto& routing = client.state().routing;
            return routing.contains(ports - 1) && routing.at(ports - 1) == last &&
                   client.state().locks.size() == ports;
        });
        rows.push_back(milliseconds([&] { desk.showLive(); }));
        if (round == 0) desk.focusOutputs();
        QApplication::processEvents();
        const Time painting = timeOf([&] { desk.repaint(); });
        paint.push_back(painting.passed);
        processor.push_back(painting.processor);

        const int wanted = (last + 40) % ports;
        const std::string change = "VIDEO OUTPUT ROUTING:\n287 " + std::to_string(wanted) + "\n\n";
        router->write(change.data(), qint64(change.size()));
        waitFor([&] { return client.state().routing.at(ports - 1) == wanted; });
        route.push_back(milliseconds([&] {
            desk.showLive();
            QApplication::sendPostedEvents();
        }));
    }
    if (desk.findChild<PortList*>(QStringLiteral("outputs"))->model()->rowCount() != ports)
        return EXIT_FAILURE;
    bench::reportLimit("Router 288 x 288: a dump taken over as rows", goalMilliseconds, bench::median(rows),
                       "ms");
    bench::reportLimit("Router 288 x 288: the whole desk painted", goalMilliseconds, bench::median(paint),
                       "ms");
    bench::reportLimit("Router 288 x 288: slowest painting, processor time", goalMilliseconds,
                       *std::max_element(processor.begin(), processor.end()), "ms");
    bench::reportLimit("Router 288 x 288: one route shown", goalMilliseconds, bench::median(route), "ms");
    return EXIT_SUCCESS;
}
