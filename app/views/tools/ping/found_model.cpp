#include "app/views/tools/ping/found_model.h"

#include "app/views/tools/ping/ping_row.h"
#include "app/views/widgets/display_text.h"

#include <algorithm>

namespace corvane {

void FoundModel::setNote(Note tell) {
    tell_ = std::move(tell);
}

void FoundModel::refreshNotes() {
    if (lines_.empty()) return;
    for (Line& line : lines_) {
        line.note = tell_(line.address);
        if (!line.touched) line.chosen = line.note.isEmpty();
    }
    emit dataChanged(index(0, address), index(rowCount() - 1, note));
    emit chosenChanged();
}

void FoundModel::clear() {
    beginResetModel();
    lines_.clear();
    endResetModel();
    emit chosenChanged();
}

void FoundModel::setFound(const std::vector<SubnetSweep::Found>& found) {
    bool grew = false;
    // Both are in the same order, and nothing that was found goes away.
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (i < lines_.size() && lines_[i].address == found[i].address) {
            if (lines_[i].ms == found[i].ms) continue;
            lines_[i].ms = found[i].ms;
            emit dataChanged(index(static_cast<int>(i), roundTrip), index(static_cast<int>(i), roundTrip));
            continue;
        }
        const QString said = tell_ ? tell_(found[i].address) : QString();
        beginInsertRows({}, static_cast<int>(i), static_cast<int>(i));
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(i),
                      {found[i].address, found[i].ms, said, said.isEmpty(), false});
        endInsertRows();
        grew = true;
    }
    if (grew) emit chosenChanged();
}

std::vector<std::string> FoundModel::chosen() const {
    std::vector<std::string> addresses;
    for (const Line& line : lines_) {
        if (line.chosen) addresses.push_back(line.address);
    }
    return addresses;
}

void FoundModel::choose(bool all) {
    if (lines_.empty()) return;
    for (Line& line : lines_) {
        line.chosen = all && line.note.isEmpty();
        line.touched = !all;
    }
    emit dataChanged(index(0, address), index(rowCount() - 1, address));
    emit chosenChanged();
}

int FoundModel::choosable() const {
    return static_cast<int>(
        std::count_if(lines_.begin(), lines_.end(), [](const Line& line) { return line.note.isEmpty(); }));
}

int FoundModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant FoundModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Line& line = lines_[static_cast<std::size_t>(index.row())];
    if (role == Qt::CheckStateRole && index.column() == address)
        return line.chosen ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::TextAlignmentRole && index.column() == roundTrip)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    switch (index.column()) {
    case address:
        return oneLine(line.address);
    case roundTrip:
        return PingRow::milliseconds(line.ms);
    default:
        return line.note;
    }
}

bool FoundModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !index.isValid() || index.column() != address) return false;
    Line& line = lines_[static_cast<std::size_t>(index.row())];
    line.chosen = value.toInt() == Qt::Checked;
    line.touched = true;
    emit dataChanged(index, index);
    emit chosenChanged();
    return true;
}

QVariant FoundModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole) {
        const auto side = section == roundTrip ? Qt::AlignRight : Qt::AlignLeft;
        return QVariant::fromValue(side | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) return {};
    return section == address ? tr("Address") : section == roundTrip ? tr("Round trip") : QString();
}

Qt::ItemFlags FoundModel::flags(const QModelIndex& index) const {
    auto flags = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() == address) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

} // namespace corvane
