#include "app/views/network/routes_pane.h"

#include "app/model/app_model.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/route_table.h"
#include "app/views/widgets/card.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/draft.h"
#include "app/views/widgets/draft_bar.h"
#include "app/views/widgets/empty_state.h"

#include <QPointer>
#include <QPushButton>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <map>

namespace corvane {

namespace {

/// A reading that was under way when the change was made may still tell the routes before it; the second one
/// can't.
constexpr int readingsAfterApply = 2;

using Routes = std::vector<StaticRoute>;

struct ServiceDraft {
    Draft<Routes> routes{&StaticRoute::sameRoutes};
    /// Readings to wait for after an applied change before what is read is believed.
    int awaited = 0;
};

} // namespace

struct RoutesPane::Private {
    Private(RoutesPane* pane, AppModel& m, NetworkCommands& c)
        : q(pane), model(m), commands(c), add(new QPushButton(tr("Add Route"), pane)),
          remove(new QPushButton(tr("Remove Route"), pane)), table(new RouteTable), empty(new EmptyState),
          nothing(new EmptyState), notices(new NoticeLines(NoticeLines::Room::oneLineAtLeast, pane)),
          bar(new DraftBar(tr("Static Routes"), pane)) {}
    void refresh();
    void judge();
    void apply();
    ServiceDraft& draft() { return drafts[service]; }

