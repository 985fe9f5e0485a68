// The ping monitor's panel over tools that end as the test says: by keyboard, through floods of results and
// changes of the library, with names as bad as they come.
#include "app/clients/subnet_sweep.h"
#include "app/views/network/global_editor.h"
#include "app/views/network/global_presentation.h"
#include "app/views/tools/ping/found_model.h"
#include "app/views/tools/ping/history_bar.h"
#include "app/views/tools/ping/ping_list.h"
#include "app/views/tools/ping/ping_panel.h"
#include "app/views/tools/ping/sweep_sheet.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/empty_state.h"
#include "tests/app/support/model_home.h"
#include "tests/clients/support/fake_tools.h"

#include <QClipboard>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QToolButton>
#include <QToolTip>
#include <QTreeView>
#include <QUndoStack>
#include <QVBoxLayout>

using namespace corvane;
using namespace corvane::testing;

namespace {

using Sign = PingRow::Sign;

ToolStarter::Result replied(const char* ms) {
    return {true, 0, std::string("64 bytes from 10.0.0.5: icmp_seq=0 ttl=64 time=") + ms + " ms\n"};
}
const ToolStarter::Result silent{true, 2, "1 packets transmitted, 0 packets received, 100.0% packet loss\n"};

PingTarget host(const std::string& name, const std::string& address) {
    PingTarget target;
    target.id = Uuid::generate();
    target.name = name;
    target.host = address;
    return target;
}

PingGroup group(const std::string& name, std::vector<PingTarget> targets) {
    PingGroup made;
    made.id = Uuid::generate();
    made.name = name;
    made.targets = std::move(targets);
    return made;
}

/// The regions that a widget paints.
class Paints : public QObject {
  public:
    explicit Paints(QWidget* of) { of->installEventFilter(this); }
    QRegion region;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

} // namespace

class ToolPingTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHome> home;
    FakeTools* tools = nullptr;
    AppModel* model = nullptr;
    std::unique_ptr<QWidget> window;
    PingPanel* panel = nullptr;
    PingList* list = nullptr;

    void show(const std::vector<PingGroup>& groups, QSize size = {650, 300}) {
        for (const PingGroup& each : groups) model->addPingGroup(each);
        model->setShowPing(true);
        window = std::make_unique<QWidget>();
        auto* layout = new QVBoxLayout(window.get());
        layout->setContentsMargins(0, 0, 0, 0);
        panel = new PingPanel(*model, window.get());
        layout->addWidget(panel);
        panel->setDocked(true);
        list = panel->findChild<PingList*>("pingHosts");
        window->resize(size);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    QStringList titles() const {
        QStringList shown;
        for (const PingRow& row : list->rowModel().rows())
            shown << (row.name.isEmpty() ? row.host : row.name);
        return shown;
    }
    const PingRow& row(int at) const { return list->rowModel().rows()[static_cast<std::size_t>(at)]; }
    const std::vector<PingTarget>& targets(std::size_t of = 0) const {
        return model->library().pingGroups.at(of).targets;
    }
    QDialog* sheet() const { return qobject_cast<QDialog*>(QApplication::activeModalWidget()); }
    static void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }
    static void type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    void awaitSheet() {
        QTRY_VERIFY(sheet());
        sheet()->activateWindow();
        QTRY_VERIFY(sheet()->isAncestorOf(QApplication::focusWidget()));
    }
    /// Once the sheet has gone.
    void settled() {
        QTRY_VERIFY(!sheet());
        window->activateWindow();
        QTRY_VERIFY(window->isActiveWindow());
        QTest::qWait(20);
    }

  private slots:
    void init() {
        home = std::make_unique<ModelHome>();
        auto fake = std::make_unique<FakeTools>();
        tools = fake.get();
        home->host->tools = std::move(fake);
        model = &home->start();
    }
    void cleanup() {
        window.reset();
        home.reset();
    }

