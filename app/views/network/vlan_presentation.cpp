#include "app/views/network/vlan_presentation.h"

#include "app/model/app_model.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/symbols.h"
#include "core/netconfig/vlan.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QSignalBlocker>

namespace corvane {

std::optional<std::string> serviceOnDevice(const AppModel& model, const std::string& device) {
    for (const ServiceInfo& service : model.services()) {
        if (service.device == device) return service.name;
    }
    return std::nullopt;
}

QString adapterName(const AppModel& model, const std::string& device) {
    return oneLine(serviceOnDevice(model, device).value_or(device));
}

std::vector<std::string> serviceNames(const AppModel& model) {
    std::vector<std::string> names;
    for (const ServiceInfo& service : model.services()) names.push_back(service.name);
    return names;
}

void fillAdapters(QComboBox& adapters, const AppModel& model, const std::optional<std::string>& chosen) {
    if (adapters.view()->isVisible()) return; // nothing moves under an open list
    const QSignalBlocker blocker(adapters);
    adapters.clear();
    const auto add = [&](const std::string& device, const QString& after) {
        const auto name = serviceOnDevice(model, device);
        const ServiceInfo* service = name ? model.service(*name) : nullptr;
        QString text = oneLine(device);
        if (name) text = oneLine(*name) + QStringLiteral(" · ") + text;
        adapters.addItem(
            symbols::stateIcon(service ? service->state().kind() : LinkState::Kind::adapterMissing),
            text + after, QString::fromStdString(device));
    };
    for (const std::string& device : model.vlanCapable()) add(device, {});
    const QString own = QString::fromStdString(chosen.value_or(""));
    if (!own.isEmpty() && adapters.findData(own) < 0) {
        add(*chosen, QStringLiteral(" (can’t carry VLANs now)"));
    }
    adapters.setPlaceholderText(adapters.count() > 0 ? QStringLiteral("Choose an adapter")
                                                     : QStringLiteral("No adapter here can carry VLANs now"));
    adapters.setCurrentIndex(own.isEmpty() ? -1 : adapters.findData(own));
}

std::optional<std::string> chosenAdapter(const QComboBox& adapters) {
    const QString device = adapters.currentData().toString();
    return device.isEmpty() ? std::nullopt : std::optional(device.toStdString());
}

std::optional<QString> adapterRefusal(const AppModel& model, const std::string& device) {
    if (model.vlanCapable().contains(device)) return std::nullopt;
    const auto name = serviceOnDevice(model, device);
    const auto support = name ? model.vlanSupport(*name) : AppModel::VLANSupport::adapterMissing;
    const QString sentence = vlanSupportSentence(support);
    return sentence.isEmpty() ? vlanSupportSentence(AppModel::VLANSupport::unsupported) : sentence;
}

std::optional<QString> planMessage(const AppModel& model, const PlannedVLAN& plan, const QString& tag) {
    const auto message = VLAN::validatePlan(plan.id, plan.name, tag.toStdString(), plan.parentDevice,
                                            model.vlans(), serviceNames(model), model.library().plannedVLANs);
    return message ? std::optional(oneLine(*message)) : std::nullopt;
}

} // namespace corvane
