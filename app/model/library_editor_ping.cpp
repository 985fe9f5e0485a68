// The edits of ping groups and their hosts.
#include "app/model/library_editor.h"
#include "app/model/library_records.h"

namespace corvane {

using namespace records;

namespace {

constexpr const char* groupNoun = "Ping Group";
constexpr const char* hostNoun = "Host";

/// What a host is called where it has no name of its own.
const std::string& shownName(const PingTarget& target) {
    return target.name.empty() ? target.host : target.name;
}

} // namespace

void LibraryEditor::addPingGroup(PingGroup group) {
    PresetLibrary next = *current_;
    const QString text = step("Add", groupNoun, group.name);
    add(next.pingGroups, std::move(group));
    change(text, std::move(next));
}

void LibraryEditor::renamePingGroup(const Uuid& id, const std::string& name) {
    PresetLibrary next = *current_;
    const auto group = find(next.pingGroups, id);
    if (group == next.pingGroups.end()) return;
    group->name = name;
    change(step("Rename", groupNoun, name), std::move(next));
}

void LibraryEditor::deletePingGroup(const Uuid& id) {
    PresetLibrary next = *current_;
    if (const auto gone = take(next.pingGroups, id))
        change(step("Delete", groupNoun, gone->name), std::move(next));
}

Uuid LibraryEditor::duplicatePingGroup(const Uuid& id) {
    PresetLibrary next = *current_;
    const auto* copy = duplicate(next.pingGroups, id);
    if (!copy) return {};
    const Uuid copied = copy->id;
    const auto group = find(next.pingGroups, copied);
    for (PingTarget& target : group->targets) target.id = Uuid::generate();
    const QString text = step("Duplicate", groupNoun, find(next.pingGroups, id)->name);
    change(text, std::move(next));
    return copied;
}

void LibraryEditor::movePingGroup(const Uuid& id, const std::optional<Uuid>& before) {
    PresetLibrary next = *current_;
    auto moved = take(next.pingGroups, id);
    if (!moved) return;
    const QString text = step("Move", groupNoun, moved->name);
    insert(next.pingGroups, std::move(*moved), before);
    change(text, std::move(next));
}

void LibraryEditor::addPingTargets(const Uuid& id, std::vector<PingTarget> targets) {
    PresetLibrary next = *current_;
    const auto group = find(next.pingGroups, id);
    if (group == next.pingGroups.end() || targets.empty()) return;
    const QString text = targets.size() == 1 ? step("Add", hostNoun, shownName(targets.front()))
                                             : QStringLiteral("Add %1 Hosts").arg(targets.size());
    for (PingTarget& target : targets) add(group->targets, std::move(target));
    change(text, std::move(next));
}

void LibraryEditor::updatePingTarget(const Uuid& id, const PingTarget& target) {
    PresetLibrary next = *current_;
    const auto group = find(next.pingGroups, id);
    if (group != next.pingGroups.end() && update(group->targets, target))
        change(step("Edit", hostNoun, shownName(target)), std::move(next));
}

void LibraryEditor::deletePingTarget(const Uuid& id, const Uuid& target) {
    PresetLibrary next = *current_;
    const auto group = find(next.pingGroups, id);
    if (group == next.pingGroups.end()) return;
    if (const auto gone = take(group->targets, target))
        change(step("Delete", hostNoun, shownName(*gone)), std::move(next));
}

void LibraryEditor::movePingTarget(const Uuid& id, const Uuid& target, const std::optional<Uuid>& before) {
    PresetLibrary next = *current_;
    const auto group = find(next.pingGroups, id);
    if (group == next.pingGroups.end()) return;
    auto moved = take(group->targets, target);
    if (!moved) return;
    const QString text = step("Move", hostNoun, shownName(*moved));
    insert(group->targets, std::move(*moved), before);
    change(text, std::move(next));
}

} // namespace corvane
