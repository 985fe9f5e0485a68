#include "app/views/tools/ping/ping_panel.h"

#include "app/model/app_model.h"
#include "app/views/tools/ping/ping_captions.h"
#include "app/views/tools/ping/ping_commands.h"
#include "app/views/tools/ping/ping_header.h"
#include "app/views/tools/ping/ping_list.h"
#include "app/views/widgets/card.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/empty_state.h"

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <functional>
#include <unordered_set>

namespace corvane {

namespace {

/// Probes end many times a second; their rows are drawn together.
constexpr auto fold = std::chrono::milliseconds(40);
/// Often enough that no second of "last 12s ago" is passed over.
constexpr auto ageing = std::chrono::milliseconds(500);

} // namespace

struct PingPanel::Private {
    Private(PingPanel* panel, AppModel& m)
        : q(panel), model(m), commands(new PingCommands(m, panel)),
          header(new PingHeader(m, *commands, panel)), title(new QLabel(tr("Ping Monitor"), panel)),
          card(new Card(panel)), list(new PingList(card)), captions(new PingCaptions(*list, card)),
          empty(new EmptyState(card)) {}

    void refresh();
    void refreshStates(const std::unordered_set<Uuid>* only);
    void refreshEmpty(const PingGroup* group);
    const PingMonitor::State* stateOf(const Uuid& host) const;
    void showMenu(const std::optional<Uuid>& host, const QPoint& place);
    /// `host` tells, now and again when something is chosen, which host is meant.
    void fillHostMenu(QMenu& menu, const std::function<std::optional<Uuid>()>& host, bool showKeys);

    PingPanel* q;
    AppModel& model;
    PingCommands* commands;
    PingHeader* header;
    QLabel* title;
    Card* card;
    PingList* list;
    PingCaptions* captions;
    EmptyState* empty;
    QPushButton *make = nullptr, *fromCurrent = nullptr, *addHosts = nullptr, *sweep = nullptr;
    QStackedLayout* stack = nullptr;
    std::optional<Uuid> shownGroup;
    std::unordered_set<Uuid> changed;
    QTimer refreshSoon, statesSoon, age;
};

PingPanel::PingPanel(AppModel& model, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(this, model)) {
    setAccessibleName(tr("Ping Monitor"));
    d->title->setFont(theme::title(font()));
    d->list->setObjectName(QStringLiteral("pingHosts"));
    d->list->setAccessibleName(tr("Watched hosts"));

    d->make = d->empty->addAction(tr("New Ping Group…"));
    d->fromCurrent = d->empty->addAction(tr("From Current Settings"));
    d->addHosts = d->empty->addAction(tr("Add Hosts…"));
    d->sweep = d->empty->addAction(tr("Sweep a Subnet…"));
    connect(d->make, &QPushButton::clicked, d->commands, &PingCommands::newGroup);
    connect(d->fromCurrent, &QPushButton::clicked, d->commands, &PingCommands::newGroupFromCurrent);
    connect(d->addHosts, &QPushButton::clicked, d->commands, &PingCommands::addHosts);
    connect(d->sweep, &QPushButton::clicked, d->commands, &PingCommands::sweep);

    auto* rows = new QWidget(d->card);
    auto* rowsLayout = new QVBoxLayout(rows);
    rowsLayout->setContentsMargins(0, 0, 0, 0);
    rowsLayout->setSpacing(0);
    rowsLayout->addWidget(d->captions);
    rowsLayout->addWidget(d->list, 1);
    d->stack = new QStackedLayout(d->card);
    d->stack->setContentsMargins(1, 1, 1, 1);
    d->stack->addWidget(rows);
    d->stack->addWidget(d->empty);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(d->title);
    layout->addWidget(d->header);
    layout->addWidget(d->card, 1);
    setDocked(false);

    connect(d->list, &PingList::opened, d->commands, &PingCommands::editHost);
    connect(d->list, &PingList::deleteAsked, d->commands, &PingCommands::deleteHost);
    connect(d->list, &PingList::duplicateAsked, d->commands, &PingCommands::duplicateHost);
    connect(d->list, &PingList::addAsked, d->commands, &PingCommands::addHosts);
    connect(d->list, &PingList::moveAsked, this, [this](const Uuid& host, const std::optional<Uuid>& before) {
        if (d->shownGroup) d->model.movePingTarget(*d->shownGroup, host, before);
    });
    connect(d->list, &PingList::menuAsked, this,
            [this](const std::optional<Uuid>& host, const QPoint& place) { d->showMenu(host, place); });
    connect(d->commands, &PingCommands::hostMade, this, &PingPanel::chooseHost);

    d->refreshSoon.setSingleShot(true);
    d->refreshSoon.setInterval(0);
    connect(&d->refreshSoon, &QTimer::timeout, this, [this] { d->refresh(); });
    const auto soon = [this] { d->refreshSoon.start(); };
    connect(&model, &AppModel::libraryChanged, this, soon);
    connect(&model, &AppModel::servicesChanged, this, soon);
    connect(&model, &AppModel::tempAliasesChanged, this, soon);
    connect(&model, &AppModel::pingChanged, this, soon);
    d->statesSoon.setSingleShot(true);
    d->statesSoon.setInterval(fold);
    connect(&model.pinger(), &PingMonitor::stateChanged, this, [this](const Uuid& host) {
        if (!isVisible()) return;
        d->changed.insert(host);
        if (!d->statesSoon.isActive()) d->statesSoon.start();
    });
    connect(&d->statesSoon, &QTimer::timeout, this, [this] {
        d->refreshStates(&d->changed);
        d->changed.clear();
    });
    d->age.setInterval(ageing);
    connect(&d->age, &QTimer::timeout, this, [this] { d->refreshStates(nullptr); });
    d->refresh();
}

PingPanel::~PingPanel() = default;

void PingPanel::setDocked(bool docked) {
    d->header->setDocked(docked);
    d->title->setVisible(!docked);
    d->captions->setVisible(!docked);
    d->list->setDense(docked);
    if (docked) {
        layout()->setContentsMargins(theme::m, theme::s, theme::m, theme::s);
        layout()->setSpacing(theme::s);
    } else {
        layout()->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
        layout()->setSpacing(theme::m);
    }
}

void PingPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    d->age.start();
    d->refresh();
}

void PingPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    d->age.stop();
}

const PingMonitor::State* PingPanel::Private::stateOf(const Uuid& host) const {
    const auto& states = model.pinger().states();
    const auto found = states.find(host);
    return found == states.end() ? nullptr : &found->second;
}

void PingPanel::Private::refresh() {
    refreshSoon.stop();
    const PingGroup* group = commands->group();
    const auto interfaces = model.localInterfaces();
    const bool paused = model.pingPaused();
    const QDateTime now = QDateTime::currentDateTime();
    std::vector<PingRow> rows;
    if (group) {
        rows.reserve(group->targets.size());
        for (const PingTarget& target : group->targets)
            rows.push_back(PingRow::of(target, interfaces, stateOf(target.id), paused, now));
    }
    const auto id = group ? std::optional(group->id) : std::nullopt;
    const bool another = id != shownGroup;
    shownGroup = id;
    list->rowModel().setRows(std::move(rows));
    if (another) list->scrollToTop();
    refreshEmpty(group);
    header->refresh(PingSummary::of(list->rowModel().rows()));
    stack->setCurrentIndex(group && !group->targets.empty() ? 0 : 1);
}

void PingPanel::Private::refreshStates(const std::unordered_set<Uuid>* only) {
    const bool paused = model.pingPaused();
    const QDateTime now = QDateTime::currentDateTime();
    auto& rows = list->rowModel();
    if (only) {
        for (const Uuid& host : *only) rows.setState(host, stateOf(host), paused, now);
    } else {
        for (const PingRow& row : std::vector(rows.rows()))
            if (row.sign == PingRow::Sign::timeout) rows.setState(row.key, stateOf(row.key), paused, now);
    }
    header->setSummary(PingSummary::of(rows.rows()));
}

void PingPanel::Private::refreshEmpty(const PingGroup* group) {
    const bool none = model.library().pingGroups.empty();
    if (group) {
        empty->setTexts(tr("%1 has no hosts yet").arg(inQuotes(pingGroupTitle(*group).toStdString())),
                        tr("Add what has to answer: routers, servers, projectors. Each host is pinged once a "
                           "second, and its row says at a glance whether it answers."));
    } else if (none) {
        empty->setTexts(tr("Nothing is watched yet"),
                        tr("A ping group is a list of hosts that are pinged once a second, so that one look "
                           "says what answers. A global preset can start one."));
    } else {
        empty->setTexts(tr("No ping group is chosen"),
                        tr("Choose one above. If it was deleted by mistake, Undo in the Edit menu brings it "
                           "back."));
    }
    make->setVisible(!group);
    fromCurrent->setVisible(!group && none && commands->currentRefusal().isEmpty());
    addHosts->setVisible(group);
    sweep->setVisible(group || none);
}

void PingPanel::Private::fillHostMenu(QMenu& menu, const std::function<std::optional<Uuid>()>& host,
                                      bool showKeys) {
    const auto& rows = list->rowModel();
    const auto now = host();
    const QModelIndex index = now ? rows.indexOf(*now) : QModelIndex();
    const auto add = [&](const QString& text, const QKeySequence& keys, auto act) {
        QAction* action = menu.addAction(text, list, [host, act] {
            if (const auto key = host()) act(*key);
        });
        // The list takes these keys itself while it has the focus.
        if (showKeys) {
            action->setShortcut(keys);
            action->setShortcutContext(Qt::WidgetShortcut);
        }
        action->setEnabled(index.isValid());
        return action;
    };
    add(tr("&Edit Host…"), Qt::Key_F2, [this](const Uuid& key) { commands->editHost(key); });
    add(tr("D&uplicate Host"), Qt::CTRL | Qt::Key_D,
        [this](const Uuid& key) { commands->duplicateHost(key); });
    add(tr("&Copy Address"), QKeySequence::Copy, [this](const Uuid& key) { list->copyHost(key); });
    menu.addSeparator();
    add(tr("Move &Up"), Qt::ALT | Qt::Key_Up, [this](const Uuid& key) {
        list->moveHost(key, -1);
    })->setEnabled(index.row() > 0);
    add(tr("Move D&own"), Qt::ALT | Qt::Key_Down, [this](const Uuid& key) {
        list->moveHost(key, 1);
    })->setEnabled(index.isValid() && index.row() + 1 < rows.rowCount());
    menu.addSeparator();
    add(tr("&Delete Host"), Qt::Key_Delete, [this](const Uuid& key) { commands->deleteHost(key); });
}

void PingPanel::Private::showMenu(const std::optional<Uuid>& host, const QPoint& place) {
    QMenu menu(q);
    if (host)
        fillHostMenu(
            menu, [host] { return host; }, true);
    else
        header->fillMenu(menu);
    menu.exec(place);
}

void PingPanel::chooseHost(const Uuid& host) {
    d->refresh();
    d->list->setCurrentKey(host);
    d->list->setFocus();
}

void PingPanel::fillHostMenu(QMenu& menu) {
    const auto current = [this] { return isVisible() ? d->list->currentKey() : std::nullopt; };
    d->fillHostMenu(menu, current, false);
}

} // namespace corvane
