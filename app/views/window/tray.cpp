#include "app/views/window/tray.h"

#include "app/model/app_model.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/symbols.h"
#include "app/views/window/conventions.h"
#include "app/views/window/main_window.h"
#include "app/views/window/service_visibility.h"

#include <QApplication>

namespace corvane {

using namespace Qt::StringLiterals;

TrayMenu::TrayMenu(AppModel& model, NetworkCommands& commands) : model_(model), commands_(commands) {
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, &TrayMenu::refresh);
    // A desktop that asks for the menu over the bus shows nothing of an empty one.
    addAction(u"Open Wendrel"_s, this, &TrayMenu::openAsked);
}

void TrayMenu::refresh() {
    clear();
    // Submenus are children of the menu, and clear() leaves those that are in use.
    qDeleteAll(findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
    if (model_.host().simulated) addAction(oneLine(model_.host().notice))->setEnabled(false);
    if (model_.busy()) addAction(u"Applying…"_s)->setEnabled(false);
    if (!isEmpty()) addSeparator();
    for (const auto& service : model_.visibleServices()) addService(service);
    addSeparator();
    addGlobals();
    addSeparator();
    addAction(u"Open Wendrel"_s, this, &TrayMenu::openAsked);
    addAction(u"Quit Wendrel"_s, this, [] { QApplication::quit(); });
}

void TrayMenu::addService(const ServiceInfo& service) {
    const LinkState state = service.state();
    const QString glance = oneLine(state.isConnected() ? state.address() : state.title());
    auto* presets =
        addMenu(symbols::stateIcon(state.kind()), visibility::menuName(service.name) + u" · "_s + glance);
    presets->setToolTipsVisible(true);
    for (const auto& preset : model_.presetsOf(service.name)) {
        auto* action = presets->addAction(visibility::menuName(preset.name + " · " + preset.summary()));
        action->setCheckable(true);
        action->setChecked(model_.isActive(preset));
        action->setEnabled(!model_.busy());
        // Triggered from inside a menu: the change asks for a password, which the menu mustn't wait for.
        connect(
            action, &QAction::triggered, &commands_, [this, id = preset.id] { commands_.applyPreset(id); },
            Qt::QueuedConnection);
    }
    if (!presets->isEmpty()) return;
    presets->addAction(u"No presets yet"_s)->setEnabled(false);
    connect(presets->addAction(u"Open in Wendrel"_s), &QAction::triggered, this, [this, name = service.name] {
        model_.select(SidebarItem::service(name));
        emit openAsked();
    });
}

void TrayMenu::addGlobals() {
    if (model_.library().globals.empty()) return;
    addSection(u"Global Presets"_s);
    for (const auto& global : model_.library().globals) {
        auto* action =
            addAction(symbols::icon(symbols::Symbol::globalPreset), visibility::menuName(global.name));
        const bool active = model_.isActive(global);
        if (active) {
            action->setText(action->text() + u" · Active"_s);
            action->setIcon(symbols::icon(symbols::Symbol::check, theme::Tone::good));
        }
        action->setEnabled(!model_.busy());
        connect(
            action, &QAction::triggered, &commands_, [this, id = global.id] { commands_.applyGlobal(id); },
            Qt::QueuedConnection);
    }
}

Tray::Tray(AppModel& model, MainWindow& window)
    : model_(model), menu_(model, window.commands()), icon_(symbols::tray()) {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
    icon_.setContextMenu(&menu_);
    connect(&menu_, &TrayMenu::openAsked, &window, &MainWindow::present);
    connect(&icon_, &QSystemTrayIcon::activated, &window,
            [&window](QSystemTrayIcon::ActivationReason reason) {
                // On a Mac a click opens the menu; elsewhere it brings the window back.
                if (reason == QSystemTrayIcon::Trigger && !conventions::isMac()) window.present();
            });
    connect(&model_, &AppModel::servicesChanged, this, &Tray::refreshTip);
    refreshTip();
    icon_.show();
}

Tray::~Tray() {
    icon_.hide();
}

void Tray::refreshTip() {
    QStringList lines{u"Wendrel"_s};
    for (const auto& service : model_.visibleServices()) {
        const LinkState state = service.state();
        if (state.isConnected()) lines << oneLine(service.name) + u" · "_s + oneLine(state.address());
    }
    constexpr int most = 6;
    icon_.setToolTip(lines.mid(0, most).join(u'\n'));
}

} // namespace corvane
