// The page of the service order and the static routes of a service: drafts beside what the system has, by
// keyboard, through refreshes and changes by others.
#include "app/views/network/network_commands.h"
#include "app/views/network/route_table.h"
#include "app/views/network/routes_pane.h"
#include "app/views/network/service_order_page.h"
#include "app/views/network/service_page.h"
#include "app/views/widgets/draft_bar.h"
#include "app/views/widgets/row_list.h"
#include "app/views/widgets/segmented_control.h"
#include "tests/app/support/model_home.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QVBoxLayout>

using namespace corvane;
using namespace corvane::testing;

namespace {

using State = DraftBar::State;
using Names = std::vector<std::string>;

Names order(const RowList& list) {
    Names names;
    for (const Row& row : list.rowModel().rows()) names.push_back(row.id.toStdString());
    return names;
}

simulated::Service& serviceNamed(simulated::State& state, const std::string& name) {
    for (auto& service : state.services)
        if (service.name == name) return service;
    qFatal("no such service");
}

} // namespace

class NetworkOrderTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHome> home;
    AppModel* model = nullptr;
    std::unique_ptr<QWidget> window;
    std::unique_ptr<NetworkCommands> commands;

    template <typename Page>
    Page* show() {
        auto* page = new Page(*model, *commands, window.get());
        (new QVBoxLayout(window.get()))->addWidget(page);
        window->resize(700, 640);
        window->show();
        return QTest::qWaitForWindowActive(window.get()) ? page : nullptr;
    }
    const Row& row(const RowList& list, const char* name) {
        return list.rowModel().row(list.rowModel().indexOf(name));
    }
    /// The routes that the simulated Mac has, as it would print them.
    QStringList systemRoutes(const std::string& name) {
        QStringList routes;
        home->change([&](simulated::State& state) {
            for (const auto& route : serviceNamed(state, name).routes)
                routes << QString::fromStdString(route.destination + ' ' + route.mask + ' ' + route.gateway);
        });
        return routes;
    }
    void type(RouteTable& table, const QString& text) {
        if (!table.isEditing()) QTest::keyClick(&table, Qt::Key_F2);
        auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        QVERIFY(field);
        field->selectAll();
        QTest::keyClicks(field, text);
    }
    static void next() { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); }

  private slots:
    void init() {
        home = std::make_unique<ModelHome>();
        model = &home->start();
        window = std::make_unique<QWidget>();
        commands = std::make_unique<NetworkCommands>(*model, window.get());
    }
    void cleanup() {
        commands->setParent(nullptr);
        window.reset();
        commands.reset();
        home.reset();
    }

    void orderByKeyboardAlone() {
        auto* page = show<ServiceOrderPage>();
        auto& list = *page->findChild<RowList*>("serviceOrder");
        auto& bar = *page->findChild<DraftBar*>();
        const Names before = model->serviceOrder();
        QTRY_COMPARE(order(list), before);
        QCOMPARE(bar.state(), State::inForce);
        QCOMPARE(row(list, "Wi-Fi").mark, "Carries internet");
        QCOMPARE(row(list, "Ethernet").notices,
                 std::vector{(Notice{Notice::Kind::advice, "Has a router but doesn't carry internet."})});
        QVERIFY(row(list, "Stage LAN").notices.empty());

        list.setFocus();
        QTest::keyClick(&list, Qt::Key_End);
        QTest::keyClick(&list, Qt::Key_Home, Qt::AltModifier);
        QCOMPARE(list.currentId(), "Stage LAN");
        QCOMPARE(order(list).front(), "Stage LAN");
        QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
        QTRY_COMPARE(order(list)[1], "Stage LAN");
        QTest::keyClick(&list, Qt::Key_Down);
        QCOMPARE(list.currentId(), "Ethernet");
        for (int place = 1; place >= 0; --place) {
            QTest::keyClick(&list, Qt::Key_Up, Qt::AltModifier);
            QTRY_COMPARE(order(list)[static_cast<std::size_t>(place)], "Ethernet");
        }
        QCOMPARE(bar.text(), "Not applied yet");
        QCOMPARE(model->serviceOrder(), before);
        const Names wanted = order(list);
        home->refreshed();
        QCOMPARE(order(list), wanted);

        home->willAuthorize();
        QTest::keyClick(&list, Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(home->banners, QStringList{"Service order updated — Ethernet is first."});
        QCOMPARE(home->prompt.calls.back().purpose, "change the network service order");
        QVERIFY(bar.state() != State::differs);
        QTRY_COMPARE_WITH_TIMEOUT(model->serviceOrder(), wanted, 20000);
        QTRY_COMPARE(bar.state(), State::inForce);
        QTRY_COMPARE_WITH_TIMEOUT(row(list, "Ethernet").mark, "Carries internet", 20000);
        QCOMPARE(order(list), wanted);
    }

    void orderThatOthersChange() {
        auto* page = show<ServiceOrderPage>();
        auto& list = *page->findChild<RowList*>("serviceOrder");
        auto& bar = *page->findChild<DraftBar*>();
        QTRY_VERIFY(list.rowModel().rowCount() > 3);
        // Untouched, it follows.
        home->change([](simulated::State& state) { std::swap(state.services[0], state.services[1]); });
        home->refreshed();
        QTRY_COMPARE(order(list).front(), "Ethernet");
        QCOMPARE(bar.state(), State::inForce);
        // Touched, it stays, says so, and takes in what came and went.
        list.setFocus();
        list.setCurrentId("Stage LAN");
        QTest::keyClick(&list, Qt::Key_Home, Qt::AltModifier);
        home->change([](simulated::State& state) {
            std::swap(state.services[0], state.services[1]);
            std::erase_if(state.services, [](const auto& service) { return service.name == "iPhone USB"; });
        });
        home->refreshed();
        QTRY_VERIFY(!list.rowModel().indexOf("iPhone USB").isValid());
        QCOMPARE(order(list).front(), "Stage LAN");
        QStringList said;
        for (auto* lines : page->findChildren<NoticeLines*>())
            for (const Notice& notice : lines->notices()) said << notice.text;
        QVERIFY2(said.filter("changed meanwhile: Wi-Fi, Ethernet").size() == 1, qPrintable(said.join('\n')));
        // A reading that fails takes nothing of it away.
        home->change([](simulated::State& state) {
            state.failNext.assign(8, {"-listnetworkserviceorder", "** Error: Busy.\n", 8});
        });
        const Names draft = order(list);
        home->refreshed();
        QVERIFY(model->serviceOrder().empty());
        QTest::qWait(20);
        QCOMPARE(order(list), draft);
        QCOMPARE(bar.state(), State::differs);
        home->change([](simulated::State& state) { state.failNext.clear(); });
        home->refreshed();
        QTRY_COMPARE(order(list), draft);
        // A failed change leaves the draft as it is.
        home->change([](simulated::State& state) {
            state.failNext.push_back({"-ordernetworkservices", "** Error: The parameters were not valid.\n"});
        });
        home->willAuthorize();
        QTest::mouseClick(bar.findChild<QPushButton*>("apply"), Qt::LeftButton);
        QCOMPARE(home->alerts.shown.size(), std::size_t(1));
        QCOMPARE(home->alerts.shown[0].message, "Couldn't change the service order.");
        QCOMPARE(bar.state(), State::differs);
        QTest::mouseClick(bar.findChild<QPushButton*>("revert"), Qt::LeftButton);
        QCOMPARE(bar.state(), State::inForce);
        QCOMPARE(order(list), model->serviceOrder());
    }

    void routesAreADraftUntilApplied() {
        home->change([](simulated::State& state) {
            serviceNamed(state, "Ethernet").routes = {{"10.30.0.0", "255.255.0.0", "10.0.10.254"}};
        });
        auto* page = show<ServicePage>();
        page->setService("Ethernet");
        auto* section = page->findChild<SegmentedControl*>();
        section->setFocus();
        QTest::keyClick(section, Qt::Key_Right);
        auto& table = *page->findChild<RouteTable*>("routes");
        auto& routes = table.routes();
        auto& bar = *page->findChild<DraftBar*>();
        QTRY_COMPARE(routes.rowCount(), 1);
        QCOMPARE(bar.state(), State::inForce);
        QCOMPARE(commands->currentDraft(), &bar);

        table.setFocus();
        QTest::keyClick(&table, Qt::Key_Insert);
        QVERIFY(table.isEditing());
        QVERIFY(routes.notices(1).empty());
        type(table, "10.20.1");
        const auto error = [](const char* text) { return Notice{Notice::Kind::error, text}; };
        QCOMPARE(routes.notices(1), std::vector{error("Destination isn't a valid IPv4 address.")});
        type(table, "10.20.1.0");
        QVERIFY(routes.notices(1).empty());
        next();
        type(table, "/99");
        QCOMPARE(routes.notices(1), std::vector{error("Mask isn't valid (use 255.255.0.0 or /16).")});
        type(table, "/16");
        next();
        QTRY_COMPARE(bar.state(), State::differs);
        QVERIFY(!bar.findChild<QPushButton*>("apply")->isEnabled());
        // A reading that differs, under the open field, disturbs nothing.
        type(table, "10.0.10.25");
        auto* open = QApplication::focusWidget();
        const auto setSystem = [&](std::vector<hosttools::Route> now) {
            const auto size = now.size();
            home->change([&](simulated::State& state) { serviceNamed(state, "Ethernet").routes = now; });
            home->refreshed();
            QTRY_COMPARE(model->routes("Ethernet")->size(), size);
            QTest::qWait(20);
        };
        setSystem({});
        QCOMPARE(QApplication::focusWidget(), open);
        QCOMPARE(routes.rowCount(), 2);
        setSystem({{"10.30.0.0", "255.255.0.0", "10.0.10.254"}});
        QTest::keyClicks(open, "3");
        QCOMPARE(routes.routes()[1].gateway, "10.0.10.253");
        QCOMPARE(routes.notices(1),
                 std::vector{(Notice{Notice::Kind::warning,
                                     "Destination has host bits set — did you mean 10.20.0.0?"})});
        next();
        QVERIFY(!table.isEditing() && !table.hasFocus());
        QTRY_VERIFY(bar.findChild<QPushButton*>("apply")->isEnabled());
        QCOMPARE(systemRoutes("Ethernet").size(), 1);

        table.setFocus();
        home->willAuthorize();
        QTest::keyClick(&table, Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(home->banners, QStringList{"Saved static routes on Ethernet."});
        QVERIFY(home->prompt.calls.back().purpose.contains("2 static routes"));
        QTRY_COMPARE_WITH_TIMEOUT(bar.state(), State::inForce, 20000);
        QCOMPARE(systemRoutes("Ethernet"),
                 (QStringList{"10.30.0.0 255.255.0.0 10.0.10.254", "10.20.1.0 255.255.0.0 10.0.10.253"}));
        // Removing them all takes them off the system.
        table.setCurrentIndex(routes.index(0, 0));
        for (int i = 0; i < 2; ++i) QTest::keyClick(&table, Qt::Key_Delete);
        QTRY_COMPARE(bar.state(), State::differs);
        home->willAuthorize();
        QTest::mouseClick(bar.findChild<QPushButton*>("apply"), Qt::LeftButton);
        QCOMPARE(home->banners.back(), "Removed static routes on Ethernet.");
        QTRY_COMPARE_WITH_TIMEOUT(bar.state(), State::inForce, 20000);
        QVERIFY(systemRoutes("Ethernet").isEmpty());
    }

    void aCellByKeyboard() {
        QTest::failOnWarning(QRegularExpression("editing failed"));
        home->change([](simulated::State& state) {
            serviceNamed(state, "Ethernet").routes = {{"10.30.0.0", "255.255.0.0", "10.0.10.254"}};
        });
        auto* page = show<ServicePage>();
        page->setService("Ethernet");
        auto* section = page->findChild<SegmentedControl*>();
        const auto tabsTo = [&](std::initializer_list<const char*> names) {
            section->setFocus();
            for (const char* name : names) {
                next();
                auto* at = QApplication::focusWidget();
                auto* button = qobject_cast<QPushButton*>(at);
                if ((button ? button->text() : at->accessibleName()) != name) return false;
            }
            return true;
        };
        QVERIFY(tabsTo({"New Preset…", "From Current Settings…", "New Preset…"}));
        section->setFocus();
        QTest::keyClick(section, Qt::Key_Right);
        auto& table = *page->findChild<RouteTable*>("routes");
        auto& bar = *page->findChild<DraftBar*>();
        QTRY_COMPARE(table.routes().rowCount(), 1);
        table.setFocus();
        QTRY_VERIFY(page->findChild<RoutesPane*>()->removeButton()->isEnabled());
        QVERIFY(tabsTo({"Add Route", "Remove Route", "Static routes"}));
        // Escape takes the typing back.
        type(table, "10.31.0.0");
        QTRY_COMPARE(bar.state(), State::differs);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(!table.isEditing());
        QCOMPARE(table.routes().routes()[0].destination, "10.30.0.0");
        QTRY_COMPARE(bar.state(), State::inForce);
        // Return opens the field and closes it again.
        QTest::keyClick(&table, Qt::Key_Return);
        QVERIFY(table.isEditing());
        type(table, "10.32.0.0");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTRY_VERIFY(!table.isEditing());
        QCOMPARE(table.routes().routes()[0].destination, "10.32.0.0");
        // A host that puts a route in its own words: those are taken once they are read back.
        home->willAuthorize();
        QTest::keyClick(&table, Qt::Key_Return, Qt::ControlModifier);
        home->change([](simulated::State& state) {
            serviceNamed(state, "Ethernet").routes = {{"10.33.0.0", "255.255.0.0", "10.0.10.254"}};
        });
        QTRY_COMPARE_WITH_TIMEOUT(table.routes().routes()[0].destination, "10.33.0.0", 20000);
        QTRY_COMPARE(bar.state(), State::inForce);
    }

    void routeDraftsStayWithTheirService() {
        auto* page = show<ServicePage>();
        page->setService("Ethernet");
        QTest::keyClick(page->findChild<SegmentedControl*>(), Qt::Key_Right);
        auto& table = *page->findChild<RouteTable*>("routes");
        auto& bar = *page->findChild<DraftBar*>();
        QTRY_COMPARE(bar.state(), State::inForce);
        table.routes().add();
        table.routes().setData(table.routes().index(0, 0), "10.20.0.0", Qt::EditRole);
        QTRY_COMPARE(bar.state(), State::differs);
        page->setService("Wi-Fi");
        QCOMPARE(table.routes().rowCount(), 0);
        QTRY_COMPARE(bar.state(), State::inForce);
        page->setService("Ethernet");
        QCOMPARE(table.routes().rowCount(), 1);
        QCOMPARE(bar.state(), State::differs);
        // The system's change underneath is told, and taken over by Revert.
        home->change([](simulated::State& state) {
            serviceNamed(state, "Ethernet").routes = {{"10.40.0.0", "255.255.0.0", "10.0.10.254"}};
        });
        home->refreshed();
        QTRY_COMPARE(model->routes("Ethernet")->size(), std::size_t(1));
        QCOMPARE(table.routes().routes()[0].destination, "10.20.0.0");
        QTest::mouseClick(bar.findChild<QPushButton*>("revert"), Qt::LeftButton);
        QCOMPARE(table.routes().routes()[0].destination, "10.40.0.0");
        // A preset that is chosen elsewhere, as a new one is, brings its list back.
        const auto house = dhcpPreset("House", "Ethernet");
        model->addPreset(house);
        commands->setCurrentPreset(house.id);
        QCOMPARE(commands->currentPreset(), std::optional(house.id));
        QVERIFY(!commands->currentDraft() && page->findChild<RowList*>("presets")->isVisible());
        QTest::keyClick(page->findChild<SegmentedControl*>(), Qt::Key_Right);
        QVERIFY(!commands->currentPreset());
        page->setService("Nowhere");
        QTRY_COMPARE(bar.state(), State::reading);
    }
};

QTEST_MAIN(NetworkOrderTest)
#include "network_order_test.moc"
