#include "app/model/library_editor.h"

#include "app/model/library_records.h"

#include <QUndoCommand>

#include <utility>

namespace corvane {

namespace {

constexpr int undoLimit = 100;

using namespace records;

constexpr const char* presetNoun = "Preset";
constexpr const char* globalNoun = "Global Preset";
constexpr const char* planNoun = "Planned VLAN";

void rename(PresetLibrary& library, const std::string& before, const std::string& after) {
    for (NetworkPreset& preset : library.presets)
        if (preset.service == before) preset.service = after;
    for (GlobalPreset& global : library.globals)
        if (global.internetService == before) global.internetService = after;
}

} // namespace

class LibraryEditor::Step : public QUndoCommand {
  public:
    Step(LibraryEditor& editor, const QString& text, std::shared_ptr<const PresetLibrary> after)
        : QUndoCommand(text), editor_(editor), before_(editor.current_), after_(std::move(after)) {}
    void redo() override { put(after_); }
    void undo() override { put(before_); }

  private:
    void put(const std::shared_ptr<const PresetLibrary>& state) {
        editor_.current_ = state;
        emit editor_.changed();
    }
    LibraryEditor& editor_;
    std::shared_ptr<const PresetLibrary> before_, after_;
};

LibraryEditor::LibraryEditor(PresetLibrary library, QObject* parent)
    : QObject(parent), current_(std::make_shared<const PresetLibrary>(std::move(library))) {
    undoStack_.setUndoLimit(undoLimit);
}

void LibraryEditor::change(const QString& text, PresetLibrary next) {
    if (next == *current_) return;
    undoStack_.push(new Step(*this, text, std::make_shared<const PresetLibrary>(std::move(next))));
}

void LibraryEditor::addPreset(NetworkPreset preset) {
    PresetLibrary next = *current_;
    const QString text = step("Add", presetNoun, preset.name);
    add(next.presets, std::move(preset));
    change(text, std::move(next));
}

void LibraryEditor::updatePreset(const NetworkPreset& preset) {
    PresetLibrary next = *current_;
    if (update(next.presets, preset)) change(step("Edit", presetNoun, preset.name), std::move(next));
}

void LibraryEditor::deletePreset(const Uuid& id) {
    PresetLibrary next = *current_;
    if (const auto gone = take(next.presets, id))
        change(step("Delete", presetNoun, gone->name), std::move(next));
}

Uuid LibraryEditor::duplicatePreset(const Uuid& id) {
    PresetLibrary next = *current_;
    const auto original = find(next.presets, id);
    if (original == next.presets.end()) return {};
    const QString text = step("Duplicate", presetNoun, original->name);
    const Uuid copy = duplicate(next.presets, id)->id;
    change(text, std::move(next));
    return copy;
}

void LibraryEditor::movePreset(const Uuid& id, const std::optional<Uuid>& before) {
    PresetLibrary next = *current_;
    auto moved = take(next.presets, id);
    if (!moved) return;
    const QString text = step("Move", presetNoun, moved->name);
    auto& presets = next.presets;
    auto place = before ? find(presets, *before) : presets.end();
    if (place == presets.end()) {
        // Behind the last one of its service; alone in its service it stays where it was.
        const auto last = std::find_if(presets.rbegin(), presets.rend(), [&](const NetworkPreset& other) {
            return other.service == moved->service;
        });
        if (last == presets.rend()) return;
        place = last.base();
    }
    presets.insert(place, std::move(*moved));
    change(text, std::move(next));
}

void LibraryEditor::addGlobal(GlobalPreset global) {
    PresetLibrary next = *current_;
    const QString text = step("Add", globalNoun, global.name);
    add(next.globals, std::move(global));
    change(text, std::move(next));
}

void LibraryEditor::updateGlobal(const GlobalPreset& global) {
    PresetLibrary next = *current_;
    if (update(next.globals, global)) change(step("Edit", globalNoun, global.name), std::move(next));
}

void LibraryEditor::deleteGlobal(const Uuid& id) {
    PresetLibrary next = *current_;
    if (const auto gone = take(next.globals, id))
        change(step("Delete", globalNoun, gone->name), std::move(next));
}

Uuid LibraryEditor::duplicateGlobal(const Uuid& id) {
    PresetLibrary next = *current_;
    const auto original = find(next.globals, id);
    if (original == next.globals.end()) return {};
    const QString text = step("Duplicate", globalNoun, original->name);
    const Uuid copy = duplicate(next.globals, id)->id;
    change(text, std::move(next));
    return copy;
}

void LibraryEditor::moveGlobal(const Uuid& id, const std::optional<Uuid>& before) {
    PresetLibrary next = *current_;
    auto moved = take(next.globals, id);
    if (!moved) return;
    const QString text = step("Move", globalNoun, moved->name);
    insert(next.globals, std::move(*moved), before);
    change(text, std::move(next));
}

void LibraryEditor::addPlannedVLAN(PlannedVLAN vlan) {
    PresetLibrary next = *current_;
    const QString text = step("Add", planNoun, vlan.name);
    add(next.plannedVLANs, std::move(vlan));
    change(text, std::move(next));
}

void LibraryEditor::updatePlannedVLAN(const PlannedVLAN& vlan, bool presetsFollow) {
    PresetLibrary next = *current_;
    const auto found = find(next.plannedVLANs, vlan.id);
    if (found == next.plannedVLANs.end()) return;
    const std::string before = std::exchange(*found, vlan).name;
    if (presetsFollow) rename(next, before, vlan.name);
    change(step("Edit", planNoun, vlan.name), std::move(next));
}

void LibraryEditor::deletePlannedVLAN(const Uuid& id) {
    PresetLibrary next = *current_;
    if (const auto gone = take(next.plannedVLANs, id))
        change(step("Delete", planNoun, gone->name), std::move(next));
}

void LibraryEditor::setUpPlannedVLAN(const Uuid& id, const std::string& name) {
    PresetLibrary next = *current_;
    const auto gone = take(next.plannedVLANs, id);
    if (!gone) return;
    rename(next, gone->name, name);
    change(step("Set Up", planNoun, name), std::move(next));
}

void LibraryEditor::keepAsPlan(const PlannedVLAN& vlan, const std::string& formerName) {
    PresetLibrary next = *current_;
    rename(next, formerName, vlan.name);
    add(next.plannedVLANs, vlan);
    change(step("Keep as", planNoun, vlan.name), std::move(next));
}

void LibraryEditor::renameService(const std::string& before, const std::string& after) {
    PresetLibrary next = *current_;
    rename(next, before, after);
    change(step("Rename", "Service", before), std::move(next));
}

void LibraryEditor::deletePresetsOf(const std::string& service) {
    PresetLibrary next = *current_;
    std::erase_if(next.presets, [&](const NetworkPreset& preset) { return preset.service == service; });
    change(step("Delete", "Presets of", service), std::move(next));
}

void LibraryEditor::import(const PresetLibrary& other) {
    change(QStringLiteral("Import Presets"), current_->merging(other));
}

} // namespace corvane
