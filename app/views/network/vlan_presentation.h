// What the pages and sheets about VLANs say and offer.
#pragma once

#include "core/netconfig/planned_vlan.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

class QComboBox;

namespace corvane {

class AppModel;

namespace vlanTexts {
inline const QString creates =
    QStringLiteral("The VLAN appears as its own interface (DHCP to start). The switch port must be a trunk "
                   "carrying this tag.");
inline const QString recreates =
    QStringLiteral("macOS can't edit a VLAN in place, so it's recreated with the new settings and its "
                   "current IP settings are restored. Its presets follow a rename.");
inline const QString keepAsPlan = QStringLiteral("Keep this VLAN as a plan and create it on the Mac later");
inline const QString setUp = QStringLiteral("Set this VLAN up on the Mac now");
inline const QString presetsBefore = QStringLiteral("Add presets now — they'll apply once the VLAN exists.");
inline const QString nothingChanges =
    QStringLiteral("Nothing on the Mac changes — this VLAN was never created.");
} // namespace vlanTexts

std::optional<std::string> serviceOnDevice(const AppModel& model, const std::string& device);
/// "Ethernet", or the device's own name where no service stands on it.
QString adapterName(const AppModel& model, const std::string& device);
std::vector<std::string> serviceNames(const AppModel& model);
/// Fills in the adapters that can carry VLANs, and `chosen` even when it isn't one of them now.
void fillAdapters(QComboBox& adapters, const AppModel& model, const std::optional<std::string>& chosen);
/// The device that is chosen in such a box.
std::optional<std::string> chosenAdapter(const QComboBox& adapters);
/// Why this adapter can't carry a VLAN now.
std::optional<QString> adapterRefusal(const AppModel& model, const std::string& device);
/// What is wrong with a plan whose tag reads like this.
std::optional<QString> planMessage(const AppModel& model, const PlannedVLAN& plan, const QString& tag);

} // namespace corvane
