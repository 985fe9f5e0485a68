#include "app/views/network/route_table.h"

#include "app/views/widgets/display_text.h"
#include "app/views/widgets/focus_ring.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyledItemDelegate>

namespace corvane {

namespace {

/// Longer than any address; keeps a mistaken paste out of the table.
constexpr int mostCharacters = 64;
constexpr int padX = theme::xs, padY = 6, lineGap = 3;

const RouteTableModel& modelOf(const QModelIndex& index) {
    return *static_cast<const RouteTableModel*>(index.model());
}

QString example(int column) {
    return column == RouteTableModel::destination ? RouteTable::tr("10.20.0.0")
           : column == RouteTableModel::mask      ? RouteTable::tr("255.255.0.0 or /16")
                                                  : RouteTable::tr("192.168.1.1");
}

class FieldDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static int fieldHeight(const QFont& font) { return QFontMetrics(theme::tabular(font)).height() + 12; }
    static int noticeHeight(const QFont& font) {
        return QFontMetrics(theme::caption(font)).height() + lineGap;
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const auto notices = modelOf(index).notices(index.row()).size();
        return {120,
                fieldHeight(option.font) + 2 * padY + static_cast<int>(notices) * noticeHeight(option.font)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const auto* view = static_cast<const QTableView*>(option.widget);
        const QPalette& palette = option.palette;
        const auto& model = modelOf(index);
        const bool wrong = model.isWrong(index);
        painter->save();
        painter->setClipRect(option.rect);
        painter->setRenderHint(QPainter::Antialiasing);
        if (index.row() > 0) {
            painter->fillRect(QRect(option.rect.left(), option.rect.top(), option.rect.width(), 1),
                              theme::hairline(palette));
        }
        const QRect box = field(option);
        painter->setPen(wrong ? noticeColour(Notice::Kind::error, palette) : theme::hairline(palette));
        painter->setBrush(palette.color(QPalette::Base));
        painter->drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
        if (view->hasFocus() && view->currentIndex() == index) {
            paintFocusRing(*painter, QRectF(box), 4, palette);
        }
        const QString text = index.data().toString();
        painter->setFont(theme::tabular(option.font));
        painter->setPen(text.isEmpty() ? palette.color(QPalette::PlaceholderText)
                                       : palette.color(QPalette::Text));
        const QRect room = box.adjusted(7, 0, -7, 0);
        painter->drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                          painter->fontMetrics().elidedText(text.isEmpty() ? example(index.column()) : text,
                                                            Qt::ElideRight, room.width()));
        paintNotices(*painter, option, *view, index);
        painter->restore();
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        auto* edit = new QLineEdit(parent);
        edit->setFont(theme::tabular(option.font));
        edit->setMaxLength(mostCharacters);
        edit->setPlaceholderText(example(index.column()));
        edit->setAccessibleName(RouteTable::tr("%1 of route %2")
                                    .arg(index.model()->headerData(index.column(), Qt::Horizontal).toString())
                                    .arg(index.row() + 1));
        edit->setProperty(textBefore, index.data(Qt::EditRole));
        // What is wrong is said while it is typed.
        auto* self = const_cast<FieldDelegate*>(this);
        connect(edit, &QLineEdit::textEdited, self, [self, edit] { emit self->commitData(edit); });
        return edit;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        auto* edit = static_cast<QLineEdit*>(editor);
        const QString text = index.data(Qt::EditRole).toString();
        if (edit->text().trimmed() != text) edit->setText(text);
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
        model->setData(index, static_cast<QLineEdit*>(editor)->text(), Qt::EditRole);
    }
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex&) const override {
        editor->setGeometry(field(option));
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* edit = qobject_cast<QLineEdit*>(watched);
        const bool isKey = edit && event->type() == QEvent::KeyPress;
        if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            edit->setText(edit->property(textBefore).toString());
            emit commitData(edit);
        }
        return QStyledItemDelegate::eventFilter(watched, event);
    }

  private:
    /// Of the editor: what stood in the cell when it was opened.
    static constexpr const char* textBefore = "textBefore";

    static QRect field(const QStyleOptionViewItem& option) {
        const QRect cell = option.rect.adjusted(padX, padY, -padX, 0);
        return QRect(cell.topLeft(), QSize(cell.width(), fieldHeight(option.font)));
    }
    /// They run through the whole row; each cell draws the part that lies in it.
    static void paintNotices(QPainter& painter, const QStyleOptionViewItem& option, const QTableView& view,
                             const QModelIndex& index) {
        const int left = view.columnViewportPosition(0) + padX + 1;
        const int right = view.viewport()->width() - padX;
        const QFont font = theme::caption(option.font);
        const QFontMetrics metrics(font);
        const int side = metrics.height() - 2;
        int top = field(option).bottom() + 1 + lineGap;
        painter.setFont(font);
        for (const Notice& notice : modelOf(index).notices(index.row())) {
            paintNoticeMark(painter, QRectF(left, top + 1, side, side), notice.kind, option.palette);
            const QRect room(left + side + theme::xs + 1, top, right - left - side - theme::xs,
                             metrics.height());
            painter.setPen(option.palette.color(QPalette::WindowText));
            painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                             metrics.elidedText(notice.text, Qt::ElideRight, room.width()));
            top += noticeHeight(option.font);
        }
    }
};

