// The editors and sheets: what they say about each field, what they keep while the model changes under them,
// and what they hand back.
#include "app/views/network/global_editor.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/preset_editor.h"
#include "app/views/network/temporary_address_sheet.h"
#include "app/views/widgets/notice.h"
#include "app/views/widgets/row_list.h"
#include "app/views/widgets/segmented_control.h"
#include "tests/app/support/model_home.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

using namespace corvane;
using namespace corvane::testing;

namespace {

QLineEdit* field(const QWidget& window, const QString& name) {
    for (QLineEdit* edit : window.findChildren<QLineEdit*>()) {
        if (edit->accessibleName() == name) return edit;
    }
    return nullptr;
}

QComboBox* choice(const QWidget& window, const QString& name) {
    for (QComboBox* box : window.findChildren<QComboBox*>()) {
        if (box->accessibleName() == name) return box;
    }
    return nullptr;
}

QPushButton* button(const QWidget& window, const QString& text) {
    for (QPushButton* candidate : window.findChildren<QPushButton*>()) {
        if (candidate->text().remove(QLatin1Char('&')) == text) return candidate;
    }
    return nullptr;
}

/// Everything of that kind which the window says now.
QStringList said(const QWidget& window, Notice::Kind kind) {
    QStringList texts;
    for (const NoticeLines* lines : window.findChildren<NoticeLines*>()) {
        for (const Notice& notice : lines->notices()) {
            if (notice.kind == kind) texts << notice.text;
        }
    }
    return texts;
}

/// Focus and shortcuts need an active window.
bool open(QWidget& window) {
    window.show();
    return QTest::qWaitForWindowActive(&window);
}

void type(QLineEdit* edit, const QString& text) {
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

void pick(QComboBox* box, int index) {
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home);
    for (int i = 0; i < index; ++i) QTest::keyClick(box, Qt::Key_Down);
}

} // namespace

class NetworkEditorsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHome> home;
    AppModel* model = nullptr;

  private slots:
    void init() {
        home = std::make_unique<ModelHome>();
        model = &home->start();
    }
    void cleanup() { home.reset(); }

    void fieldsSayWhatIsWrong() {
        auto preset = manualPreset("Stage", "Wi-Fi", "10.0.0.5");
        PresetEditor editor(*model, preset, false);
        QVERIFY(open(editor));
        QCOMPARE(said(editor, Notice::Kind::error), QStringList());
        type(field(editor, "IP address"), "10.0.0");
        QCOMPARE(said(editor, Notice::Kind::error), QStringList{"IP address isn't a valid IPv4 address."});
        QVERIFY(!button(editor, "Save and Apply")->isEnabled());
        QVERIFY(button(editor, "Save and Apply")->toolTip().contains("IP address"));
        QVERIFY(button(editor, "Save")->isEnabled());
        type(field(editor, "IP address"), "10.0.0.5");
        type(field(editor, "Subnet mask"), "/40");
        type(field(editor, "DNS servers"), "8.8.8.8, x y");
        QCOMPARE(said(editor, Notice::Kind::error),
                 (QStringList{"Subnet mask isn't valid (use 255.255.255.0 or /24).",
                              "DNS server \"x\" isn't a valid IPv4 address.",
                              "DNS server \"y\" isn't a valid IPv4 address."}));
        type(field(editor, "Subnet mask"), "/8");
        type(field(editor, "DNS servers"), "8.8.8.8 1.1.1.1");
        type(field(editor, "Router"), "11.0.0.1");
        QCOMPARE(said(editor, Notice::Kind::error), QStringList());
        QCOMPARE(said(editor, Notice::Kind::warning), QStringList{"Router 11.0.0.1 is outside 10.0.0.5/8."});
        QVERIFY(button(editor, "Save and Apply")->isEnabled());
        QCOMPARE(editor.preset().dns, (std::vector<std::string>{"8.8.8.8", "1.1.1.1"}));
        const ServiceInfo* ethernet = model->service("Ethernet");
        QVERIFY(ethernet && !ethernet->hardware->addresses.empty());
        const auto taken = QString::fromStdString(ethernet->hardware->addresses.front());
        type(field(editor, "IP address"), taken);
        QCOMPARE(said(editor, Notice::Kind::advice), QStringList{taken + " is already on Ethernet (en5)."});
        auto* mode = editor.findChild<SegmentedControl*>();
        mode->setFocus();
        QTest::keyClick(mode, Qt::Key_Left);
        QCOMPARE(editor.preset().mode, NetworkPreset::Mode::dhcp);
        QVERIFY(!field(editor, "Router")->isEnabled());
        QCOMPARE(said(editor, Notice::Kind::warning), QStringList());
    }

    void newPresetIsNotScoldedBeforeItIsFilled() {
        NetworkPreset preset;
        preset.id = Uuid::generate();
        preset.mode = NetworkPreset::Mode::manual;
        PresetEditor editor(*model, preset, true);
        QVERIFY(open(editor));
        QCOMPARE(said(editor, Notice::Kind::error), QStringList());
        QVERIFY(!button(editor, "Save and Apply")->isEnabled());
        type(field(editor, "IP address"), "1.2");
        QCOMPARE(said(editor, Notice::Kind::error), QStringList());
        field(editor, "Router")->setFocus();
        QCOMPARE(said(editor, Notice::Kind::error), QStringList{"IP address isn't a valid IPv4 address."});
        pick(choice(editor, "Interface"), 1);
        QCOMPARE(editor.preset().service, model->services()[1].name);
    }

    void bufferOutlivesWhatTheModelDoes() {
        const auto preset = manualPreset("Stage", "Wi-Fi", "10.0.0.5");
        model->addPreset(preset);
        QWidget window;
        NetworkCommands commands(*model, &window);
        commands.editPreset(preset.id);
        auto* editor = window.findChild<PresetEditor*>();
        QVERIFY(editor);
        auto changed = preset;
        changed.name = "Stage right";
        model->updatePreset(changed);
        QCOMPARE(field(*editor, "Name")->text(), QString("Stage right")); // untouched: it follows
        type(field(*editor, "IP address"), "10.0.0.77");
        changed.name = "Elsewhere";
        model->updatePreset(changed);
        home->change([](simulated::State& state) { state.devices["en5"].link = false; });
        home->refreshed();
        QCOMPARE(field(*editor, "Name")->text(), QString("Stage right"));
        QCOMPARE(field(*editor, "IP address")->text(), QString("10.0.0.77"));
        model->deletePreset(preset.id);
        QTest::keyClick(field(*editor, "IP address"), Qt::Key_Return);
        QVERIFY(model->preset(preset.id));
        QCOMPARE(model->preset(preset.id)->ip, std::string("10.0.0.77"));
        QCOMPARE(commands.currentPreset(), std::optional(preset.id));
    }

    void invalidPresetsAreSavedAndSavedOnesApplied() {
        QWidget window;
        NetworkCommands commands(*model, &window);
        commands.newPreset("Ethernet");
        auto* editor = window.findChild<PresetEditor*>();
        type(field(*editor, "IP address"), "nonsense");
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(model->library().presets.size(), std::size_t(1));
        QVERIFY(!model->library().presets.front().isValid());
        QCOMPARE(model->library().presets.front().name, std::string("New preset"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        commands.newPreset("Ethernet");
        editor = window.findChild<PresetEditor*>();
        QVERIFY(open(*editor));
        type(field(*editor, "Name"), "Desk");
        type(field(*editor, "IP address"), "10.0.10.9");
        home->willAuthorize();
        QTest::keyClick(editor, Qt::Key_Return, Qt::ControlModifier);
        QTRY_COMPARE_WITH_TIMEOUT(home->banners.value(0), QString("Applied “Desk” to Ethernet."), 20000);
        QTRY_VERIFY_WITH_TIMEOUT(model->isActive(model->library().presets.back()), 20000);
    }

    void globalEditorSetsMembersAndTheirOrder() {
        const auto stage = manualPreset("Stage", "Wi-Fi", "10.0.0.5"), home1 = dhcpPreset("House", "Wi-Fi"),
                   desk = dhcpPreset("Desk", "Ethernet");
        for (const auto& preset : {stage, home1, desk}) model->addPreset(preset);
        GlobalPreset global;
        global.id = Uuid::generate();
        global.name = "Show";
        global.pingGroup = Uuid::generate();
        const Uuid lost = Uuid::generate();
        global.members = {lost};
        GlobalEditor editor(*model, global, false);
        QSignalSpy saved(&editor, &GlobalEditor::saved);
        QVERIFY(open(editor));
        QCOMPARE(said(editor, Notice::Kind::error), QStringList{"Choose at least one interface preset."});
        QCOMPARE(said(editor, Notice::Kind::advice),
                 (QStringList{"One preset of this set no longer exists; it is passed over.",
                              "The ping group of this set no longer exists; none is started."}));
        QVERIFY(!button(editor, "Save and Apply")->isEnabled());
        pick(choice(editor, "Preset for Wi-Fi"), 1);
        pick(choice(editor, "Preset for Ethernet"), 1);
        pick(choice(editor, "Preset for Wi-Fi"), 2);
        QCOMPARE(editor.global().members, (std::vector{lost, desk.id, home1.id}));
        auto* order = editor.findChild<RowList*>("order");
        order->setFocus();
        QTest::keyClick(order, Qt::Key_End);
        QTest::keyClick(order, Qt::Key_Up, Qt::AltModifier);
        QTRY_COMPARE(editor.global().members, (std::vector{lost, home1.id, desk.id}));
        pick(choice(editor, "Internet through"), 2);
        QCOMPARE(editor.global().internetService, std::optional(model->serviceOrder()[1]));
        QVERIFY(said(editor, Notice::Kind::hint)
                    .contains("Sets Wi-Fi to DHCP, then Ethernet to DHCP, then moves Ethernet to the top of "
                              "the service order."));
        home->refreshed(); // a reading leaves the choices alone
        QCOMPARE(choice(editor, "Internet through")->currentIndex(), 2);
        button(editor, "Save")->click();
        QCOMPARE(saved.size(), 1);
        QCOMPARE(editor.global().pingGroup, global.pingGroup);
        pick(choice(editor, "Preset for Ethernet"), 0);
        QCOMPARE(editor.global().members, (std::vector{lost, home1.id}));
    }

    void temporaryAddressIsAskedChecked() {
        TemporaryAddressSheet sheet(*model, *model->service("Ethernet"));
        QSignalSpy asked(&sheet, &TemporaryAddressSheet::asked);
        QVERIFY(open(sheet));
        QCOMPARE(said(sheet, Notice::Kind::error), QStringList());
        QTest::keyClick(&sheet, Qt::Key_Return);
        QCOMPARE(said(sheet, Notice::Kind::error), QStringList{"IP address isn't a valid IPv4 address."});
        QCOMPARE(asked.size(), 0);
        type(field(sheet, "IP address"), "10.9.9.9");
        QTest::keyClick(&sheet, Qt::Key_Return);
        QCOMPARE(asked.size(), 1);
        QVERIFY(TemporaryAddressSheet::refusal(model->service("Ethernet")).isEmpty());
        QCOMPARE(TemporaryAddressSheet::refusal(model->service("iPhone USB")),
                 QString("iPhone USB is disabled."));
    }

    void exportPanelProposesANameAndImportReads() {
        QWidget window;
        NetworkCommands commands(*model, &window);
        model->addPreset(dhcpPreset("House", "Wi-Fi"));
        commands.exportPresets();
        auto* panel = window.findChild<QFileDialog*>();
        QVERIFY(panel);
        QCOMPARE(QFileInfo(panel->selectedFiles().value(0)).fileName(), QString("Wendrel Presets.json"));
        QCOMPARE(panel->nameFilters().size(), 1);
        emit panel->fileSelected(home->path("out.json"));
        QTRY_COMPARE(home->banners.value(0), QString("Exported 1 preset"));
        delete panel;
        model->deletePreset(model->library().presets.front().id);
        commands.importPresets();
        panel = window.findChild<QFileDialog*>();
        emit panel->fileSelected(home->path("out.json"));
        QTRY_COMPARE(model->library().presets.size(), std::size_t(1));
    }
};

QTEST_MAIN(NetworkEditorsTest)
#include "network_editors_test.moc"
