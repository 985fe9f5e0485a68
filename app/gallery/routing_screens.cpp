// The screens of the service order, static routes and VLANs.
#include "app/gallery/screens.h"

#include "app/views/network/network_commands.h"
#include "app/views/network/route_table.h"
#include "app/views/widgets/row_list.h"
#include "app/views/widgets/segmented_control.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>

namespace corvane::gallery {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize small(900, 600);

void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
           const QString& text = {}) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QApplication::sendEvent(&widget, &event);
    }
    Stage::pass(20);
}

void type(QDialog& sheet, int field, const QString& text) {
    auto* edit = sheet.findChildren<QLineEdit*>().at(field);
    edit->selectAll();
    for (const QChar c : text) press(*edit, 0, Qt::NoModifier, c);
}

/// In the order in which the sheet makes them.
enum Field { tagField, nameField };

RowList& orderRows(Stage& stage) {
    return *stage.window().findChild<RowList*>(u"serviceOrder"_s);
}

void moveUp(Stage& stage, const char* service, int steps) {
    auto& rows = orderRows(stage);
    rows.setFocus();
    rows.setCurrentId(QString::fromLatin1(service));
    for (int i = 0; i < steps; ++i) press(rows, Qt::Key_Up, Qt::AltModifier);
}

QPixmap order(Stage& stage, QSize size = {1080, 720}) {
    stage.open(SidebarItem::serviceOrder(), size);
    return stage.picture();
}

QPixmap orderDraft(Stage& stage) {
    stage.open(SidebarItem::serviceOrder());
    moveUp(stage, "Ethernet", 1);
    return stage.picture();
}

QPixmap orderOvertaken(Stage& stage) {
    stage.open(SidebarItem::serviceOrder());
    moveUp(stage, "Ethernet", 1);
    stage.network([](simulated::State& state) { std::swap(state.services.front(), state.services.back()); });
    stage.settle();
    return stage.picture();
}

void openRoutes(Stage& stage, const char* service, QSize size = {1080, 720}) {
    stage.open(SidebarItem::service(service), size);
    auto* section = stage.window().findChild<SegmentedControl*>();
    section->setFocus();
    press(*section, Qt::Key_Right);
}

void withRoutes(Stage& stage) {
    stage.network([](simulated::State& state) {
        for (auto& service : state.services) {
            if (service.name != "Ethernet") continue;
            service.routes = {{"10.20.0.0", "255.255.0.0", "10.0.10.254"},
                              {"192.168.40.0", "255.255.255.0", "10.0.10.254"},
                              {"2.0.0.0", "255.0.0.0", "10.0.10.253"}};
        }
    });
}

QPixmap routes(Stage& stage, QSize size = {1080, 720}) {
    withRoutes(stage);
    openRoutes(stage, "Ethernet", size);
    stage.settle();
    return stage.picture();
}

QPixmap routesLoading(Stage& stage) {
    stage.open(SidebarItem::service("Ethernet"));
    stage.network([](simulated::State& state) { state.delayScale = 20; });
    auto* section = stage.window().findChild<SegmentedControl*>();
    press(*section, Qt::Key_Right);
    const QPixmap picture = stage.picture();
    stage.network([](simulated::State& state) { state.delayScale = 0; });
    return picture;
}

QPixmap routesDraft(Stage& stage, const std::vector<StaticRoute>& typed, bool editing = false) {
    withRoutes(stage);
    openRoutes(stage, "Ethernet");
    stage.settle();
    auto& table = *stage.window().findChild<RouteTable*>();
    auto& model = table.routes();
    for (const auto& route : typed) {
        model.add();
        const int row = model.rowCount() - 1;
        model.setData(model.index(row, 0), QString::fromStdString(route.destination), Qt::EditRole);
        model.setData(model.index(row, 1), QString::fromStdString(route.mask), Qt::EditRole);
        model.setData(model.index(row, 2), QString::fromStdString(route.gateway), Qt::EditRole);
    }
    model.endEntry();
    table.setFocus();
    if (editing)
        table.addRow();
    else
        table.setCurrentIndex(model.index(0, 0));
    Stage::pass(100);
    return stage.picture();
}

void withVLAN(simulated::State& state) {
    simulated::Device carried = state.devices["en5"];
    carried.hardwarePort = "Lights";
    carried.parent = "en5";
    carried.lease = simulated::Lease{"10.100.30.50", "255.255.255.0", "10.100.30.1"};
    state.devices["vlan0"] = carried;
    simulated::Service service;
    service.name = "Lights";
    service.device = "vlan0";
    service.since = carried.upSince;
    state.services.push_back(service);
    state.vlans.push_back({"Lights", "en5", "vlan0", 30});
}

