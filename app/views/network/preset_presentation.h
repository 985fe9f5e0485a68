// A preset as the views show it: its row in a list, and what is to be said about each of its fields.
#pragma once

#include "app/views/widgets/row_model.h"
#include "core/netconfig/network_preset.h"
#include "core/netconfig/service_info.h"

#include <vector>

namespace corvane {

class AppModel;

/// `id` is the preset's.
Row presetRow(const NetworkPreset& preset, const AppModel& model);
QString presetId(const Uuid& id);
/// The name, or the summary of a preset without a name.
QString presetTitle(const NetworkPreset& preset);
/// The summary and, where there are any, the DNS servers.
QString presetDetail(const NetworkPreset& preset);

/// What is to be said under each field of an editor.
struct FieldNotices {
    std::vector<Notice> service, ip, subnet, router, dns;
};
FieldNotices fieldNotices(const NetworkPreset& preset, const std::vector<ServiceInfo>& services);

} // namespace corvane
