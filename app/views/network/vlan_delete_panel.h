// Asks before a VLAN is deleted, and what becomes of its presets.
#pragma once

#include "app/views/widgets/panel.h"
#include "core/netconfig/vlan_info.h"

namespace corvane {

class VLANDeletePanel : public Panel {
    Q_OBJECT

  public:
    VLANDeletePanel(const VLANInfo& vlan, std::size_t presets, QWidget* parent = nullptr);

  signals:
    void decided(bool deletePresets);
};

} // namespace corvane
