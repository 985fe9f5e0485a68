#include "app/views/window/sidebar.h"

#include "app/clients/ping_monitor.h"
#include "app/clients/videohub_client.h"
#include "app/model/app_model.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/vlan_presentation.h"
#include "app/views/window/service_visibility.h"
#include "app/views/window/sidebar_delegate.h"
#include "app/views/window/sidebar_model.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>

namespace corvane {
namespace {

using namespace Qt::StringLiterals;

constexpr int toolsMilliseconds = 500;

std::optional<Uuid> idOf(const SidebarItem& item) {
    return Uuid::parse(item.key().toStdString());
}

} // namespace

Sidebar::Sidebar(AppModel& model, NetworkCommands& commands, QWidget* parent)
    : QTreeView(parent), model_(model), commands_(commands), rows_(new SidebarModel(this)) {
    setObjectName(u"sidebar"_s);
    setAccessibleName(u"Services and presets"_s);
    setModel(rows_);
    setItemDelegate(new SidebarDelegate(this));
    setHeaderHidden(true);
    setIndentation(0);
    setRootIsDecorated(false);
    setFrameShape(QFrame::NoFrame);
    setUniformRowHeights(false);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setExpandsOnDoubleClick(false);
    setMouseTracking(true);
    setMinimumWidth(180);
    viewport()->setBackgroundRole(QPalette::Window);
    viewport()->setAutoFillBackground(true);

    refreshSoon_.setSingleShot(true);
    connect(&refreshSoon_, &QTimer::timeout, this, &Sidebar::refresh);
    const auto soon = [this] { refreshSoon_.start(0); };
    connect(&model_, &AppModel::servicesChanged, this, soon);
    connect(&model_, &AppModel::refreshed, this, soon);
    connect(&model_, &AppModel::libraryChanged, this, soon);
    connect(&model_, &AppModel::sidebarChanged, this, soon);
    connect(&model_, &AppModel::pingChanged, this, soon);
    connect(&model_.videohub(), &VideohubClient::statusChanged, this, soon);
    // Pings end many times a second; their count may lag a little behind.
    toolsSoon_.setSingleShot(true);
    toolsSoon_.setInterval(toolsMilliseconds);
    connect(&toolsSoon_, &QTimer::timeout, this,
            [this] { rows_->setRows(SidebarGroup::Id::tools, toolRows(model_)); });
    connect(&model_.pinger(), &PingMonitor::stateChanged, this, [this] {
        if (!toolsSoon_.isActive()) toolsSoon_.start();
    });
    connect(&model_, &AppModel::selectionChanged, this, &Sidebar::showSelection);

    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& current) {
        const auto* row = rows_->row(current);
        if (!refreshing_ && row && row->item && row->item != model_.selection()) model_.select(row->item);
    });
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (const auto* group = rows_->heading(index))
            model_.setExpanded(SidebarGroup::name(group->key), true);
    });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        if (const auto* group = rows_->heading(index))
            model_.setExpanded(SidebarGroup::name(group->key), false);
    });
    refresh();
}

void Sidebar::refresh() {
    // A row that goes must not hand the selection to its neighbour: the model decides what is selected.
    refreshing_ = true;
    rows_->setGroups(sidebarGroups(model_));
    for (int i = 0; i < rows_->rowCount(); ++i) {
        const QModelIndex index = rows_->index(i, 0);
        const bool open = model_.isExpanded(SidebarGroup::name(rows_->heading(index)->key));
        if (isExpanded(index) != open) setExpanded(index, open);
    }
    refreshing_ = false;
    showSelection();
}

void Sidebar::showSelection() {
    const auto& item = model_.selection();
    const QModelIndex wanted = item ? rows_->indexOf(*item) : QModelIndex();
    const auto selected = selectionModel()->selectedIndexes();
    if (wanted.isValid() ? selected == QModelIndexList{wanted} : selected.isEmpty()) return;
    if (!wanted.isValid()) {
        selectionModel()->clearSelection();
        return;
    }
    // Selecting mustn't scroll away from what the user looks at, unless the row can't be seen.
    const int scroll = verticalScrollBar()->value();
    selectionModel()->setCurrentIndex(wanted, QItemSelectionModel::ClearAndSelect);
    verticalScrollBar()->setValue(scroll);
    if (isExpanded(wanted.parent())) scrollTo(wanted, QAbstractItemView::EnsureVisible);
    viewport()->update();
}

void Sidebar::activate(const QModelIndex& index) {
    const auto* row = rows_->row(index);
    if (!row) {
        if (index.isValid()) setExpanded(index, !isExpanded(index));
        return;
    }
    if (row->act == SidebarRow::Act::newGlobal)
        commands_.newGlobal();
    else
        emit opened();
}

void Sidebar::keyPressEvent(QKeyEvent* event) {
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        event->modifiers() == Qt::NoModifier) {
        activate(currentIndex());
        return;
    }
    QTreeView::keyPressEvent(event);
}

void Sidebar::mousePressEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->position().toPoint());
    const auto* row = rows_->row(index);
    const bool plain = event->button() == Qt::LeftButton;
    if (plain && index.isValid() && !row) {
        activate(index);
        return;
    }
    if (plain && row && row->act != SidebarRow::Act::none) {
        activate(index);
        return;
    }
    // The right button opens a menu about a row without leaving the page that is shown.
    if (event->button() == Qt::RightButton) return;
    QTreeView::mousePressEvent(event);
}

