#include "app/views/tools/router/router_desk.h"

#include "app/clients/videohub_client.h"
#include "app/views/tools/router/port_delegates.h"
#include "app/views/tools/router/port_pane.h"
#include "app/views/tools/router/router_actions.h"
#include "app/views/tools/router/router_presentation.h"
#include "app/views/tools/router/router_requests.h"
#include "app/views/tools/router/take_bar.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"

#include <QMenu>
#include <QSplitter>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace corvane {

namespace {

using Ports = std::vector<int>;
using Wish = RouterRequests::LockWish;

/// Within this time the second press forces.
constexpr int armedMilliseconds = 3000;

QString noConnection() {
    return RouterDesk::tr("There is no connection to the router.");
}

} // namespace

struct RouterDesk::Private {
    Private(RouterDesk* desk, VideohubClient& c)
        : q(desk), client(c), requests(c), actions(desk),
          outputs(new PortPane(tr("Outputs"), PortList::Shape::list, outputRows_, new OutputDelegate, desk)),
          sources(new PortPane(tr("Sources"), PortList::Shape::grid, sourceRows_, new SourceDelegate, desk)),
          shown(new QToolButton(desk)), foot(new TakeBar(actions, desk)) {}

    void connectPanes();
    void connectActions();

    void refreshSources(bool scroll);
    void judge();
    void judgeLocks();
    QString plan() const;
    void showPlan();
    QString whyNotTake() const;
    std::vector<OutputRow> chosenRows() const;
    /// Empty for no or for several different sources.
    std::optional<int> commonSource() const;
    /// As it will be once the router has carried out what was asked for.
    std::optional<int> commonWish() const;
    void chosenChanged();
    void preselect(int input);
    void takeNow();
    void clicked(int input);
    void force_();
    void disarm();
    void filterOutputs();
    void showMenu(PortPane* pane, const QPoint& place);
    Ports lockedAs(Videohub::Lock held) const;

    RouterDesk* q;
    VideohubClient& client;
    RouterRequests requests;
    OutputRows outputRows_;
    SourceRows sourceRows_;
    RouterActions actions;
    PortPane *outputs, *sources;
    QToolButton* shown;
    TakeBar* foot;
    QTimer armed;

    bool live = false;
    QString since;
    Ports chosen;
    /// The user's; without one the list follows what the chosen output shows.
    std::optional<int> preselected;
    /// Whose outputs alone are shown.
    int usesOf = -1;
};

RouterDesk::RouterDesk(VideohubClient& client, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(this, client)) {
    d->outputs->list().setObjectName(QStringLiteral("outputs"));
    d->sources->list().setObjectName(QStringLiteral("sources"));
    d->shown->setObjectName(QStringLiteral("shownOutputs"));
    d->shown->setPopupMode(QToolButton::InstantPopup);
    d->shown->setToolButtonStyle(Qt::ToolButtonTextOnly);
    d->shown->setFocusPolicy(Qt::TabFocus);
    d->shown->addActions({d->actions.showAll, d->actions.showLocked, d->actions.showUses});
    // Wide enough for all of its texts, so that its neighbours stay where they are.
    d->shown->setText(tr("Shows %1").arg(888));
    d->shown->setFixedWidth(d->shown->sizeHint().width());
    d->outputs->addControl(d->shown);

    auto* panes = new QSplitter(Qt::Horizontal, this);
    panes->setChildrenCollapsible(false);
    panes->addWidget(d->outputs);
    panes->addWidget(d->sources);
    d->outputs->setMinimumWidth(250);
    d->sources->setMinimumWidth(200);
    d->outputs->layout()->setContentsMargins(0, 0, theme::xs + 1, 0);
    d->sources->layout()->setContentsMargins(theme::xs - 1, 0, 0, 0);
    panes->setStretchFactor(0, 3);
    panes->setStretchFactor(1, 2);
    panes->setSizes({3000, 2000});
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::s);
    layout->addWidget(panes, 1);
    layout->addWidget(d->foot);
    setTabOrder(&d->outputs->list(), &d->sources->list());

    d->armed.setSingleShot(true);
    d->armed.setInterval(armedMilliseconds);
    connect(&d->armed, &QTimer::timeout, this, [this] { d->disarm(); });
    connect(&d->requests, &RouterRequests::changed, this, &RouterDesk::refreshNeeded);
    d->connectPanes();
    d->connectActions();
    d->filterOutputs();
    d->judge();
}

