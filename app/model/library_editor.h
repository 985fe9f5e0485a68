// The library and its edits, each one step that can be undone.
#pragma once

#include "core/netconfig/preset_library.h"

#include <QObject>
#include <QUndoStack>

#include <memory>

namespace corvane {

class LibraryEditor : public QObject {
    Q_OBJECT

  public:
    explicit LibraryEditor(PresetLibrary library, QObject* parent = nullptr);

    /// Every state is kept whole and never changed again, so that another thread may read it.
    const std::shared_ptr<const PresetLibrary>& snapshot() const { return current_; }
    const PresetLibrary& library() const { return *current_; }
    QUndoStack& undoStack() { return undoStack_; }

    /// A nil id, or one that is taken, is replaced by a fresh one.
    void addPreset(NetworkPreset preset);
    void updatePreset(const NetworkPreset& preset);
    void deletePreset(const Uuid& id);
    /// The copy's id; nil when there is no such preset. The copy stands behind the original.
    Uuid duplicatePreset(const Uuid& id);
    void movePreset(const Uuid& id, const std::optional<Uuid>& before);
    void addGlobal(GlobalPreset global);
    void updateGlobal(const GlobalPreset& global);
    void deleteGlobal(const Uuid& id);
    Uuid duplicateGlobal(const Uuid& id);
    void moveGlobal(const Uuid& id, const std::optional<Uuid>& before);
    void addPingGroup(PingGroup group);
    /// Its name only; the hosts stay as they are.
    void renamePingGroup(const Uuid& id, const std::string& name);
    void deletePingGroup(const Uuid& id);
    Uuid duplicatePingGroup(const Uuid& id);
    void movePingGroup(const Uuid& id, const std::optional<Uuid>& before);
    /// All of them in one step, at the end of the group.
    void addPingTargets(const Uuid& group, std::vector<PingTarget> targets);
    void updatePingTarget(const Uuid& group, const PingTarget& target);
    void deletePingTarget(const Uuid& group, const Uuid& id);
    void movePingTarget(const Uuid& group, const Uuid& id, const std::optional<Uuid>& before);
    void addPlannedVLAN(PlannedVLAN vlan);
    /// With `presetsFollow` its presets go along with a rename.
    void updatePlannedVLAN(const PlannedVLAN& vlan, bool presetsFollow);
    void deletePlannedVLAN(const Uuid& id);
    /// The VLAN exists now, under that name: the plan goes.
    void setUpPlannedVLAN(const Uuid& id, const std::string& name);
    /// A VLAN of the machine is gone: it becomes a plan, and the presets under its former name follow.
    void keepAsPlan(const PlannedVLAN& vlan, const std::string& formerName);
    /// What names the service names it by its new name.
    void renameService(const std::string& before, const std::string& after);
    void deletePresetsOf(const std::string& service);
    void import(const PresetLibrary& other);

  signals:
    void changed();

  private:
    class Step;
    /// One step; a library that equals the current one makes none.
    void change(const QString& text, PresetLibrary next);

    std::shared_ptr<const PresetLibrary> current_;
    QUndoStack undoStack_;
};

} // namespace corvane
