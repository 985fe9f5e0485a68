// The page of a service: applying, selection and scroll position under refreshes, order, copying, undo, and
// how much a long list makes.
#include "app/views/network/global_page.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/service_page.h"
#include "app/views/widgets/copy_label.h"
#include "app/views/widgets/row_list.h"
#include "tests/app/support/model_home.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>
#include <QVBoxLayout>

using namespace corvane;
using namespace corvane::testing;

namespace {

QStringList titles(const RowList& list) {
    QStringList all;
    for (const Row& row : list.rowModel().rows()) all << row.title;
    return all;
}

CopyLabel* value(const QWidget& page, const QString& text) {
    for (CopyLabel* label : page.findChildren<CopyLabel*>()) {
        if (label->value() == text && label->isVisible()) return label;
    }
    return nullptr;
}

} // namespace

class NetworkPageTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHome> home;
    AppModel* model = nullptr;
    std::unique_ptr<QWidget> window;
    std::unique_ptr<NetworkCommands> commands;
    ServicePage* page = nullptr;
    RowList* list = nullptr;

  private slots:
    void init() {
        home = std::make_unique<ModelHome>();
        model = &home->start();
        window = std::make_unique<QWidget>();
        commands = std::make_unique<NetworkCommands>(*model, window.get());
        page = new ServicePage(*model, *commands, window.get());
        page->setService("Ethernet");
        (new QVBoxLayout(window.get()))->addWidget(page);
        list = page->findChild<RowList*>("presets");
        window->resize(640, 560);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    void cleanup() {
        commands->setParent(nullptr);
        window.reset();
        commands.reset();
        home.reset();
    }

    void appliesByKeyboardAndByButton() {
        const auto house = dhcpPreset("House", "Ethernet");
        const auto desk = manualPreset("Desk", "Ethernet", "10.0.10.9", "10.0.10.1", {"1.1.1.1"});
        model->addPreset(house);
        model->addPreset(desk);
        QTRY_COMPARE(titles(*list), (QStringList{"House", "Desk"}));
        QVERIFY(!commands->currentPreset());
        QCOMPARE(list->rowModel().rows()[0].mark, QString("Active"));
        QVERIFY(list->rowModel().rows()[1].tip.contains("IP address is 10.0.10.57 instead of 10.0.10.9."));
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Down);
        QCOMPARE(commands->currentPreset(), std::optional(desk.id));
        home->willAuthorize();
        QTest::keyClick(list, Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(home->banners, QStringList{"Applied “Desk” to Ethernet."});
        QTRY_COMPARE_WITH_TIMEOUT(list->rowModel().rows()[1].mark, QString("Active"), 20000);
        QCOMPARE(list->rowModel().rows()[0].mark, QString());
        QTRY_VERIFY(value(*page, "10.0.10.9"));
        auto* button = qobject_cast<QPushButton*>(list->indexWidget(list->rowModel().index(0)));
        QVERIFY(button);
        QCOMPARE(button->accessibleName(), QString("Apply this preset"));
        home->willAuthorize();
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(list->rowModel().rows()[0].mark, QString("Active"), 20000);
        QCOMPARE(commands->currentPreset(), std::optional(house.id));
    }

    void showsWarningsBeforeErrorsAndAdvice() {
        auto bad = manualPreset("Bad", "Ethernet", "10.0.0", "11.0.0.1", {"x"});
        bad.name = "<b>Bad</b>\nname";
        model->addPreset(bad);
        model->addPreset(manualPreset("Taken", "Ethernet", "192.168.1.34"));
        QTRY_COMPARE(list->rowModel().rowCount(), 2);
        const Row& row = list->rowModel().rows()[0];
        QCOMPARE(row.title, QString("<b>Bad</b> name"));
        QCOMPARE(row.notices.front().kind, Notice::Kind::warning);
        QCOMPARE(row.notices.back(),
                 (Notice{Notice::Kind::error, "DNS server \"x\" isn't a valid IPv4 address."}));
        QVERIFY(row.spoken().contains("Error: IP address isn't a valid IPv4 address."));
        QCOMPARE(list->rowModel().rows()[1].notices,
                 std::vector{(Notice{Notice::Kind::advice, "192.168.1.34 is already on Wi-Fi (en0)."})});
    }

    void longListStaysWhereItWas() {
        std::vector<Uuid> ids;
        for (int i = 0; i < 500; ++i) {
            const auto preset = manualPreset("Preset " + std::to_string(i), "Ethernet", "10.0.10.9");
            ids.push_back(preset.id);
            model->addPreset(preset);
        }
        QTRY_COMPARE(list->rowModel().rowCount(), 500);
        QTRY_VERIFY(!list->findChildren<QPushButton*>().isEmpty());
        QVERIFY(list->findChildren<QPushButton*>().size() < 20); // only what is in view has a button
        commands->setCurrentPreset(ids[250]);
        list->scrollTo(list->currentIndex(), QAbstractItemView::PositionAtCenter);
        QTRY_VERIFY(list->indexWidget(list->currentIndex()));
        QVERIFY(list->findChildren<QPushButton*>().size() < 20);
        const int scrolled = list->verticalScrollBar()->value();
        QVERIFY(scrolled > 0);
        QSignalSpy resets(&list->rowModel(), &QAbstractItemModel::modelReset);
        home->change([](simulated::State& state) { state.devices["en5"].link = false; });
        home->refreshed();
        auto changed = *model->preset(ids[251]);
        changed.name = "Renamed";
        model->updatePreset(changed);
        QTRY_COMPARE(list->rowModel().rows()[251].title, QString("Renamed"));
        QCOMPARE(list->verticalScrollBar()->value(), scrolled);
        QCOMPARE(commands->currentPreset(), std::optional(ids[250]));
        model->deletePreset(ids[250]);
        QTRY_COMPARE(list->rowModel().rowCount(), 499);
        QVERIFY(commands->currentPreset() == ids[251] || commands->currentPreset() == ids[249]);
        QCOMPARE(resets.size(), 0);
    }

    void ordersDeletesAndUndoes() {
        const auto a = dhcpPreset("A", "Ethernet"), other = dhcpPreset("Other", "Wi-Fi"),
                   b = dhcpPreset("B", "Ethernet"), c = dhcpPreset("C", "Ethernet");
        for (const auto& preset : {a, other, b, c}) model->addPreset(preset);
        QTRY_COMPARE(titles(*list), (QStringList{"A", "B", "C"}));
        commands->setCurrentPreset(c.id);
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
        QTRY_COMPARE(titles(*list), (QStringList{"A", "C", "B"}));
        QCOMPARE(list->currentId(), QString::fromStdString(c.id.text()));
        QVERIFY(list->model()->moveRow({}, 0, {}, 3)); // what a drop at the end asks for
        QTRY_COMPARE(titles(*list), (QStringList{"C", "B", "A"}));
        QTest::keyClick(list, Qt::Key_Delete);
        QTRY_COMPARE(titles(*list), (QStringList{"B", "A"}));
        QVERIFY(home->banners.contains("Deleted “C”. Undo brings it back."));
        model->undoStack().undo();
        QTRY_COMPARE(titles(*list), (QStringList{"C", "B", "A"}));
        for (int i = 0; i < 2; ++i) model->undoStack().undo();
        QTRY_COMPARE(titles(*list), (QStringList{"A", "B", "C"}));
        page->setService("Wi-Fi");
        QCOMPARE(titles(*list), QStringList{"Other"});
        QVERIFY(!commands->currentPreset());
    }

    void copiesAnAddress() {
        auto* address = value(*page, "10.0.10.57");
        QVERIFY(address);
        QTest::mouseClick(address, Qt::LeftButton, {}, QPoint(8, address->height() / 2));
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("10.0.10.57"));
        QVERIFY(address->showsCopied());
        QCOMPARE(address->accessibleDescription(), QString("Copied"));
        auto* router = value(*page, "10.0.10.1");
        QVERIFY(router);
        router->setFocus();
        QTest::keyClick(router, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("10.0.10.1"));
        QTRY_VERIFY_WITH_TIMEOUT(!router->showsCopied(), 3000);
    }

    void temporaryAddressComesAndGoes() {
        home->willAuthorize();
        QVERIFY(model->addTempAlias("Ethernet", "en5", "10.9.9.9", "255.255.255.0"));
        QTRY_VERIFY(value(*page, "10.9.9.9"));
        QPushButton* remove = nullptr;
        for (QPushButton* button : page->findChildren<QPushButton*>()) {
            if (button->accessibleName() == "Remove the temporary address 10.9.9.9") remove = button;
        }
        QVERIFY(remove);
        home->willAuthorize();
        QTest::mouseClick(remove, Qt::LeftButton);
        QTRY_VERIFY(model->tempAliases().empty());
        QCOMPARE(home->prompt.calls.size(), std::size_t(2));
    }

    void globalPageShowsWhatDiffers() {
        const auto desk = manualPreset("Desk", "Ethernet", "10.0.10.9"), house = dhcpPreset("House", "Wi-Fi");
        model->addPreset(desk);
        model->addPreset(house);
        GlobalPreset global;
        global.id = Uuid::generate();
        global.name = "Show";
        global.members = {desk.id, house.id};
        global.internetService = "Ethernet";
        model->addGlobal(global);
        GlobalPage globalPage(*model, *commands);
        globalPage.setGlobal(global.id);
        globalPage.show();
        QVERIFY(QTest::qWaitForWindowActive(&globalPage));
        auto* members = globalPage.findChild<RowList*>("members");
        QCOMPARE(titles(*members), (QStringList{"Ethernet", "Wi-Fi", "Service order"}));
        QCOMPARE(members->rowModel().rows()[0].mark, QString());
        QVERIFY(!members->rowModel().rows()[0].notices.empty());
        home->willAuthorize();
        members->setFocus();
        QTest::keyClick(members, Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(home->banners, QStringList{"Applied “Show” to 2 interfaces."});
        QTRY_COMPARE_WITH_TIMEOUT(members->rowModel().rows()[0].mark, QString("Active"), 20000);
        QTRY_COMPARE_WITH_TIMEOUT(members->rowModel().rows()[2].mark, QString("On top"), 20000);
        commands->deleteGlobal(global.id);
        QTRY_COMPARE(members->rowModel().rowCount(), 0);
    }
};

QTEST_MAIN(NetworkPageTest)
#include "network_page_test.moc"
