#include "app/views/widgets/row_model.h"

#include "app/views/widgets/display_text.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace corvane {

QString Row::spoken() const {
    QStringList parts{title};
    if (!detail.isEmpty()) parts << detail;
    if (!mark.isEmpty()) parts << mark;
    for (const Notice& notice : notices) parts << notice.spoken();
    return parts.join(QStringLiteral(", "));
}

void RowModel::setRows(const std::vector<Row>& given) {
    QHash<QString, int> target;
    std::vector<Row> rows;
    rows.reserve(given.size());
    for (const Row& row : given) {
        if (target.contains(row.id)) continue; // an identity stands for one row
        target.insert(row.id, static_cast<int>(rows.size()));
        rows.push_back(row);
    }
    for (int last = static_cast<int>(rows_.size()) - 1; last >= 0; --last) {
        int first = last;
        const auto gone = [&](int i) { return !target.contains(rows_[static_cast<std::size_t>(i)].id); };
        if (!gone(last)) continue;
        while (first > 0 && gone(first - 1)) --first;
        beginRemoveRows({}, first, last);
        rows_.erase(rows_.begin() + first, rows_.begin() + last + 1);
        endRemoveRows();
        last = first;
    }

    QSet<QString> present;
    for (const Row& row : rows_) present.insert(row.id);
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        const Row& wanted = rows[static_cast<std::size_t>(i)];
        if (!present.contains(wanted.id)) {
            int end = i + 1; // a run of new rows comes in at once
            while (end < static_cast<int>(rows.size()) &&
                   !present.contains(rows[static_cast<std::size_t>(end)].id)) {
                ++end;
            }
            beginInsertRows({}, i, end - 1);
            rows_.insert(rows_.begin() + i, rows.begin() + i, rows.begin() + end);
            endInsertRows();
            i = end - 1;
            continue;
        }
        // A row that went down shows as its successor standing in its place: then that one row moves, not all
        // between.
        while (rows_[static_cast<std::size_t>(i)].id != wanted.id && i + 1 < static_cast<int>(rows_.size()) &&
               rows_[static_cast<std::size_t>(i) + 1].id == wanted.id) {
            const int goal = target.value(rows_[static_cast<std::size_t>(i)].id);
            moveOne(i, std::min(goal, static_cast<int>(rows_.size()) - 1));
        }
        if (rows_[static_cast<std::size_t>(i)].id != wanted.id) {
            const auto found = std::find_if(rows_.begin() + i, rows_.end(),
                                            [&](const Row& row) { return row.id == wanted.id; });
            moveOne(static_cast<int>(found - rows_.begin()), i);
        }
        if (rows_[static_cast<std::size_t>(i)] != wanted) {
            rows_[static_cast<std::size_t>(i)] = wanted;
            emit dataChanged(index(i), index(i));
        }
    }
}

void RowModel::moveOne(int from, int to) {
    if (from == to) return;
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    const auto begin = rows_.begin();
    if (to > from)
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    else
        std::rotate(begin + to, begin + from, begin + from + 1);
    endMoveRows();
}

QModelIndex RowModel::indexOf(const QString& id) const {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.id == id; });
    return found == rows_.end() ? QModelIndex() : index(static_cast<int>(found - rows_.begin()));
}

int RowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant RowModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Row& row = this->row(index);
    switch (role) {
    case Qt::DisplayRole:
        return row.title;
    case Qt::ToolTipRole:
        return row.tip.isEmpty() ? QVariant() : plainTip(row.tip);
    case Qt::AccessibleTextRole:
        return row.spoken();
    case Qt::AccessibleDescriptionRole:
        return row.tip;
    default:
        return {};
    }
}

Qt::ItemFlags RowModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return movable_ ? Qt::ItemIsDropEnabled : Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (movable_) flags |= Qt::ItemIsDragEnabled;
    return flags;
}

bool RowModel::moveRows(const QModelIndex&, int from, int count, const QModelIndex&, int to) {
    const int size = static_cast<int>(rows_.size());
    if (!movable_ || count != 1 || from < 0 || from >= size || to < 0 || to > size) return false;
    if (to == from || to == from + 1) return false;
    std::optional<QString> before;
    if (to < size) before = rows_[static_cast<std::size_t>(to)].id;
    // The answer changes the rows; the view that is dropping finishes first.
    const QString id = rows_[static_cast<std::size_t>(from)].id;
    QMetaObject::invokeMethod(
        this, [this, id, before] { emit moveAsked(id, before); }, Qt::QueuedConnection);
    return true;
}

} // namespace corvane
