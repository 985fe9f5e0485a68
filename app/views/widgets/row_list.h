// A list of rows for the keyboard and the mouse: Return or F2 opens, the apply shortcut (Ctrl+Return) and a
// row's own button act, Delete removes, Alt with an arrow or a drag moves.
#pragma once

#include "app/views/widgets/row_model.h"

#include <QListView>
#include <QTimer>

class QPushButton;

namespace corvane {

class RowList : public QListView {
    Q_OBJECT

  public:
    explicit RowList(QWidget* parent = nullptr);
    /// Every row in view gets this button; rows out of view have none.
    void setRowButton(const QString& text, const QString& accessibleName);
    void setMovable(bool movable);
    /// Shown while there are no rows.
    void setPlaceholder(const QString& text) { placeholder_ = text; }
    void setRows(const std::vector<Row>& rows);
    const RowModel& rowModel() const { return *rows_; }

    /// Empty when no row is current.
    QString currentId() const;
    void setCurrentId(const QString& id);
    /// One place up or down.
    void moveCurrent(int step);
    /// The height that shows every row without scrolling.
    int contentHeight() const;

  signals:
    void currentIdChanged(const QString& id);
    void opened(const QString& id);
    void acted(const QString& id);
    void deleteAsked(const QString& id);
    void moveAsked(const QString& id, const std::optional<QString>& before);
    /// With an empty id beside the rows; the place is global.
    void menuAsked(const QString& id, const QPoint& place);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

  private:
    void placeButtons();
    QPushButton* makeButton(const QString& id);
    RowModel* rows_;
    QTimer placing_;
    QString buttonText_, buttonName_, placeholder_;
};

} // namespace corvane