RouterDesk::~RouterDesk() = default;

void RouterDesk::Private::connectPanes() {
    auto& outputList = outputs->list();
    auto& sourceList = sources->list();
    connect(outputList.selectionModel(), &QItemSelectionModel::selectionChanged, q,
            [this] { chosenChanged(); });
    connect(&sourceList, &PortList::picked, q, [this](int input) { preselect(input); });
    connect(&sourceList, &PortList::clickedPort, q, [this](int input) { clicked(input); });
    connect(&sourceList, &PortList::doubleClickedPort, q, [this](int input) {
        preselect(input);
        takeNow();
    });
    connect(&outputList, &PortList::leaveAsked, q, [this](int direction) {
        if (direction > 0) sources->list().setFocus(Qt::TabFocusReason);
    });
    connect(&sourceList, &PortList::leaveAsked, q, [this](int direction) {
        if (direction < 0) outputs->list().setFocus(Qt::BacktabFocusReason);
    });
    connect(&outputList, &PortList::escaped, q, [this] {
        if (outputs->isSearching())
            outputs->clearSearch();
        else
            actions.showAll->trigger();
    });
    connect(&sourceList, &PortList::escaped, q, [this] {
        if (sources->isSearching()) return sources->clearSearch();
        if (!preselected) return outputs->list().setFocus(Qt::BacktabFocusReason);
        preselected.reset();
        refreshSources(true);
    });
    connect(sources, &PortPane::filtered, q, [this] { refreshSources(true); });
    for (PortPane* pane : {outputs, sources}) {
        connect(&pane->list(), &PortList::menuAsked, q,
                [this, pane](const QPoint& place) { showMenu(pane, place); });
    }
    connect(&outputRows_, &PortModel::renameAsked, q,
            [this](int output, const QString& name) { requests.renameOutput(output, name); });
    connect(&sourceRows_, &PortModel::renameAsked, q,
            [this](int input, const QString& name) { requests.renameInput(input, name); });
}

void RouterDesk::Private::connectActions() {
    actions.bindToOutputs(&outputs->list());
    actions.bindToSources(&sources->list());
    connect(actions.take, &QAction::triggered, q, [this] { takeNow(); });
    connect(actions.directTake, &QAction::toggled, q, [this] { judge(); });
    connect(actions.lock, &QAction::triggered, q,
            [this] { requests.lock(lockedAs(Videohub::Lock::unlocked), Wish::take); });
    connect(actions.release, &QAction::triggered, q,
            [this] { requests.lock(lockedAs(Videohub::Lock::owned), Wish::release); });
    connect(actions.force, &QAction::triggered, q, [this] { force_(); });
    const auto rename = [](PortPane* pane) {
        return [pane] {
            pane->list().setFocus(Qt::OtherFocusReason);
            pane->list().beginRename();
        };
    };
    connect(actions.renameOutput, &QAction::triggered, q, rename(outputs));
    connect(actions.renameSource, &QAction::triggered, q, rename(sources));
    connect(actions.findOutput, &QAction::triggered, q, [this] { outputs->find(); });
    connect(actions.findSource, &QAction::triggered, q, [this] { sources->find(); });
    for (QAction* action : {actions.showAll, actions.showLocked, actions.showUses}) {
        connect(action, &QAction::triggered, q, [this] { filterOutputs(); });
    }
}

void RouterDesk::showLive() {
    d->live = true;
    for (PortPane* pane : {d->outputs, d->sources}) pane->setStale(false);
    d->outputRows_.setRows(outputRows(d->client.state(), d->requests));
    d->outputs->refreshCount();
    // What was taken is no longer ready to take.
    if (d->preselected && d->commonSource() == d->preselected && d->commonWish() == d->preselected)
        d->preselected.reset();
    d->refreshSources(false);
}

