#include "platform/simulated/simulated_host.h"

#include "platform/posix/descriptor.h"
#include "platform/posix/posix_shell.h"
#include "platform/posix/user_name.h"
#include "platform/shared/ini_defaults.h"
#include "platform/shared/no_activity.h"
#include "platform/shared/pooled_tool_starter.h"
#include "platform/simulated/memory_keychain.h"
#include "platform/simulated/simulated_echo_sockets.h"
#include "platform/simulated/simulated_owner_check.h"
#include "platform/simulated/simulated_runner.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace corvane {

std::unique_ptr<Host> makeSimulatedHost(const SimulatedHostOptions& options) {
    const std::string root = QFile::encodeName(options.toolRoot).toStdString();
    const std::string state = QFile::encodeName(options.stateFile).toStdString();
    const posix::Environment environment{"WENDREL_SIMULATED_NETWORK=" + state};

    auto host = std::make_unique<Host>();
    host->simulated = true;
    host->notice = QStringLiteral("Simulated network — nothing on this computer is changed.");
    host->passwordHelp =
        QStringLiteral("This network is simulated; its administrator password is “rackside”.");
    host->userName = QString::fromStdString(posix::userName());
    host->applicationSupport = options.applicationSupport;
    host->shell = std::make_unique<PosixShell>(root, environment);
    host->tools = std::make_unique<PooledToolStarter>(root, environment);
    host->privileged = std::make_unique<SimulatedRunner>(root, state, environment);
    host->keychain = std::make_unique<MemoryKeychain>();
    host->ownerCheck = std::make_unique<SimulatedOwnerCheck>(state);
    if (options.settingsFile.isEmpty()) {
        host->defaults = std::make_unique<MemoryDefaults>();
    } else {
        host->defaults = std::make_unique<IniDefaults>(options.settingsFile);
    }
    host->activity = std::make_unique<NoActivity>();
    host->echoSockets = std::make_unique<SimulatedEchoSockets>(state);
    return host;
}

std::unique_ptr<Host> makeSimulatedHost() {
    posix::allowManyDescriptors();
    // All of it in a folder of its own: presets made for the simulated services never reach the real library.
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Wendrel Simulated";
    return makeSimulatedHost({
        .toolRoot = QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../libexec/wendrel/sim"),
        .stateFile = folder + "/network.json",
        .applicationSupport = folder,
        .settingsFile = folder + '/' + defaultsDomain + ".ini",
    });
}

} // namespace corvane
