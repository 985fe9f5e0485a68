// Draw an output as a line and a source as a key, and rename them in place.
#pragma once

#include <QStyledItemDelegate>

namespace corvane {

class PortDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    /// What is shown is what the router last said, not what it says.
    void setStale(bool stale) { stale_ = stale; }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

  protected:
    /// Where the name stands.
    virtual QRect nameRect(const QStyleOptionViewItem& option) const = 0;
    bool stale_ = false;
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
};

} // namespace corvane
