// The watched hosts: arrows and letters walk, Return or F2 opens, a click on an address or the copy shortcut
// copies it, Delete removes, Alt with an arrow or a drag moves.
#pragma once

#include "app/views/tools/ping/ping_columns.h"
#include "app/views/tools/ping/ping_row_model.h"

#include <QListView>
#include <QRegion>
#include <QTimer>

namespace corvane {

class PingRowDelegate;

class PingList : public QListView {
    Q_OBJECT

  public:
    explicit PingList(QWidget* parent = nullptr);
    PingRowModel& rowModel() { return *rows_; }
    const PingRowModel& rowModel() const { return *rows_; }
    void setDense(bool dense);

    std::optional<Uuid> currentKey() const;
    void setCurrentKey(const Uuid& key);
    /// One place up or down.
    void moveHost(const Uuid& key, int step);
    /// The address of that host, with a sign at its place for a moment.
    void copyHost(const Uuid& key);
    bool showsCopied(const QModelIndex& index) const;
    PingColumns columnsOf(const QModelIndex& index) const;

    // For the delegate.
    /// A row outside what has to be painted now needs no drawing.
    bool needsPainting(const QRect& row) const { return painting_.intersects(row); }
    /// The mouse points at the address of this row.
    bool pointsAtHost(const QModelIndex& index) const { return hostUnderMouse_ == index; }

  signals:
    void opened(const corvane::Uuid& key);
    void deleteAsked(const corvane::Uuid& key);
    void duplicateAsked(const corvane::Uuid& key);
    void addAsked();
    void moveAsked(const corvane::Uuid& key, const std::optional<corvane::Uuid>& before);
    /// Without a key beside the rows; the place is global.
    void menuAsked(const std::optional<corvane::Uuid>& key, const QPoint& place);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) override;
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    bool takesKey(const QKeyEvent& event) const;
    /// The row whose address lies at this place.
    QModelIndex hostAt(const QPoint& place) const;
    QString tipAt(const QPoint& place) const;
    void setHostUnderMouse(const QModelIndex& index);

    PingRowModel* rows_;
    PingRowDelegate* delegate_;
    QRegion painting_;
    QPersistentModelIndex hostUnderMouse_, pressedHost_;
    Uuid copied_;
    QTimer copiedSign_;
};

} // namespace corvane
