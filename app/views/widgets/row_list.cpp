#include "app/views/widgets/row_list.h"

#include "app/views/widgets/display_text.h"
#include "app/views/widgets/row_delegate.h"
#include "app/views/widgets/theme.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>

namespace corvane {

RowList::RowList(QWidget* parent) : QListView(parent), rows_(new RowModel(this)) {
    setModel(rows_);
    setItemDelegate(new RowDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setResizeMode(Adjust);
    setMouseTracking(true);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    verticalScrollBar()->setSingleStep(24);

    placing_.setSingleShot(true);
    placing_.setInterval(0);
    connect(&placing_, &QTimer::timeout, this, &RowList::placeButtons);
    for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(rows_, signal, &placing_, [this] { placing_.start(); });
    }
    connect(rows_, &QAbstractItemModel::rowsMoved, &placing_, [this] { placing_.start(); });
    connect(rows_, &QAbstractItemModel::dataChanged, &placing_, [this] {
        scheduleDelayedItemsLayout(); // a row's notices change its height
        placing_.start();
    });
    connect(rows_, &RowModel::moveAsked, this, &RowList::moveAsked);
    connect(this, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& index) { emit opened(rows_->row(index).id); });
}

void RowList::setRowButton(const QString& text, const QString& accessibleName) {
    buttonText_ = text;
    buttonName_ = accessibleName;
    const QPushButton sample(withoutMnemonics(text));
    static_cast<RowDelegate*>(itemDelegate())->setButtonSize(sample.sizeHint());
    placing_.start();
}

void RowList::setMovable(bool movable) {
    rows_->setMovable(movable);
    setDragDropMode(movable ? InternalMove : NoDragDrop);
    setDefaultDropAction(movable ? Qt::MoveAction : Qt::IgnoreAction);
    setDropIndicatorShown(movable);
}

void RowList::setRows(const std::vector<Row>& rows) {
    rows_->setRows(rows);
}

QString RowList::currentId() const {
    return currentIndex().isValid() ? rows_->row(currentIndex()).id : QString();
}

void RowList::setCurrentId(const QString& id) {
    const QModelIndex index = rows_->indexOf(id);
    setCurrentIndex(index);
    if (!index.isValid()) clearSelection();
}

void RowList::moveCurrent(int step) {
    const QModelIndex index = currentIndex();
    if (!index.isValid()) return;
    rows_->moveRows({}, index.row(), 1, {}, step < 0 ? index.row() + step : index.row() + step + 1);
}

int RowList::contentHeight() const {
    int height = 0;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    for (int i = 0; i < rows_->rowCount(); ++i) {
        height += itemDelegate()->sizeHint(option, rows_->index(i)).height();
    }
    return height;
}

QPushButton* RowList::makeButton(const QString& id) {
    auto* button = new QPushButton(withoutMnemonics(buttonText_));
    button->setAccessibleName(buttonName_);
    button->setToolTip(buttonName_);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, id] {
        setCurrentId(id);
        emit acted(id);
    });
    return button;
}

void RowList::placeButtons() {
    if (buttonText_.isEmpty()) return;
    const QRect seen = viewport()->rect();
    const QModelIndex current = currentIndex();
    for (int i = 0; i < rows_->rowCount(); ++i) {
        const QModelIndex index = rows_->index(i);
        QWidget* button = indexWidget(index);
        const QRect place = visualRect(index);
        if (!place.intersects(seen)) {
            if (button && !button->hasFocus()) setIndexWidget(index, nullptr);
            continue;
        }
        if (!button) {
            button = makeButton(rows_->row(index).id);
            setIndexWidget(index, button);
            QStyleOptionViewItem option;
            initViewItemOption(&option);
            option.rect = place;
            itemDelegate()->updateEditorGeometry(button, option, index);
        }
        button->setAccessibleDescription(rows_->row(index).title);
        // Tab goes from the list to the button of the current row, not through those of all rows.
        button->setFocusPolicy(index == current ? Qt::TabFocus : Qt::NoFocus);
    }
}

void RowList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (placeholder_.isEmpty() || rows_->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(theme::secondaryText(palette()));
    painter.drawText(viewport()->rect().adjusted(theme::l, theme::l, -theme::l, -theme::l),
                     Qt::AlignCenter | Qt::TextWordWrap, placeholder_);
}

void RowList::keyPressEvent(QKeyEvent* event) {
    const QString id = currentId();
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (!id.isEmpty()) {
        if (isReturn && modifiers == Qt::ControlModifier) return emit acted(id);
        if ((isReturn && modifiers == Qt::NoModifier) || event->key() == Qt::Key_F2) return emit opened(id);
        if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) return emit deleteAsked(id);
        if (modifiers == Qt::AltModifier && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
            return moveCurrent(event->key() == Qt::Key_Up ? -1 : 1);
        }
    }
    QListView::keyPressEvent(event);
}

void RowList::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    const bool byKeyboard =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
        event->reason() == Qt::ShortcutFocusReason || event->reason() == Qt::OtherFocusReason;
    if (byKeyboard && !currentIndex().isValid() && rows_->rowCount() > 0) setCurrentIndex(rows_->index(0));
}

void RowList::contextMenuEvent(QContextMenuEvent* event) {
    QModelIndex index = indexAt(event->pos());
    QPoint place = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        index = currentIndex();
        if (index.isValid()) place = viewport()->mapToGlobal(visualRect(index).center());
    }
    emit menuAsked(index.isValid() ? rows_->row(index).id : QString(), place);
}

void RowList::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    placing_.start();
}

void RowList::scrollContentsBy(int dx, int dy) {
    QListView::scrollContentsBy(dx, dy);
    placing_.start();
}

void RowList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    placing_.start();
    emit currentIdChanged(current.isValid() ? rows_->row(current).id : QString());
}

} // namespace corvane