    RoutesPane* q;
    AppModel& model;
    NetworkCommands& commands;
    std::string service;
    std::map<std::string, ServiceDraft> drafts;
    QPushButton* add;
    QPushButton* remove;
    RouteTable* table;
    EmptyState* empty;
    /// Where there is nothing to edit: before the first reading, or without the service.
    EmptyState* nothing;
    QStackedLayout* stack = nullptr;
    NoticeLines* notices;
    DraftBar* bar;
    QTimer folded;
};

RoutesPane::RoutesPane(AppModel& model, NetworkCommands& commands, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(this, model, commands)) {
    d->table->setObjectName(QStringLiteral("routes"));
    d->table->setAccessibleName(tr("Static routes"));
    auto* card = new Card(this);
    d->stack = new QStackedLayout(card);
    d->stack->setContentsMargins(theme::s, theme::xs, theme::s, theme::xs);
    for (QWidget* page : {static_cast<QWidget*>(d->table), static_cast<QWidget*>(d->empty),
                          static_cast<QWidget*>(d->nothing)}) {
        d->stack->addWidget(page);
    }
    auto* first = d->empty->addAction(tr("Add Route"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::m);
    layout->addWidget(card, 1);
    layout->addWidget(d->notices);
    layout->addWidget(d->bar);

    const auto addRow = [this] {
        d->stack->setCurrentWidget(d->table);
        d->table->addRow();
    };
    connect(first, &QPushButton::clicked, this, addRow);
    connect(d->add, &QPushButton::clicked, this, addRow);
    connect(d->remove, &QPushButton::clicked, d->table, &RouteTable::removeCurrentRow);
    connect(d->table, &RouteTable::applyAsked, this, [this] { d->apply(); });
    connect(d->table, &RouteTable::currentRowChanged, this, [this] { d->judge(); });
    connect(&d->table->routes(), &RouteTableModel::edited, this, [this] {
        d->draft().awaited = 0;
        d->draft().routes.set(d->table->routes().routes());
        d->folded.start();
    });
    connect(d->bar, &DraftBar::applyAsked, this, [this] { d->apply(); });
    connect(d->bar, &DraftBar::revertAsked, this, [this] {
        d->draft().routes.revert();
        d->refresh();
    });

    d->folded.setSingleShot(true);
    d->folded.setInterval(0);
    connect(&d->folded, &QTimer::timeout, this, [this] { d->refresh(); });
    const auto later = [this] { d->folded.start(); };
    connect(&model, &AppModel::servicesChanged, this, later);
    connect(&model, &AppModel::busyChanged, this, later);
    connect(&model, &AppModel::routesChanged, this, later);
    // What another program sets shows as well; only what is looked at is read.
    connect(&model, &AppModel::refreshed, this, [this, later] {
        if (isVisible() && d->model.service(d->service)) d->model.loadRoutes(d->service);
        later();
    });
    connect(&model, &AppModel::routesLoaded, this, [this, later](const std::string& service) {
        const auto found = d->drafts.find(service);
        const auto read = d->model.routes(service);
        if (found == d->drafts.end() || found->second.awaited == 0 || !read) return;
        later();
        if (--found->second.awaited > 0) return;
        // The system may have put it in its own words: without a destination's host bits, for one.
        found->second.routes.follow(*read);
        found->second.routes.revert();
    });
    d->refresh();
}

RoutesPane::~RoutesPane() = default;

QPushButton* RoutesPane::addButton() const {
    return d->add;
}
QPushButton* RoutesPane::removeButton() const {
    return d->remove;
}
DraftBar* RoutesPane::bar() const {
    return d->bar;
}

void RoutesPane::setService(const std::string& service) {
    if (service == d->service) return;
    d->service = service;
    d->table->setCurrentIndex({});
    if (isVisible() && d->model.service(service)) d->model.loadRoutes(service);
    d->refresh();
    d->table->scrollToTop();
}

void RoutesPane::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (d->model.service(d->service)) d->model.loadRoutes(d->service);
}

void RoutesPane::Private::refresh() {
    const auto read = model.routes(service);
    const bool here = model.service(service);
    Draft<Routes>& own = draft().routes;
    // A field in which somebody is about to type isn't taken away under the cursor.
    const bool leaveAlone =
        table->isEditing() && !own.differs() && q->isVisible() && table->routes().routes() == own.value();
    if (read && !leaveAlone) own.follow(*read);
    table->routes().setRoutes(own.value());

    const QString name = oneLine(service);
    if (!here) {
        nothing->setTexts(tr("%1 isn’t on this machine now").arg(name),
                          tr("Its static routes can be read and set when it is there."));
    } else {
        nothing->setTexts(tr("Reading the static routes…"), tr("They appear here in a moment."));
    }
    empty->setTexts(tr("No static routes on %1").arg(name),
                    tr("A static route reaches a network behind another router than the default one, for "
                       "instance a show network, while internet keeps going its own way."));
    const bool known = here && read;
    stack->setCurrentWidget(!known                ? static_cast<QWidget*>(nothing)
                            : own.value().empty() ? static_cast<QWidget*>(empty)
                                                  : table);
    judge();
}

void RoutesPane::Private::judge() {
    const bool known = model.service(service) && model.routes(service);
    const ServiceDraft& state = draft();
    const Routes& value = state.routes.value();
    const bool differs = state.routes.differs();
    const auto broken = std::count_if(value.begin(), value.end(),
                                      [](const StaticRoute& route) { return !route.errors().empty(); });
    QString whyNot;
    if (model.busy()) whyNot = tr("Another change is being applied.");
    if (broken > 0) {
        whyNot =
            broken == 1 ? tr("One route isn’t right yet.") : tr("%1 routes aren’t right yet.").arg(broken);
    }
    std::vector<Notice> said;
    if (known && differs && state.awaited == 0) {
        if (value.empty())
            said.push_back({Notice::Kind::hint, tr("Apply removes every static route of this service.")});
        if (broken > 0) said.push_back({Notice::Kind::hint, whyNot});
        if (state.routes.overtaken()) {
            said.push_back({Notice::Kind::warning,
                            tr("The system’s routes have changed meanwhile. Apply replaces them with these; "
                               "Revert takes them over.")});
        }
    }
    notices->setNotices(std::move(said));
    bar->setState(!known              ? DraftBar::State::reading
                  : !differs          ? DraftBar::State::inForce
                  : state.awaited > 0 ? DraftBar::State::applied
                                      : DraftBar::State::differs,
                  whyNot);
    const QString unknown = known ? QString() : tr("The static routes haven’t been read.");
    const bool chosen = table->currentIndex().isValid() && !value.empty();
    const auto offer = [](QPushButton* button, const QString& reason, const QString& what) {
        button->setEnabled(reason.isEmpty());
        button->setToolTip(plainTip(reason.isEmpty() ? what : reason));
        button->setAccessibleDescription(reason);
    };
    offer(add, unknown, tr("A route to another network (Insert)"));
    offer(remove, known && !chosen ? tr("Choose a route first.") : unknown,
          tr("Takes the chosen route off the list (Delete)"));
}

void RoutesPane::Private::apply() {
    if (bar->state() != DraftBar::State::differs || !bar->whyNotApply().isEmpty()) return;
    const QPointer<RoutesPane> pane(q);
    const std::string to = service;
    const Routes applied = draft().routes.value();
    if (!commands.applyRoutes(applied, to) || !pane) return;
    // What was edited while the change was being made isn't applied yet.
    if (StaticRoute::sameRoutes(drafts[to].routes.value(), applied)) drafts[to].awaited = readingsAfterApply;
    refresh();
}

} // namespace corvane
