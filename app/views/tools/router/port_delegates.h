// Draw an output as a line and a source as a key, and rename them in place.
#pragma once

#include "app/views/tools/router/port_texts.h"

#include <QPixmap>
#include <QStyledItemDelegate>

namespace corvane {

class PortDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    /// What is shown is what the router last said, not what it says.
    void setStale(bool stale) { stale_ = stale; }
    bool isStale() const { return stale_; }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

  protected:
    /// Where the name stands.
    virtual QRect nameRect(const QStyleOptionViewItem& option) const = 0;
    PortTexts& texts(const QStyleOptionViewItem& option) const {
        texts_.setFont(option.font);
        return texts_;
    }
    bool stale_ = false;

  private:
    mutable PortTexts texts_;
};

class OutputDelegate : public PortDelegate {
  public:
    using PortDelegate::PortDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  protected:
    QRect nameRect(const QStyleOptionViewItem& option) const override;
};

class SourceDelegate : public PortDelegate {
  public:
    using PortDelegate::PortDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  protected:
    QRect nameRect(const QStyleOptionViewItem& option) const override;

  private:
    /// A key that nothing distinguishes, drawn once; of the size of a cell.
    const QPixmap& plainKey(QSize cell, qreal scale, const QPalette& palette) const;
    mutable QPixmap plainKey_;
    mutable qint64 plainKeyPalette_ = 0;
};

} // namespace corvane
