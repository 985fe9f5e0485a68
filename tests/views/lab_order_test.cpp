// The service order in the real window on a virtual display, over a real NetworkManager, by keyboard; inside
// the lab (tests/lab/lab.sh). Where packets to an outside address leave is asked of the kernel.
#include "app/views/network/route_table.h"
#include "app/views/network/service_order_page.h"
#include "app/views/network/service_page.h"
#include "app/views/widgets/draft_bar.h"
#include "app/views/widgets/row_list.h"
#include "app/views/widgets/segmented_control.h"
#include "app/views/widgets/theme.h"
#include "app/views/window/alert_box.h"
#include "app/views/window/detail_area.h"
#include "app/views/window/main_window.h"
#include "app/views/window/overlay_pill.h"
#include "app/views/window/password_dialog.h"
#include "platform/linux/linux_host.h"
#include "tests/app/support/lab_facts.h"
#include "tests/app/support/model_home.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace corvane;
using namespace corvane::testing;

namespace {

/// The adapter through which a packet to a host behind both routers leaves.
QString leavesThrough() {
    const auto routes = QJsonDocument::fromJson(output("ip", {"-j", "route", "get", "203.0.113.7"})).array();
    return routes.isEmpty() ? QString() : routes[0].toObject()["dev"].toString();
}

} // namespace

class LabOrderTest : public QObject {
    Q_OBJECT

    QTemporaryDir dir_;
    std::unique_ptr<Host> host_;
    std::unique_ptr<PasswordDialog> prompt_;
    AlertBox alerts_;
    std::unique_ptr<AppModel> model_;
    std::unique_ptr<MainWindow> window_;
    QTimer answering_;
    QStringList alerted_;

