// A global preset as the views show it: in words, as rows, and what stands against applying it.
#pragma once

#include "app/views/widgets/row_model.h"
#include "core/netconfig/global_preset.h"

#include <vector>

namespace corvane {

class AppModel;

/// The row of the service that moves to the top of the service order.
inline const QString internetRowId = QStringLiteral("internet");

/// "Sets Ethernet to …, then Wi-Fi to DHCP, then moves Wi-Fi to the top of the service order."
QString inWords(const GlobalPreset& global, const AppModel& model);
/// One row a member that is applied, in that order, and one for the service that carries internet.
std::vector<Row> globalRows(const GlobalPreset& global, const AppModel& model);
/// What keeps it from being applied, and which members are passed over.
std::vector<Notice> globalNotices(const GlobalPreset& global, const AppModel& model);

} // namespace corvane
