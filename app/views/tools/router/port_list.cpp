#include "app/views/tools/router/port_list.h"

#include "app/views/widgets/theme.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// A key of the grid is at least this wide, in average characters.
constexpr int keyCharacters = 20;

bool isTyped(const QKeyEvent& event) {
    const auto modifiers = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    return !modifiers && !event.text().isEmpty() && event.text().front().isPrint() &&
           event.key() != Qt::Key_Space;
}

} // namespace

PortList::PortList(Shape shape, PortFilter& filter, QWidget* parent)
    : QListView(parent), shape_(shape), filter_(filter) {
    setModel(&filter_);
    setFrameShape(NoFrame);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setResizeMode(Adjust);
    setMouseTracking(true);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    setSelectionMode(shape == Shape::list ? ExtendedSelection : SingleSelection);
    if (shape == Shape::grid) {
        setFlow(LeftToRight);
        setWrapping(true);
    }
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        const int port = index.data(portRole).toInt();
        emit picked(port);
        emit clickedPort(port);
    });
    connect(this, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& index) { emit doubleClickedPort(index.data(portRole).toInt()); });
}

void PortList::setPlaceholder(const QString& text) {
    if (std::exchange(placeholder_, text) != text) viewport()->update();
}

int PortList::currentPort() const {
    return currentIndex().isValid() ? currentIndex().data(portRole).toInt() : -1;
}

void PortList::setCurrentPort(int port, bool scroll) {
    if (state() == EditingState) {
        next_ = port;
        return;
    }
    next_.reset();
    const QModelIndex index = filter_.indexOf(port);
    if (index == currentIndex()) return;
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    setAutoScroll(true);
    if (scroll && index.isValid()) scrollTo(index);
}

std::vector<int> PortList::chosenPorts() const {
    std::vector<int> ports;
    for (const QModelIndex& index : selectionModel()->selectedIndexes())
        ports.push_back(index.data(portRole).toInt());
    std::sort(ports.begin(), ports.end());
    return ports;
}

void PortList::choose(const QModelIndex& index) {
    if (!index.isValid()) return;
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

void PortList::beginRename() {
    if (currentIndex().isValid()) edit(currentIndex());
}

void PortList::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    QListView::closeEditor(editor, hint);
    if (next_ && state() != EditingState) setCurrentPort(*next_, false);
}

int PortList::numberDigits() const {
    const int highest = filter_.sourceModel()->rowCount();
    return highest < 100 ? 2 : highest < 1000 ? 3 : 4;
}

void PortList::keyPressEvent(QKeyEvent* event) {
    if (isTyped(*event)) {
        const QString text = event->text();
        return emit searchAsked(text == QLatin1String("/") ? QString() : text);
    }
    if (event->key() == Qt::Key_Escape) return emit escaped();
    const QModelIndex before = currentIndex();
    if (shape_ == Shape::grid && event->key() == Qt::Key_Space && before.isValid()) {
        emit picked(currentPort());
        return emit clickedPort(currentPort());
    }
    QListView::keyPressEvent(event);
    const bool moved = currentIndex() != before;
    if (moved && currentIndex().isValid()) emit picked(currentPort());
    const bool left = event->key() == Qt::Key_Left, right = event->key() == Qt::Key_Right;
    if ((left || right) && !moved && event->modifiers() == Qt::NoModifier) emit leaveAsked(right ? 1 : -1);
}

void PortList::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    const bool byKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                       event->reason() == Qt::ShortcutFocusReason;
    // The base makes the first row current without choosing it.
    if (byKey && !selectionModel()->hasSelection() && filter_.rowCount() > 0)
        choose(currentIndex().isValid() ? currentIndex() : filter_.index(0, 0));
    viewport()->update();
}

void PortList::focusOutEvent(QFocusEvent* event) {
    QListView::focusOutEvent(event);
    viewport()->update();
}

void PortList::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid()) return;
    // The menu is about this row.
    emit picked(index.data(portRole).toInt());
    emit menuAsked(byKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void PortList::fitCells() {
    if (shape_ != Shape::grid) return;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    // The scroll bar keeps its place, so that the keys don't change their size when it comes.
    const int bar = verticalScrollBar()->sizeHint().width(), frame = 2 * frameWidth();
    const int room = width() - bar - frame - 1, least = fontMetrics().averageCharWidth() * keyCharacters;
    const int columns = std::max(1, room / std::max(1, least));
    const int height = itemDelegate()->sizeHint(option, {}).height();
    setGridSize({room / columns, height});
    verticalScrollBar()->setSingleStep(height);
}

void PortList::resizeEvent(QResizeEvent* event) {
    fitCells();
    QListView::resizeEvent(event);
}

void PortList::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange) fitCells();
}

void PortList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (filter_.rowCount() > 0 || placeholder_.isEmpty()) return;
    QPainter painter(viewport());
    painter.setPen(theme::secondaryText(palette()));
    painter.drawText(viewport()->rect().adjusted(theme::m, theme::m, -theme::m, -theme::m),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, placeholder_);
}

} // namespace corvane