/// Quiet captions above the columns, in line with the fields' texts.
class CaptionHeader : public QHeaderView {
  public:
    explicit CaptionHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
        setSectionResizeMode(Stretch);
        setHighlightSections(false);
        setSectionsClickable(false);
        setMinimumSectionSize(80);
        setFont(theme::caption(font()));
        setFixedHeight(fontMetrics().height() + theme::s);
        viewport()->setAutoFillBackground(false);
    }

  protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override {
        painter->save();
        painter->setFont(font());
        painter->setPen(theme::secondaryText(palette()));
        painter->drawText(rect.adjusted(padX + 2, theme::xs, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                          model()->headerData(section, Qt::Horizontal).toString());
        painter->restore();
    }
};

} // namespace

RouteTable::RouteTable(QWidget* parent) : QTableView(parent), routes_(new RouteTableModel(this)) {
    setModel(routes_);
    setItemDelegate(new FieldDelegate(this));
    setHorizontalHeader(new CaptionHeader(this));
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(10);
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setCornerButtonEnabled(false);
    setSelectionMode(NoSelection); // the current field alone shows where the keyboard is
    setEditTriggers(EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(false);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    connect(routes_, &QAbstractItemModel::modelReset, this, &RouteTable::fitRows);
    connect(routes_, &QAbstractItemModel::rowsInserted, this, &RouteTable::fitRows);
    connect(routes_, &QAbstractItemModel::dataChanged, this, [this] {
        fitRows();
        viewport()->update(); // notices run through a whole row
    });
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) { edit(index); });
}

void RouteTable::fitRows() {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    for (int row = 0; row < routes_->rowCount(); ++row) {
        setRowHeight(row, itemDelegate()->sizeHint(option, routes_->index(row, 0)).height());
    }
}

void RouteTable::addRow() {
    routes_->add();
    const QModelIndex first = routes_->index(routes_->rowCount() - 1, 0);
    setFocus(Qt::OtherFocusReason);
    setCurrentIndex(first);
    scrollTo(first);
    edit(first);
}

void RouteTable::removeCurrentRow() {
    const QModelIndex current = currentIndex();
    routes_->remove(current.row());
    const int row = std::min(current.row(), routes_->rowCount() - 1);
    if (row >= 0) setCurrentIndex(routes_->index(row, std::max(0, current.column())));
    emit currentRowChanged(currentIndex().row());
}

void RouteTable::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (isReturn && modifiers == Qt::ControlModifier) return emit applyAsked();
    if (isReturn && modifiers == Qt::NoModifier && currentIndex().isValid()) {
        // From the open field it comes here too, on its way to closing that.
        if (!isEditing()) edit(currentIndex());
        return;
    }
    if (event->key() == Qt::Key_Insert) return addRow();
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) return removeCurrentRow();
    QTableView::keyPressEvent(event);
}

void RouteTable::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    if (!currentIndex().isValid() && routes_->rowCount() > 0) setCurrentIndex(routes_->index(0, 0));
}

void RouteTable::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    // Past the first or the last field the keyboard leaves the table instead of going round in it.
    const QModelIndex current = currentIndex();
    const bool first = current.row() == 0 && current.column() == 0;
    const bool last =
        current.row() == routes_->rowCount() - 1 && current.column() == RouteTableModel::columns - 1;
    const bool leavesBack = first && hint == QAbstractItemDelegate::EditPreviousItem;
    const bool leaves = last && hint == QAbstractItemDelegate::EditNextItem;
    QTableView::closeEditor(editor, leaves || leavesBack ? QAbstractItemDelegate::NoHint : hint);
    if (leaves || leavesBack) {
        routes_->endEntry();
        focusNextPrevChild(leaves);
    }
}

void RouteTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    routes_->endEntry(current.row());
    viewport()->update();
    emit currentRowChanged(current.row());
}

} // namespace corvane
