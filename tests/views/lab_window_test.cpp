// The real window on a virtual display, over a real NetworkManager, used by keyboard as a user whose password sudo asks
// for; inside the lab (tests/lab/lab.sh). What the window says is held against the kernel and nmcli.
#include "app/views/network/network_commands.h"
#include "app/views/widgets/row_list.h"
#include "app/views/widgets/theme.h"
#include "app/views/window/alert_box.h"
#include "app/views/window/detail_area.h"
#include "app/views/window/main_window.h"
#include "app/views/window/overlay_pill.h"
#include "app/views/window/password_dialog.h"
#include "app/views/window/sidebar.h"
#include "app/views/window/sidebar_model.h"
#include "platform/linux/linux_host.h"
#include "tests/app/support/lab_facts.h"
#include "tests/app/support/model_home.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

using namespace corvane;
using namespace corvane::testing;

class LabWindowTest : public QObject {
    Q_OBJECT

    QTemporaryDir dir_;
    std::unique_ptr<Host> host_;
    std::unique_ptr<PasswordDialog> prompt_;
    AlertBox alerts_;
    std::unique_ptr<AppModel> model_;
    std::unique_ptr<MainWindow> window_;
    QTimer answering_;
    /// What is typed into the next password dialogs, nothing for Escape; and what they said.
    QStringList typed_, asked_, alerted_;

