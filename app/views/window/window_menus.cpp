#include "app/views/window/window_menus.h"

#include "app/model/app_model.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/vlan_presentation.h"
#include "app/views/widgets/draft_bar.h"
#include "app/views/widgets/symbols.h"
#include "app/views/window/conventions.h"
#include "app/views/window/detail_area.h"
#include "app/views/window/main_window.h"
#include "app/views/window/service_visibility.h"
#include "app/views/window/sidebar.h"
#include "app/views/window/tools_menu.h"

#include <QActionGroup>
#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QUndoStack>

namespace corvane {

using namespace Qt::StringLiterals;

WindowMenus::WindowMenus(MainWindow& window, AppModel& model, NetworkCommands& commands)
    : QObject(&window), window_(window), model_(model), commands_(commands) {
    auto* bar = window_.menuBar();
    const auto menu = [bar](const QString& title) -> QMenu& {
        auto* made = bar->addMenu(title);
        made->setToolTipsVisible(true);
        return *made;
    };
    makeFile(menu(u"&File"_s));
    makeEdit(menu(u"&Edit"_s));
    makeNetwork(menu(u"&Network"_s));
    new ToolsMenu(menu(u"&Tools"_s), window_, model_);
    makeView(menu(u"&View"_s));
    makeWindow(menu(u"&Window"_s));
    makeHelp(menu(u"&Help"_s));

    refreshSoon_.setSingleShot(true);
    connect(&refreshSoon_, &QTimer::timeout, this, &WindowMenus::refresh);
    const auto soon = [this] { refreshSoon_.start(0); };
    for (const auto signal : {&AppModel::servicesChanged, &AppModel::libraryChanged,
                              &AppModel::selectionChanged, &AppModel::sidebarChanged, &AppModel::busyChanged,
                              &AppModel::passwordStateChanged, &AppModel::vlansChanged}) {
        connect(&model_, signal, this, soon);
    }
    connect(&commands_, &NetworkCommands::currentPresetChanged, this, soon);
    connect(&commands_, &NetworkCommands::currentDraftChanged, this, soon);
    connect(&commands_, &NetworkCommands::planPageChanged, this, soon);
    refresh();
}

template <typename Act>
QAction* WindowMenus::add(QMenu& menu, const char* name, const QString& text, const QKeySequence& keys,
                          Act act) {
    auto* action = menu.addAction(text);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, act);
    return action;
}

void WindowMenus::makeFile(QMenu& menu) {
    newPreset_ = add(menu, "newPreset", u"&New Preset…"_s, QKeySequence::New, [this] {
        if (const auto name = presetService()) commands_.newPreset(*name);
    });
    fromCurrent_ = add(menu, "newPresetFromCurrent", u"New Preset from &Current Settings…"_s,
                       Qt::CTRL | Qt::SHIFT | Qt::Key_N, [this] {
                           if (const auto name = service()) commands_.newPresetFromCurrent(*name);
                       });
    add(menu, "newGlobal", u"New &Global Preset…"_s, Qt::CTRL | Qt::SHIFT | Qt::Key_G,
        [this] { commands_.newGlobal(); });
    newVLAN_ = add(menu, "newVLAN", u"New &VLAN…"_s, Qt::CTRL | Qt::SHIFT | Qt::Key_L,
                   [this] { commands_.newVLAN(service()); });
    menu.addSeparator();
    add(menu, "import", u"&Import…"_s, Qt::CTRL | Qt::Key_I, [this] { commands_.importPresets(); });
    add(menu, "export", u"&Export…"_s, Qt::CTRL | Qt::Key_E, [this] { commands_.exportPresets(); });
    menu.addSeparator();
    add(menu, "closeWindow", u"C&lose Window"_s, Qt::CTRL | Qt::Key_W, [this] { window_.close(); });
    add(menu, "quit", u"&Quit"_s, Qt::CTRL | Qt::Key_Q, [] {
        QApplication::quit();
    })->setMenuRole(QAction::QuitRole);
}

