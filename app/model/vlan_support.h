// Whether an adapter can carry VLANs.
#pragma once

#include "app/model/network_reader.h"

#include <QString>

namespace corvane {

enum class VLANSupport { supported, adapterMissing, unsupported, notApplicable };

VLANSupport vlanSupportOf(const std::string& service, const NetworkSnapshot& network);
/// Why no VLAN can be added, for adapterMissing and unsupported; else empty.
QString vlanSupportSentence(VLANSupport support);

} // namespace corvane
