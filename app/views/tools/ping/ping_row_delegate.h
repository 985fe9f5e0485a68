// Draws one watched host on one line.
#pragma once

#include "app/views/tools/ping/ping_columns.h"

#include <QStyledItemDelegate>

namespace corvane {

class PingRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    /// Low rows fit into little room, high ones are easier to read from afar.
    void setDense(bool dense) { dense_ = dense; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  private:
    bool dense_ = false;
};

} // namespace corvane