    void answerDialogs() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible()) return;
        if (qobject_cast<PasswordPanel*>(dialog))
            QTest::keyClicks(dialog->findChild<QLineEdit*>("password"), qEnvironmentVariable("LAB_PASSWORD"));
        else if (auto* alert = qobject_cast<AlertPanel*>(dialog))
            alerted_ << alert->message() + " / " + alert->informativeText();
        QTest::keyClick(dialog, Qt::Key_Return);
    }
    void apply(const NetworkPreset& preset) {
        QVERIFY(model_->apply(preset));
        QTRY_VERIFY_WITH_TIMEOUT(model_->isActive(preset), patience);
    }

    /// Until every reading that the last change asked for is over.
    void settle() {
        QSignalSpy ended(model_.get(), &AppModel::refreshed);
        QTRY_VERIFY_WITH_TIMEOUT(ended.count() >= 3, patience);
    }

  private slots:
    void initTestCase() {
        host_ = makeLinuxHost({.toolRoot = QStringLiteral(WENDREL_NM_ROOT),
                               .applicationSupport = dir_.path(),
                               .settingsFile = dir_.filePath("settings/app.ini")});
        host_->keychain = std::make_unique<FakeKeychain>();
        prompt_ = std::make_unique<PasswordDialog>(host_->userName, host_->passwordHelp);
        model_ = std::make_unique<AppModel>(*host_, *prompt_, alerts_);
        window_ = std::make_unique<MainWindow>(*model_);
        window_->resize(1080, 720);
        window_->show();
        // No window manager gives it the keyboard here.
        window_->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window_.get()));
        connect(&answering_, &QTimer::timeout, this, &LabOrderTest::answerDialogs);
        answering_.start(50);
        QTRY_COMPARE_WITH_TIMEOUT(model_->services().size(), std::size_t(2), patience);
        apply(manualPreset("Rig A", "Rig", "10.5.0.41", "10.5.0.1"));
        apply(manualPreset("Lights B", "Lights", "10.7.0.41", "10.7.0.1"));
    }
    void cleanupTestCase() {
        answering_.stop();
        window_.reset();
        model_.reset();
    }

    void theOrderDecidesWherePacketsLeave() {
        window_->findChild<QAction*>("serviceOrder")->trigger();
        QCOMPARE(model_->selection(), std::optional(SidebarItem::serviceOrder()));
        auto* rows = window_->detail().findChild<RowList*>("serviceOrder");
        QVERIFY(rows);
        rows->setFocus();
        QTRY_COMPARE_WITH_TIMEOUT(rows->rowModel().rowCount(), 2, patience);
        const auto& bar = *window_->detail().findChild<ServiceOrderPage*>()->findChild<DraftBar*>();
        const std::map<QString, QString> devices{{"Rig", "en5"}, {"Lights", "en7"}};
        // There and back, so that one of the two is a change whatever the order was.
        for (int time = 0; time < 2; ++time) {
            settle();
            QCOMPARE(bar.state(), DraftBar::State::inForce);
            const QString before = leavesThrough();
            QTest::keyClick(rows, Qt::Key_End);
            if (rows->currentIndex().row() == 0) QTest::keyClick(rows, Qt::Key_Down);
            QCOMPARE(rows->currentIndex().row(), 1);
            const QString moved = rows->currentId();
            QCOMPARE(rows->rowModel().rows()[1].notices,
                     std::vector{(Notice{Notice::Kind::advice, "Has a router but doesn't carry internet."})});
            QTest::keyClick(rows, Qt::Key_Up, Qt::AltModifier);
            QTRY_COMPARE(rows->rowModel().rows()[0].id, moved);
            QCOMPARE(bar.state(), DraftBar::State::differs);
            QCOMPARE(leavesThrough(), before); // a draft changes nothing
            QTest::keyClick(rows, Qt::Key_Return, Qt::ControlModifier);
            QTRY_VERIFY_WITH_TIMEOUT(!model_->busy(), patience);
            QVERIFY2(alerted_.isEmpty(), qPrintable(alerted_.join('\n')));
            QCOMPARE(window_->detail().banner().text(),
                     QString("Service order updated — %1 is first.").arg(moved));
            QTRY_COMPARE_WITH_TIMEOUT(leavesThrough(), devices.at(moved), patience);
            QVERIFY(leavesThrough() != before);
            QTRY_COMPARE_WITH_TIMEOUT(rows->rowModel().rows()[0].mark, QString("Carries internet"), patience);
            QTRY_COMPARE_WITH_TIMEOUT(bar.state(), DraftBar::State::inForce, patience);
            qInfo("%s is first: 203.0.113.7 leaves through %s, before through %s", qPrintable(moved),
                  qPrintable(leavesThrough()), qPrintable(before));
        }
        const QString folder = qEnvironmentVariable("LAB_PICTURES");
        if (!folder.isEmpty()) window_->grab().save(folder + "/lab-order.png");
    }

    /// NetworkManager keeps a route without its destination's host bits: once read back, the page shows that.
    void aRouteThatTheSystemPutsInItsOwnWords() {
        model_->select(SidebarItem::service("Rig"));
        auto* page = window_->detail().findChild<ServicePage*>();
        auto* section = page->findChild<SegmentedControl*>();
        section->setFocus();
        QTest::keyClick(section, Qt::Key_Right);
        auto& table = *page->findChild<RouteTable*>("routes");
        auto& bar = *page->findChild<DraftBar*>();
        QTRY_COMPARE_WITH_TIMEOUT(bar.state(), DraftBar::State::inForce, patience);
        auto& routes = table.routes();
        routes.add();
        int column = 0;
        for (const char* text : {"10.50.1.0", "/16", "10.5.0.2"})
            QVERIFY(routes.setData(routes.index(0, column++), text, Qt::EditRole));
        QTRY_COMPARE(bar.state(), DraftBar::State::differs);
        QTest::mouseClick(bar.findChild<QPushButton*>("apply"), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(bar.state(), DraftBar::State::inForce, patience);
        QVERIFY2(alerted_.isEmpty(), qPrintable(alerted_.join('\n')));
        QCOMPARE(routes.routes()[0].summary(), std::string("10.50.0.0/16 via 10.5.0.2"));
        QVERIFY(output("ip", {"-4", "route", "show", "10.50.0.0/16"}).contains("via 10.5.0.2 dev en5"));
    }
};

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("LAB")) {
        puts("SKIPPED: not inside the lab; run it by tests/lab/lab.sh run -- xvfb-run -a <this program>");
        return 77;
    }
    QApplication application(argc, argv);
    theme::apply(application, theme::Appearance::light);
    LabOrderTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "lab_order_test.moc"
