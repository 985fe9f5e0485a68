// VLANs from the window's side, on the simulated Mac: the sheet's messages and proposed name, creation,
// deletion that asks, plans and their set-up.
#include "app/views/network/network_commands.h"
#include "app/views/network/planned_vlan_page.h"
#include "app/views/network/service_page.h"
#include "app/views/network/vlan_delete_panel.h"
#include "app/views/network/vlan_editor_sheet.h"
#include "app/views/network/vlan_presentation.h"
#include "app/views/widgets/row_list.h"
#include "app/views/window/sidebar_rows.h"
#include "tests/app/support/model_home.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

using namespace corvane;
using namespace corvane::testing;

class NetworkVLANTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHome> home;
    AppModel* model = nullptr;
    std::unique_ptr<QWidget> window;
    std::unique_ptr<NetworkCommands> commands;

    template <typename Sheet>
    Sheet* sheet() const {
        return window->findChild<Sheet*>();
    }
    static QLineEdit* field(const QWidget& in, const char* name) {
        for (auto* edit : in.findChildren<QLineEdit*>())
            if (edit->accessibleName() == name) return edit;
        qFatal("no such field");
    }
    static void type(QLineEdit* edit, const QString& text) {
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Backspace);
        QTest::keyClicks(edit, text);
    }
    static QString said(const QWidget& in) {
        for (auto* lines : in.findChildren<NoticeLines*>())
            for (const Notice& notice : lines->notices())
                if (notice.kind == Notice::Kind::error) return notice.text;
        return {};
    }
    static QPushButton* button(const QWidget& in, const QString& text) {
        for (auto* one : in.findChildren<QPushButton*>())
            if (one->text().remove('&') == text) return one;
        return nullptr;
    }
    bool create(const std::string& name, long tag) {
        home->willAuthorize();
        const bool made = model->createVLAN(name, "en5", tag);
        home->refreshed();
        return made && model->vlan(name);
    }
    PlannedVLAN planned(const std::string& name, long tag, std::optional<std::string> parent) {
        PlannedVLAN plan;
        plan.id = Uuid::generate();
        plan.name = name;
        plan.tag = tag;
        plan.parentDevice = std::move(parent);
        return plan;
    }

  private slots:
    void init() {
        home = std::make_unique<ModelHome>();
        model = &home->start();
        window = std::make_unique<QWidget>();
        window->resize(800, 640);
        commands = std::make_unique<NetworkCommands>(*model, window.get());
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    void cleanup() {
        commands->setParent(nullptr);
        window.reset();
        commands.reset();
        home.reset();
    }

    void sheetSaysWhatIsWrongAndProposesAName() {
        QVERIFY(create("Lights", 30));
        VLANEditorSheet editor(*model, VLANEditorSheet::Mode::create("en5"));
        editor.show();
        auto *tag = field(editor, "Tag"), *name = field(editor, "Name");
        auto* accept = editor.findChild<QPushButton*>("accept");
        QVERIFY(!accept->isEnabled());
        QCOMPARE(said(editor), QString()); // not an error before anybody typed
        for (const char* wrong : {"0", "4095", "abc"}) {
            type(tag, wrong);
            QCOMPARE(said(editor), "Tag must be a number from 1 to 4094.");
            QVERIFY(!accept->isEnabled());
            QCOMPARE(accept->accessibleDescription(), said(editor));
        }
        type(tag, "30");
        QCOMPARE(said(editor), "This port already has a VLAN with tag 30.");
        type(tag, "4094");
        QCOMPARE(name->text(), "Ethernet VLAN 4094");
        QCOMPARE(said(editor), QString());
        QVERIFY(accept->isEnabled());
        // On another adapter the same tag is free, and the name follows the adapter.
        auto* adapter = editor.findChild<QComboBox*>();
        type(tag, "30");
        adapter->setCurrentIndex(adapter->findData("en8"));
        emit adapter->activated(adapter->currentIndex());
        QCOMPARE(name->text(), "Stage LAN VLAN 30");
        QVERIFY(accept->isEnabled());
        QVERIFY(!editor.nameEdited());
        type(name, "");
        QCOMPARE(said(editor), "Give the VLAN a name.");
        type(name, "Wi-Fi");
        QCOMPARE(said(editor), "An interface named “Wi-Fi” already exists.");
        type(name, "Dante");
        QVERIFY(editor.nameEdited());
        type(tag, "31");
        QCOMPARE(name->text(), "Dante");
        QSignalSpy asked(&editor, &VLANEditorSheet::createAsked);
        QTest::keyClick(tag, Qt::Key_Return);
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0][2].toLongLong(), 31);
    }

    void createdFromThePageAndSelectedOnceItAppears() {
        ServicePage page(*model, *commands, window.get());
        page.setService("Ethernet");
        page.show();
        auto* create = button(page, "New VLAN…");
        QVERIFY(create && create->isEnabled());
        QTest::mouseClick(create, Qt::LeftButton);
        auto* editor = sheet<VLANEditorSheet>();
        QVERIFY(editor);
        type(field(*editor, "Tag"), "20");
        home->willAuthorize();
        QTest::keyClick(field(*editor, "Tag"), Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(home->banners, QStringList{"Created VLAN “Ethernet VLAN 20”."}, 20000);
        QTRY_COMPARE_WITH_TIMEOUT(model->selection(), std::optional(SidebarItem::service("Ethernet VLAN 20")),
                                  20000);
        page.setService("Ethernet VLAN 20");
        QVERIFY(create->isHidden());
        QVERIFY(!button(page, "Edit VLAN…")->isHidden());
        page.setService("Wi-Fi");
        QVERIFY(create->isHidden());
        page.setService("USB 10/100 LAN");
        QVERIFY(!create->isEnabled());
        QCOMPARE(create->accessibleDescription(), "Plug in the adapter to add VLANs.");
    }

    void changedInTheSheetWithItsPresets() {
        QVERIFY(create("Lights", 30));
        model->addPreset(dhcpPreset("House", "Lights"));
        commands->editVLAN("Lights");
        auto* editor = sheet<VLANEditorSheet>();
        auto* accept = editor->findChild<QPushButton*>("accept");
        QVERIFY(!accept->isEnabled());
        QCOMPARE(field(*editor, "Name")->text(), "Lights");
        type(field(*editor, "Tag"), "31");
        QCOMPARE(field(*editor, "Name")->text(), "Lights");
        type(field(*editor, "Name"), "Desk");
        home->willAuthorize();
        QTest::mouseClick(accept, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(home->banners.back(), "Updated VLAN “Desk”.", 20000);
        QTRY_VERIFY_WITH_TIMEOUT(model->vlan("Desk") && model->vlan("Desk")->tag == 31, 20000);
        QCOMPARE(model->presetsOf("Desk").size(), std::size_t(1));
    }

    void aNameThatNobodyEditsIsSentAsItIs() {
        // Longer than what the field takes, and with a character that no field shows.
        const std::string name = "Odd\tname " + std::string(140, 'x');
        VLANEditorSheet editor(*model, VLANEditorSheet::Mode::edit({name, "en5", "vlan0", 30}));
        editor.show();
        QSignalSpy asked(&editor, &VLANEditorSheet::editAsked);
        type(field(editor, "Tag"), "31");
        QCOMPARE(said(editor), QString());
        QTest::keyClick(field(editor, "Tag"), Qt::Key_Return);
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0][1].value<std::string>(), name);

        const auto plan = planned(std::string(140, 'x'), 30, "en5");
        PlannedVLANPage page(*model, *commands, window.get());
        model->addPlannedVLAN(plan);
        page.setPlan(plan.id);
        page.show();
        type(field(page, "Tag"), "31");
        QTest::keyClick(field(page, "Tag"), Qt::Key_Return);
        QCOMPARE(model->plannedVLAN(plan.id)->tag, 31);
        QCOMPARE(model->plannedVLAN(plan.id)->name, plan.name);
    }

    void deletingAsksAboutPresets() {
        QVERIFY(create("Lights", 30) && create("Sound", 40));
        model->addPreset(dhcpPreset("House", "Lights"));
        model->addPreset(dhcpPreset("House", "Sound"));
        model->select(SidebarItem::service("Lights"));
        commands->deleteVLAN("Lights");
        auto* panel = sheet<VLANDeletePanel>();
        QVERIFY(panel && button(*panel, "Keep its presets instead"));
        panel->reject();
        QTest::qWait(20);
        QVERIFY(model->vlan("Lights"));
        for (const auto& [vlan, answer, left] :
             {std::tuple("Lights", "Keep its presets instead", std::size_t(1)),
              std::tuple("Sound", "Also delete its presets", std::size_t(0))}) {
            QTRY_VERIFY(!sheet<VLANDeletePanel>());
            commands->deleteVLAN(vlan);
            home->willAuthorize();
            QTest::mouseClick(button(*sheet<VLANDeletePanel>(), answer), Qt::LeftButton);
            QTRY_COMPARE_WITH_TIMEOUT(home->banners.back(), QString("Deleted VLAN “%1”.").arg(vlan), 20000);
            QTRY_VERIFY_WITH_TIMEOUT(!model->vlan(vlan), 20000);
            QCOMPARE(model->presetsOf(vlan).size(), left);
        }
        QCOMPARE(model->selection(), std::optional(SidebarItem::service("Ethernet")));
    }

    void plannedThenSetUp() {
        commands->newVLAN("Ethernet");
        auto* editor = sheet<VLANEditorSheet>();
        type(field(*editor, "Tag"), "20");
        type(field(*editor, "Name"), "Dante");
        auto* later = editor->findChild<QCheckBox*>();
        // The keyboard goes as the eye does.
        QVERIFY(QTest::qWaitForWindowActive(editor));
        field(*editor, "Name")->setFocus();
        QTest::keyClick(field(*editor, "Name"), Qt::Key_Tab);
        QCOMPARE(editor->focusWidget(), later);
        QCOMPARE(later->text(), "Keep this VLAN as a plan and create it on the Mac later");
        later->setChecked(true);
        QTest::mouseClick(editor->findChild<QPushButton*>("accept"), Qt::LeftButton);
        QCOMPARE(model->library().plannedVLANs.size(), std::size_t(1));
        const Uuid id = model->library().plannedVLANs[0].id;
        QCOMPARE(model->selection(), std::optional(SidebarItem::plannedVLAN(id)));
        QVERIFY(home->prompt.calls.empty());

        PlannedVLANPage page(*model, *commands, window.get());
        page.setPlan(id);
        page.show();
        auto* setUp = page.findChild<QPushButton*>("setUp");
        QVERIFY(setUp->isEnabled());
        QCOMPARE(setUp->text(), "Set this VLAN up on the Mac now");
        QVERIFY(setUp->accessibleName().isEmpty());
        // Presets before it exists, which aren't in the sidebar as ones of a missing service.
        model->addPreset(manualPreset("Box", "Dante", "10.20.0.5"));
        auto& presets = page.findChild<RowList*>("presets")->rowModel();
        QTRY_COMPARE(presets.rowCount(), 1);
        // They follow a rename in the field, and new ones go to the new name.
        type(field(page, "Name"), "Sound");
        QTest::keyClick(field(page, "Name"), Qt::Key_Return);
        QTest::qWait(20);
        QCOMPARE(presets.rowCount(), 1);
        model->addPreset(dhcpPreset("Desk", "Sound"));
        QTRY_COMPARE(presets.rowCount(), 2);
        for (int step = 0; step < 2; ++step) model->undoStack().undo();
        QTRY_COMPARE(field(page, "Name")->text(), "Dante");
        QCOMPARE(presets.rowCount(), 1);
        for (const auto& group : sidebarGroups(*model)) QVERIFY(group.key != SidebarGroup::Id::missing);
        // A wrong field stays in the field; a right one is one step to undo.
        type(field(page, "Tag"), "9000");
        QCOMPARE(said(page), "Tag must be a number from 1 to 4094.");
        QVERIFY(!setUp->isEnabled());
        QTest::keyClick(field(page, "Tag"), Qt::Key_Return);
        // The menus know it too.
        QCOMPARE(commands->setUpRefusal(id), said(page));
        commands->setUpPlannedVLAN(id);
        QCOMPARE(home->banners.back(), "! Tag must be a number from 1 to 4094.");
        QVERIFY(home->prompt.calls.empty());
        model->addPreset(dhcpPreset("Other", "Wi-Fi"));
        QTest::qWait(20);
        QCOMPARE(field(page, "Tag")->text(), "9000");
        QCOMPARE(model->plannedVLAN(id)->tag, 20);
        type(field(page, "Tag"), "21");
        QTest::keyClick(field(page, "Tag"), Qt::Key_Return);
        QCOMPARE(model->plannedVLAN(id)->tag, 21);
        model->undoStack().undo();
        QTRY_COMPARE(field(page, "Tag")->text(), "20");

        // What stands in a field that has the keyboard counts when a menu sets the plan up.
        type(field(page, "Tag"), "22");
        QCOMPARE(model->plannedVLAN(id)->tag, 20);
        QStringList selected;
        connect(model, &AppModel::selectionChanged, this,
                [&] { selected << (model->selection() ? model->selection()->identity() : "none"); });
        home->willAuthorize();
        commands->setUpPlannedVLAN(id);
        QCOMPARE(home->banners.back(), "Created VLAN “Dante”.");
        QVERIFY(model->library().plannedVLANs.empty());
        QTRY_COMPARE_WITH_TIMEOUT(model->selection(), std::optional(SidebarItem::service("Dante")), 20000);
        // Straight there, not by way of another page.
        QCOMPARE(selected, QStringList{SidebarItem::service("Dante").identity()});
        disconnect(model, nullptr, this, nullptr);
        QCOMPARE(model->vlan("Dante")->tag, 22);
        QCOMPARE(model->presetsOf("Dante").size(), std::size_t(1));
    }

    void plansThatCannotBeSetUpOrAreDeleted() {
        const auto loose = planned("Loose", 20, std::nullopt), away = planned("Away", 21, "en7");
        model->addPlannedVLAN(loose);
        model->addPlannedVLAN(away);
        QCOMPARE(commands->setUpRefusal(loose.id), "Choose an adapter first.");
        QCOMPARE(commands->setUpRefusal(away.id), "Plug in the adapter to add VLANs.");
        PlannedVLANPage page(*model, *commands, window.get());
        page.setPlan(loose.id);
        page.show();
        QVERIFY(!page.findChild<QPushButton*>("setUp")->isEnabled());
        auto* adapter = page.findChild<QComboBox*>();
        adapter->setCurrentIndex(adapter->findData("en8"));
        emit adapter->activated(adapter->currentIndex());
        QCOMPARE(model->plannedVLAN(loose.id)->parentDevice, std::optional<std::string>("en8"));
        QVERIFY(page.findChild<QPushButton*>("setUp")->isEnabled());
        model->select(SidebarItem::plannedVLAN(loose.id));
        QTest::mouseClick(button(page, "Delete Plan"), Qt::LeftButton);
        QVERIFY(!model->plannedVLAN(loose.id));
        QVERIFY(home->banners.back().contains("Nothing on the Mac changes — this VLAN was never created."));
        model->undoStack().undo();
        QVERIFY(model->plannedVLAN(loose.id));
        QVERIFY(home->prompt.calls.empty());
    }
};

QTEST_MAIN(NetworkVLANTest)
#include "network_vlan_test.moc"
