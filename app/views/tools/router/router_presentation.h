// How a router's state reads.
#pragma once

#include "app/clients/connection_status.h"
#include "app/views/tools/router/port_rows.h"

namespace corvane {

class RouterRequests;

/// Stands in place of the lists.
struct RouterMessage {
    QString title, purpose;
};
/// Nothing when there are outputs and inputs to show.
std::optional<RouterMessage> routerMessage(const ConnectionStatus& status, const Videohub::State& state);
/// "Locked by this Mac"; empty for an unlocked output.
QString lockText(Videohub::Lock lock);
/// Empty unless the user's last request was refused, or else wasn't sent or answered.
QString troubleText(const Videohub::State& state, const RouterRequests& requests);
/// "16 × 8 · Smart Videohub": inputs by outputs.
QString routerDetail(const Videohub::State& state);

/// "5 Program", or "3 outputs".
QString chosenText(const std::vector<OutputRow>& chosen);
/// What the chosen outputs show, or with `takes` what they would: "Locked by this Mac · 5 Program ← 3 Cam 3".
/// `source` is that source; null when there are several, or none is known.
QString planText(const std::vector<OutputRow>& chosen, const SourceRow* source, bool takes);

std::vector<OutputRow> outputRows(const Videohub::State& state, const RouterRequests& requests);
/// `chosen` outputs, in ascending order.
std::vector<SourceRow> sourceRows(const Videohub::State& state, const RouterRequests& requests,
                                  const std::vector<int>& chosen, std::optional<int> preselected);

} // namespace corvane
