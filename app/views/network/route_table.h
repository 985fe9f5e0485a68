// A table of static routes. Every cell is a field: a click, Return, F2 or typing begins to edit it, Tab goes
// on to the next one, Escape takes the typing back; Insert adds a row, Delete removes the one with the keyboard, Ctrl+Return applies.
#pragma once

#include "app/views/network/route_table_model.h"

#include <QTableView>

namespace corvane {

class RouteTable : public QTableView {
    Q_OBJECT

  public:
    explicit RouteTable(QWidget* parent = nullptr);
    RouteTableModel& routes() { return *routes_; }
    bool isEditing() const { return state() == EditingState; }
    /// A new row, with the keyboard in its first field.
    void addRow();
    void removeCurrentRow();

  signals:
    void applyAsked();
    void currentRowChanged(int row);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

  private:
    void fitRows();
    RouteTableModel* routes_;
};

} // namespace corvane