    void answerDialogs() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible()) return;
        if (auto* panel = qobject_cast<PasswordPanel*>(dialog)) {
            asked_ << panel->message();
            const QString answer = typed_.isEmpty() ? QString() : typed_.takeFirst();
            if (answer.isEmpty()) return QTest::keyClick(dialog, Qt::Key_Escape);
            QTest::keyClicks(dialog->findChild<QLineEdit*>("password"), answer);
        } else if (auto* alert = qobject_cast<AlertPanel*>(dialog)) {
            alerted_ << alert->message() + " / " + alert->informativeText();
        }
        QTest::keyClick(dialog, Qt::Key_Return);
    }
    /// No window manager gives the keyboard back when a dialog has gone.
    void takeKeyboard() {
        window_->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window_.get()));
    }
    void applyByKeyboard() {
        takeKeyboard();
        QVERIFY(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return, Qt::ControlModifier);
        QTRY_VERIFY_WITH_TIMEOUT(!model_->busy(), patience);
    }
    /// To the service's or global preset's page by typing its name in the sidebar.
    void open(const QString& name, const SidebarItem& item) {
        window_->sidebar().setFocus();
        model_->select(SidebarItem::service(item == SidebarItem::service("Rig") ? "Lights" : "Rig"));
        QTest::qWait(QApplication::keyboardInputInterval() + 100);
        QTest::keyClicks(&window_->sidebar(), name);
        QCOMPARE(model_->selection(), std::optional(item));
        QTest::keyClick(&window_->sidebar(), Qt::Key_Return);
    }
    void openPreset(const std::string& service, const QString& title) {
        open(QString::fromStdString(service), SidebarItem::service(service));
        auto* rows = window_->detail().findChild<RowList*>("presets");
        QVERIFY(rows);
        rows->setFocus();
        QTest::keyClick(rows, Qt::Key_Home);
        for (int step = 0; step < 10; ++step) {
            const auto at = rows->rowModel().indexOf(rows->currentId());
            if (at.isValid() && rows->rowModel().row(at).title == title) return;
            QTest::keyClick(rows, Qt::Key_Down);
        }
        QFAIL("no such preset in the list");
    }
    void press(const QString& password) {
        typed_ = {password};
        applyByKeyboard();
    }
    QString banner() const { return window_->detail().banner().text(); }
    QString mark(const QString& title) const {
        for (const auto* rows : window_->detail().findChildren<RowList*>("presets"))
            if (rows->isVisible())
                for (const Row& row : rows->rowModel().rows())
                    if (row.title == title) return row.mark;
        return {};
    }
    void keepPicture(const char* name) const {
        const QString folder = qEnvironmentVariable("LAB_PICTURES");
        if (!folder.isEmpty()) window_->grab().save(folder + '/' + name + ".png");
    }
    /// The far end of a cable belongs to root.
    void cable(const char* end, const char* state) const {
        output("sh", {"-c", QString("echo \"$LAB_PASSWORD\" | sudo -S env \"PATH=$PATH\" lab-cable %1 %2")
                                .arg(QLatin1String(end), QLatin1String(state))});
    }
    QString password() const { return qEnvironmentVariable("LAB_PASSWORD"); }

  private slots:
    void initTestCase() {
        host_ = makeLinuxHost({.toolRoot = QStringLiteral(WENDREL_NM_ROOT),
                               .applicationSupport = dir_.path(),
                               .settingsFile = dir_.filePath("settings/app.ini")});
        QVERIFY2(host_->privileged->needsPassword(), "this test is for a user whom sudo asks");
        host_->keychain = std::make_unique<FakeKeychain>();
        prompt_ = std::make_unique<PasswordDialog>(host_->userName, host_->passwordHelp);
        model_ = std::make_unique<AppModel>(*host_, *prompt_, alerts_);
        const auto a = manualPreset("Rig A", "Rig", "10.5.0.41", "10.5.0.1");
        const auto b = manualPreset("Lights B", "Lights", "10.7.0.41", "10.7.0.1", {"10.7.0.1"});
        model_->addPreset(manualPreset("Stage", "Rig", "10.5.0.40", "10.5.0.1", {"10.5.0.1", "1.1.1.1"}));
        model_->addPreset(dhcpPreset("House", "Rig"));
        model_->addPreset(manualPreset("Broken", "Rig", "10.5.0"));
        model_->addPreset(a);
        model_->addPreset(b);
        model_->addGlobal(globalPreset("Show", {a.id, b.id}, "Lights"));
        window_ = std::make_unique<MainWindow>(*model_);
        window_->resize(1080, 720);
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
        connect(&answering_, &QTimer::timeout, this, &LabWindowTest::answerDialogs);
        answering_.start(50);
        QTRY_VERIFY_WITH_TIMEOUT(model_->services().size() == 2, patience);
    }
    void init() {
        takeKeyboard();
        host_->keychain->remove(Keychain::currentService);
        typed_.clear();
        asked_.clear();
        alerted_.clear();
    }
    void cleanupTestCase() {
        answering_.stop();
        window_.reset();
        model_.reset();
    }

    void listsTheAdapters() {
        for (const char* name : {"Rig", "Lights"}) {
            const auto row = window_->sidebar().rows().indexOf(SidebarItem::service(name));
            QTRY_VERIFY_WITH_TIMEOUT(row.isValid(), patience);
            QVERIFY2(row.data(Qt::AccessibleTextRole).toString().contains("Connected"),
                     qPrintable(row.data(Qt::AccessibleTextRole).toString()));
        }
    }

    void aCancelledDialogIsSilentAndAWrongPasswordAsksAgain() {
        const QStringList before = kernelAddresses("en5");
        openPreset("Rig", "Stage");
        press({});
        QCOMPARE(asked_, QStringList{"Administrator password"});
        QVERIFY(alerted_.isEmpty() && !model_->banner());
        QCOMPARE(kernelAddresses("en5"), before);

        asked_.clear();
        typed_ = {"not it", password()};
        applyByKeyboard();
        QCOMPARE(asked_, (QStringList{"Administrator password", "Password incorrect — try again"}));
        QCOMPARE(banner(), "Applied “Stage” to Rig.");
        QTRY_COMPARE_WITH_TIMEOUT(mark("Stage"), "Active", patience);
        QCOMPARE(kernelAddresses("en5"), QStringList{"10.5.0.40/24"});
        QCOMPARE(kernelRouter(), QString("10.5.0.1 en5"));
        QCOMPARE(managerSays("IP4.ADDRESS", "en5"), QStringList{"10.5.0.40/24"});
        QCOMPARE(managerSays("IP4.DNS", "en5"), (QStringList{"10.5.0.1", "1.1.1.1"}));
        keepPicture("lab-manual");
    }

    void dhcpTakesItBack() {
        openPreset("Rig", "House");
        press(password());
        QCOMPARE(banner(), "Applied “House” to Rig.");
        QTRY_COMPARE_WITH_TIMEOUT(mark("House"), "Active", patience);
        QTRY_COMPARE_WITH_TIMEOUT(kernelAddresses("en5"), QStringList{"10.5.0.100/24"}, patience);
        QCOMPARE(managerSays("IP4.ADDRESS", "en5"), QStringList{"10.5.0.100/24"});
        QTRY_VERIFY_WITH_TIMEOUT(model_->service("Rig")->state() == LinkState::connected("10.5.0.100"), patience);
    }

    void aGlobalPresetMovesOneToTheTop() {
        const auto& show = model_->library().globals.front();
        open("Show", SidebarItem::global(show.id));
        press(password());
        QCOMPARE(banner(), "Applied “Show” to 2 interfaces.");
        QTRY_VERIFY_WITH_TIMEOUT(model_->isActive(show) && model_->serviceOrder().front() == "Lights", patience);
        QCOMPARE(kernelAddresses("en5"), QStringList{"10.5.0.41/24"});
        QCOMPARE(kernelAddresses("en7"), QStringList{"10.7.0.41/24"});
        QTRY_COMPARE_WITH_TIMEOUT(kernelRouter(), QString("10.7.0.1 en7"), patience);
        QCOMPARE(managerSays("IP4.GATEWAY", "en7"), QStringList{"10.7.0.1"});
        keepPicture("lab-global");
    }

    void whatCannotBeAppliedAndWhatTheToolRefusesAreAlerts() {
        openPreset("Rig", "Broken");
        press(password());
        QCOMPARE(alerted_.size(), 1);
        QVERIFY2(alerted_[0].contains("“Broken” can't be applied:") &&
                     alerted_[0].contains("IP address isn't a valid IPv4 address."),
                 qPrintable(alerted_[0]));
        QVERIFY(asked_.isEmpty());

        alerted_.clear();
        typed_ = {password()};
        QVERIFY(!model_->apply(dhcpPreset("Nowhere", "No such service")));
        QCOMPARE(alerted_.size(), 1);
        QVERIFY2(alerted_[0].startsWith("Couldn't apply “Nowhere”.") &&
                     alerted_[0].contains("is not a recognized network service"),
                 qPrintable(alerted_[0]));
    }

    void aPulledCableShows() {
        cable("en7", "down");
        // Rows change places with their state: looked up each time.
        const auto lights = [this] {
            const auto row = window_->sidebar().rows().indexOf(SidebarItem::service("Lights"));
            return row.data(Qt::AccessibleTextRole).toString();
        };
        QTRY_VERIFY_WITH_TIMEOUT(lights().contains("No cable / no link"), patience);
        keepPicture("lab-pulled");
        cable("en7", "up");
        QTRY_VERIFY_WITH_TIMEOUT(lights().contains("Connected"), patience);
    }
};

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("LAB")) {
        puts("SKIPPED: not inside the lab; run it by tests/lab/lab.sh run -- xvfb-run -a <this program>");
        return 77;
    }
    QApplication application(argc, argv);
    theme::apply(application, theme::Appearance::light);
    LabWindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "lab_window_test.moc"
