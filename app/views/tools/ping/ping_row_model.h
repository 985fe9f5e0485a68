// The rows of the watched hosts, changed one by one.
#pragma once

#include "app/views/tools/ping/ping_row.h"

#include <QAbstractListModel>

#include <unordered_map>

namespace corvane {

class PingRowModel : public QAbstractListModel {
    Q_OBJECT

  public:
    using QAbstractListModel::QAbstractListModel;

    /// Makes the rows these, row by row; of several with one key the first stands.
    void setRows(std::vector<PingRow> rows);
    /// Draws one row's state anew if anything of it differs; nothing for a key that has no row.
    void setState(const Uuid& key, const PingMonitor::State* state, bool paused, const QDateTime& now);

    const std::vector<PingRow>& rows() const { return rows_; }
    const PingRow& row(const QModelIndex& index) const {
        return rows_[static_cast<std::size_t>(index.row())];
    }
    QModelIndex indexOf(const Uuid& key) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    /// Changes nothing: it asks for the move, and the rows follow once the library has it.
    bool moveRows(const QModelIndex& parent, int from, int count, const QModelIndex& destination,
                  int to) override;

  signals:
    /// The host wants to stand before another one, or at the end.
    void moveAsked(const corvane::Uuid& key, const std::optional<corvane::Uuid>& before);

  private:
    void number();
    std::vector<PingRow> rows_;
    std::unordered_map<Uuid, int> places_;
};

} // namespace corvane
