#include "app/views/tools/ping/ping_list.h"

#include "app/views/tools/ping/history_bar.h"
#include "app/views/tools/ping/ping_row_delegate.h"
#include "app/views/widgets/display_text.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QScrollBar>
#include <QToolTip>

#include <chrono>

namespace corvane {

static constexpr auto copiedStands = std::chrono::milliseconds(1200);

PingList::PingList(QWidget* parent)
    : QListView(parent), rows_(new PingRowModel(this)), delegate_(new PingRowDelegate(this)) {
    setModel(rows_);
    setItemDelegate(delegate_);
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setResizeMode(Adjust);
    setDragDropMode(InternalMove);
    setDefaultDropAction(Qt::MoveAction);
    setDropIndicatorShown(true);
    setMouseTracking(true);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    verticalScrollBar()->setSingleStep(24);

    copiedSign_.setSingleShot(true);
    copiedSign_.setInterval(copiedStands);
    connect(&copiedSign_, &QTimer::timeout, this, [this] { update(rows_->indexOf(copied_)); });
    connect(rows_, &PingRowModel::moveAsked, this, &PingList::moveAsked);
    connect(rows_, &PingRowModel::rowsInserted, this, [this] {
        if (hasFocus() && !currentIndex().isValid()) setCurrentIndex(rows_->index(0));
    });
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index != hostUnderMouse_) emit opened(rows_->row(index).key);
    });
}

void PingList::setDense(bool dense) {
    delegate_->setDense(dense);
    scheduleDelayedItemsLayout();
}

std::optional<Uuid> PingList::currentKey() const {
    if (!currentIndex().isValid()) return std::nullopt;
    return rows_->row(currentIndex()).key;
}

void PingList::setCurrentKey(const Uuid& key) {
    if (const QModelIndex index = rows_->indexOf(key); index.isValid()) setCurrentIndex(index);
}

void PingList::moveHost(const Uuid& key, int step) {
    const QModelIndex index = rows_->indexOf(key);
    if (!index.isValid()) return;
    rows_->moveRows({}, index.row(), 1, {}, step < 0 ? index.row() + step : index.row() + step + 1);
}

void PingList::copyHost(const Uuid& key) {
    const QModelIndex index = rows_->indexOf(key);
    if (!index.isValid() || rows_->row(index).host.isEmpty()) return;
    QGuiApplication::clipboard()->setText(rows_->row(index).host);
    if (copiedSign_.isActive()) update(rows_->indexOf(copied_));
    copied_ = key;
    copiedSign_.start();
    update(index);
    setAccessibleDescription(tr("Copied %1").arg(rows_->row(index).host));
    QAccessibleEvent said(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&said);
}

bool PingList::showsCopied(const QModelIndex& index) const {
    return copiedSign_.isActive() && rows_->row(index).key == copied_;
}

PingColumns PingList::columnsOf(const QModelIndex& index) const {
    return PingColumns::fit(visualRect(index), font());
}

void PingList::paintEvent(QPaintEvent* event) {
    painting_ = event->region();
    QListView::paintEvent(event);
}

void PingList::dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
    // All rows are of one height: nothing has to be laid out anew, as the list would do.
    QAbstractItemView::dataChanged(first, last, roles);
}

bool PingList::takesKey(const QKeyEvent& event) const {
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_F2:
    case Qt::Key_Delete:
        return modifiers == Qt::NoModifier;
    case Qt::Key_Backspace:
        return modifiers == Qt::NoModifier || modifiers == Qt::ControlModifier;
    case Qt::Key_D:
        return modifiers == Qt::ControlModifier;
    default:
        return event.matches(QKeySequence::Copy);
    }
}

bool PingList::event(QEvent* event) {
    // What the menus do with these keys is meant for presets, also while no host is chosen.
    if (event->type() == QEvent::ShortcutOverride && takesKey(static_cast<QKeyEvent&>(*event))) {
        event->accept();
        return true;
    }
    return QListView::event(event);
}

