// Creating, re-creating and deleting VLANs, and what the library does along: presets follow a rename, a plan
// becomes a VLAN, a VLAN lost half-way becomes a plan.
#pragma once

#include "app/model/background.h"
#include "app/model/dialogs.h"
#include "core/netconfig/planned_vlan.h"
#include "core/netconfig/vlan_info.h"

#include <QObject>

#include <optional>
#include <string>
#include <vector>

namespace corvane {

class AppModel;
class LibraryEditor;

class VLANChanges : public QObject {
    Q_OBJECT

  public:
    /// All three outlive this object, which is a part of the model.
    VLANChanges(AppModel& model, LibraryEditor& editor, Alerts& alerts, QObject* parent = nullptr);

    bool create(const std::string& name, const std::string& parentDevice, long tag);
    bool edit(const VLANInfo& old, const std::string& name, const std::string& parentDevice, long tag);
    bool remove(const VLANInfo& vlan, bool deletePresets);
    void addPlan(const PlannedVLAN& plan);
    void updatePlan(const PlannedVLAN& plan);
    bool setUp(const Uuid& id, const std::string& parentDevice);

  private:
    struct Change;
    std::vector<std::string> serviceNames() const;
    /// Tells the message, if there is one; whether there was.
    bool refused(const std::optional<std::string>& message);
    bool planRefused(const PlannedVLAN& plan);
    /// The VLAN stands under its new settings: the library and the sidebar's settings follow.
    void followRename(const Change& change);
    /// After a re-creation that failed: looks what is left of the VLAN and saves what would be lost.
    void rescue(const Change& change);

    AppModel& model_;
    LibraryEditor& editor_;
    Alerts& alerts_;
    Background reader_;
};

} // namespace corvane
