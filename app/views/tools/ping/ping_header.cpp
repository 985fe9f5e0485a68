#include "app/views/tools/ping/ping_header.h"

#include "app/model/app_model.h"
#include "app/views/tools/ping/ping_commands.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/list_closing.h"
#include "app/views/widgets/symbols.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>

#include <algorithm>

namespace corvane {

namespace {

constexpr int signSide = 12;

QToolButton* toolButton(symbols::Symbol symbol, const QString& name, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setIcon(symbols::icon(symbol));
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

PingHeader::PingHeader(AppModel& model, PingCommands& commands, QWidget* parent)
    : QWidget(parent), model_(model), commands_(commands), groups_(new QComboBox(this)),
      more_(toolButton(symbols::Symbol::more, tr("Ping group"), this)),
      close_(toolButton(symbols::Symbol::close, tr("Close the ping monitor"), this)), sign_(new QLabel(this)),
      words_(new ElidedLabel(ElidedLabel::Weight::primary, this)), pause_(new QPushButton(this)),
      add_(new QPushButton(tr("Add Hosts…"), this)), sweep_(new QPushButton(tr("Sweep…"), this)) {
    groups_->setObjectName(QStringLiteral("pingGroups"));
    groups_->setAccessibleName(tr("Ping group"));
    groups_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    groups_->setMinimumContentsLength(14);
    groups_->setPlaceholderText(tr("No group"));
    words_->setFont(theme::tabular(words_->font()));
    words_->setObjectName(QStringLiteral("pingSummary"));
    pause_->setObjectName(QStringLiteral("pausePings"));
    add_->setObjectName(QStringLiteral("addHosts"));
    sweep_->setObjectName(QStringLiteral("sweepSubnet"));
    close_->setObjectName(QStringLiteral("closePing"));
    more_->setObjectName(QStringLiteral("moreOnGroups"));
    add_->setAccessibleName(tr("Add hosts"));
    add_->setToolTip(tr("Adds hosts to this group (%1)")
                         .arg(PingCommands::addHostsKeys().toString(QKeySequence::NativeText)));
    sweep_->setToolTip(tr("Looks for hosts in a subnet of this computer"));
    // Either word fits, so that nothing moves when it changes.
    int widest = 0;
    for (const QString& word : {tr("Pause"), tr("Continue")}) {
        pause_->setText(word);
        widest = std::max(widest, pause_->sizeHint().width());
    }
    pause_->setFixedWidth(widest);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::s);
    layout->addWidget(groups_);
    layout->addWidget(more_);
    layout->addSpacing(theme::xs);
    layout->addWidget(sign_);
    layout->addWidget(words_, 1);
    for (QPushButton* button : {pause_, add_, sweep_}) {
        button->setAutoDefault(false);
        layout->addWidget(button);
    }
    layout->addWidget(close_);

    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("groupMenu"));
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        fillMenu(*menu);
    });
    connect(more_, &QToolButton::clicked, menu,
            [this, menu] { menu->popup(more_->mapToGlobal(QPoint(0, more_->height()))); });
    connect(groups_, &QComboBox::activated, this, [this] {
        model_.setActivePingGroup(Uuid::parse(groups_->currentData().toString().toStdString()));
    });
    whenListCloses(*groups_, this, [this] { fillGroups(); });
    connect(pause_, &QPushButton::clicked, this, [this] { model_.setPingPaused(!model_.pingPaused()); });
    connect(add_, &QPushButton::clicked, &commands_, &PingCommands::addHosts);
    connect(sweep_, &QPushButton::clicked, &commands_, &PingCommands::sweep);
    connect(close_, &QToolButton::clicked, this, [this] { model_.setShowPing(false); });
}

void PingHeader::setDocked(bool docked) {
    close_->setVisible(docked);
}

void PingHeader::fillGroups() {
    if (groups_->view()->isVisible()) return; // nothing moves under an open list
    const auto& groups = model_.library().pingGroups;
    const QSignalBlocker blocker(groups_);
    bool same = groups_->count() == static_cast<int>(groups.size());
    for (int i = 0; same && i < groups_->count(); ++i) {
        const PingGroup& group = groups[static_cast<std::size_t>(i)];
        same = groups_->itemText(i) == pingGroupTitle(group) &&
               groups_->itemData(i).toString().toStdString() == group.id.text();
    }
    if (!same) {
        groups_->clear();
        for (const PingGroup& group : groups)
            groups_->addItem(pingGroupTitle(group), QString::fromStdString(group.id.text()));
    }
    const PingGroup* shown = commands_.group();
    groups_->setCurrentIndex(shown ? groups_->findData(QString::fromStdString(shown->id.text())) : -1);
    groups_->setEnabled(!groups.empty());
    groups_->setToolTip(shown ? plainTip(pingGroupTitle(*shown)) : QString());
}