void Sidebar::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    QMenu menu(this);
    menu.setToolTipsVisible(true);
    fillContextMenu(menu, index);
    menu.exec(byKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void Sidebar::fillContextMenu(QMenu& menu, const QModelIndex& index) {
    const auto* row = rows_->row(index);
    if (row && row->item) {
        const SidebarItem item = *row->item;
        if (item.kind() == SidebarItem::Kind::service) fillServiceMenu(menu, item.key().toStdString());
        if (item.kind() == SidebarItem::Kind::global) {
            if (const auto id = idOf(item)) fillGlobalMenu(menu, *id);
        }
        if (item.kind() == SidebarItem::Kind::plannedVLAN) {
            if (const auto id = idOf(item)) fillPlanMenu(menu, *id);
        }
        if (!menu.isEmpty()) menu.addSeparator();
    }
    fillListMenu(menu);
}

void Sidebar::fillServiceMenu(QMenu& menu, const std::string& name) {
    auto& commands = commands_;
    menu.addAction(u"New Preset…"_s, this, [&commands, name] { commands.newPreset(name); });
    const auto* service = model_.service(name);
    if (!service) return;
    menu.addAction(u"New Preset from Current Settings…"_s, this,
                   [&commands, name] { commands.newPresetFromCurrent(name); });
    if (service->device) {
        menu.addAction(u"Temporary Address…"_s, this,
                       [&commands, name] { commands.addTemporaryAddress(name); });
    }
    if (model_.vlan(name)) {
        menu.addAction(u"Edit VLAN…"_s, this, [&commands, name] { commands.editVLAN(name); });
        menu.addAction(u"Delete VLAN…"_s, this, [&commands, name] { commands.deleteVLAN(name); });
    } else if (model_.vlanSupport(name) == AppModel::VLANSupport::supported) {
        menu.addAction(u"New VLAN…"_s, this, [&commands, name] { commands.newVLAN(name); });
    }
    const QString address = QString::fromStdString(service->state().address());
    if (!address.isEmpty()) {
        menu.addAction(u"Copy %1"_s.arg(address), this,
                       [address] { QGuiApplication::clipboard()->setText(address); });
    }
    menu.addSeparator();
    const bool hidden = model_.isHidden(name);
    const QString shown = visibility::menuName(name);
    menu.addAction(hidden ? u"Show “%1”"_s.arg(shown) : u"Hide “%1”"_s.arg(shown), this,
                   [this, name, hidden] { visibility::setHidden(model_, name, !hidden); });
}

void Sidebar::fillPlanMenu(QMenu& menu, const Uuid& id) {
    const auto* plan = model_.plannedVLAN(id);
    if (!plan) return;
    auto& commands = commands_;
    const std::string name = plan->name;
    auto* setUp = menu.addAction(u"Set Up Now"_s, this, [&commands, id] { commands.setUpPlannedVLAN(id); });
    const QString refusal = commands.setUpRefusal(id);
    setUp->setEnabled(refusal.isEmpty());
    setUp->setToolTip(refusal.isEmpty() ? vlanTexts::setUp : refusal);
    menu.addSeparator();
    menu.addAction(u"New Preset…"_s, this, [&commands, name] { commands.newPreset(name); });
    menu.addAction(u"Delete Plan"_s, this, [&commands, id] { commands.deletePlannedVLAN(id); })
        ->setToolTip(vlanTexts::nothingChanges);
}

void Sidebar::fillGlobalMenu(QMenu& menu, const Uuid& id) {
    auto& commands = commands_;
    menu.addAction(u"Apply"_s, this, [&commands, id] { commands.applyGlobal(id); })
        ->setEnabled(!model_.busy());
    menu.addSeparator();
    menu.addAction(u"Edit…"_s, this, [&commands, id] { commands.editGlobal(id); });
    menu.addAction(u"Duplicate"_s, this, [&commands, id] { commands.duplicateGlobal(id); });
    menu.addAction(u"Delete"_s, this, [&commands, id] { commands.deleteGlobal(id); });
    menu.addSeparator();
    const auto& globals = model_.library().globals;
    const auto at =
        std::find_if(globals.begin(), globals.end(), [&](const auto& global) { return global.id == id; });
    if (at == globals.end()) return;
    auto* up = menu.addAction(u"Move Up"_s);
    auto* down = menu.addAction(u"Move Down"_s);
    up->setEnabled(at != globals.begin());
    down->setEnabled(at + 1 != globals.end());
    const auto move = [this, id](QAction* action, std::optional<Uuid> before) {
        connect(action, &QAction::triggered, this, [this, id, before] { model_.moveGlobal(id, before); });
    };
    if (up->isEnabled()) move(up, (at - 1)->id);
    if (down->isEnabled()) move(down, globals.end() - at > 2 ? std::optional((at + 2)->id) : std::nullopt);
}

void Sidebar::fillListMenu(QMenu& menu) {
    menu.addAction(u"New Global Preset…"_s, this, [this] { commands_.newGlobal(); });
    menu.addAction(u"New VLAN…"_s, this, [this] { commands_.newVLAN(); });
    menu.addSeparator();
    visibility::addSortActions(menu, model_);
    visibility::fillHiddenMenu(*menu.addMenu(u"Hidden Services"_s), model_);
}

} // namespace corvane