void PingList::keyPressEvent(QKeyEvent* event) {
    const auto key = currentKey();
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (event->key() == Qt::Key_Insert && modifiers == Qt::NoModifier) return emit addAsked();
    if (!key && takesKey(*event)) return;
    if (key) {
        const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (isReturn && modifiers == Qt::NoModifier) return emit opened(*key);
        if (modifiers == Qt::AltModifier && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down))
            return moveHost(*key, event->key() == Qt::Key_Up ? -1 : 1);
        if (takesKey(*event)) {
            if (event->key() == Qt::Key_F2) return emit opened(*key);
            if (event->key() == Qt::Key_D) return emit duplicateAsked(*key);
            if (event->matches(QKeySequence::Copy)) return copyHost(*key);
            return emit deleteAsked(*key);
        }
    }
    QListView::keyPressEvent(event);
}

QModelIndex PingList::hostAt(const QPoint& place) const {
    const QModelIndex index = indexAt(place);
    if (!index.isValid() || rows_->row(index).host.isEmpty()) return {};
    QRect box = columnsOf(index).host;
    box.setWidth(
        std::min(box.width(), QFontMetrics(theme::tabular(font())).horizontalAdvance(rows_->row(index).host) +
                                  2 * theme::xs));
    return box.contains(place) ? index : QModelIndex();
}

void PingList::setHostUnderMouse(const QModelIndex& index) {
    if (hostUnderMouse_ == index) return;
    const QModelIndex before = hostUnderMouse_;
    hostUnderMouse_ = index;
    if (before.isValid()) update(before);
    if (index.isValid()) update(index);
    viewport()->setCursor(index.isValid() ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void PingList::mousePressEvent(QMouseEvent* event) {
    pressedHost_ = event->button() == Qt::LeftButton ? hostAt(event->pos()) : QModelIndex();
    QListView::mousePressEvent(event);
}

void PingList::mouseMoveEvent(QMouseEvent* event) {
    setHostUnderMouse(hostAt(event->pos()));
    QListView::mouseMoveEvent(event);
}

void PingList::mouseReleaseEvent(QMouseEvent* event) {
    const bool dragged = state() == DraggingState;
    const QModelIndex released = hostAt(event->pos());
    QListView::mouseReleaseEvent(event);
    if (!dragged && released.isValid() && pressedHost_ == released) copyHost(rows_->row(released).key);
    pressedHost_ = QModelIndex();
}

QString PingList::tipAt(const QPoint& place) const {
    const QModelIndex index = indexAt(place);
    if (!index.isValid()) return {};
    const PingRow& row = rows_->row(index);
    const PingColumns at = columnsOf(index);
    if (at.history.contains(place)) return row.history.empty() ? QString() : HistoryBar::help(row.history);
    if (at.route.contains(place)) {
        QStringList said{row.route.label(), row.route.help()};
        if (at.routeForm == PingColumns::RouteForm::words) said.removeFirst();
        said.removeAll(QString());
        return said.join(u'\n');
    }
    if (hostAt(place).isValid()) return tr("Click to copy %1").arg(row.host);
    // What there is no room for.
    QStringList lines{row.name.isEmpty() ? row.host : row.name};
    if (at.host.isEmpty() && !row.name.isEmpty()) lines << row.host;
    if (at.history.isEmpty() && !row.history.empty()) lines << HistoryBar::help(row.history);
    if (at.route.isEmpty() && !row.route.label().isEmpty()) lines << row.route.label() << row.route.help();
    lines.removeAll(QString());
    const bool cut = QFontMetrics(font()).horizontalAdvance(row.name) > at.name.width() - 4;
    return lines.size() > 1 || cut ? lines.join(u'\n') : QString();
}

bool PingList::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto& help = static_cast<QHelpEvent&>(*event);
        QToolTip::showText(help.globalPos(), plainTip(tipAt(help.pos())), viewport(),
                           visualRect(indexAt(help.pos())));
        return true;
    }
    if (event->type() == QEvent::Leave) setHostUnderMouse({});
    return QListView::viewportEvent(event);
}

void PingList::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    const auto reason = event->reason();
    const bool byKeyboard = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                            reason == Qt::ShortcutFocusReason || reason == Qt::OtherFocusReason;
    if (byKeyboard && !currentIndex().isValid() && rows_->rowCount() > 0) setCurrentIndex(rows_->index(0));
}

void PingList::contextMenuEvent(QContextMenuEvent* event) {
    QModelIndex index = indexAt(event->pos());
    QPoint place = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        index = currentIndex();
        if (index.isValid()) place = viewport()->mapToGlobal(visualRect(index).center());
    }
    emit menuAsked(index.isValid() ? std::optional(rows_->row(index).key) : std::nullopt, place);
}

} // namespace corvane
