// The commands that change the system beyond presets: order, routes, VLANs.
#include "app/views/network/network_commands.h"
#include "app/views/network/planned_vlan_page.h"
#include "app/views/network/vlan_delete_panel.h"
#include "app/views/network/vlan_editor_sheet.h"
#include "app/views/network/vlan_presentation.h"
#include "app/views/widgets/display_text.h"

namespace corvane {

void NetworkCommands::setCurrentDraft(DraftBar* draft) {
    if (draft == draft_) return;
    if (draft_) draft_->disconnect(this);
    draft_ = draft;
    if (draft) connect(draft, &DraftBar::stateChanged, this, &NetworkCommands::currentDraftChanged);
    emit currentDraftChanged();
}

bool NetworkCommands::applyServiceOrder(const std::vector<std::string>& order) {
    return free() && model_.applyServiceOrder(order);
}

bool NetworkCommands::applyRoutes(const std::vector<StaticRoute>& routes, const std::string& service) {
    return free() && model_.applyRoutes(routes, service);
}

void NetworkCommands::newVLAN(const std::optional<std::string>& name) {
    const ServiceInfo* service = name ? model_.service(*name) : nullptr;
    const bool carries = service && model_.vlanSupport(*name) == AppModel::VLANSupport::supported;
    auto* sheet = new VLANEditorSheet(
        model_, VLANEditorSheet::Mode::create(carries ? service->device : std::nullopt), window_);
    connect(sheet, &VLANEditorSheet::createAsked, this,
            [this](const std::string& vlan, const std::string& parent, long tag) {
                soon([this, vlan, parent, tag] {
                    if (free()) model_.createVLAN(vlan, parent, tag);
                });
            });
    connect(sheet, &VLANEditorSheet::planAsked, this, [this](const PlannedVLAN& plan) {
        model_.addPlannedVLAN(plan);
        if (model_.plannedVLAN(plan.id)) model_.select(SidebarItem::plannedVLAN(plan.id));
    });
    openSheet(sheet);
}

void NetworkCommands::editVLAN(const std::string& service) {
    const VLANInfo* vlan = model_.vlan(service);
    if (!vlan) return;
    auto* sheet = new VLANEditorSheet(model_, VLANEditorSheet::Mode::edit(*vlan), window_);
    connect(sheet, &VLANEditorSheet::editAsked, this,
            [this](const VLANInfo& old, const std::string& name, const std::string& parent, long tag) {
                soon([this, old, name, parent, tag] {
                    if (free()) model_.editVLAN(old, name, parent, tag);
                });
            });
    openSheet(sheet);
}

void NetworkCommands::deleteVLAN(const std::string& service) {
    const VLANInfo* found = model_.vlan(service);
    if (!found) return;
    const VLANInfo vlan = *found;
    auto* panel = new VLANDeletePanel(vlan, model_.presetsOf(service).size(), window_);
    connect(panel, &VLANDeletePanel::decided, this, [this, vlan](bool deletePresets) {
        soon([this, vlan, deletePresets] {
            if (!free() || !model_.deleteVLAN(vlan, deletePresets)) return;
            // Its page would only say that the service is gone: on to the adapter that carried it.
            if (model_.selection() != SidebarItem::service(vlan.name)) return;
            const auto parent = serviceOnDevice(model_, vlan.parentDevice);
            model_.select(parent ? std::optional(SidebarItem::service(*parent)) : model_.defaultService());
        });
    });
    openSheet(panel);
}

void NetworkCommands::setPlanPage(PlannedVLANPage* page) {
    if (page == planPage_) return;
    if (planPage_) planPage_->disconnect(this);
    planPage_ = page;
    if (page) connect(page, &PlannedVLANPage::setUpRefusalChanged, this, &NetworkCommands::planPageChanged);
    emit planPageChanged();
}

QString NetworkCommands::setUpRefusal(const Uuid& id) const {
    const PlannedVLAN* plan = model_.plannedVLAN(id);
    if (!plan) return tr("This planned VLAN no longer exists.");
    if (planPage_ && planPage_->plan() == id) return planPage_->setUpRefusal();
    if (const auto message = planMessage(model_, *plan, QString::number(plan->tag))) return *message;
    if (!plan->parentDevice) return tr("Choose an adapter first.");
    if (const auto reason = adapterRefusal(model_, *plan->parentDevice)) return *reason;
    if (model_.busy()) return tr("Another change is being applied.");
    return {};
}

void NetworkCommands::setUpPlannedVLAN(const Uuid& id) {
    if (!free()) return;
    if (planPage_ && planPage_->plan() == id) planPage_->commit();
    const QString refusal = setUpRefusal(id);
    if (!refusal.isEmpty()) return model_.flashError(refusal);
    const std::string parent = *model_.plannedVLAN(id)->parentDevice;
    model_.setUpPlannedVLAN(id, parent);
}

void NetworkCommands::deletePlannedVLAN(const Uuid& id) {
    const PlannedVLAN* plan = model_.plannedVLAN(id);
    if (!plan) return;
    const QString name = inQuotes(plan->name);
    const bool shown = model_.selection() == SidebarItem::plannedVLAN(id);
    model_.deletePlannedVLAN(id);
    if (shown) model_.select(model_.defaultService());
    model_.flash(tr("Deleted %1. Nothing on the Mac changes — this VLAN was never created.").arg(name));
}

} // namespace corvane
