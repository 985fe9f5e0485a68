#include "app/views/tools/ping/ping_row_model.h"

#include "app/views/widgets/row_sync.h"

namespace corvane {

void PingRowModel::setRows(std::vector<PingRow> given) {
    std::unordered_map<Uuid, int> seen;
    std::erase_if(given, [&](const PingRow& row) { return !seen.emplace(row.key, 0).second; });
    syncRows<PingRow>(rows_, std::move(given),
                      {.beginInsert = [this](int row) { beginInsertRows({}, row, row); },
                       .beginRemove = [this](int row) { beginRemoveRows({}, row, row); },
                       .beginMove = [this](int from, int to) { beginMoveRows({}, from, from, {}, to); },
                       .endInsert = [this] { endInsertRows(); },
                       .endRemove = [this] { endRemoveRows(); },
                       .endMove = [this] { endMoveRows(); },
                       .changed = [this](int row) { emit dataChanged(index(row), index(row)); }});
    number();
}

void PingRowModel::number() {
    places_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) places_.emplace(rows_[i].key, static_cast<int>(i));
}

void PingRowModel::setState(const Uuid& key, const PingMonitor::State* state, bool paused,
                            const QDateTime& now) {
    const auto place = places_.find(key);
    if (place == places_.end()) return;
    PingRow& row = rows_[static_cast<std::size_t>(place->second)];
    PingRow next = row;
    next.setState(state, paused, now);
    if (next == row) return;
    row = std::move(next);
    emit dataChanged(index(place->second), index(place->second));
}

QModelIndex PingRowModel::indexOf(const Uuid& key) const {
    const auto place = places_.find(key);
    return place == places_.end() ? QModelIndex() : index(place->second);
}

int PingRowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant PingRowModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const PingRow& row = this->row(index);
    switch (role) {
    case Qt::DisplayRole: // also what typing letters looks for
        return row.name.isEmpty() ? row.host : row.name;
    case Qt::AccessibleTextRole:
        return row.spoken();
    case Qt::AccessibleDescriptionRole:
        return row.route.help();
    default:
        return {};
    }
}

Qt::ItemFlags PingRowModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::ItemIsDropEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

bool PingRowModel::moveRows(const QModelIndex&, int from, int count, const QModelIndex&, int to) {
    const int size = static_cast<int>(rows_.size());
    if (count != 1 || from < 0 || from >= size || to < 0 || to > size) return false;
    if (to == from || to == from + 1) return false;
    std::optional<Uuid> before;
    if (to < size) before = rows_[static_cast<std::size_t>(to)].key;
    // The answer changes the rows; the view that is dropping finishes first.
    const Uuid key = rows_[static_cast<std::size_t>(from)].key;
    QMetaObject::invokeMethod(
        this, [this, key, before] { emit moveAsked(key, before); }, Qt::QueuedConnection);
    return true;
}

} // namespace corvane
