// A global preset as the views show it: in words, as rows, and what stands against applying it.
#pragma once

#include "app/views/widgets/row_model.h"
#include "core/netconfig/global_preset.h"

#include <vector>

namespace corvane {

class AppModel;

/// The row of the service that moves to the top of the service order.
inline const QString internetRowId = QStringLiteral("internet");
/// The row of the ping group that is started.
inline const QString pingRowId = QStringLiteral("ping");

/// "Sets Ethernet to …, then Wi-Fi to DHCP, then moves Wi-Fi to the top of the service order. Starts ping
/// group “Stage”."
QString inWords(const GlobalPreset& global, const AppModel& model);
/// One row a member that is applied, in that order, one for the service that carries internet and
/// one for the ping group.
std::vector<Row> globalRows(const GlobalPreset& global, const AppModel& model);
/// What keeps it from being applied, which members are passed over, and whether its ping group is gone.
std::vector<Notice> globalNotices(const GlobalPreset& global, const AppModel& model);

} // namespace corvane
