#include "app/views/window/sidebar_model.h"

#include "app/views/widgets/display_text.h"

namespace corvane {
namespace {

/// A row's index carries its group's identity plus one; a heading's carries none.
constexpr quintptr headingId = 0;
quintptr rowId(SidebarGroup::Id group) {
    return static_cast<quintptr>(group) + 1;
}

} // namespace

RowChanges SidebarModel::changesUnder(const QModelIndex& parent) {
    RowChanges changes;
    changes.beginInsert = [this, parent](int row) { beginInsertRows(parent, row, row); };
    changes.endInsert = [this] { endInsertRows(); };
    changes.beginRemove = [this, parent](int row) { beginRemoveRows(parent, row, row); };
    changes.endRemove = [this] { endRemoveRows(); };
    changes.beginMove = [this, parent](int from, int to) { beginMoveRows(parent, from, from, parent, to); };
    changes.endMove = [this] { endMoveRows(); };
    changes.changed = [this, parent](int row) {
        emit dataChanged(index(row, 0, parent), index(row, 0, parent));
    };
    return changes;
}

void SidebarModel::setGroups(std::vector<SidebarGroup> groups) {
    // First the headings come and go, with what they hold; then the rows of each group that was there before.
    auto shells = groups;
    for (auto& shell : shells) {
        for (auto& group : groups_) {
            if (group.key == shell.key) shell.rows = group.rows;
        }
    }
    syncRows(groups_, std::move(shells), changesUnder({}));
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        syncRows(groups_[i].rows, std::move(groups[i].rows), changesUnder(index(static_cast<int>(i), 0)));
    }
}

void SidebarModel::setRows(SidebarGroup::Id group, std::vector<SidebarRow> rows) {
    const QModelIndex heading = indexOf(group);
    if (!heading.isValid()) return;
    syncRows(groups_[static_cast<std::size_t>(heading.row())].rows, std::move(rows), changesUnder(heading));
}

const SidebarRow* SidebarModel::row(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == headingId) return nullptr;
    const auto* group = groupOf(index);
    const auto at = static_cast<std::size_t>(index.row());
    return group && at < group->rows.size() ? &group->rows[at] : nullptr;
}

const SidebarGroup* SidebarModel::heading(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() != headingId) return nullptr;
    const auto at = static_cast<std::size_t>(index.row());
    return at < groups_.size() ? &groups_[at] : nullptr;
}

const SidebarGroup* SidebarModel::groupOf(const QModelIndex& index) const {
    if (!index.isValid()) return nullptr;
    return heading(index.internalId() == headingId ? index : parent(index));
}

QModelIndex SidebarModel::indexOf(const SidebarItem& item) const {
    for (const auto& group : groups_) {
        for (std::size_t i = 0; i < group.rows.size(); ++i) {
            if (group.rows[i].item == item) return createIndex(static_cast<int>(i), 0, rowId(group.key));
        }
    }
    return {};
}

QModelIndex SidebarModel::indexOf(SidebarGroup::Id id) const {
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        if (groups_[i].key == id) return createIndex(static_cast<int>(i), 0, headingId);
    }
    return {};
}

QModelIndex SidebarModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0 || row >= rowCount(parent)) return {};
    const auto* group = heading(parent);
    return createIndex(row, 0, group ? rowId(group->key) : headingId);
}

QModelIndex SidebarModel::parent(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == headingId) return {};
    return indexOf(static_cast<SidebarGroup::Id>(index.internalId() - 1));
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return static_cast<int>(groups_.size());
    const auto* group = heading(parent);
    return group ? static_cast<int>(group->rows.size()) : 0;
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    if (const auto* group = heading(index)) {
        if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole) return group->title;
        return {};
    }
    const auto* found = row(index);
    if (!found) return {};
    switch (role) {
    case Qt::DisplayRole:
        return found->title;
    case Qt::AccessibleTextRole:
        return found->accessible;
    case Qt::AccessibleDescriptionRole:
        return found->detail;
    case Qt::ToolTipRole:
        return plainTip(found->toolTip);
    default:
        return {};
    }
}

Qt::ItemFlags SidebarModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    const auto* found = row(index);
    if (!found) return Qt::ItemIsEnabled;
    const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return found->item ? common | Qt::ItemIsSelectable : common;
}

} // namespace corvane