    void words() {
        const QDateTime now = QDateTime::currentDateTime();
        const auto status = [&](const std::optional<PingOutcome>& outcome, std::optional<int> ago = {}) {
            PingMonitor::State state{outcome, {}, {}};
            if (ago) state.lastReply = now.addMSecs(-*ago);
            return PingRow::statusText(&state, false, now);
        };
        QCOMPARE(PingRow::statusText(nullptr, false, now), "…");
        QCOMPARE(PingRow::statusText(nullptr, true, now), "Paused");
        QCOMPARE(status({}), "…");
        QCOMPARE(status(PingOutcome::reply(0.045), 0), "0.05 ms");
        QCOMPARE(status(PingOutcome::reply(12.7), 0), "13 ms");
        QCOMPARE(status(PingOutcome::reply(1.0), 0), "1 ms");
        QCOMPARE(status(PingOutcome::reply(2.5), 0), "2 ms");
        QCOMPARE(status(PingOutcome::reply(1e9), 0), "1000000000 ms");
        QCOMPARE(status(PingOutcome::timeout()), "No reply");
        QCOMPARE(status(PingOutcome::timeout(), 12'900), "No reply · last 12s ago");
        QCOMPARE(status(PingOutcome::timeout(), -5'000), "No reply · last 0s ago");
        QCOMPARE(status(PingOutcome::unresolved(), 1'000), "Unknown host");
        QCOMPARE(HistoryBar::help({true, false, true}), "2 of last 3 pings answered");

        const std::vector<Ping::LocalInterface> own{{"en5", "10.0.10.57", "255.255.255.0"}};
        QCOMPARE(PingRow::Route::of(" 10.0.10.4 ", own).label(), "via en5");
        QCOMPARE(PingRow::Route::of("10.0.11.4", own).label(), "No matching subnet");
        QCOMPARE(
            PingRow::Route::of("10.0.11.4", own).help(),
            "None of your interfaces has an address in this device's subnet. Apply a preset on the right "
            "network (or it may be reachable through a router).");
        QCOMPARE(PingRow::Route::of("\xc2\xa0"
                                    "10.0.10.4\xe3\x80\x80",
                                    own)
                     .label(),
                 "via en5");
        QCOMPARE(PingRow::Route::of("console.local", own), PingRow::Route::unknown());
        QVERIFY(PingRow::Route::unknown().label().isEmpty());
        // No two states differ by colour alone.
        std::vector<QImage> shapes;
        for (const Sign sign : {Sign::paused, Sign::waiting, Sign::reply, Sign::timeout, Sign::unresolved}) {
            QImage shape(24, 24, QImage::Format_ARGB32);
            shape.fill(Qt::transparent);
            QPainter painter(&shape);
            paintPingSign(painter, QRectF(0, 0, 24, 24), sign, QPalette());
            painter.end();
            for (int y = 0; y < 24; ++y)
                for (int x = 0; x < 24; ++x)
                    shape.setPixelColor(x, y, qAlpha(shape.pixel(x, y)) > 30 ? Qt::black : Qt::white);
            for (const QImage& other : shapes) QVERIFY(other != shape);
            shapes.push_back(shape);
        }
    }

    void columnsGiveWayInOrder() {
        int parts = 6;
        auto form = PingColumns::RouteForm::words;
        for (int width = 1200; width >= 300; width -= 7) {
            const PingColumns at = PingColumns::fit(QRect(0, 0, width, 28), QApplication::font());
            QRect before(-1, 0, 0, 28);
            int now = 0;
            for (const QRect& part : {at.sign, at.name, at.host, at.status, at.history, at.route}) {
                if (part.isEmpty()) continue;
                ++now;
                QVERIFY(part.left() > before.right() && part.right() < width);
                before = part;
            }
            QVERIFY(now <= parts && !at.name.isEmpty() && !at.status.isEmpty());
            QVERIFY(at.routeForm >= form);
            if (now < 6) QVERIFY(at.route.isEmpty());
            if (now < 5) QVERIFY(at.history.isEmpty());
            parts = now;
            form = at.routeForm;
        }
        QCOMPARE(parts, 3);
    }

    void everythingByKeyboard() {
        show({});
        auto* empty = panel->findChild<EmptyState*>();
        QVERIFY(empty->isVisible());
        auto* make = empty->findChildren<QPushButton*>().front();
        make->setFocus();
        key(Qt::Key_Space);
        awaitSheet();
        type("Stage");
        key(Qt::Key_Tab);
        type("10.0.10.21 Desk");
        key(Qt::Key_Return);
        type("10.0.10.22 Server");
        key(Qt::Key_Return, Qt::ControlModifier);
        settled();
        QCOMPARE(titles(), (QStringList{"Desk", "Server"}));
        QVERIFY(!empty->isVisible());
        QTRY_COMPARE(tools->running(), std::size_t(2));
        QCOMPARE(model->library().pingGroups.front().name, "Stage");

        list->setFocus();
        key(Qt::Key_Insert);
        awaitSheet();
        type("Camera 10.0.10.23");
        key(Qt::Key_Return);
        type("10.0.10.21 there already");
        key(Qt::Key_Return, Qt::ControlModifier);
        settled();
        QCOMPARE(titles(), (QStringList{"Desk", "Server", "Camera"}));
        QCOMPARE(list->currentIndex().row(), 2);
        QVERIFY(list->hasFocus());

        key(Qt::Key_Up, Qt::AltModifier);
        QTRY_COMPARE(titles(), (QStringList{"Desk", "Camera", "Server"}));
        QCOMPARE(list->currentIndex().row(), 1);
        key(Qt::Key_F2);
        awaitSheet();
        type("Camera left");
        key(Qt::Key_Return);
        settled();
        QTRY_COMPARE(titles()[1], "Camera left");
        key(Qt::Key_D, Qt::ControlModifier);
        QTRY_COMPARE(titles(), (QStringList{"Desk", "Camera left", "Camera left copy", "Server"}));
        QCOMPARE(list->currentIndex().row(), 2);
        key(Qt::Key_Delete);
        QTRY_COMPARE(titles().size(), 3);
        QCOMPARE(home->banners.back(), "Deleted “Camera left copy”. Undo brings it back.");
        QVERIFY(list->currentIndex().isValid());
        // Insert with Ctrl is Copy for some.
        key(Qt::Key_Insert, Qt::ControlModifier);
        QVERIFY(!sheet());

        // Each act is one step back.
        for (const char* expected : {"Desk,Camera left,Camera left copy,Server", "Desk,Camera left,Server",
                                     "Desk,Camera,Server", "Desk,Server,Camera", "Desk,Server"}) {
            model->undoStack().undo();
            QTRY_COMPARE(titles().join(','), expected);
        }
        model->undoStack().undo();
        QTRY_VERIFY(empty->isVisible());
        QTRY_COMPARE(tools->running(), std::size_t(0));
    }

    void floodsAreFolded() {
        std::vector<PingTarget> hosts;
        for (int i = 0; i < 200; ++i) hosts.push_back(host("", "10.0.10." + std::to_string(i)));
        show({group("Fixtures", hosts)});
        QTRY_COMPARE(tools->running(), std::size_t(200));
        list->setCurrentIndex(list->rowModel().index(120));
        list->scrollTo(list->currentIndex(), QListView::PositionAtCenter);
        const QRect place = list->visualRect(list->currentIndex());
        QSignalSpy changes(&list->rowModel(), &QAbstractItemModel::dataChanged);
        QTest::qWait(100);
        for (const auto& each : hosts) QVERIFY(tools->end(each.host, replied("1.4")));
        QCOMPARE(changes.count(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(changes.count(), 200, 500);
        QCOMPARE(row(199).status, "1 ms");
        QCOMPARE(panel->findChild<ElidedLabel*>("pingSummary")->text(), "All 200 answer");
        QCOMPARE(list->visualRect(list->currentIndex()), place);
        QCOMPARE(list->currentIndex().row(), 120);

        // One result paints one row.
        QTRY_COMPARE_WITH_TIMEOUT(tools->running(), std::size_t(200), 3000);
        QTest::qWait(100);
        Paints paints(list->viewport());
        QVERIFY(tools->end(hosts[121].host, replied("2.6")));
        QTRY_VERIFY(!paints.region.isEmpty());
        QTest::qWait(60);
        QCOMPARE(paints.region.boundingRect(), list->visualRect(list->rowModel().index(121)));
        // One out of sight paints none.
        paints.region = {};
        QVERIFY(tools->end(hosts[3].host, silent));
        QTRY_COMPARE(row(3).sign, Sign::timeout);
        QTest::qWait(60);
        QVERIFY(paints.region.isEmpty());
        QCOMPARE(panel->findChild<ElidedLabel*>("pingSummary")->text(), "199 of 200 answer · 1 no reply");
    }

    void ageOfTheLastReplyCountsOn() {
        show({group("Stage", {host("Desk", "10.0.10.21")})});
        QTRY_COMPARE(tools->running(), std::size_t(1));
        tools->end("10.0.10.21", replied("0.045"));
        QTRY_COMPARE(row(0).status, "0.05 ms");
        QVERIFY(QTest::qWaitFor([&] { return tools->end("10.0.10.21", silent); }, 3000));
        QTRY_VERIFY(row(0).status.startsWith("No reply · last "));
        // No probe ends any more.
        QTRY_COMPARE_WITH_TIMEOUT(row(0).status, "No reply · last 2s ago", 2500);
        QTRY_COMPARE_WITH_TIMEOUT(row(0).status, "No reply · last 3s ago", 1500);
        QCOMPARE(row(0).spoken(),
                 "Desk, 10.0.10.21, No reply · last 3s ago, 1 of last 2 pings answered, via en5");
        QTest::keyClick(panel->findChild<QPushButton*>("pausePings"), Qt::Key_Space);
        QTRY_COMPARE(row(0).status, "Paused");
        QCOMPARE(row(0).sign, Sign::paused);
        QVERIFY(model->pingPaused() && row(0).history.empty());
        QTest::keyClick(panel->findChild<QPushButton*>("pausePings"), Qt::Key_Space);
        QTRY_COMPARE(row(0).status, "…");
        QTest::keyClick(panel->findChild<QToolButton*>("closePing"), Qt::Key_Space);
        QVERIFY(!model->showPing());
    }

    void addressesAreCopied() {
        show({group("Stage", {host("Desk", "10.0.10.21"), host("Server", "10.0.10.22")})});
        auto* clipboard = QApplication::clipboard();
        const QModelIndex second = list->rowModel().index(1);
        const QRect place = list->columnsOf(second).host;
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          place.center() - QPoint(place.width() / 3, 0));
        QCOMPARE(clipboard->text(), "10.0.10.22");
        QVERIFY(list->showsCopied(second));
        list->setCurrentIndex(list->rowModel().index(0));
        list->setFocus();
        // The menus' own copy, edit and delete keys stay with the list, with a host chosen or without.
        const std::vector<std::pair<int, Qt::KeyboardModifiers>> own{
            {Qt::Key_C, Qt::ControlModifier},
            {Qt::Key_F2, Qt::NoModifier},
            {Qt::Key_D, Qt::ControlModifier},
            {Qt::Key_Delete, Qt::NoModifier},
            {Qt::Key_Backspace, Qt::ControlModifier}};
        for (const QModelIndex& chosen : {QModelIndex(), list->rowModel().index(0)}) {
            list->setCurrentIndex(chosen);
            for (const auto& [pressed, modifiers] : own) {
                QKeyEvent override(QEvent::ShortcutOverride, pressed, modifiers);
                override.ignore();
                QApplication::sendEvent(list, &override);
                QVERIFY(override.isAccepted());
            }
        }
        key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboard->text(), "10.0.10.21");
        // Elsewhere in the row nothing is copied.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->columnsOf(second).name.center());
        QCOMPARE(clipboard->text(), "10.0.10.21");
    }

    void libraryChangesUnderOpenSheets() {
        show({group("Stage", {host("Desk", "10.0.10.21"), host("Server", "10.0.10.22")})});
        const Uuid id = model->library().pingGroups.front().id;
        const auto open = [&](int key_) {
            list->setFocus();
            list->setCurrentIndex(list->rowModel().index(0));
            key(key_);
            awaitSheet();
        };
        // What wasn't typed in follows, what was stays.
        open(Qt::Key_F2);
        auto fields = sheet()->findChildren<QLineEdit*>();
        type("Desk two");
        PingTarget moved = targets()[0];
        moved.name = "Other";
        moved.host = "10.0.10.99";
        model->updatePingTarget(id, moved);
        QCOMPARE(fields[0]->text(), "Desk two");
        QCOMPARE(fields[1]->text(), "10.0.10.99");
        key(Qt::Key_Return);
        settled();
        QCOMPARE(targets()[0].name, "Desk two");
        QCOMPARE(targets()[0].host, "10.0.10.99");
        // Deleted meanwhile, it comes back with what was typed.
        open(Qt::Key_F2);
        type("Desk three");
        model->deletePingTarget(id, targets()[0].id);
        key(Qt::Key_Return);
        settled();
        QTRY_COMPARE(titles(), (QStringList{"Server", "Desk three"}));
        // A host that would be an option of the tool isn't taken.
        open(Qt::Key_F2);
        fields = sheet()->findChildren<QLineEdit*>();
        fields[1]->setFocus();
        fields[1]->selectAll();
        type("-f");
        key(Qt::Key_Return);
        QVERIFY(sheet());
        key(Qt::Key_Escape);
        settled();
        QCOMPARE(targets()[0].host, "10.0.10.22");
        // The group goes while hosts are written down for it.
        open(Qt::Key_Insert);
        type("10.0.10.55 Late");
        model->deletePingGroup(id);
        key(Qt::Key_Return, Qt::ControlModifier);
        settled();
        QCOMPARE(model->library().pingGroups.size(), std::size_t(1));
        QTRY_COMPARE(titles(), QStringList{"Late"});
        // The rows are all others now: one of them is chosen again.
        list->setFocus();
        model->addPingGroup(group("Next", {host("B", "10.0.10.56")}));
        model->setActivePingGroup(model->library().pingGroups.back().id);
        QTRY_COMPARE(titles(), QStringList{"B"});
        QCOMPARE(list->currentIndex().row(), 0);
    }

    void linesThatCantBeUsedStay() {
        show({});
        auto* make = panel->findChild<EmptyState*>()->findChildren<QPushButton*>().front();
        make->click();
        awaitSheet();
        auto* text = sheet()->findChild<QPlainTextEdit*>();
        const auto accept = [&] {
            for (auto* button : sheet()->findChildren<QPushButton*>())
                if (button->isDefault()) return button;
            return static_cast<QPushButton*>(nullptr);
        }();
        text->setPlainText("two words, here\n-f");
        QVERIFY(!accept->isEnabled());
        text->setPlainText("two words, here\n10.0.10.21 Desk\n-f");
        accept->click();
        QTRY_COMPARE(titles(), QStringList{"Desk"});
        QVERIFY(sheet());
        QCOMPARE(text->toPlainText(), "two words, here\n-f");
        QVERIFY(!sheet()->findChild<QLineEdit*>()->isVisible() && !accept->isEnabled());
        text->setPlainText("10.0.10.22 Server");
        accept->click();
        settled();
        QTRY_COMPARE(titles(), (QStringList{"Desk", "Server"}));
        QCOMPARE(model->library().pingGroups.size(), std::size_t(1));

        // A paste that is too long ends with a whole line; what it replaces makes room.
        list->setFocus();
        key(Qt::Key_Insert);
        awaitSheet();
        text = sheet()->findChild<QPlainTextEdit*>();
        QApplication::clipboard()->setText(QString("10.0.10.123\n").repeated(10'000));
        for (int i = 0; i < 2; ++i) {
            text->selectAll();
            text->paste();
            QVERIFY(text->toPlainText().size() > 60'000 && text->toPlainText().size() <= 64 * 1024);
            QVERIFY(text->toPlainText().endsWith("\n10.0.10.123\n"));
        }
        QStringList said;
        for (auto* lines : sheet()->findChildren<NoticeLines*>())
            for (const Notice& notice : lines->notices()) said << notice.text;
        QVERIFY(said.contains("The text was too long; its last lines are left out."));
        key(Qt::Key_Escape);
        settled();
    }

    void groupsComeAndGo() {
        show({group("One", {host("A", "10.0.10.21")}), group("Two", {host("B", "10.0.10.22")})});
        auto* groups = panel->findChild<QComboBox*>("pingGroups");
        auto* empty = panel->findChild<EmptyState*>();
        QCOMPARE(groups->currentText(), "One");
        groups->setFocus();
        key(Qt::Key_Down);
        QTRY_COMPARE(titles(), QStringList{"B"});
        const auto choose = [&](const QString& text) {
            auto* menu = panel->findChild<QMenu*>("groupMenu");
            emit menu->aboutToShow();
            for (auto* action : menu->actions()) {
                if (action->text().remove('&') == text) return action->trigger();
            }
            QFAIL(qPrintable(text));
        };
        choose("Move Group Up");
        QTRY_COMPARE(groups->itemText(0), "Two");
        choose("Duplicate Group");
        QTRY_COMPARE(groups->currentText(), "Two copy");
        QVERIFY(targets(0)[0].id != targets(1)[0].id);
        choose("Delete Group");
        QTRY_COMPARE(groups->currentText(), "One");
        choose("Delete Group");
        QTRY_COMPARE(groups->currentText(), "Two");
        choose("Delete Group");
        QTRY_VERIFY(empty->isVisible());
        QCOMPARE(groups->count(), 0);
        QCOMPARE(tools->running(), std::size_t(0));
        // It was the active one, and is again.
        model->undoStack().undo();
        QTRY_COMPARE(titles(), QStringList{"B"});
        // Of what this machine is connected to.
        choose("New Group from Current Settings");
        QTRY_COMPARE(groups->currentText(), "Routers and DNS");
        QVERIFY(titles().contains("Ethernet router"));
        // Deleted elsewhere, with another one left.
        model->deletePingGroup(*model->activePingGroup());
        QTRY_VERIFY(empty->isVisible());
        QCOMPARE(groups->currentIndex(), -1);
        QVERIFY(groups->isEnabled());
    }

    void hostileNames() {
        const std::string bad = "Two\nlines <b>bold</b> & \xe2\x80\xae"
                                "reversed";
        show({group(bad, {host(bad, "10.0.10.21"), host("", "")}), group(" \n ", {})}, {420, 300});
        auto* groups = panel->findChild<QComboBox*>("pingGroups");
        QVERIFY(!groups->currentText().contains('\n'));
        QCOMPARE(groups->itemText(1), "Untitled group");
        QVERIFY(!row(0).name.contains('\n') && !row(0).spoken().contains('\n'));
        QVERIFY(!row(1).spoken().isEmpty());
        QHelpEvent help(QEvent::ToolTip, list->columnsOf(list->rowModel().index(0)).name.center(),
                        QPoint(5, 5));
        QApplication::sendEvent(list->viewport(), &help);
        QVERIFY2(QToolTip::text().contains("&lt;b&gt;"), qPrintable(QToolTip::text()));
        // Opened and saved without a change it stays as it was.
        const auto before = model->library();
        list->setFocus();
        list->setCurrentIndex(list->rowModel().index(0));
        key(Qt::Key_F2);
        awaitSheet();
        key(Qt::Key_Return);
        settled();
        QVERIFY(model->library() == before);
    }

    void sweepsASubnet() {
        home->change([](simulated::State& state) {
            for (int i = 20; i < 30; ++i) state.answering["10.0.10." + std::to_string(i)] = 0.4;
        });
        show({group("Rack", {host("Switch", "10.0.10.22")})});
        const auto button = [&](const char* name) { return sheet()->findChild<QPushButton*>(name); };
        const auto open = [&] {
            panel->findChild<QPushButton*>("sweepSubnet")->setFocus();
            panel->findChild<QPushButton*>("sweepSubnet")->click();
            awaitSheet();
            auto* services = sheet()->findChild<QComboBox*>("sweepServices");
            services->setCurrentIndex(services->findText("Ethernet", Qt::MatchStartsWith));
            emit services->activated(services->currentIndex());
        };
        const auto said = [&] {
            QStringList texts;
            for (auto* lines : sheet()->findChildren<NoticeLines*>())
                for (const Notice& notice : lines->notices()) texts << notice.text;
            return texts.join('\n');
        };
        open();
        QCOMPARE(sheet()->findChild<ElidedLabel*>()->text(), "10.0.10.0/24 · 254 addresses");
        QVERIFY(!button("add")->isEnabled());
        // Return starts; in the list of a sweep that runs it does nothing.
        auto* hosts = sheet()->findChild<QTreeView*>("found");
        QTest::keyClick(hosts, Qt::Key_Return);
        QVERIFY(model->sweep().isRunning());
        QTRY_VERIFY(button("add")->isEnabled());
        QTest::keyClick(hosts, Qt::Key_Return);
        QVERIFY(sheet() && model->sweep().isRunning());
        QVERIFY(!button("start")->isDefault() && !button("add")->isDefault());
        QTRY_VERIFY_WITH_TIMEOUT(!model->sweep().isRunning(), 10000);
        QVERIFY(button("add")->isDefault());
        auto* found = sheet()->findChild<QTreeView*>("found")->model();
        QStringList notes;
        for (int i = 0; i < found->rowCount(); ++i)
            notes << found->index(i, 0).data().toString() + ' ' +
                         found->index(i, FoundModel::note).data().toString();
        // The router, ten hosts, the console and this computer.
        QCOMPARE(notes.size(), 13);
        QVERIFY(notes.contains("10.0.10.22 In the group: Switch") &&
                notes.contains("10.0.10.57 This computer"));
        QCOMPARE(button("add")->text().remove('&'), "Add 11 Hosts");
        found->setData(found->index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
        // For a new group what Rack has is chosen as well, what was unticked stays so.
        auto* groups = sheet()->findChild<QComboBox*>("sweepGroups");
        const auto addTo = [&](int at) {
            groups->setCurrentIndex(at);
            emit groups->activated(at);
        };
        addTo(1);
        QCOMPARE(button("add")->text().remove('&'), "Add 11 Hosts");
        addTo(0);
        QCOMPARE(button("add")->text().remove('&'), "Add 10 Hosts");
        QTest::keyClick(button("add"), Qt::Key_Space);
        settled();
        QCOMPARE(targets().size(), std::size_t(11));
        model->undoStack().undo();
        QCOMPARE(targets().size(), std::size_t(1));

        // Closing it ends the sweep.
        open();
        QTest::keyClick(button("start"), Qt::Key_Space);
        QTest::qWait(80);
        key(Qt::Key_Escape);
        settled();
        QTRY_VERIFY(!model->sweep().isRunning());
        QVERIFY(model->sweep().handled() < 254);

        // What an earlier sweep found isn't this sheet's; too large a subnet is refused in words.
        open();
        QCOMPARE(sheet()->findChild<QTreeView*>("found")->model()->rowCount(), 0);
        home->change([](simulated::State& state) { state.devices["en5"].lease->mask = "255.0.0.0"; });
        home->refreshed();
        QVERIFY2(said().contains("has too many addresses to sweep"), qPrintable(said()));
        QVERIFY(!button("start")->isEnabled());
        key(Qt::Key_Escape);
        settled();
    }

    void sweepWithoutASocket() {
        class NoSockets : public EchoSockets {
            std::unique_ptr<EchoSocket> open(const std::string&) const override { return nullptr; }
        };
        /// As behind a firewall.
        class Walled : public EchoSockets {
            class Socket : public EchoSocket {
                std::optional<std::uint16_t> identifier() const override { return {}; }
                Sent send(std::uint32_t, std::span<const std::uint8_t>) override { return Sent::no; }
                std::size_t receive(std::span<std::uint8_t>) override {
                    QThread::msleep(50);
                    return 0;
                }
            };
            std::unique_ptr<EchoSocket> open(const std::string&) const override {
                return std::make_unique<Socket>();
            }
        };
        const auto sweepOver = [&](std::unique_ptr<EchoSockets> sockets) {
            home->stop();
            home->host->echoSockets = std::move(sockets);
            model = &home->start();
            SweepSheet sheet(*model, std::nullopt);
            auto* start = sheet.findChild<QPushButton*>("start");
            start->click();
            QString said;
            const bool ended = QTest::qWaitFor([&] { return !model->sweep().isRunning(); }, 10000);
            for (auto* lines : sheet.findChildren<NoticeLines*>())
                for (const Notice& notice : lines->notices()) said += notice.text;
            return ended && start->isEnabled() ? said : QString();
        };
        const QString none = sweepOver(std::make_unique<NoSockets>());
        QVERIFY2(none.contains("An administrator allows it"), qPrintable(none));
        const QString walled = sweepOver(std::make_unique<Walled>());
        QVERIFY2(walled.startsWith("The system let none of these pings out."), qPrintable(walled));
    }

    void globalPresetsStartAGroup() {
        const PingGroup stage = group("Stage", {host("Desk", "10.0.10.21")});
        model->addPingGroup(stage);
        GlobalPreset global = globalPreset("Show day");
        GlobalEditor editor(*model, global, true);
        auto* choice = editor.findChild<QComboBox*>("pingGroup");
        QCOMPARE(choice->currentText(), "None");
        choice->setFocus();
        QTest::keyClick(choice, Qt::Key_Down);
        QCOMPARE(editor.global().pingGroup, std::optional(stage.id));
        QCOMPARE(inWords(editor.global(), *model), "Starts ping group “Stage”.");
        QCOMPARE(globalRows(editor.global(), *model).size(), std::size_t(1));
        // Gone, it is said, and kept until something else is chosen.
        model->deletePingGroup(stage.id);
        QCOMPARE(choice->currentText(), "A group that no longer exists");
        QCOMPARE(editor.global().pingGroup, std::optional(stage.id));
        QCOMPARE(globalNotices(editor.global(), *model).back().text,
                 "The ping group of this set no longer exists; none is started.");
        QVERIFY(globalRows(editor.global(), *model).empty());
        QTest::keyClick(choice, Qt::Key_Home);
        QVERIFY(!editor.global().pingGroup);
    }
};

QTEST_MAIN(ToolPingTest)
#include "tool_ping_test.moc"
