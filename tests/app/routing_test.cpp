// Service order and static routes on the simulated Mac.
#include "app/model/route_store.h"
#include "tests/app/support/model_home.h"

#include <QSignalSpy>
#include <QTest>

using namespace corvane;
using namespace corvane::testing;

class RoutingTest : public QObject {
    Q_OBJECT

    static StaticRoute route(const char* destination, const char* mask, const char* gateway) {
        return {Uuid::generate(), destination, mask, gateway};
    }

  private slots:
    void theFirstWithARouterCarriesInternet() {
        ModelHome home;
        AppModel& model = home.start();
        QCOMPARE(model.internetService(), std::optional<std::string>("Wi-Fi"));
        auto order = model.serviceOrder();
        std::rotate(order.begin(), order.begin() + 1, order.end());
        home.willAuthorize();
        QVERIFY(model.applyServiceOrder(order));
        QCOMPARE(home.prompt.calls[0].purpose, QString("change the network service order"));
        QCOMPARE(home.banners, QStringList{"Service order updated — Ethernet is first."});
        QTRY_COMPARE_WITH_TIMEOUT(model.internetService(), std::optional<std::string>("Ethernet"), 20000);
        QVERIFY(model.serviceOrder() == order);
        home.change([](simulated::State& state) {
            state.failNext = {{"-ordernetworkservices", "** Error: Unable to commit changes.", 8}};
        });
        home.willAuthorize();
        std::swap(order[0], order[1]);
        QVERIFY(!model.applyServiceOrder(order));
        QCOMPARE(home.alerts.shown.back().message, QString("Couldn't change the service order."));
        // The tool takes the complete list only.
        home.prompt.calls.clear();
        for (const auto& wrong : {std::vector<std::string>{}, std::vector<std::string>{"Wi-Fi"},
                                  std::vector<std::string>(order.size(), "Wi-Fi")}) {
            home.alerts.shown.clear();
            QVERIFY(!model.applyServiceOrder(wrong));
            QVERIFY(home.alerts.shown.size() == 1 && home.prompt.calls.empty());
        }
    }

    void routesAreSetReadBackAndRemoved() {
        ModelHome home;
        AppModel& model = home.start();
        QSignalSpy changed(&model, &AppModel::routesChanged);
        QVERIFY(!model.routes("Ethernet"));
        model.loadRoutes("Ethernet");
        QVERIFY(!model.routes("Ethernet"));
        QTRY_VERIFY_WITH_TIMEOUT(model.routes("Ethernet"), 20000);
        QVERIFY(model.routes("Ethernet")->empty() && changed.size() == 1);
        const std::vector<StaticRoute> wanted = {route("10.20.0.0", "/16", "10.0.10.1"),
                                                 route("10.30.0.0", "255.255.255.0", "10.0.10.2")};
        home.willAuthorize();
        QVERIFY(model.applyRoutes(wanted, "Ethernet"));
        QCOMPARE(home.prompt.calls.back().purpose, QString("set 2 static routes on Ethernet"));
        QCOMPARE(home.banners.last(), QString("Saved static routes on Ethernet."));
        QTRY_VERIFY_WITH_TIMEOUT(StaticRoute::sameRoutes(*model.routes("Ethernet"), wanted), 20000);
        // What hasn't changed keeps its rows.
        const auto before = *model.routes("Ethernet");
        const auto signals_ = changed.size();
        model.loadRoutes("Ethernet");
        model.loadRoutes("Wi-Fi");
        QTRY_VERIFY_WITH_TIMEOUT(model.routes("Wi-Fi"), 20000);
        QVERIFY(*model.routes("Ethernet") == before && changed.size() == signals_ + 1);

        home.willAuthorize();
        QVERIFY(model.applyRoutes({wanted[0]}, "Ethernet"));
        QCOMPARE(home.prompt.calls.back().purpose, QString("set 1 static route on Ethernet"));
        home.willAuthorize();
        QVERIFY(model.applyRoutes({}, "Ethernet"));
        QCOMPARE(home.prompt.calls.back().purpose, QString("remove the static routes on Ethernet"));
        QCOMPARE(home.banners.last(), QString("Removed static routes on Ethernet."));
        QTRY_VERIFY_WITH_TIMEOUT(model.routes("Ethernet")->empty(), 20000);
    }

