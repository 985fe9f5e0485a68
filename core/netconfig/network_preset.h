// A saved addressing set for one network service.
#pragma once

#include "core/netconfig/current_config.h"
#include "core/support/json.h"
#include "core/support/uuid.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct NetworkPreset {
    /// Stored as "dhcp" and "manual".
    enum class Mode { dhcp, manual };

    Uuid id;
    std::string name;
    std::string service;
    Mode mode = Mode::dhcp;
    /// ip, subnet and router count only in manual mode; subnet is a dotted mask, "24" or "/24".
    std::string ip;
    std::string subnet;
    std::string router;
    /// Both modes, in order.
    std::vector<std::string> dns;
    /// Keys of a newer version, written back as they were read.
    JsonValue::Object unknown;

    /// What puts a service back to this configuration, named after it and under a fresh id. Without a known
    /// mask 255.255.255.0 is taken.
    static NetworkPreset fromConfig(const std::string& service, const CurrentConfig& config);

    /// What keeps the preset from being applied, in a fixed order, each an English sentence.
    std::vector<std::string> errors() const;
    bool isValid() const { return errors().empty(); }
    /// What is odd but doesn't block applying.
    std::vector<std::string> warnings() const;
    std::optional<std::string> normalizedSubnet() const;
    /// "DHCP", or e.g. "192.168.10.20/24 · gw 192.168.10.1".
    std::string summary() const;
    /// Whether the service's current configuration already equals this preset.
    bool matches(const std::optional<CurrentConfig>& config) const;
    /// One sentence a field that keeps the preset from matching; empty exactly when it matches.
    std::vector<std::string> differences(const std::optional<CurrentConfig>& config) const;

    /// All eight keys are required; nothing unless each is there and of its kind.
    static std::optional<NetworkPreset> fromJson(const JsonValue& json);
    JsonValue toJson() const;

    friend bool operator==(const NetworkPreset&, const NetworkPreset&) = default;
};

} // namespace corvane
