// A home folder with a simulated Mac of its own, and a model started in it.
#pragma once

#include "app/model/app_model.h"
#include "hosttools/simulated/state.h"
#include "tests/app/support/fakes.h"

#include <QTemporaryDir>

#include <memory>

namespace corvane::testing {

class ModelHome {
  public:
    static constexpr const char* password = "rackside";

    /// Tools without delay.
    ModelHome();
    QString path(const QString& relative) const { return dir_.filePath(relative); }
    QString libraryFile() const { return path("Wendrel/presets.json"); }
    void change(const std::function<void(simulated::State&)>& edit) const;
    QString user() const;
    /// The user types the right password at the next question.
    void willAuthorize(bool remember = false) { prompt.willType(user(), password, remember); }

    /// A new model, after its first reading of the network.
    AppModel& start();
    /// A new model, not waited for.
    AppModel& begin();
    void stop() { model_.reset(); }
    /// Waits for a reading that began after this call.
    void refreshed();
    /// Every banner text that was shown, errors with "! " in front.
    QStringList banners;

    FakePrompt prompt;
    FakeAlerts alerts;
    std::unique_ptr<Host> host;

  private:
    QTemporaryDir dir_;
    std::unique_ptr<AppModel> model_;
};

NetworkPreset manualPreset(const std::string& name, const std::string& service, const std::string& ip,
                           const std::string& router = {}, std::vector<std::string> dns = {});
NetworkPreset dhcpPreset(const std::string& name, const std::string& service);
GlobalPreset globalPreset(const std::string& name, std::vector<Uuid> members = {},
                          std::optional<std::string> internetService = std::nullopt);
void writeFile(const QString& path, const QByteArray& bytes);
QByteArray readFile(const QString& path);

} // namespace corvane::testing