void WindowMenus::makeEdit(QMenu& menu) {
    auto* undo = model_.undoStack().createUndoAction(this, u"&Undo"_s);
    auto* redo = model_.undoStack().createRedoAction(this, u"&Redo"_s);
    undo->setObjectName(u"undo"_s);
    redo->setObjectName(u"redo"_s);
    undo->setShortcut(QKeySequence::Undo);
    redo->setShortcuts(QKeySequence::Redo);
    menu.addActions({undo, redo});
    menu.addSeparator();
    edit_ = add(menu, "edit", u"&Edit Preset…"_s, Qt::Key_F2, [this] {
        if (const auto id = global())
            commands_.editGlobal(*id);
        else if (const auto& preset = commands_.currentPreset())
            commands_.editPreset(*preset);
    });
    duplicate_ = add(menu, "duplicate", u"&Duplicate Preset"_s, Qt::CTRL | Qt::Key_D, [this] {
        if (const auto id = global())
            commands_.duplicateGlobal(*id);
        else if (const auto& preset = commands_.currentPreset())
            commands_.duplicatePreset(*preset);
    });
    const QKeySequence removeKeys = conventions::isMac() ? QKeySequence(Qt::CTRL | Qt::Key_Backspace)
                                                         : QKeySequence(QKeySequence::Delete);
    remove_ = add(menu, "delete", u"De&lete Preset"_s, removeKeys, [this] {
        if (const auto id = global())
            commands_.deleteGlobal(*id);
        else if (const auto& preset = commands_.currentPreset())
            commands_.deletePreset(*preset);
    });
}

void WindowMenus::makeNetwork(QMenu& menu) {
    apply_ = add(menu, "apply", u"&Apply Preset"_s, Qt::CTRL | Qt::Key_Return, [this] {
        if (auto* draft = commands_.currentDraft())
            emit draft->applyAsked();
        else if (const auto id = global())
            commands_.applyGlobal(*id);
        else if (const auto& preset = commands_.currentPreset())
            commands_.applyPreset(*preset);
    });
    apply_->setShortcuts({Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter});
    revert_ = add(menu, "revert", u"Re&vert"_s, {}, [this] {
        if (auto* draft = commands_.currentDraft()) emit draft->revertAsked();
    });
    add(menu, "refresh", u"&Refresh"_s, Qt::CTRL | Qt::Key_R, [this] { model_.refresh(); });
    temporary_ = add(menu, "temporaryAddress", u"&Temporary Address…"_s, Qt::CTRL | Qt::Key_T, [this] {
        if (const auto name = service()) commands_.addTemporaryAddress(*name);
    });
    menu.addSeparator();
    add(menu, "serviceOrder", u"Service &Order"_s, Qt::CTRL | Qt::SHIFT | Qt::Key_O, [this] {
        model_.select(SidebarItem::serviceOrder());
        window_.detail().focusPage();
    });
    editVLAN_ = add(menu, "editVLAN", u"&Edit VLAN…"_s, {}, [this] {
        if (const auto name = service()) commands_.editVLAN(*name);
    });
    deleteVLAN_ = add(menu, "deleteVLAN", u"&Delete VLAN…"_s, {}, [this] {
        if (const auto id = plan())
            commands_.deletePlannedVLAN(*id);
        else if (const auto name = service())
            commands_.deleteVLAN(*name);
    });
    setUpVLAN_ = add(menu, "setUpVLAN", u"Set &Up Planned VLAN"_s, {}, [this] {
        if (const auto id = plan()) commands_.setUpPlannedVLAN(*id);
    });
    menu.addSeparator();
    hide_ = add(menu, "hideService", u"&Hide Service"_s, {}, [this] {
        if (const auto name = service()) visibility::setHidden(model_, *name, !model_.isHidden(*name));
    });
    hidden_ = menu.addMenu(u"Hidden &Services"_s);
    connect(hidden_, &QMenu::aboutToShow, this, [this] {
        hidden_->clear();
        visibility::fillHiddenMenu(*hidden_, model_);
    });
    menu.addSeparator();
    byState_ = add(menu, "sortByState", u"Sort by S&tate"_s, {}, [this] { model_.setSortsByState(true); });
    byOrder_ =
        add(menu, "sortByOrder", u"Sort &by Service Order"_s, {}, [this] { model_.setSortsByState(false); });
    auto* sorts = new QActionGroup(this);
    for (auto* action : {byState_, byOrder_}) {
        action->setCheckable(true);
        sorts->addAction(action);
    }
    menu.addSeparator();
    forget_ = add(menu, "forgetPassword", u"&Forget Saved Password"_s, {},
                  [this] { model_.forgetSavedPassword(); });
    touchID_ = add(menu, "requireTouchID", u"Require Touch &ID for Saved Password"_s, {},
                   [this] { model_.setRequireTouchID(touchID_->isChecked()); });
    touchID_->setCheckable(true);
    // Asked when the menu opens only: the system may take its time, and the answer changes with the lid.
    connect(&menu, &QMenu::aboutToShow, this, [this] { touchID_->setVisible(model_.touchIDAvailable()); });
}

