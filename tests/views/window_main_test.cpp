// The whole window over the simulated Mac, with its real dialogs: applying by keyboard alone, the sidebar
// under refreshes and hiding, what the menus allow, the tray's menu, names for every control.
#include "app/views/network/network_commands.h"
#include "app/views/window/alert_box.h"
#include "app/views/window/detail_area.h"
#include "app/views/window/main_window.h"
#include "app/views/window/notice_strip.h"
#include "app/views/window/overlay_pill.h"
#include "app/views/window/password_dialog.h"
#include "app/views/window/service_visibility.h"
#include "app/views/window/sidebar.h"
#include "app/views/window/sidebar_model.h"
#include "app/views/window/tray.h"
#include "tests/app/support/model_home.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

using namespace corvane;
using namespace corvane::testing;

namespace {

NetworkPreset manual(const char* name, const char* service, const char* ip) {
    NetworkPreset preset;
    preset.id = Uuid::generate();
    preset.name = name;
    preset.service = service;
    preset.mode = NetworkPreset::Mode::manual;
    preset.ip = ip;
    preset.subnet = "/24";
    return preset;
}

} // namespace

class WindowMainTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHome> home;
    std::unique_ptr<PasswordDialog> prompt;
    AlertBox alerts;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<MainWindow> window;

    void refreshed() {
        QSignalSpy ended(model.get(), &AppModel::refreshed);
        for (int reading = 1; reading <= 2; ++reading) {
            model->refresh();
            QTRY_COMPARE_WITH_TIMEOUT(ended.count(), reading, 10000);
        }
        QTest::qWait(1);
    }
    QAction* action(const char* name) const { return window->findChild<QAction*>(name); }
    const SidebarModel& rows() const { return window->sidebar().rows(); }
    QStringList rowTitles(SidebarGroup::Id group) const {
        QStringList titles;
        const QModelIndex heading = rows().indexOf(group);
        for (int i = 0; i < (heading.isValid() ? rows().rowCount(heading) : 0); ++i) {
            titles << rows().index(i, 0, heading).data().toString();
        }
        return titles;
    }
    /// Answers the next modal dialog once it stands.
    void answer(std::function<void(QDialog&)> act) {
        auto* timer = new QTimer(window.get());
        connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act)] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible()) return;
            timer->deleteLater();
            timer->stop();
            act(*dialog);
        });
        timer->start(10);
    }

  private slots:
    void init() {
        home = std::make_unique<ModelHome>();
        prompt = std::make_unique<PasswordDialog>(home->user(), home->host->passwordHelp);
        model = std::make_unique<AppModel>(*home->host, *prompt, alerts);
        window = std::make_unique<MainWindow>(*model);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        refreshed();
    }
    void cleanup() {
        window.reset();
        model.reset();
        prompt.reset();
        home.reset();
    }

    void appliesAPresetByKeyboardAlone() {
        const auto preset = manual("Stage", "Ethernet", "10.0.10.50");
        model->addPreset(preset);
        refreshed();
        QCOMPARE(QApplication::focusWidget(), &window->sidebar());
        // Typing a name's letters finds it; Enter goes on to its page.
        QTest::keyClicks(&window->sidebar(), "eth");
        QCOMPARE(model->selection(), std::optional(SidebarItem::service("Ethernet")));
        QTest::keyClick(&window->sidebar(), Qt::Key_Return);
        QVERIFY(window->detail().isAncestorOf(QApplication::focusWidget()));
        for (int steps = 0; steps < 20 && !window->commands().currentPreset(); ++steps) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
            if (!window->commands().currentPreset())
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(window->commands().currentPreset(), std::optional(preset.id));
        QString message, purpose;
        bool busyWhileAsked = true;
        answer([&](QDialog& dialog) {
            const auto& panel = static_cast<PasswordPanel&>(dialog);
            message = panel.message();
            purpose = panel.informativeText();
            QTest::qWait(300);
            busyWhileAsked = window->detail().busySign().isUp();
            QTest::keyClicks(QApplication::focusWidget(), ModelHome::password);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return, Qt::ControlModifier);
        QTRY_VERIFY_WITH_TIMEOUT(!model->busy() && model->banner(), 10000);
        QCOMPARE(message, "Administrator password");
        QCOMPARE(purpose, "Wendrel needs an administrator password to apply “Stage” to Ethernet");
        QVERIFY2(!busyWhileAsked, "nothing is being applied while the dialog asks");
        QCOMPARE(window->detail().banner().text(), "Applied “Stage” to Ethernet.");
        QVERIFY(window->detail().banner().isUp() && !window->detail().banner().isError());
        refreshed();
        QVERIFY(model->isActive(preset));
        QVERIFY(rows()
                    .indexOf(SidebarItem::service("Ethernet"))
                    .data(Qt::AccessibleTextRole)
                    .toString()
                    .contains("10.0.10.50, preset Stage active"));
        QTRY_VERIFY_WITH_TIMEOUT(!window->detail().banner().isUp(), 5000);
        // The password was kept, so the menu offers to forget it.
        QVERIFY(action("forgetPassword")->isEnabled());
        action("forgetPassword")->trigger();
        QTRY_COMPARE(window->detail().banner().text(), "Saved password removed from the keychain.");
        QTRY_VERIFY(!action("forgetPassword")->isEnabled());
    }

    void selectionAndRowsSurviveWhatChanges() {
        model->select(SidebarItem::service("Stage LAN"));
        const QPersistentModelIndex row = rows().indexOf(SidebarItem::service("Stage LAN"));
        QSignalSpy resets(&rows(), &QAbstractItemModel::modelReset);
        home->change([](simulated::State& state) { state.devices["en0"].link = false; });
        refreshed();
        QVERIFY(row.isValid());
        QCOMPARE(row.data().toString(), "Stage LAN");
        QCOMPARE(window->sidebar().selectionModel()->selectedIndexes(), QModelIndexList{row});
        QCOMPARE(resets.count(), 0);
        const auto byState = rowTitles(SidebarGroup::Id::services);
        QVERIFY(byState.indexOf("Ethernet") < byState.indexOf("Wi-Fi"));
        action("sortByOrder")->trigger();
        QTRY_VERIFY(rowTitles(SidebarGroup::Id::services).first() == "Wi-Fi");
        QCOMPARE(window->sidebar().selectionModel()->selectedIndexes(), QModelIndexList{row});
        // A service that vanishes doesn't hand its selection to a neighbour.
        home->change([](simulated::State& state) {
            std::erase_if(state.services, [](const auto& service) { return service.name == "Stage LAN"; });
        });
        refreshed();
        QCOMPARE(model->selection(), std::optional(SidebarItem::service("Stage LAN")));
        QVERIFY(window->sidebar().selectionModel()->selectedIndexes().isEmpty());
        // Its presets stay within reach.
        model->addPreset(manual("Left over", "Stage LAN", "2.0.0.1"));
        QTRY_COMPARE(rowTitles(SidebarGroup::Id::missing), QStringList{"Stage LAN"});
    }

    void hidesAndShowsServices() {
        model->select(SidebarItem::service("Ethernet"));
        QTRY_COMPARE(action("hideService")->text().remove('&'), "Hide “Ethernet”");
        action("hideService")->trigger();
        QTRY_VERIFY(!rowTitles(SidebarGroup::Id::services).contains("Ethernet"));
        QCOMPARE(rowTitles(SidebarGroup::Id::hidden), QStringList{"Ethernet"});
        QVERIFY(model->selection() != SidebarItem::service("Ethernet"));
        QMenu menu;
        visibility::fillHiddenMenu(menu, *model);
        QCOMPARE(menu.actions().size(), 1);
        menu.actions().first()->trigger();
        QTRY_VERIFY(rowTitles(SidebarGroup::Id::services).contains("Ethernet"));
        QVERIFY(!rows().indexOf(SidebarGroup::Id::hidden).isValid());
    }

    void menusAllowWhatCanBeDone() {
        model->select(SidebarItem::service("Wi-Fi"));
        QTRY_VERIFY(action("newPreset")->isEnabled());
        QVERIFY(!action("apply")->isEnabled());
        QCOMPARE(action("apply")->toolTip(), "Select a preset first.");
        QVERIFY(!action("undo")->isEnabled());
        model->addPreset(manual("One", "Wi-Fi", "10.1.1.1"));
        QCOMPARE(action("undo")->text().remove('&'), "Undo Add Preset “One”");
        action("undo")->trigger();
        QVERIFY(model->library().presets.empty());
        QCOMPARE(action("redo")->text().remove('&'), "Redo Add Preset “One”");
        GlobalPreset global;
        global.id = Uuid::generate();
        global.name = "Show & tell";
        model->addGlobal(global);
        model->select(SidebarItem::global(global.id));
        QTRY_COMPARE(action("apply")->text().remove('&'), "Apply Global Preset");
        QVERIFY(action("delete")->isEnabled() && !action("newPreset")->isEnabled());
        action("delete")->trigger();
        QVERIFY(model->library().globals.empty());
        auto* menu = qobject_cast<QMenu*>(action("requireTouchID")->associatedObjects().value(0));
        QVERIFY(menu);
        emit menu->aboutToShow();
        QVERIFY(action("requireTouchID")->isVisible());
        home->change([](simulated::State& state) { state.owner = "none"; });
        emit menu->aboutToShow();
        QVERIFY(!action("requireTouchID")->isVisible());
        // No two commands share their keys.
        QSet<QString> keys;
        for (const auto* command : window->findChildren<QAction*>()) {
            for (const auto& key : command->shortcuts()) {
                QVERIFY2(!keys.contains(key.toString()), qPrintable(key.toString()));
                keys.insert(key.toString());
            }
        }
    }

    void noticesStay() {
        QCOMPARE(window->notices().lines(),
                 QStringList{"Simulated network — nothing on this computer is changed."});
        model->flashError("Something failed.");
        QVERIFY(window->detail().banner().isError());
        QCOMPARE(window->detail().banner().accessibleName(), "Something failed.");
    }

    void trayOffersServicesAndPresets() {
        const auto preset = manual("A & B", "Ethernet", "10.0.10.60");
        model->addPreset(preset);
        TrayMenu menu(*model, window->commands());
        for (int time = 0; time < 2; ++time) menu.refresh();
        QStringList texts;
        QMenu* ethernet = nullptr;
        for (auto* entry : menu.actions()) {
            texts << entry->text();
            if (entry->text() == "Ethernet · 10.0.10.57") ethernet = entry->menu();
        }
        QVERIFY2(texts.contains("Thunderbolt Bridge · No cable / no link"), qPrintable(texts.join('\n')));
        QCOMPARE(texts.count("Open Wendrel"), 1);
        QCOMPARE(texts.last(), "Quit Wendrel");
        QVERIFY(ethernet);
        QCOMPARE(ethernet->actions().first()->text(), "A && B · 10.0.10.60/24");
        QVERIFY(!ethernet->actions().first()->isChecked());
        answer([](QDialog& dialog) {
            dialog.findChild<QLineEdit*>("password")->setText(QString::fromLatin1(ModelHome::password));
            dialog.accept();
        });
        ethernet->actions().first()->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(model->isActive(preset), 10000);
        menu.refresh();
        const auto now = menu.findChildren<QMenu*>();
        QVERIFY(std::any_of(now.begin(), now.end(), [](QMenu* submenu) {
            return submenu->actions().first()->isChecked() &&
                   submenu->actions().first()->text().startsWith("A && B");
        }));
    }

    void everyControlHasAName() {
        model->addPreset(manual("Stage", "Ethernet", "10.0.10.50"));
        model->select(SidebarItem::service("Ethernet"));
        refreshed();
        window->commands().newPreset("Ethernet");
        window->commands().newGlobal();
        window->commands().addTemporaryAddress("Ethernet");
        QTest::qWait(50);
        int seen = 0;
        for (auto* top : QApplication::topLevelWidgets()) {
            for (auto* widget : top->findChildren<QWidget*>()) {
                const bool control = qobject_cast<QAbstractButton*>(widget) ||
                                     qobject_cast<QLineEdit*>(widget) || qobject_cast<QComboBox*>(widget) ||
                                     qobject_cast<QAbstractItemView*>(widget);
                // A combo box's own list and a spin box's inner field speak through their owner.
                const bool inner = qobject_cast<QComboBox*>(widget->parentWidget()) ||
                                   widget->window()->windowType() == Qt::Popup;
                if (!control || inner || !widget->isVisible() || widget->focusPolicy() == Qt::NoFocus)
                    continue;
                auto* spoken = QAccessible::queryAccessibleInterface(widget);
                QVERIFY(spoken);
                ++seen;
                QVERIFY2(!spoken->text(QAccessible::Name).isEmpty(),
                         qPrintable(QString("%1 “%2” in %3")
                                        .arg(widget->metaObject()->className(), widget->objectName(),
                                             top->metaObject()->className())));
            }
        }
        QVERIFY(seen > 15);
        for (auto* top : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<QDialog*>(top)) dialog->reject();
        }
    }

    void keepsPlaceAndSidebarWidth() {
        window->setGeometry(120, 90, 940, 620);
        window->close();
        window = std::make_unique<MainWindow>(*model);
        // The test's screen is narrower than the smallest window.
        QCOMPARE(window->height(), 620);
        QCOMPARE(window->geometry().top(), 90);
        home->host->defaults->setValue("window.place", QByteArray("9000 -4000 950 610 0"));
        window = std::make_unique<MainWindow>(*model);
        QVERIFY(window->screen()->availableGeometry().intersects(window->geometry()));
    }
};

QTEST_MAIN(WindowMainTest)
#include "window_main_test.moc"
