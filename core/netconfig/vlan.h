// Tagged VLANs (IEEE 802.1Q) on wired adapters: the tool's listings read, a new or changed VLAN checked, the
// commands built.
#pragma once

#include "core/netconfig/network_setup.h"
#include "core/netconfig/planned_vlan.h"
#include "core/netconfig/vlan_info.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::VLAN {

/// 0 and 4095 are reserved by IEEE 802.1Q.
struct TagRange {
    long min;
    long max;
    constexpr bool contains(long tag) const { return tag >= min && tag <= max; }
};
inline constexpr TagRange tagRange{1, 4094};

/// A whole decimal number within tagRange; blanks around it are allowed.
std::optional<long> parseTag(std::string_view text);

/// From -listVLANs. Blocks that miss a key, or whose tag is no number, are skipped.
std::vector<VLANInfo> parseList(std::string_view output);
/// From -listdevicesthatsupportVLAN: the devices' names, e.g. "en5".
std::set<std::string> parseCapableDevices(std::string_view output);

/// Why this VLAN can't be created, an English sentence; nothing when it can. Without a parent the tag isn't
/// compared with others.
std::optional<std::string> validate(const std::string& name, std::string_view tagText,
                                    const std::optional<std::string>& parent,
                                    const std::vector<VLANInfo>& vlans,
                                    const std::vector<std::string>& services);
/// The same for a change of `old`, which isn't compared with itself.
std::optional<std::string> validateEdit(const VLANInfo& old, const std::string& name,
                                        std::string_view tagText, const std::optional<std::string>& parent,
                                        const std::vector<VLANInfo>& vlans,
                                        const std::vector<std::string>& services);
/// The same for a planned VLAN; `plans` may hold the plan itself, which is told by its id.
std::optional<std::string> validatePlan(const Uuid& plan, const std::string& name, std::string_view tagText,
                                        const std::optional<std::string>& parent,
                                        const std::vector<VLANInfo>& vlans,
                                        const std::vector<std::string>& services,
                                        const std::vector<PlannedVLAN>& plans);

std::vector<NetworkSetup::Command> createCommands(const std::string& name, const std::string& parent,
                                                  long tag);
std::vector<NetworkSetup::Command> deleteCommands(const VLANInfo& vlan);
/// The system can't edit a VLAN in place: the old one is deleted, the new one created and, when the current
/// configuration is known, the service's addressing put back.
std::vector<NetworkSetup::Command> recreateCommands(const VLANInfo& old, const std::string& name,
                                                    const std::string& parent, long tag,
                                                    const std::optional<CurrentConfig>& config);

} // namespace corvane::VLAN
