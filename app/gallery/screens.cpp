#include "app/gallery/screens.h"

#include "app/views/window/service_visibility.h"
#include "app/views/window/sidebar.h"
#include "app/views/window/tray.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QTimer>

namespace corvane::gallery {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize usual(1080, 720), small(900, 600), large(1680, 1020);

void startWith(Stage& stage, const PresetLibrary& library, QSize size = usual) {
    stage.libraryFile(library.encoded());
    stage.start(size);
}

QPixmap service(Stage& stage, const char* name, QSize size = usual, qreal scale = 1) {
    stage.open(SidebarItem::service(name), size);
    return stage.picture(scale);
}

Screen serviceScreen(const char* screen, const char* name) {
    return {screen, [name](Stage& stage) { return service(stage, name); }};
}

QPixmap withSheet(Stage& stage, const std::function<void(NetworkCommands&)>& open) {
    stage.open(SidebarItem::service("Ethernet"));
    return stage.sheet(open);
}

/// Applies a preset for real; `answers` are given to the dialogs in turn, and the last one is pictured, then
/// dismissed.
QPixmap duringApply(Stage& stage, const char* preset, std::vector<QString> answers) {
    startWith(stage, exampleLibrary());
    stage.model().select(SidebarItem::service("Ethernet"));
    stage.settle();
    QPixmap picture;
    std::function<void(QWidget&)> act = [&](QWidget& widget) {
        auto& dialog = static_cast<QDialog&>(widget);
        auto* password = dialog.findChild<QLineEdit*>(u"password"_s);
        if (answers.empty() || !password) {
            picture = stage.picture();
            dialog.reject();
            return;
        }
        password->setText(answers.front() + QString());
        answers.erase(answers.begin());
        stage.whenAsked(act);
        dialog.accept();
    };
    stage.whenAsked(act);
    stage.window().commands().applyPreset(stage.presetNamed(preset));
    return picture;
}

/// Right after the password: with `delayed` the change is still under way.
QPixmap afterPassword(Stage& stage, const char* preset, bool delayed) {
    startWith(stage, exampleLibrary());
    stage.model().select(SidebarItem::service("Ethernet"));
    stage.settle();
    if (delayed) stage.network([](simulated::State& state) { state.delayScale = 4; });
    stage.whenAsked([](QWidget& widget) {
        auto* password = widget.findChild<QLineEdit*>(u"password"_s);
        if (password) password->setText(QString::fromLatin1("rackside"));
        static_cast<QDialog&>(widget).accept();
    });
    QPixmap picture;
    if (delayed) QTimer::singleShot(1200, &stage.window(), [&] { picture = stage.picture(); });
    stage.window().commands().applyPreset(stage.presetNamed(preset));
    if (delayed) return picture;
    stage.settle();
    return stage.picture();
}

QPixmap tray(Stage& stage) {
    startWith(stage, exampleLibrary());
    TrayMenu menu(stage.model(), stage.window().commands());
    menu.refresh();
    auto* services = menu.findChild<QMenu*>();
    menu.adjustSize();
    menu.resize(menu.sizeHint());
    // The menu and one of its submenus side by side, as they open.
    const QPixmap left = Stage::pictureOf(menu, 2);
    if (!services) return left;
    services->resize(services->sizeHint());
    const QPixmap right = Stage::pictureOf(*services, 2);
    QPixmap both(QSize(left.width() + right.width() + 16, std::max(left.height(), right.height())));
    both.fill(menu.palette().color(QPalette::Mid));
    QPainter painter(&both);
    painter.drawPixmap(QRect(QPoint(), left.size()), left);
    painter.drawPixmap(QRect(QPoint(left.width() + 16, 0), right.size()), right);
    return both;
}

QPixmap menus(Stage& stage) {
    startWith(stage, exampleLibrary());
    stage.model().select(SidebarItem::service("Ethernet"));
    stage.settle();
    QPixmap all(1680, 420);
    all.fill(stage.window().palette().color(QPalette::Mid));
    QPainter painter(&all);
    int left = 8;
    for (auto* menu : stage.window().menuBar()->findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) {
        // The bar keeps a menu of its own for what doesn't fit.
        if (menu->title().isEmpty()) continue;
        menu->resize(menu->sizeHint());
        const QPixmap picture = Stage::pictureOf(*menu);
        painter.drawPixmap(left, 8, picture);
        left += picture.width() + 8;
    }
    return all;
}

QPixmap saveProblem(Stage& stage) {
    startWith(stage, exampleLibrary());
    // A file where the folder was: nothing can be written there, whoever asks.
    QDir(stage.path(u"Wendrel"_s)).removeRecursively();
    QFile file(stage.path(u"Wendrel"_s));
    if (!file.open(QIODevice::WriteOnly)) return {};
    file.close();
    stage.model().duplicatePreset(stage.presetNamed("House network"));
    stage.settle();
    return stage.picture();
}

QPixmap hidden(Stage& stage) {
    startWith(stage, exampleLibrary());
    visibility::setHidden(stage.model(), "Thunderbolt Bridge", true);
    visibility::setHidden(stage.model(), "iPhone USB", true);
    stage.model().setExpanded(SidebarGroup::name(SidebarGroup::Id::hidden), true);
    stage.settle();
    return stage.picture();
}

QPixmap unreadable(Stage& stage) {
    stage.libraryFile("{\"presets\": [ {\"name\": \"cut o");
    stage.start(usual);
    return stage.picture();
}

QPixmap sharp(Stage& stage) {
    return service(stage, "Ethernet", usual, 2);
}

} // namespace

