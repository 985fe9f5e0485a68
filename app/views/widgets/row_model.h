// Rows of things with a stable id, changed row by row so that selection, scroll position and a drag survive.
#pragma once

#include "app/views/widgets/notice.h"
#include "app/views/widgets/symbols.h"
#include "core/netconfig/link_state.h"

#include <QAbstractListModel>

#include <optional>
#include <vector>

namespace corvane {

/// What one row shows.
struct Row {
    QString id;
    QString title;
    /// The second line; may be empty.
    QString detail;
    /// In front of the title.
    std::optional<LinkState::Kind> state;
    /// Behind the title, with its sign: "Active".
    QString mark;
    symbols::Symbol markSign = symbols::Symbol::check;
    std::vector<Notice> notices;
    QString tip;

    friend bool operator==(const Row&, const Row&) = default;
    /// Everything that the row shows, as it is read aloud.
    QString spoken() const;
};

class RowModel : public QAbstractListModel {
    Q_OBJECT

  public:
    using QAbstractListModel::QAbstractListModel;

    /// Makes the rows these, with the fewest removals, insertions and moves that keep each row's identity.
    void setRows(const std::vector<Row>& rows);
    const std::vector<Row>& rows() const { return rows_; }
    const Row& row(const QModelIndex& index) const { return rows_[static_cast<std::size_t>(index.row())]; }
    QModelIndex indexOf(const QString& id) const;
    /// Rows can be dragged to another place.
    void setMovable(bool movable) { movable_ = movable; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    /// Changes nothing: it asks for the move, and the rows follow when the owner of the order has made it.
    bool moveRows(const QModelIndex& parent, int from, int count, const QModelIndex& destination,
                  int to) override;

  signals:
    /// The row wants to stand before another one, or at the end.
    void moveAsked(const QString& id, const std::optional<QString>& before);

  private:
    void moveOne(int from, int to);
    std::vector<Row> rows_;
    bool movable_ = false;
};

} // namespace corvane