void RouterDesk::showStale(const QString& since) {
    if (d->live) {
        for (PortPane* pane : {d->outputs, d->sources}) pane->setStale(true);
        d->preselected.reset();
    }
    d->live = false;
    d->since = since;
    d->judge();
}

void RouterDesk::clear() {
    d->live = false;
    d->since.clear();
    d->preselected.reset();
    d->outputs->clearSearch();
    d->sources->clearSearch();
    d->actions.showAll->trigger();
    d->outputRows_.setRows({});
    d->sourceRows_.setRows({});
    d->judge();
}

const RouterActions& RouterDesk::actions() const {
    return d->actions;
}

void RouterDesk::focusOutputs() {
    d->outputs->list().setFocus(Qt::ShortcutFocusReason);
}

std::optional<int> RouterDesk::Private::commonSource() const {
    std::optional<int> common;
    for (const int output : chosen) {
        const auto& source = outputRows_.row(output).source;
        if (!source || (common && common != source)) return std::nullopt;
        common = source;
    }
    return common;
}

std::optional<int> RouterDesk::Private::commonWish() const {
    std::optional<int> common;
    for (const int output : chosen) {
        const auto asked = requests.routeAsked(output);
        const auto source = asked ? asked : outputRows_.row(output).source;
        if (!source || (common && common != source)) return std::nullopt;
        common = source;
    }
    return common;
}

void RouterDesk::Private::chosenChanged() {
    const Ports now = outputs->list().chosenPorts();
    if (now == chosen) return;
    // A source that was picked stays picked while outputs are only added.
    const bool added = !chosen.empty() && std::includes(now.begin(), now.end(), chosen.begin(), chosen.end());
    if (!added) preselected.reset();
    chosen = now;
    disarm();
    refreshSources(true);
}

void RouterDesk::Private::refreshSources(bool scroll) {
    if (live) sourceRows_.setRows(sourceRows(client.state(), requests, chosen, preselected));
    if (preselected && !sourceRows_.has(*preselected)) preselected.reset();
    sources->refreshCount();
    const auto wanted = preselected ? preselected : commonSource();
    sources->list().setCurrentPort(wanted.value_or(-1), scroll);
    judge();
}

void RouterDesk::Private::preselect(int input) {
    if (!live || chosen.empty()) return judge();
    preselected = commonWish() == input ? std::nullopt : std::optional(input);
    refreshSources(false);
}

void RouterDesk::Private::clicked(int input) {
    // With several outputs a slip would change them all.
    if (actions.directTake->isChecked() && chosen.size() == 1 && preselected == input) takeNow();
}

void RouterDesk::Private::takeNow() {
    if (!whyNotTake().isEmpty()) return;
    requests.route(chosen, *preselected);
}

QString RouterDesk::Private::whyNotTake() const {
    if (!live) return noConnection();
    if (chosen.empty()) return tr("Choose an output first.");
    if (!preselected) return tr("Choose another source first.");
    return {};
}

std::vector<OutputRow> RouterDesk::Private::chosenRows() const {
    std::vector<OutputRow> rows;
    for (const int output : chosen) rows.push_back(outputRows_.row(output));
    return rows;
}

void RouterDesk::Private::showPlan() {
    foot->setPlan(plan(), armed.isActive() || (!live && !since.isEmpty()));
}

QString RouterDesk::Private::plan() const {
    if (!live) return since;
    const auto rows = chosenRows();
    if (armed.isActive()) {
        return tr("%1: taken from the client that holds it when you press again.").arg(chosenText(rows));
    }
    const auto next = preselected ? preselected : commonSource();
    return planText(rows, next && sourceRows_.has(*next) ? &sourceRows_.row(*next) : nullptr,
                    preselected.has_value());
}

