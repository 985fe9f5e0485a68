// Brings a list of keyed rows to a new state row by row, so that what points at a row (selection, scroll
// position, an open editor) keeps pointing at it.
#pragma once

#include <algorithm>
#include <functional>
#include <vector>

namespace corvane {

/// What has to be told around each change, as QAbstractItemModel's begin and end calls have it. `move` gives
/// the row's old place and its new one, which is always before it.
struct RowChanges {
    std::function<void(int row)> beginInsert, beginRemove;
    std::function<void(int from, int to)> beginMove;
    std::function<void()> endInsert, endRemove, endMove;
    std::function<void(int row)> changed;
};

/// `Row` has a member `key`, unique in each list, and `==`.
template <typename Row>
void syncRows(std::vector<Row>& rows, std::vector<Row> wanted, const RowChanges& changes) {
    const auto find = [](auto& in, std::size_t start, const auto& key) {
        return std::find_if(in.begin() + static_cast<std::ptrdiff_t>(start), in.end(),
                            [&](const Row& row) { return row.key == key; });
    };
    // Most rows keep their order: the place before the one that was found last is looked at first.
    std::size_t likely = wanted.size();
    for (std::size_t i = rows.size(); i-- > 0;) {
        if (likely > 0 && wanted[likely - 1].key == rows[i].key) {
            --likely;
            continue;
        }
        if (const auto found = find(wanted, 0, rows[i].key); found != wanted.end()) {
            likely = static_cast<std::size_t>(found - wanted.begin());
            continue;
        }
        changes.beginRemove(static_cast<int>(i));
        rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(i));
        changes.endRemove();
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const auto at = rows.begin() + static_cast<std::ptrdiff_t>(i);
        const auto found = find(rows, i, wanted[i].key);
        if (found == rows.end()) {
            changes.beginInsert(static_cast<int>(i));
            rows.insert(at, std::move(wanted[i]));
            changes.endInsert();
            continue;
        }
        if (found != at) {
            changes.beginMove(static_cast<int>(found - rows.begin()), static_cast<int>(i));
            std::rotate(at, found, found + 1);
            changes.endMove();
        }
        if (rows[i] == wanted[i]) continue;
        rows[i] = std::move(wanted[i]);
        changes.changed(static_cast<int>(i));
    }
}

} // namespace corvane
