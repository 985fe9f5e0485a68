// Draws one row: state and title, mark, detail, and a line for each notice.
#pragma once

#include "app/views/widgets/row_model.h"

#include <QStyledItemDelegate>

namespace corvane {

class RowDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    /// Kept free at the right end of every row.
    void setButtonSize(const QSize& size) { button_ = size; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* button, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

  private:
    QSize button_;
};

} // namespace corvane
