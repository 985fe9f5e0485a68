#include "app/views/network/service_order_page.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/network/network_commands.h"
#include "app/views/widgets/card.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/draft.h"
#include "app/views/widgets/draft_bar.h"
#include "app/views/widgets/row_list.h"
#include "app/views/widgets/theme.h"
#include "core/netconfig/service_order.h"

#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace corvane {

namespace {

using Order = std::vector<std::string>;

/// A reading that was under way when the change was made may still tell the order before it; the second one
/// can't.
constexpr int readingsAfterApply = 2;

bool holds(const Order& order, const std::string& name) {
    return std::find(order.begin(), order.end(), name) != order.end();
}

/// The draft for the services that there are now: those that went are left out, new ones come last.
Order completed(Order draft, const Order& system) {
    std::erase_if(draft, [&](const std::string& name) { return !holds(system, name); });
    for (const std::string& name : system) {
        if (!holds(draft, name)) draft.push_back(name);
    }
    return draft;
}

Row orderRow(const std::string& name, std::size_t place, const AppModel& model) {
    Row row;
    row.id = QString::fromStdString(name);
    row.title = QStringLiteral("%1.  %2").arg(place + 1).arg(oneLine(name));
    const ServiceInfo* service = model.service(name);
    row.state = service ? service->state().kind() : LinkState::Kind::inactive;
    if (!service) return row;
    QStringList facts;
    facts << (service->state().isConnected() ? oneLine(service->state().address())
                                             : oneLine(service->state().title()));
    const bool hasRouter = service->config && service->config->router;
    if (hasRouter) facts << ServiceOrderPage::tr("router %1").arg(oneLine(*service->config->router));
    row.detail = facts.join(QStringLiteral(" · "));
    if (model.internetService() == name) {
        row.mark = ServiceOrderPage::tr("Carries internet");
        row.markSign = symbols::Symbol::globe;
    } else if (hasRouter) {
        row.notices.push_back(
            {Notice::Kind::advice, ServiceOrderPage::tr("Has a router but doesn't carry internet.")});
    }
    return row;
}

} // namespace

struct ServiceOrderPage::Private {
    Private(ServiceOrderPage* page, AppModel& m, NetworkCommands& c)
        : q(page), model(m), commands(c), words(new NoticeLines(NoticeLines::Room::oneLineAtLeast, page)),
          top(new QPushButton(tr("Move to Top"), page)), up(new QPushButton(tr("Move Up"), page)),
          down(new QPushButton(tr("Move Down"), page)), rows(new RowList),
          notices(new NoticeLines(NoticeLines::Room::oneLineAtLeast, page)),
          bar(new DraftBar(tr("Service Order"), page)) {}

    void refresh();
    void judge();
    void move(const std::string& name, const std::optional<std::string>& before);
    void moveToTop();
    void apply();
    void showMenu(const QString& id, const QPoint& place);
    QString whyNot(int step) const;

    ServiceOrderPage* q;
    AppModel& model;
    NetworkCommands& commands;
    Draft<Order> draft;
    /// Readings to wait for after an applied change before what is read is believed.
    int awaited = 0;
    NoticeLines* words;
    QPushButton* top;
    QPushButton* up;
    QPushButton* down;
    RowList* rows;
    NoticeLines* notices;
    DraftBar* bar;
    QTimer folded;
};

ServiceOrderPage::ServiceOrderPage(AppModel& model, NetworkCommands& commands, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(this, model, commands)) {
    setAccessibleName(tr("Service Order"));
    auto* title = new QLabel(tr("Service Order"), this);
    title->setFont(theme::title(font()));
    d->words->setFont(font());
    d->words->setNotices({{Notice::Kind::hint,
                           tr("Of the connected services that have a router, the first one carries internet "
                              "and DNS. The others still reach their own networks.")}});
    d->rows->setObjectName(QStringLiteral("serviceOrder"));
    d->rows->setAccessibleName(tr("Service order, first to last"));
    d->rows->setMovable(true);
    d->rows->setPlaceholder(tr("Reading the service order…"));

    auto* actions = new QHBoxLayout;
    actions->setSpacing(theme::s);
    actions->addWidget(sectionTitle(tr("First to last"), this));
    actions->addStretch();
    for (QPushButton* button : {d->top, d->up, d->down}) actions->addWidget(button);
    auto* card = new Card(this);
    auto* inside = new QVBoxLayout(card);
    inside->setContentsMargins(1, 1, 1, 1);
    inside->addWidget(d->rows);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addWidget(title);
    layout->addWidget(d->words);
    layout->addLayout(actions);
    layout->addWidget(card, 1);
    layout->addWidget(d->notices);
    layout->addWidget(d->bar);
    setTabOrder(d->rows, d->top);
    setTabOrder(d->top, d->up);
    setTabOrder(d->up, d->down);

    connect(d->rows, &RowList::moveAsked, this,
            [this](const QString& id, const std::optional<QString>& before) {
                d->move(id.toStdString(), before ? std::optional(before->toStdString()) : std::nullopt);
            });
    connect(d->rows, &RowList::currentIdChanged, this, [this] { d->judge(); });
    connect(d->rows, &RowList::acted, this, [this] { d->apply(); });
    connect(d->rows, &RowList::opened, this,
            [this](const QString& id) { d->model.select(SidebarItem::service(id.toStdString())); });
    connect(d->rows, &RowList::menuAsked, this,
            [this](const QString& id, const QPoint& place) { d->showMenu(id, place); });
    connect(d->top, &QPushButton::clicked, this, [this] { d->moveToTop(); });
    connect(d->up, &QPushButton::clicked, this, [this] { d->rows->moveCurrent(-1); });
    connect(d->down, &QPushButton::clicked, this, [this] { d->rows->moveCurrent(1); });
    auto* toTop = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_Home), d->rows);
    toTop->setContext(Qt::WidgetShortcut);
    connect(toTop, &QShortcut::activated, this, [this] { d->moveToTop(); });
    connect(d->bar, &DraftBar::applyAsked, this, [this] { d->apply(); });
    connect(d->bar, &DraftBar::revertAsked, this, [this] {
        d->draft.revert();
        d->refresh();
    });

    d->folded.setSingleShot(true);
    d->folded.setInterval(0);
    connect(&d->folded, &QTimer::timeout, this, [this] { d->refresh(); });
    connect(&model, &AppModel::servicesChanged, this, [this] { d->folded.start(); });
    connect(&model, &AppModel::busyChanged, this, [this] { d->folded.start(); });
    connect(&model, &AppModel::refreshed, this, [this] {
        if (d->awaited > 0) --d->awaited;
        d->folded.start();
    });
    d->refresh();
}

