// Creating, re-creating and deleting VLANs, and what the library does along: presets follow a rename, a plan
// becomes a VLAN, a VLAN lost half-way becomes a plan.
#pragma once

#include "app/model/background.h"
#include "app/model/dialogs.h"
#include "app/model/vlan_reading.h"
#include "core/netconfig/planned_vlan.h"
#include "core/netconfig/vlan_info.h"

#include <QObject>

#include <optional>
#include <string>
#include <vector>

namespace corvane {

class AppModel;
class LibraryEditor;
class PrivilegedFlow;

class VLANChanges : public QObject {
    Q_OBJECT

  public:
    /// A part of the model, whose other parts outlive it.
    VLANChanges(AppModel& model, LibraryEditor& editor, PrivilegedFlow& flow, Alerts& alerts,
                QObject* parent = nullptr);

    bool create(const std::string& name, const std::string& parentDevice, long tag);
    bool edit(const VLANInfo& old, const std::string& name, const std::string& parentDevice, long tag);
    bool remove(const VLANInfo& vlan, bool deletePresets);
    void addPlan(const PlannedVLAN& plan);
    void updatePlan(const PlannedVLAN& plan);
    bool setUp(const Uuid& id, const std::string& parentDevice);

  signals:
    /// The service is another one now, or none: what was read of it counts no more.
    void serviceReplaced(const std::string& name);

  private:
    struct Recreation {
        VLANInfo old;
        std::string name, parentDevice;
        long tag = 0;
        /// Before the change.
        VLANSettings settings;
    };
    std::vector<std::string> serviceNames() const;
    /// Tells why nothing runs, if there is a reason.
    bool refused(const std::string& name, const std::optional<std::string>& message);
    bool refusedAt(const std::string& name, const std::string& parentDevice,
                   const std::optional<std::string>& message);
    bool planRefused(const PlannedVLAN& plan);
    bool runCreation(const std::string& name, const std::string& parentDevice, long tag);
    /// Asks the tools what the change has to put back; false, and said so, when they don't tell.
    bool readSettings(Recreation& change);
    /// The VLAN stands under its new name: presets and the sidebar's settings follow.
    void followRename(const Recreation& change);
    /// After a re-creation that failed: looks what is left of the VLAN and keeps what would be lost.
    void rescue(const Recreation& change);

    AppModel& model_;
    LibraryEditor& editor_;
    Alerts& alerts_;
    /// Whether the commands of the last run were started and failed, so that some of them may have run.
    bool scriptFailed_ = false;
    /// An edit is asking the tools.
    bool reading_ = false;
    Background reader_;
};

} // namespace corvane
