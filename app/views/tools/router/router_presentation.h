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
/// Empty unless the last request was refused.
QString refusalText(const Videohub::State& state);
/// "Smart Videohub 12 × 12 · 12 × 12": inputs by outputs.
QString routerDetail(const Videohub::State& state);

std::vector<OutputRow> outputRows(const Videohub::State& state, const RouterRequests& requests);
/// `chosen` outputs, in ascending order.
std::vector<SourceRow> sourceRows(const Videohub::State& state, const RouterRequests& requests,
                                  const std::vector<int>& chosen, std::optional<int> preselected);

} // namespace corvane