QPixmap vlanPage(Stage& stage, QSize size = {1080, 720}) {
    stage.network(withVLAN);
    stage.open(SidebarItem::service("Lights"), size);
    return stage.picture();
}

QPixmap newVLAN(Stage& stage, const std::function<void(QDialog&)>& use) {
    stage.network(withVLAN);
    stage.open(SidebarItem::service("Ethernet"));
    return stage.sheet([](NetworkCommands& commands) { commands.newVLAN("Ethernet"); }, use);
}

QPixmap editVLAN(Stage& stage) {
    stage.network(withVLAN);
    stage.open(SidebarItem::service("Lights"));
    return stage.sheet([](NetworkCommands& commands) { commands.editVLAN("Lights"); },
                       [](QDialog& sheet) { type(sheet, tagField, u"31"_s); });
}

QPixmap deleteVLAN(Stage& stage, int presets) {
    stage.network(withVLAN);
    stage.open(SidebarItem::service("Lights"));
    for (int i = 0; i < presets; ++i) stage.model().addPreset(stage.model().presetFromCurrent("Lights"));
    return stage.sheet([](NetworkCommands& commands) { commands.deleteVLAN("Lights"); });
}

QPixmap plan(Stage& stage, const std::function<void(PlannedVLAN&)>& change = {}, QSize size = {1080, 720}) {
    PresetLibrary library = exampleLibrary();
    if (change) change(library.plannedVLANs.front());
    stage.libraryFile(library.encoded());
    stage.start(size);
    stage.model().select(SidebarItem::plannedVLAN(library.plannedVLANs.front().id));
    stage.settle();
    return stage.picture();
}

} // namespace

std::vector<Screen> routingScreens() {
    const auto typed = [](const char* destination, const char* mask, const char* gateway) {
        return StaticRoute{Uuid::generate(), destination, mask, gateway};
    };
    return {
        {"order", [](Stage& stage) { return order(stage); }},
        {"order-small", [](Stage& stage) { return order(stage, small); }},
        {"order-not-applied", orderDraft},
        {"order-changed-meanwhile", orderOvertaken},
        {"routes", [](Stage& stage) { return routes(stage); }},
        {"routes-small", [](Stage& stage) { return routes(stage, small); }},
        {"routes-empty",
         [](Stage& stage) {
             openRoutes(stage, "Ethernet");
             stage.settle();
             return stage.picture();
         }},
        {"routes-reading", routesLoading},
        {"routes-not-applied",
         [typed](Stage& stage) { return routesDraft(stage, {typed("172.16.5.0", "/12", "10.0.10.254")}); }},
        {"routes-wrong",
         [typed](Stage& stage) {
             return routesDraft(stage, {typed("172.16.300.0", "255.0.255.0", "router")});
         }},
        {"routes-typing", [](Stage& stage) { return routesDraft(stage, {}, true); }},
        {"vlan-page", [](Stage& stage) { return vlanPage(stage); }},
        {"vlan-page-small", [](Stage& stage) { return vlanPage(stage, small); }},
        {"vlan-new", [](Stage& stage) { return newVLAN(stage, {}); }},
        {"vlan-new-filled",
         [](Stage& stage) { return newVLAN(stage, [](QDialog& sheet) { type(sheet, tagField, u"20"_s); }); }},
        {"vlan-new-wrong",
         [](Stage& stage) { return newVLAN(stage, [](QDialog& sheet) { type(sheet, tagField, u"30"_s); }); }},
        {"vlan-new-as-plan",
         [](Stage& stage) {
             return newVLAN(stage, [](QDialog& sheet) {
                 type(sheet, tagField, u"25"_s);
                 sheet.findChild<QCheckBox*>()->setChecked(true);
             });
         }},
        {"vlan-edit", editVLAN},
        {"vlan-delete", [](Stage& stage) { return deleteVLAN(stage, 2); }},
        {"vlan-delete-without-presets", [](Stage& stage) { return deleteVLAN(stage, 0); }},
        {"vlan-planned", [](Stage& stage) { return plan(stage); }},
        {"vlan-planned-small", [](Stage& stage) { return plan(stage, {}, small); }},
        {"vlan-planned-no-adapter",
         [](Stage& stage) { return plan(stage, [](PlannedVLAN& vlan) { vlan.parentDevice.reset(); }); }},
        {"vlan-planned-adapter-missing",
         [](Stage& stage) { return plan(stage, [](PlannedVLAN& vlan) { vlan.parentDevice = "en7"; }); }},
        {"vlan-planned-wrong",
         [](Stage& stage) { return plan(stage, [](PlannedVLAN& vlan) { vlan.name = "Wi-Fi"; }); }},
    };
}

} // namespace corvane::gallery