    void aFailedReadingIsNoEmptyTable() {
        ModelHome home;
        AppModel& model = home.start();
        home.change([](simulated::State& state) {
            for (auto& service : state.services) service.routes = {{"10.30.0.0", "255.255.0.0", "10.0.10.9"}};
            state.failNext = {{"-getadditionalroutes", "** Error: Busy.", 8}};
        });
        QSignalSpy loaded(&model, &AppModel::routesLoaded);
        model.loadRoutes("Ethernet");
        model.loadRoutes("Wi-Fi");
        QTRY_VERIFY_WITH_TIMEOUT(model.routes("Wi-Fi"), 20000);
        QVERIFY(!model.routes("Ethernet"));
        model.loadRoutes("Ethernet");
        QTRY_VERIFY_WITH_TIMEOUT(model.routes("Ethernet"), 20000);
        home.change([](simulated::State& state) {
            state.failNext = {{"-getadditionalroutes", "** Error: Busy.", 8}};
        });
        model.loadRoutes("Ethernet");
        model.loadRoutes("Wi-Fi");
        QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 3, 20000);
        QCOMPARE(model.routes("Ethernet")->size(), std::size_t(1));
    }

    void readingsDoNotPileUp() {
        FakeShell shell;
        std::atomic<bool> held = true;
        shell.answer = [&](const auto&, const auto& arguments) -> std::string {
            while (held) QThread::msleep(1);
            std::string output;
            for (int i = 0; i < (arguments.back() == "Full" ? 1001 : 1000); ++i)
                output += "10.20.0.0 255.255.0.0 10.0.10.9\n";
            return output;
        };
        RouteStore store(shell);
        QSignalSpy loaded(&store, &RouteStore::loaded);
        store.load("Ethernet");
        QTRY_COMPARE(shell.calls.load(), 1);
        // One is under way, so one more tells what came after it; the others would tell the same.
        for (int i = 0; i < 5; ++i) store.load("Ethernet");
        store.load("Full");
        held = false;
        QTRY_COMPARE(shell.calls.load(), 3);
        QTRY_COMPARE(loaded.size(), 2);
        QCOMPARE(store.of("Ethernet")->size(), std::size_t(1000));
        store.load("Ethernet");
        QTRY_COMPARE(loaded.size(), 3);
        // A part of a table would be set as the whole.
        QVERIFY(!store.of("Full"));
    }

    void whatFailsOrIsInvalidIsTold() {
        ModelHome home;
        AppModel& model = home.start();
        QVERIFY(!model.applyRoutes({route("10.20.0.0", "/99", "x")}, "Ethernet"));
        QCOMPARE(home.alerts.shown[0].message,
                 QString("The static routes can't be set:\n\n10.20.0.0 /99 via x: Mask isn't valid (use "
                         "255.255.0.0 or /16).\n10.20.0.0 /99 via x: Gateway isn't a valid IPv4 address."));
        QVERIFY(!model.applyRoutes({}, "win:PC:Ethernet") && home.prompt.calls.empty());
        home.willAuthorize();
        QVERIFY(!model.applyRoutes({route("10.20.0.0", "/16", "10.0.10.1")}, "No such service"));
        QCOMPARE(home.alerts.shown.back().message, QString("Couldn't set static routes on No such service."));
        QVERIFY(home.alerts.shown.back().details.contains("not a recognized network service"));
        // Quitting while the table is being read.
        model.loadRoutes("Ethernet");
        home.stop();
    }
};

QTEST_GUILESS_MAIN(RoutingTest)
#include "routing_test.moc"
