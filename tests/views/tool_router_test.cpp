// The video router's page against a simulated Videohub: connecting, routing, locks, names, search, and what
// is shown when the router is gone.
#include "app/clients/videohub_client.h"
#include "app/views/tools/router/port_list.h"
#include "app/views/tools/router/router_actions.h"
#include "app/views/tools/router/router_page.h"
#include "app/views/widgets/connection_bar.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/empty_state.h"
#include "app/views/widgets/notice.h"
#include "tests/app/support/model_home.h"
#include "tests/sim/videohub_server.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace corvane;
using namespace corvane::testing;
using sim::VideohubServer;

namespace {

/// An address of this machine that no other test of this run uses.
QString ownAddress() {
    const qint64 id = QCoreApplication::applicationPid();
    return QString("127.%1.%2.%3").arg(64 + (id >> 16) % 64).arg((id >> 8) % 256).arg(1 + id % 254);
}

} // namespace

class ToolRouterTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHome> home;
    AppModel* model = nullptr;
    std::unique_ptr<RouterPage> page;
    std::unique_ptr<VideohubServer> server;

    void serve(VideohubServer::Options options = {}) {
        server = std::make_unique<VideohubServer>(options);
        QVERIFY2(server->listen(Videohub::port, QHostAddress(ownAddress())), qPrintable(server->error()));
    }
    void open() {
        page = std::make_unique<RouterPage>(*model);
        page->resize(700, 560);
        page->show();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
    }
    void connectAndOpen(VideohubServer::Options options = {}) {
        serve(options);
        open();
        model->videohub().connect(ownAddress());
        QTRY_VERIFY(outputs().isVisible());
        QTRY_COMPARE(outputs().model()->rowCount(), options.router.outputs);
    }
    ConnectionBar& bar() { return *page->findChild<ConnectionBar*>(); }
    PortList& outputs() { return *page->findChild<PortList*>("outputs"); }
    PortList& sources() { return *page->findChild<PortList*>("sources"); }
    const RouterActions& actions() { return page->actions(); }
    QString plan() { return page->findChild<ElidedLabel*>("plan")->text(); }
    QString refusal() {
        const auto& said = page->findChild<NoticeLines*>("refusal")->notices();
        return said.empty() ? QString() : said.front().text;
    }
    QString message() {
        auto* empty = page->findChild<EmptyState*>();
        return empty->isVisible() ? empty->accessibleName() : QString();
    }
    static QString spoken(PortList& list, int row) {
        return list.model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    }
    void choose(int output) {
        outputs().setFocus();
        outputs().choose(outputs().model()->index(output, 0));
    }
    void pick(int input) {
        sources().setFocus();
        sources().setCurrentPort(input, true);
        emit sources().picked(input);
    }
    int routed(int output) { return server->router().routing()[static_cast<std::size_t>(output)]; }
    static void key(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }
    /// Another computer's program.
    static std::unique_ptr<VideohubClient> otherClient() {
        auto client = std::make_unique<VideohubClient>();
        client->connect(ownAddress());
        [&] { QTRY_VERIFY(!client->state().outputs().empty() && !client->state().routing.empty()); }();
        return client;
    }

  private slots:
    void init() {
        home = std::make_unique<ModelHome>();
        model = &home->begin();
    }
    void cleanup() {
        page.reset();
        server.reset();
        home.reset();
    }

    void connectsByTheBarAndRemembersTheHost() {
        serve();
        open();
        QCOMPARE(message(), "Enter the router's IP address and connect.");
        QCOMPARE(bar().statusText(), "Not connected");
        auto* button = bar().findChild<QPushButton*>("connect");
        QVERIFY(!button->isEnabled());
        auto* host = bar().findChild<QLineEdit*>("host");
        host->setFocus();
        QTest::keyClicks(host, "127.0.0.9 ");
        const int height = bar().height();
        key(Qt::Key_Return);
        QTRY_COMPARE(bar().statusText(), "Failed");
        const auto notices = bar().findChild<NoticeLines*>()->notices();
        QVERIFY(notices.size() == 1 && notices[0].text.startsWith("127.0.0.9:9990 — "));
        QVERIFY(notices[0].text.endsWith("Retrying every few seconds."));
        QCOMPARE(button->text(), "Disconnect");
        QCOMPARE(bar().height(), height);

        host->selectAll();
        QTest::keyClicks(host, ownAddress());
        QCOMPARE(button->text(), "Connect");
        key(Qt::Key_Return);
        QTRY_COMPARE(bar().statusText(), "Connected · 12 × 12 · Blackmagic Videohub 12x12 12G");
        QVERIFY(message().isEmpty() && bar().findChild<NoticeLines*>()->notices().empty());
        QCOMPARE(outputs().model()->rowCount(), 12);
        QVERIFY2(outputs().hasFocus(), "the keyboard goes on to the outputs");
        QCOMPARE(model->videohubHost(), ownAddress());
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_COMPARE(message(), "Enter the router's IP address and connect.");
        QCOMPARE(outputs().model()->rowCount(), 0);
        // The next start offers the host and doesn't connect by itself.
        page.reset();
        model = &home->begin();
        open();
        QCOMPARE(bar().host(), ownAddress());
        host = bar().findChild<QLineEdit*>("host");
        host->setFocus();
        host->selectAll();
        QTest::keyClicks(host, "other");
        key(Qt::Key_Escape);
        QCOMPARE(bar().host(), ownAddress());
        QTest::qWait(100);
        QCOMPARE(server->clientCount(), 0);
    }

    void takesByKeyboardAlone() {
        connectAndOpen();
        outputs().setFocus(Qt::TabFocusReason);
        QCOMPARE(plan(), "1 Monitor 1 shows 1 Camera 1");
        for (int i = 0; i < 2; ++i) key(Qt::Key_Down);
        QCOMPARE(plan(), "3 Monitor 3 shows 3 Camera 3");
        key(Qt::Key_Right);
        QVERIFY(sources().hasFocus());
        QCOMPARE(sources().currentPort(), 2);
        key(Qt::Key_Return);
        QCOMPARE(routed(2), 2); // nothing else was picked
        key(Qt::Key_Right);
        key(Qt::Key_Down);
        const int wanted = sources().currentPort();
        QVERIFY(wanted > 3);
        QCOMPARE(plan(), QString("3 Monitor 3 ← %1 Camera %1").arg(wanted + 1));
        QTest::qWait(50);
        QCOMPARE(routed(2), 2);
        key(Qt::Key_Return);
        QTRY_COMPARE(routed(2), wanted);
        QTRY_COMPARE(spoken(outputs(), 2),
                     QString("Output 3, Monitor 3, shows input %1, Camera %1").arg(wanted + 1));
        QVERIFY(!actions().take->isEnabled());
        // Found by number, several at once.
        key(Qt::Key_Escape);
        QVERIFY(outputs().hasFocus());
        QTest::keyClicks(&outputs(), "1");
        QTest::keyClicks(QApplication::focusWidget(), "1");
        QCOMPARE(outputs().model()->rowCount(), 1);
        key(Qt::Key_Return);
        QCOMPARE(outputs().chosenPorts(), std::vector{10});
        key(Qt::Key_Escape);
        QCOMPARE(outputs().model()->rowCount(), 12);
        key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(outputs().chosenPorts(), (std::vector{10, 11}));
        QCOMPARE(plan(), "2 outputs show several sources");
        key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClicks(QApplication::focusWidget(), "camera 7");
        key(Qt::Key_Return);
        QCOMPARE(plan(), "2 outputs ← 7 Camera 7");
        key(Qt::Key_Return);
        QTRY_VERIFY(routed(10) == 6 && routed(11) == 6);
    }

    void directTakeActsOnAClickForOneOutput() {
        connectAndOpen();
        const auto click = [this](int input) {
            const QModelIndex key = sources().model()->index(input, 0);
            QTest::mouseClick(sources().viewport(), Qt::LeftButton, {}, sources().visualRect(key).center());
        };
        choose(0);
        click(4);
        QTest::qWait(50);
        QCOMPARE(routed(0), 0);
        actions().directTake->trigger();
        click(5);
        QTRY_COMPARE(routed(0), 5);
        outputs().selectAll();
        click(3);
        QCOMPARE(plan(), "12 outputs ← 4 Camera 4");
        QTest::qWait(50);
        QCOMPARE(routed(0), 5);
        QCOMPARE(routed(7), 7);
    }

    void locksAndRefusals() {
        VideohubServer::Options options;
        options.locksByConnection = true;
        connectAndOpen(options);
        auto other = otherClient();
        other->lock(4);
        QTRY_VERIFY(spoken(outputs(), 4).endsWith("Locked by another client"));
        choose(4);
        QVERIFY(plan().startsWith("Locked by another client · "));
        const QRect place = outputs().geometry(), grid = sources().geometry();
        pick(1);
        key(Qt::Key_Return);
        const QString refused = "The router refused the last request (NAK).";
        QTRY_COMPARE(refusal(), refused);
        QCOMPARE(routed(4), 4);
        // Refused once more, then one of two is: the mark goes at once, and what is accepted hides nothing.
        for (const bool several : {false, true}) {
            choose(4);
            if (several) key(Qt::Key_Down, Qt::ShiftModifier);
            pick(1);
            server->freeze(true);
            key(Qt::Key_Return);
            QTRY_VERIFY(spoken(outputs(), 4).contains("asked for"));
            server->freeze(false);
            QTRY_VERIFY_WITH_TIMEOUT(!spoken(outputs(), 4).contains("asked for"), 1000);
            QTRY_COMPARE(routed(5), several ? 1 : 5);
            QTest::qWait(50);
            QCOMPARE(refusal(), refused);
        }
        QCOMPARE(model->videohub().state().lastReply, "ACK");
        choose(4);
        pick(1);
        QCOMPARE(outputs().geometry(), place);
        QCOMPARE(sources().geometry(), grid);

        QVERIFY(!actions().lock->isEnabled() && !actions().release->isEnabled());
        const int requests = server->requests();
        actions().force->trigger();
        QVERIFY(plan().contains("press again"));
        QTest::qWait(50);
        QCOMPARE(server->requests(), requests);
        choose(5); // another choice is another question
        choose(4);
        actions().force->trigger();
        QTest::qWait(50);
        QCOMPARE(server->requests(), requests);
        actions().force->trigger();
        QTRY_COMPARE(other->state().locks.at(4), Videohub::Lock::unlocked);
        QTRY_VERIFY(refusal().isEmpty());
        QTRY_VERIFY(actions().lock->isEnabled());

        outputs().setFocus();
        key(Qt::Key_L, Qt::ControlModifier);
        QTRY_VERIFY(spoken(outputs(), 4).endsWith("Locked by this Mac"));
        QTRY_COMPARE(other->state().locks.at(4), Videohub::Lock::lockedByOther);
        actions().showLocked->trigger();
        QCOMPARE(outputs().model()->rowCount(), 1);
        key(Qt::Key_U, Qt::ControlModifier);
        QTRY_COMPARE(outputs().model()->rowCount(), 0);
        // What no longer stands in the list isn't changed either.
        QVERIFY(outputs().chosenPorts().empty() && !actions().lock->isEnabled());
        QCOMPARE(other->state().locks.at(4), Videohub::Lock::unlocked);
    }

    void renamesInPlaceOnceTheRouterSaysSo() {
        connectAndOpen();
        choose(1);
        key(Qt::Key_F2);
        auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        QVERIFY(field && field->text() == "Monitor 2");
        QTest::keyClicks(field, "Led");
        // What others do meanwhile leaves the field alone.
        auto other = otherClient();
        other->renameOutput(1, "Foyer");
        other->renameInput(0, "Cam A");
        QTRY_VERIFY(spoken(sources(), 0).startsWith("Input 1, Cam A"));
        QCOMPARE(field->text(), "Led");
        server->freeze(true);
        key(Qt::Key_Return);
        QTRY_VERIFY(spoken(outputs(), 1).contains("not confirmed: Led"));
        QVERIFY(spoken(outputs(), 1).startsWith("Output 2, Foyer"));
        server->freeze(false);
        QTRY_COMPARE(spoken(outputs(), 1), "Output 2, Led, shows input 2, Camera 2");
        QCOMPARE(other->state().outputLabels.at(1), "Led");
        pick(3);
        key(Qt::Key_F2);
        QTest::keyClicks(QApplication::focusWidget(), "nothing");
        key(Qt::Key_Escape);
        QVERIFY(sources().hasFocus());
        QTest::qWait(50);
        QCOMPARE(other->state().inputName(3), "Camera 4");
        // The list follows the output only when nobody writes.
        key(Qt::Key_Escape);
        sources().setFocus();
        QCOMPARE(sources().currentPort(), 1);
        key(Qt::Key_F2);
        field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        QVERIFY(field);
        QTest::keyClicks(field, "Hal");
        other->route(1, 6);
        QTRY_VERIFY(spoken(outputs(), 1).contains("shows input 7"));
        QTest::keyClicks(QApplication::focusWidget(), "f");
        QCOMPARE(field->text(), "Half");
        QCOMPARE(other->state().inputName(1), "Camera 2");
        key(Qt::Key_Return);
        QTRY_COMPARE(other->state().inputName(1), "Half");
        QTRY_COMPARE(sources().currentPort(), 6);
        key(Qt::Key_F2);
        other->route(1, 4);
        QTRY_VERIFY(spoken(outputs(), 1).contains("shows input 5"));
        key(Qt::Key_Escape);
        QCOMPARE(sources().currentPort(), 4);
        // A name that comes too late isn't lost in silence.
        key(Qt::Key_F2);
        QTest::keyClicks(QApplication::focusWidget(), "Late");
        server->stop();
        QTRY_VERIFY(plan().startsWith("Not connected."));
        key(Qt::Key_Return);
        QTRY_COMPARE(refusal(), "Not sent: there was no connection.");
    }

    void whatIsAskedForIsNotShownAsDone() {
        connectAndOpen();
        choose(0);
        pick(8);
        server->freeze(true);
        key(Qt::Key_Return);
        QTRY_COMPARE(spoken(outputs(), 0),
                     "Output 1, Monitor 1, shows input 1, Camera 1, input 9 asked for, not confirmed");
        // Without an answer the mark goes.
        QTRY_COMPARE_WITH_TIMEOUT(spoken(outputs(), 0), "Output 1, Monitor 1, shows input 1, Camera 1", 4000);
        QTRY_COMPARE(refusal(), "The router hasn’t answered the last request.");
        server->freeze(false);
        QTRY_COMPARE(spoken(outputs(), 0), "Output 1, Monitor 1, shows input 9, Camera 9");
        QTRY_VERIFY(refusal().isEmpty());
        // Changed his mind before the router has answered: back to what it still shows.
        server->freeze(true);
        pick(2);
        key(Qt::Key_Return);
        pick(8);
        QTRY_VERIFY(spoken(outputs(), 0).contains("input 3 asked for"));
        QCOMPARE(plan(), "1 Monitor 1 ← 9 Camera 9");
        key(Qt::Key_Return);
        QTest::qWait(300);
        QVERIFY(!spoken(outputs(), 0).contains("asked for"));
        const int requests = server->requests();
        server->freeze(false);
        QTRY_COMPARE(server->requests(), requests + 2);
        QCOMPARE(routed(0), 8);
    }

    void theMenuIsAboutTheSourceUnderIt() {
        connectAndOpen();
        choose(0);
        pick(5);
        const QPoint place = sources().visualRect(sources().model()->index(7, 0)).center();
        bool opened = false;
        QTimer::singleShot(100, this, [&] {
            auto* menu = QApplication::activePopupWidget();
            opened = menu;
            actions().take->trigger();
            if (menu) menu->close();
        });
        QTest::mouseClick(sources().viewport(), Qt::RightButton, {}, place);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, sources().viewport()->mapToGlobal(place));
        QApplication::sendEvent(sources().viewport(), &event);
        QVERIFY(opened);
        QTRY_COMPARE(routed(0), 7);
        // The menu bar leaves Return and F2 to the text fields.
        QMenu menu;
        actions().fillMenu(menu);
        for (QAction* action : menu.actions()) {
            for (const QKeySequence& keys : action->shortcuts())
                QVERIFY2(keys[0].keyboardModifiers() != Qt::NoModifier, qPrintable(action->text()));
        }
        pick(2);
        menu.actions().first()->trigger();
        QTRY_COMPARE(routed(0), 2);
    }

    void changesOfOthersTouchOneRow() {
        VideohubServer::Options options;
        options.router.inputs = options.router.outputs = 288;
        connectAndOpen(options);
        choose(200);
        pick(150);
        const int scrolled = outputs().verticalScrollBar()->value();
        QVERIFY(scrolled > 0);
        auto other = otherClient();
        QSignalSpy changed(outputs().model(), &QAbstractItemModel::dataChanged);
        QSignalSpy moved(outputs().model(), &QAbstractItemModel::layoutChanged);
        QSignalSpy reset(outputs().model(), &QAbstractItemModel::modelReset);
        other->route(40, 7);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(changed[0][0].toModelIndex().row(), 40);
        QCOMPARE(changed[0][1].toModelIndex().row(), 40);
        QVERIFY(moved.isEmpty() && reset.isEmpty());
        QCOMPARE(outputs().chosenPorts(), std::vector{200});
        QCOMPARE(outputs().verticalScrollBar()->value(), scrolled);
        // A source that was picked stays so when another client routes the output; one that wasn't follows.
        other->route(200, 9);
        QTRY_COMPARE(spoken(outputs(), 200), "Output 201, Monitor 201, shows input 10, Camera 10");
        QCOMPARE(sources().currentPort(), 150);
        key(Qt::Key_Escape);
        QCOMPARE(sources().currentPort(), 9);
        other->route(200, 11);
        QTRY_COMPARE(sources().currentPort(), 11);
        actions().showUses->trigger();
        QCOMPARE(outputs().model()->rowCount(), 2);
        QTest::keyClicks(&sources(), "no such");
        QCOMPARE(sources().model()->rowCount(), 0);
        QCOMPARE(plan(), "201 Monitor 201 shows 12 Camera 12");
    }

    void lostAndFoundAgain() {
        connectAndOpen();
        choose(3);
        pick(6);
        server->stop();
        QTRY_COMPARE(bar().statusText(), "Failed");
        // What it said last stays readable, says so, and nothing can be asked for.
        QTRY_VERIFY(plan().startsWith("Not connected. This is what the router said "));
        QCOMPARE(outputs().model()->rowCount(), 12);
        for (QAction* action : {actions().take, actions().lock, actions().renameOutput})
            QVERIFY(!action->isEnabled());
        VideohubServer::Options smaller;
        smaller.router.inputs = smaller.router.outputs = 8;
        serve(smaller);
        QTRY_VERIFY_WITH_TIMEOUT(bar().statusText().startsWith("Connected"), 6000);
        QTRY_COMPARE(outputs().model()->rowCount(), 8);
        QCOMPARE(sources().model()->rowCount(), 8);
        QCOMPARE(outputs().chosenPorts(), std::vector{3});
        QTRY_COMPARE(plan(), "4 Monitor 4 shows 4 Camera 4");
        server->setPresent("false");
        QTRY_COMPARE(message(), "The Videohub Server has no router connected.");
        server->setPresent("needs_update");
        QTRY_COMPARE(message(), "The router needs a firmware update (needs_update).");
        server->setPresent("true");
        QTRY_VERIFY(message().isEmpty());
        QTRY_COMPARE(outputs().model()->rowCount(), 8);
    }
};

QTEST_MAIN(ToolRouterTest)
#include "tool_router_test.moc"
