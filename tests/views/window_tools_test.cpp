// The tools in the window: their rows, their pages, and the ping monitor below any other page.
#include "app/clients/ping_monitor.h"
#include "app/views/tools/ping/ping_panel.h"
#include "app/views/tools/router/router_page.h"
#include "app/views/window/alert_box.h"
#include "app/views/window/main_window.h"
#include "app/views/window/password_dialog.h"
#include "app/views/window/sidebar.h"
#include "app/views/window/sidebar_model.h"
#include "tests/app/support/model_home.h"

#include <QAction>
#include <QMenu>
#include <QTest>

using namespace corvane;
using namespace corvane::testing;

class WindowToolsTest : public QObject {
    Q_OBJECT

    ModelHome home;
    PasswordDialog prompt{home.user(), home.host->passwordHelp};
    AlertBox alerts;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<MainWindow> window;

    QString detail(Tool tool) {
        const auto index = window->sidebar().rows().indexOf(SidebarItem::tool(tool));
        const auto* row = window->sidebar().rows().row(index);
        return row ? row->detail : QString();
    }
    template <typename Widget>
    bool sees() {
        const auto* widget = window->findChild<Widget*>();
        return widget && widget->isVisible();
    }

  private slots:
    void initTestCase() {
        model = std::make_unique<AppModel>(*home.host, prompt, alerts);
        window = std::make_unique<MainWindow>(*model);
        window->resize(900, 600);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QTRY_VERIFY_WITH_TIMEOUT(model->selection(), 20000);
    }
    void cleanupTestCase() { window.reset(); }

    void theMonitorStaysBelowOtherPages() {
        const auto service = model->selection();
        // Nothing of the tools is made before it is wanted.
        QVERIFY(!window->findChild<PingPanel*>() && !window->findChild<RouterPage*>());
        PingGroup rig{Uuid::generate(), "Rig", {{Uuid::generate(), "", "127.0.0.1", {}}}, {}};
        model->addPingGroup(rig);
        window->findChild<QAction*>("tool-ping")->trigger();
        QVERIFY(sees<PingPanel>() && model->showPing());
        auto* panel = window->findChild<PingPanel*>();
        QTRY_VERIFY(panel->height() > 500);
        QVERIFY(panel->isAncestorOf(window->focusWidget()));
        // What the menu bar does with the chosen host has no keys: they are the list's, and the presets'.
        auto* hostMenu = window->findChild<QMenu*>("pingHost");
        emit hostMenu->aboutToShow();
        QVERIFY(hostMenu->actions().size() > 4);
        for (const QAction* action : hostMenu->actions()) QVERIFY(action->shortcut().isEmpty());
        const auto keys = window->findChild<QAction*>("addPingHosts")->shortcut();
        QVERIFY(!keys.isEmpty());
        for (const QAction* action : window->findChildren<QAction*>())
            QCOMPARE(action->shortcuts().contains(keys), action->objectName() == "addPingHosts");
        model->select(service);
        QTRY_VERIFY(panel->isVisible() && panel->height() < 400);
        QTRY_VERIFY_WITH_TIMEOUT(detail(Tool::ping).contains("of 1 answer"), 5000);
        window->findChild<QAction*>("pausePing")->trigger();
        QTRY_COMPARE(detail(Tool::ping), QString("Paused · Rig"));
        QVERIFY(!model->pinger().isRunning());
        window->findChild<QAction*>("pausePing")->trigger();
        window->findChild<QAction*>("showPing")->trigger();
        QVERIFY(!panel->isVisible() && !model->pinger().isRunning());
        QTRY_COMPARE(detail(Tool::ping), QString("Does the gear answer?"));
        // By keyboard and by the sidebar alike.
        model->select(SidebarItem::tool(Tool::ping));
        QTRY_VERIFY(panel->isVisible() && panel->height() > 500);
        model->select(service);
    }

    void theRouterHasItsPage() {
        window->findChild<QAction*>("tool-videohub")->trigger();
        QVERIFY(sees<RouterPage>());
        QVERIFY(window->findChild<RouterPage*>()->isAncestorOf(window->focusWidget()));
        model->setShowPing(true);
        QTRY_VERIFY(sees<RouterPage>() && sees<PingPanel>());
        QCOMPARE(detail(Tool::videohub), QString("Blackmagic Videohub"));
    }
};

QTEST_MAIN(WindowToolsTest)
#include "window_tools_test.moc"
