#include "app/views/tools/router/port_pane.h"

#include "app/views/tools/router/port_delegates.h"
#include "app/views/widgets/card.h"
#include "app/views/widgets/theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace corvane {

namespace {

/// More than any label holds.
constexpr int mostCharacters = 64;
constexpr int searchWidth = 150;

} // namespace

PortPane::PortPane(const QString& title, PortList::Shape shape, PortModel& ports, PortDelegate* delegate,
                   QWidget* parent)
    : QWidget(parent), title_(title), ports_(ports), filter_(new PortFilter(ports, this)),
      list_(new PortList(shape, *filter_, this)), delegate_(delegate), count_(new QLabel(this)),
      search_(new QLineEdit(this)), head_(new QHBoxLayout) {
    auto* caption = new QLabel(title, this);
    QFont strong = caption->font();
    strong.setWeight(QFont::DemiBold);
    caption->setFont(strong);
    count_->setForegroundRole(QPalette::PlaceholderText);
    count_->setFont(theme::tabular(count_->font()));
    delegate_->setParent(list_);
    list_->setItemDelegate(delegate_);
    list_->setAccessibleName(title);
    search_->setPlaceholderText(tr("Find"));
    search_->setAccessibleName(tr("Find in %1").arg(title.toLower()));
    search_->setMaxLength(mostCharacters);
    search_->setClearButtonEnabled(true);
    search_->setMinimumWidth(70);
    search_->setMaximumWidth(searchWidth);
    search_->installEventFilter(this);

    head_->setSpacing(theme::s);
    head_->addWidget(caption);
    head_->addWidget(count_);
    head_->addStretch(1);
    head_->addWidget(search_, 2);
    auto* card = new Card(this);
    auto* inside = new QVBoxLayout(card);
    inside->setContentsMargins(2, 3, 2, 3);
    inside->addWidget(list_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::xs + 2);
    layout->addLayout(head_);
    layout->addWidget(card, 1);

    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        filter_->setText(text);
        refreshCount();
        emit filtered();
    });
    connect(search_, &QLineEdit::returnPressed, this, &PortPane::enterList);
    connect(list_, &PortList::searchAsked, this, &PortPane::find);
    refreshCount();
}

void PortPane::addControl(QWidget* control) {
    head_->insertWidget(head_->count() - 1, control);
    setTabOrder(control, search_);
    setTabOrder(search_, list_);
}

void PortPane::setKeep(PortFilter::Keep keep, const QString& nothing) {
    nothing_ = nothing;
    filter_->setKeep(std::move(keep));
    refreshCount();
    emit filtered();
}

void PortPane::setStale(bool stale) {
    if (stale == delegate_->isStale()) return;
    delegate_->setStale(stale);
    list_->viewport()->update();
}

void PortPane::find(const QString& text) {
    if (!text.isEmpty())
        search_->setText(text);
    else
        search_->selectAll();
    search_->setFocus(Qt::ShortcutFocusReason);
    if (!text.isEmpty()) search_->end(false);
}

bool PortPane::isSearching() const {
    return !search_->text().isEmpty();
}

void PortPane::clearSearch() {
    search_->clear();
}

void PortPane::refreshCount() {
    const int shown = filter_->rowCount(), all = ports_.rowCount();
    count_->setText(shown == all ? QString::number(all) : tr("%1 of %2").arg(shown).arg(all));
    list_->setPlaceholder(
        all == 0 || shown > 0 ? QString()
        : isSearching()
            ? tr("Nothing matches “%1”. Escape ends the search.").arg(search_->text().simplified())
            : nothing_);
}

void PortPane::enterList() {
    const QModelIndex best = filter_->best();
    if (!best.isValid()) return;
    list_->setFocus(Qt::OtherFocusReason);
    list_->choose(best);
    emit list_->picked(best.data(portRole).toInt());
}

bool PortPane::eventFilter(QObject* watched, QEvent* event) {
    if (watched != search_ || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Down) {
        enterList();
        return true;
    }
    if (key == Qt::Key_Escape) {
        clearSearch();
        list_->setFocus(Qt::ShortcutFocusReason);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace corvane