ServiceOrderPage::~ServiceOrderPage() = default;

void ServiceOrderPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    d->commands.setCurrentDraft(d->bar);
}

void ServiceOrderPage::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    d->commands.setCurrentDraft(nullptr);
}

void ServiceOrderPage::Private::refresh() {
    const Order& system = model.serviceOrder();
    // An empty reading is one that failed: the draft waits for the next.
    if (!system.empty()) {
        draft.follow(system);
        if (draft.differs()) draft.set(completed(draft.value(), system));
    }
    std::vector<Row> shown;
    for (const std::string& name : draft.value()) shown.push_back(orderRow(name, shown.size(), model));
    rows->setRows(shown);
    judge();
}

QString ServiceOrderPage::Private::whyNot(int step) const {
    const int current = rows->currentIndex().row(), count = rows->rowModel().rowCount();
    if (count < 2) return tr("There is nothing to put in order.");
    if (current < 0) return tr("Choose a service first.");
    if (step < 0 && current == 0) return tr("It is first already.");
    if (step > 0 && current == count - 1) return tr("It is last already.");
    return {};
}

void ServiceOrderPage::Private::judge() {
    const auto offer = [](QPushButton* button, const QString& reason, const QString& what) {
        button->setEnabled(reason.isEmpty());
        button->setToolTip(plainTip(reason.isEmpty() ? what : reason));
        button->setAccessibleDescription(reason);
    };
    offer(top, whyNot(-1), tr("Puts the service first (Alt+Home)"));
    offer(up, whyNot(-1), tr("One place up (Alt+Up)"));
    offer(down, whyNot(1), tr("One place down (Alt+Down)"));

    const bool differs = draft.differs();
    if (!differs) awaited = 0;
    std::vector<Notice> said;
    if (differs && awaited == 0 && !draft.value().empty() && !draft.system().empty()) {
        said.push_back({Notice::Kind::hint,
                        tr("%1 stands first here, %2 on the system.")
                            .arg(inQuotes(draft.value().front()), inQuotes(draft.system().front()))});
        if (draft.value().front() == draft.system().front()) said.clear();
        if (draft.overtaken()) {
            said = {
                {Notice::Kind::warning,
                 tr("The system’s order has changed meanwhile: %1. Apply replaces it with this one; Revert "
                    "takes it over.")
                     .arg(joined(draft.system(), QStringLiteral(", ")))}};
        }
    }
    notices->setNotices(std::move(said));
    const QString busy = model.busy() ? tr("Another change is being applied.") : QString();
    bar->setState(draft.system().empty() ? DraftBar::State::reading
                  : !differs             ? DraftBar::State::inForce
                  : awaited > 0          ? DraftBar::State::applied
                                         : DraftBar::State::differs,
                  busy);
}

void ServiceOrderPage::Private::move(const std::string& name, const std::optional<std::string>& before) {
    Order order = draft.value();
    const auto from = std::find(order.begin(), order.end(), name);
    if (from == order.end()) return;
    order.erase(from);
    order.insert(before ? std::find(order.begin(), order.end(), *before) : order.end(), name);
    awaited = 0;
    draft.set(std::move(order));
    refresh();
    rows->scrollTo(rows->currentIndex());
}

void ServiceOrderPage::Private::moveToTop() {
    const std::string name = rows->currentId().toStdString();
    awaited = 0;
    draft.set(ServiceOrder::movedToTop(name, draft.value()));
    refresh();
    rows->scrollTo(rows->currentIndex());
}

void ServiceOrderPage::Private::apply() {
    if (bar->state() != DraftBar::State::differs) return;
    const QPointer<ServiceOrderPage> page(q);
    const Order applied = draft.value();
    if (!commands.applyServiceOrder(applied) || !page) return;
    // What was moved while the change was being made isn't applied yet.
    if (draft.value() == applied) awaited = readingsAfterApply;
    refresh();
}

void ServiceOrderPage::Private::showMenu(const QString& id, const QPoint& place) {
    if (id.isEmpty()) return;
    QMenu menu(q);
    menu.addAction(tr("Move to Top"), q, [this] { moveToTop(); })->setEnabled(whyNot(-1).isEmpty());
    menu.addAction(tr("Move Up"), rows, [this] { rows->moveCurrent(-1); })->setEnabled(whyNot(-1).isEmpty());
    menu.addAction(tr("Move Down"), rows, [this] { rows->moveCurrent(1); })->setEnabled(whyNot(1).isEmpty());
    menu.addSeparator();
    menu.addAction(tr("Show “%1”").arg(withoutMnemonics(oneLine(id))), q,
                   [this, id] { model.select(SidebarItem::service(id.toStdString())); });
    menu.exec(place);
}

} // namespace corvane