void PingHeader::refresh(const PingSummary& summary) {
    fillGroups();
    const PingGroup* group = commands_.group();
    const bool watches = group && !group->targets.empty();
    pause_->setText(model_.pingPaused() ? tr("Continue") : tr("Pause"));
    pause_->setToolTip(model_.pingPaused() ? tr("Pings the hosts again")
                                           : tr("Sends no pings until you continue"));
    pause_->setEnabled(watches || model_.pingPaused());
    add_->setEnabled(group);
    setSummary(summary);
}

void PingHeader::setSummary(const PingSummary& summary) {
    const PingGroup* group = commands_.group();
    const QString words = group && summary.total() > 0 ? summary.text() : QString();
    const bool same =
        words == words_->text() && summary.sign() == summary_.sign() && !sign_->pixmap().isNull();
    summary_ = summary;
    if (same) return;
    words_->setText(words);
    drawSign();
}

void PingHeader::drawSign() {
    const qreal ratio = devicePixelRatioF();
    QPixmap picture((QSizeF(signSide, signSide) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    if (!words_->text().isEmpty()) {
        QPainter painter(&picture);
        paintPingSign(painter, QRectF(0, 0, signSide, signSide), summary_.sign(), palette());
    }
    sign_->setPixmap(picture);
}

void PingHeader::fillMenu(QMenu& menu) {
    const auto add = [&](const QString& text, bool enabled, void (PingCommands::*act)()) {
        menu.addAction(text, &commands_, act)->setEnabled(enabled);
    };
    const bool chosen = commands_.group();
    menu.setToolTipsVisible(true);
    add(tr("&New Ping Group…"), true, &PingCommands::newGroup);
    add(tr("New Group from &Current Settings"), commands_.currentRefusal().isEmpty(),
        &PingCommands::newGroupFromCurrent);
    menu.actions().back()->setToolTip(commands_.currentRefusal());
    menu.addSeparator();
    add(tr("&Rename Group…"), chosen, &PingCommands::renameGroup);
    add(tr("D&uplicate Group"), chosen, &PingCommands::duplicateGroup);
    for (const int step : {-1, 1}) {
        menu.addAction(step < 0 ? tr("Move Group U&p") : tr("Move Group Do&wn"), &commands_,
                       [this, step] { commands_.moveGroup(step); })
            ->setEnabled(commands_.canMoveGroup(step));
    }
    add(tr("&Delete Group"), chosen, &PingCommands::deleteGroup);
    menu.addSeparator();
    add(tr("&Add Hosts…"), chosen, &PingCommands::addHosts);
    add(tr("&Sweep a Subnet…"), true, &PingCommands::sweep);
}

QSize PingHeader::minimumSizeHint() const {
    // Add and sweep stand in the menu as well.
    const int buttons = more_->sizeHint().width() + pause_->width() + close_->sizeHint().width();
    return {groups_->minimumSizeHint().width() + buttons + 110, QWidget::minimumSizeHint().height()};
}

void PingHeader::fit() {
    const int fixed = groups_->sizeHint().width() + more_->sizeHint().width() + pause_->width() +
                      close_->sizeHint().width() + signSide + 8 * theme::s;
    const int words = words_->fontMetrics().averageCharWidth() * 27;
    const int rest = width() - fixed - words;
    add_->setIcon({});
    add_->setText(tr("Add Hosts…"));
    const int wide = add_->sizeHint().width() + theme::s;
    sweep_->setVisible(rest >= wide + sweep_->sizeHint().width() + theme::s);
    if (rest < wide) {
        add_->setText({});
        add_->setIcon(symbols::icon(symbols::Symbol::plus));
    }
    add_->setFixedWidth(rest < wide ? add_->sizeHint().height() + theme::s : wide - theme::s);
}

void PingHeader::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fit();
}

void PingHeader::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) drawSign();
}

} // namespace corvane
