// The tools beside the network itself: one page each.
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace corvane {

enum class Tool { ping, videohub };

/// In the order in which they are listed.
inline constexpr std::array allTools{Tool::ping, Tool::videohub};

/// The lasting name of a tool in settings and identities.
inline QString toolKey(Tool tool) {
    switch (tool) {
    case Tool::ping:
        return QStringLiteral("ping");
    case Tool::videohub:
        return QStringLiteral("videohub");
    }
    return {};
}

inline std::optional<Tool> toolFrom(const QString& key) {
    for (const Tool tool : allTools)
        if (toolKey(tool) == key) return tool;
    return std::nullopt;
}

} // namespace corvane