void WindowMenus::makeView(QMenu& menu) {
    auto* sidebar = &window_.sidebar();
    auto* shown = add(menu, "showSidebar", u"Show &Sidebar"_s, Qt::CTRL | Qt::ALT | Qt::Key_S,
                      [sidebar](bool show) { sidebar->setVisible(show); });
    shown->setCheckable(true);
    shown->setChecked(true);
    add(menu, "goToSidebar", u"&Go to Sidebar"_s, Qt::CTRL | Qt::Key_1, [sidebar, shown] {
        shown->setChecked(true);
        sidebar->show();
        sidebar->setFocus(Qt::ShortcutFocusReason);
    });
    add(menu, "goToDetails", u"Go to &Details"_s, Qt::CTRL | Qt::Key_2,
        [this] { window_.detail().focusPage(); });
    menu.addSeparator();
    auto* full = add(menu, "fullScreen", u"&Full Screen"_s, QKeySequence::FullScreen,
                     [this] { window_.setWindowState(window_.windowState() ^ Qt::WindowFullScreen); });
    full->setCheckable(true);
    connect(&menu, &QMenu::aboutToShow, full, [this, full] { full->setChecked(window_.isFullScreen()); });
}

void WindowMenus::makeWindow(QMenu& menu) {
    add(menu, "minimize", u"Mi&nimize"_s, Qt::CTRL | Qt::Key_M, [this] { window_.showMinimized(); });
    add(menu, "zoom", u"&Zoom"_s, {},
        [this] { window_.setWindowState(window_.windowState() ^ Qt::WindowMaximized); });
    menu.addSeparator();
    add(menu, "showWindow", u"&Wendrel"_s, Qt::CTRL | Qt::Key_0, [this] { window_.present(); });
}

void WindowMenus::makeHelp(QMenu& menu) {
    add(menu, "about", u"&About Wendrel"_s, {}, [this] { showAbout(); })->setMenuRole(QAction::AboutRole);
    add(menu, "aboutQt", u"About &Qt"_s, {}, [] {
        QApplication::aboutQt();
    })->setMenuRole(QAction::AboutQtRole);
}

void WindowMenus::allow(QAction& action, const QString& reason) {
    action.setEnabled(reason.isEmpty());
    action.setToolTip(reason);
    action.setStatusTip(reason);
}

std::optional<std::string> WindowMenus::service() const {
    const auto& item = model_.selection();
    if (!item || item->kind() != SidebarItem::Kind::service) return std::nullopt;
    return item->key().toStdString();
}

std::optional<Uuid> WindowMenus::global() const {
    const auto& item = model_.selection();
    if (!item || item->kind() != SidebarItem::Kind::global) return std::nullopt;
    const auto id = Uuid::parse(item->key().toStdString());
    return id && model_.global(*id) ? id : std::nullopt;
}

std::optional<Uuid> WindowMenus::plan() const {
    const auto& item = model_.selection();
    if (!item || item->kind() != SidebarItem::Kind::plannedVLAN) return std::nullopt;
    const auto id = Uuid::parse(item->key().toStdString());
    return id && model_.plannedVLAN(*id) ? id : std::nullopt;
}