void RouterDesk::Private::judge() {
    RouterActions::offer(
        actions.take, whyNotTake(),
        whyNotTake().isEmpty()
            ? tr("Routes %1 to %2").arg(sourceRows_.row(*preselected).title(), chosenText(chosenRows()))
            : QString());
    RouterActions::offer(actions.directTake, {},
                         tr("A click on a source routes it at once while one output is chosen"));
    judgeLocks();
    const int input = sources->list().currentPort();
    RouterActions::offer(actions.renameOutput,
                         !live            ? noConnection()
                         : chosen.empty() ? tr("Choose an output first.")
                                          : QString(),
                         tr("Renames the output in the router"));
    RouterActions::offer(actions.renameSource,
                         !live       ? noConnection()
                         : input < 0 ? tr("Choose a source first.")
                                     : QString(),
                         tr("Renames the source in the router"));
    const bool named = sourceRows_.has(input);
    actions.showUses->setText(
        named ? tr("Show Outputs &with “%1”").arg(withoutMnemonics(sourceRows_.row(input).title()))
              : tr("Show Outputs &with This Source"));
    actions.showUses->setEnabled(named || actions.showUses->isChecked());
    showPlan();
    const bool unsent = requests.trouble() == RouterRequests::Trouble::unsent;
    foot->setTrouble(live || unsent ? troubleText(client.state(), requests) : QString(),
                     requests.trouble() == RouterRequests::Trouble::unanswered);
}

Ports RouterDesk::Private::lockedAs(Videohub::Lock held) const {
    Ports ports;
    for (const int output : chosen) {
        if (outputRows_.row(output).lock == held) ports.push_back(output);
    }
    return ports;
}

void RouterDesk::Private::judgeLocks() {
    const auto offer = [this](QAction* action, Videohub::Lock held, const QString& none,
                              const QString& what) {
        RouterActions::offer(action,
                             !live                    ? noConnection()
                             : chosen.empty()         ? tr("Choose an output first.")
                             : lockedAs(held).empty() ? none
                                                      : QString(),
                             what);
    };
    offer(actions.lock, Videohub::Lock::unlocked, tr("The chosen outputs are locked already."),
          tr("Only this computer can then change %1").arg(chosenText(chosenRows())));
    offer(actions.release, Videohub::Lock::owned, tr("This computer holds no lock on the chosen outputs."),
          tr("Gives up this computer’s lock"));
    offer(actions.force, Videohub::Lock::lockedByOther,
          tr("No other client holds a lock on the chosen outputs."),
          tr("Takes the lock away from the client that holds it; asks for a second press"));
    if (armed.isActive() && !actions.force->isEnabled()) disarm();
}

void RouterDesk::Private::force_() {
    if (!armed.isActive()) {
        armed.start();
        foot->setArmed(true);
        judge();
        return;
    }
    disarm();
    requests.lock(lockedAs(Videohub::Lock::lockedByOther), Wish::force);
}

void RouterDesk::Private::disarm() {
    armed.stop();
    foot->setArmed(false);
    showPlan();
}

void RouterDesk::Private::filterOutputs() {
    if (actions.showLocked->isChecked()) {
        shown->setText(tr("Locked"));
        outputs->setKeep(
            [this](int output) { return outputRows_.row(output).lock != Videohub::Lock::unlocked; },
            tr("No output is locked."));
    } else if (actions.showUses->isChecked()) {
        // Chosen again while no source is current: the same source as before.
        if (const int input = sources->list().currentPort(); input >= 0) usesOf = input;
        if (usesOf < 0) return actions.showAll->trigger();
        shown->setText(tr("Shows %1").arg(usesOf + 1));
        outputs->setKeep([this](int output) { return outputRows_.row(output).source == usesOf; },
                         tr("No output shows this source."));
    } else {
        shown->setText(tr("All"));
        outputs->setKeep({}, {});
    }
    shown->setToolTip(plainTip(tr("Which outputs are shown")));
    shown->setAccessibleName(tr("Shown outputs: %1").arg(shown->text()));
}

void RouterDesk::Private::showMenu(PortPane* pane, const QPoint& place) {
    QMenu menu(q);
    if (pane == outputs) {
        menu.addActions({actions.lock, actions.release, actions.force});
        menu.addSeparator();
        menu.addActions({actions.renameOutput});
        menu.addSeparator();
        menu.addActions({actions.showAll, actions.showLocked});
    } else {
        menu.addActions({actions.take});
        menu.addSeparator();
        menu.addActions({actions.renameSource, actions.showUses});
    }
    menu.setToolTipsVisible(true);
    menu.exec(place);
}

} // namespace corvane
