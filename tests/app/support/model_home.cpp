#include "tests/app/support/model_home.h"

#include "hosttools/simulated/administrator.h"
#include "platform/simulated/simulated_host.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

namespace corvane::testing {

ModelHome::ModelHome() {
    change([](simulated::State& state) { state.delayScale = 0; });
    host = makeSimulatedHost({.toolRoot = QStringLiteral(WENDREL_SIM_ROOT),
                              .stateFile = path("network.json"),
                              .applicationSupport = dir_.path(),
                              .settingsFile = {}});
}

void ModelHome::change(const std::function<void(simulated::State&)>& edit) const {
    const auto error = simulated::StateFile(path("network.json").toStdString()).change(edit);
    if (error) qFatal("%s", error->c_str());
}

QString ModelHome::user() const {
    return QString::fromStdString(simulated::administratorName(path("network.json").toStdString()));
}

AppModel& ModelHome::begin() {
    model_ = std::make_unique<AppModel>(*host, prompt, alerts);
    QObject::connect(model_.get(), &AppModel::bannerChanged, model_.get(), [this] {
        if (const auto& banner = model_->banner())
            banners.append((banner->isError ? "! " : "") + banner->text);
    });
    return *model_;
}

AppModel& ModelHome::start() {
    AppModel& model = begin();
    QSignalSpy spy(&model, &AppModel::refreshed);
    if (!spy.wait(20000)) qFatal("no first reading");
    return model;
}

void ModelHome::refreshed() {
    // The first may end a reading that had begun before.
    for (int reading = 0; reading < 2; ++reading) {
        QSignalSpy spy(model_.get(), &AppModel::refreshed);
        model_->refresh();
        if (!spy.wait(20000)) qFatal("no reading");
    }
}

NetworkPreset manualPreset(const std::string& name, const std::string& service, const std::string& ip,
                           const std::string& router, std::vector<std::string> dns) {
    NetworkPreset preset = dhcpPreset(name, service);
    preset.mode = NetworkPreset::Mode::manual;
    preset.ip = ip;
    preset.subnet = "/24";
    preset.router = router;
    preset.dns = std::move(dns);
    return preset;
}

NetworkPreset dhcpPreset(const std::string& name, const std::string& service) {
    NetworkPreset preset;
    preset.id = Uuid::generate();
    preset.name = name;
    preset.service = service;
    return preset;
}

GlobalPreset globalPreset(const std::string& name, std::vector<Uuid> members,
                          std::optional<std::string> internetService) {
    GlobalPreset preset;
    preset.id = Uuid::generate();
    preset.name = name;
    preset.members = std::move(members);
    preset.internetService = std::move(internetService);
    return preset;
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("can't write a test's file");
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace corvane::testing