std::optional<std::string> WindowMenus::presetService() const {
    if (const auto id = plan()) return model_.plannedVLAN(*id)->name;
    return service();
}

QString WindowMenus::whyNothingToEdit() const {
    if (global() || (presetService() && commands_.currentPreset())) return {};
    return u"Select a preset first."_s;
}

QString WindowMenus::whyNothingToApply() const {
    if (model_.busy()) return u"Another change is being applied."_s;
    if (const auto* draft = commands_.currentDraft()) return draft->whyNotApply();
    if (plan() && commands_.currentPreset()) return u"It can be applied once the VLAN exists."_s;
    return whyNothingToEdit();
}

void WindowMenus::refresh() {
    const auto name = service();
    const auto* info = name ? model_.service(*name) : nullptr;
    const QString noService = u"Select a network service first."_s;
    allow(*newPreset_, presetService() ? QString() : noService);
    allow(*fromCurrent_, info ? QString() : noService);
    const QString noun = global() ? u"Global Preset"_s : u"Preset"_s;
    edit_->setText(u"&Edit %1…"_s.arg(noun));
    duplicate_->setText(u"&Duplicate %1"_s.arg(noun));
    remove_->setText(u"De&lete %1"_s.arg(noun));
    const auto* draft = commands_.currentDraft();
    apply_->setText(u"&Apply %1"_s.arg(draft ? draft->what() : noun));
    revert_->setText(draft ? u"Re&vert %1"_s.arg(draft->what()) : u"Re&vert"_s);
    allow(*revert_, draft ? draft->whyNotRevert() : u"There is nothing to revert."_s);
    for (auto* action : {edit_, duplicate_, remove_}) allow(*action, whyNothingToEdit());
    allow(*apply_, whyNothingToApply());

    QString noAddress = info ? QString() : noService;
    if (info && !info->device) noAddress = u"This service has no device of its own."_s;
    if (model_.busy()) noAddress = u"Another change is being applied."_s;
    allow(*temporary_, noAddress);
    allow(*hide_, info ? QString() : noService);
    const bool isHidden = name && model_.isHidden(*name);
    hide_->setText(!info      ? u"&Hide Service"_s
                   : isHidden ? u"S&how “%1”"_s.arg(visibility::menuName(*name))
                              : u"&Hide “%1”"_s.arg(visibility::menuName(*name)));
    hidden_->setEnabled(!model_.hiddenServices().isEmpty());
    (model_.sortsByState() ? byState_ : byOrder_)->setChecked(true);

    refreshSystem();
    allow(*forget_, model_.hasSavedPassword() ? QString() : u"No password is saved."_s);
    touchID_->setChecked(model_.requireTouchID());
}

void WindowMenus::refreshSystem() {
    const auto name = service();
    const auto planned = plan();
    const bool isVLAN = name && model_.vlan(*name);
    const QString noVLAN = u"Select a VLAN first."_s;
    allow(*editVLAN_, isVLAN ? QString() : noVLAN);
    deleteVLAN_->setText(planned ? u"&Delete Planned VLAN"_s : u"&Delete VLAN…"_s);
    allow(*deleteVLAN_, isVLAN || planned ? QString() : noVLAN);
    allow(*setUpVLAN_, planned ? commands_.setUpRefusal(*planned) : u"Select a planned VLAN first."_s);
    if (setUpVLAN_->isEnabled()) setUpVLAN_->setToolTip(vlanTexts::setUp);
}

void WindowMenus::showAbout() {
    QMessageBox about(&window_);
    about.setWindowTitle(u"About Wendrel"_s);
    about.setIconPixmap(symbols::application().pixmap(QSize(64, 64), window_.devicePixelRatioF()));
    about.setText(u"<b>Wendrel %1</b>"_s.arg(QApplication::applicationVersion()));
    about.setInformativeText(u"Switches network services between saved presets."_s);
    about.exec();
}

} // namespace corvane
