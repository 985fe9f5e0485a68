// A list of ports for the keyboard and the mouse: arrows walk, typing searches, Return is its owner's.
#pragma once

#include "app/views/tools/router/port_rows.h"

#include <QListView>

namespace corvane {

class PortList : public QListView {
    Q_OBJECT

  public:
    /// `list` has one port a line and lets several be chosen; `grid` has keys side by side, one of which is
    /// current.
    enum class Shape { list, grid };
    PortList(Shape shape, PortFilter& filter, QWidget* parent = nullptr);

    /// Shown while no port matches.
    void setPlaceholder(const QString& text);
    /// In the grid; -1 without a current row.
    int currentPort() const;
    /// Quietly: not reported by `picked`, and without scrolling unless that is wished. While a name is being
    /// written it waits, since moving on would end that.
    void setCurrentPort(int port, bool scroll);
    /// In ascending order.
    std::vector<int> chosenPorts() const;
    void choose(const QModelIndex& index);
    void beginRename();
    /// Characters of the highest number.
    int numberDigits() const;

  signals:
    /// Another row by key, or a click on one, a right one too.
    void picked(int port);
    void clickedPort(int port);
    void doubleClickedPort(int port);
    /// A character was typed.
    void searchAsked(const QString& text);
    void escaped();
    /// The arrow points out of the list; to the right when positive.
    void leaveAsked(int direction);
    void menuAsked(const QPoint& place);

  protected:
    /// All rows are of one size: no change of one moves the others.
    void dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) override {
        QAbstractItemView::dataChanged(first, last, roles);
    }
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyboardSearch(const QString&) override {}
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void fitCells();
    const Shape shape_;
    PortFilter& filter_;
    QString placeholder_;
    /// To become current when the name has been written.
    std::optional<int> next_;
};

} // namespace corvane