std::vector<Screen> screens() {
    const auto alert = [](Stage& stage) { return duringApply(stage, "From the rider", {}); };
    const auto failed = [](Stage& stage) {
        stage.network([](simulated::State& state) {
            state.failNext.push_back({"-setmanual", "** Error: The parameters were not valid.\n"});
        });
        return duringApply(stage, "Stage", {u"rackside"_s});
    };
    const auto global = [](Stage& stage, const char* name) {
        startWith(stage, exampleLibrary());
        stage.model().select(SidebarItem::global(stage.globalNamed(name)));
        stage.settle();
        return stage.picture();
    };
    std::vector<Screen> all{
        serviceScreen("service-connected", "Ethernet"),
        serviceScreen("service-self-assigned", "Stage LAN"),
        serviceScreen("service-adapter-missing", "USB 10/100 LAN"),
        serviceScreen("service-no-link", "Thunderbolt Bridge"),
        serviceScreen("service-disabled", "iPhone USB"),
        serviceScreen("service-absent", "OB Van LAN"),
        {"service-no-address",
         [](Stage& stage) {
             stage.network([](simulated::State& state) {
                 for (auto& service : state.services) {
                     if (service.name == "Stage LAN") service.method = hosttools::Addressing::Method::off;
                 }
             });
             return service(stage, "Stage LAN");
         }},
        {"library-empty",
         [](Stage& stage) {
             stage.start(usual);
             return stage.picture();
         }},
        {"library-unreadable", unreadable},
        {"library-not-saved", saveProblem},
        {"preset-editor-new",
         [](Stage& stage) {
             return withSheet(stage, [](NetworkCommands& commands) { commands.newPreset("Ethernet"); });
         }},
        {"preset-editor-valid",
         [](Stage& stage) {
             return withSheet(
                 stage, [&](NetworkCommands& commands) { commands.editPreset(stage.presetNamed("Stage")); });
         }},
        {"preset-editor-invalid",
         [](Stage& stage) {
             return withSheet(stage, [&](NetworkCommands& commands) {
                 commands.editPreset(stage.presetNamed("From the rider"));
             });
         }},
        {"global-editor",
         [](Stage& stage) {
             return withSheet(stage, [&](NetworkCommands& commands) {
                 commands.editGlobal(stage.globalNamed("Show day"));
             });
         }},
        {"temporary-address",
         [](Stage& stage) {
             return withSheet(stage,
                              [](NetworkCommands& commands) { commands.addTemporaryAddress("Ethernet"); });
         }},
        {"global-page", [global](Stage& stage) { return global(stage, "Show day"); }},
        {"global-page-active", [global](Stage& stage) { return global(stage, "Load-in"); }},
        {"password", [](Stage& stage) { return duringApply(stage, "Stage", {}); }},
        {"password-retry", [](Stage& stage) { return duringApply(stage, "Stage", {u"wrong"_s}); }},
        {"alert-invalid-preset", alert},
        {"alert-failed", failed},
        {"applying", [](Stage& stage) { return afterPassword(stage, "Stage", true); }},
        {"applied", [](Stage& stage) { return afterPassword(stage, "Stage", false); }},
        {"banner-error",
         [](Stage& stage) {
             startWith(stage, exampleLibrary());
             stage.model().importPresets(stage.path(u"network.json"_s));
             Stage::pass(400);
             return stage.picture();
         }},
        {"services-hidden", hidden},
        {"tray", tray},
        {"menus", menus},
        {"window-small", [](Stage& stage) { return service(stage, "Ethernet", small); }},
        {"window-large", [](Stage& stage) { return service(stage, "Ethernet", large); }},
        {"window-200-percent", sharp},
    };
    for (auto& screen : routingScreens()) all.push_back(std::move(screen));
    for (auto& screen : pingScreens()) all.push_back(std::move(screen));
    for (auto& screen : routerScreens()) all.push_back(std::move(screen));
    return all;
}

} // namespace corvane::gallery
