// Draws the sidebar's headings and its rows of two lines with a sign in front.
#pragma once

#include <QStyledItemDelegate>

namespace corvane {

class SidebarDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace corvane
