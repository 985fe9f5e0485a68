#include "app/gallery/stage.h"

#include "hosttools/simulated/administrator.h"
#include "platform/simulated/simulated_host.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QPainter>
#include <QTimer>

namespace corvane::gallery {
namespace {

using namespace Qt::StringLiterals;

/// Longer than any fade.
constexpr int fadeMilliseconds = 350;
constexpr int patienceMilliseconds = 20000;

} // namespace

Stage::Stage() {
    network([](simulated::State& state) {
        state.delayScale = 0;
        state.administrator = simulated::makeAdministrator("operator", "rackside");
    });
}

Stage::~Stage() = default;

void Stage::network(const std::function<void(simulated::State&)>& edit) const {
    const simulated::StateFile file(QFile::encodeName(path(u"network.json"_s)).toStdString());
    static_cast<void>(file.load());
    if (const auto problem = file.change(edit)) qWarning("%s", problem->c_str());
}

void Stage::libraryFile(const std::string& bytes) const {
    QDir(folder_.path()).mkpath(u"Wendrel"_s);
    QFile file(path(u"Wendrel/presets.json"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes.data(), qint64(bytes.size())) < 0) {
        qWarning("%s", qPrintable(file.errorString()));
    }
}

void Stage::start(QSize size) {
    host_ = makeSimulatedHost({
        .toolRoot = QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../libexec/wendrel/sim"_s),
        .stateFile = path(u"network.json"_s),
        .applicationSupport = folder_.path(),
        .settingsFile = {},
    });
    if (prepare_) prepare_(*host_);
    prompt_ = std::make_unique<PasswordDialog>(u"operator"_s, host_->passwordHelp);
    model_ = std::make_unique<AppModel>(*host_, *prompt_, alerts_);
    window_ = std::make_unique<MainWindow>(*model_);
    prompt_->setWindow(window_.get());
    alerts_.setWindow(window_.get());
    window_->resize(size);
    window_->show();
    settle();
}

void Stage::open(const SidebarItem& item, QSize size) {
    libraryFile(exampleLibrary().encoded());
    start(size);
    model_->select(item);
    settle();
}

QPixmap Stage::sheet(const std::function<void(NetworkCommands&)>& open,
                     const std::function<void(QDialog&)>& use) {
    open(window_->commands());
    pass(fadeMilliseconds);
    std::vector<QDialog*> sheets;
    for (auto* top : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<QDialog*>(top);
        if (dialog && dialog->isVisible()) sheets.push_back(dialog);
    }
    if (use && !sheets.empty()) use(*sheets.front());
    pass(50);
    const QPixmap made = picture();
    for (auto* dialog : sheets) dialog->reject();
    pass(50);
    return made;
}

void Stage::settle() {
    QEventLoop loop;
    int readings = 0;
    // The reading that is under way may have begun before the last change.
    QObject::connect(model_.get(), &AppModel::refreshed, &loop, [&] {
        if (++readings == 2)
            loop.quit();
        else
            QTimer::singleShot(0, model_.get(), &AppModel::refresh);
    });
    QTimer::singleShot(0, model_.get(), &AppModel::refresh);
    QTimer::singleShot(patienceMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    pass(fadeMilliseconds);
}

void Stage::pass(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void Stage::whenAsked(std::function<void(QWidget&)> act) {
    auto* timer = new QTimer(window_.get());
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act)] {
        auto* dialog = QApplication::activeModalWidget();
        if (!dialog || !dialog->isVisible()) return;
        timer->stop();
        timer->deleteLater();
        act(*dialog);
    });
    timer->start(fadeMilliseconds);
}

Uuid Stage::presetNamed(const std::string& name) const {
    for (const auto& preset : model_->library().presets) {
        if (preset.name == name) return preset.id;
    }
    return {};
}

Uuid Stage::globalNamed(const std::string& name) const {
    for (const auto& global : model_->library().globals) {
        if (global.name == name) return global.id;
    }
    return {};
}

QPixmap Stage::pictureOf(QWidget& widget, qreal scale) {
    QPixmap picture((QSizeF(widget.size()) * scale).toSize());
    picture.setDevicePixelRatio(scale);
    picture.fill(widget.palette().color(QPalette::Window));
    widget.render(&picture);
    return picture;
}

QPixmap Stage::picture(qreal scale) const {
    QPixmap picture = pictureOf(*window_, scale);
    QPainter painter(&picture);
    for (auto* top : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<QDialog*>(top);
        if (!dialog || !dialog->isVisible()) continue;
        painter.fillRect(window_->rect(), QColor(0, 0, 0, 70));
        const QPoint corner((window_->width() - dialog->width()) / 2,
                            std::max(0, (window_->height() - dialog->height()) / 2));
        painter.drawPixmap(corner, pictureOf(*dialog, scale));
        painter.setPen(QColor(0, 0, 0, 120));
        painter.drawRect(QRect(corner, dialog->size()).adjusted(-1, -1, 0, 0));
    }
    return picture;
}

PresetLibrary exampleLibrary() {
    PresetLibrary library;
    const auto add = [&](const char* name, const char* service, const char* ip, const char* subnet,
                         const char* router, std::vector<std::string> dns) {
        NetworkPreset preset;
        preset.id = Uuid::generate();
        preset.name = name;
        preset.service = service;
        preset.mode = *ip ? NetworkPreset::Mode::manual : NetworkPreset::Mode::dhcp;
        preset.ip = ip;
        preset.subnet = subnet;
        preset.router = router;
        preset.dns = std::move(dns);
        library.presets.push_back(preset);
        return preset.id;
    };
    const Uuid house = add("House network", "Ethernet", "", "", "", {});
    const Uuid stage = add("Stage", "Ethernet", "10.0.10.50", "/24", "10.0.10.1", {"10.0.10.1", "1.1.1.1"});
    add("Media servers", "Ethernet", "192.168.1.34", "255.255.255.0", "", {});
    add("Old projector rack", "Ethernet", "10.20.0.5", "/16", "10.30.0.1", {});
    add("From the rider", "Ethernet", "10.0.300.1", "255.255.0.255.0", "gateway", {"8.8.8.8", "dns"});
    add("Venue", "Wi-Fi", "", "", "", {});
    const Uuid lighting = add("Lighting", "Stage LAN", "2.0.0.10", "/8", "", {});
    add("Sound", "Stage LAN", "192.168.0.40", "/24", "", {});
    add("Truck", "OB Van LAN", "172.16.4.20", "/22", "172.16.4.1", {});

    const auto global = [&](const char* name, std::vector<Uuid> members,
                            std::optional<std::string> internet) {
        GlobalPreset made;
        made.id = Uuid::generate();
        made.name = name;
        made.members = std::move(members);
        made.internetService = std::move(internet);
        library.globals.push_back(std::move(made));
    };
    global("Show day", {stage, lighting}, "Wi-Fi");
    global("Load-in", {house}, std::nullopt);
    PlannedVLAN vlan;
    vlan.id = Uuid::generate();
    vlan.name = "Dante primary";
    vlan.tag = 20;
    vlan.parentDevice = "en5";
    library.plannedVLANs.push_back(vlan);
    add("Stage box", "Dante primary", "10.20.0.5", "/24", "", {});
    return library;
}

} // namespace corvane::gallery
