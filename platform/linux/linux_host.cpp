#include "platform/linux/linux_host.h"

#include "platform/linux/echo_sockets.h"
#include "platform/linux/no_owner_check.h"
#include "platform/linux/privileged_runners.h"
#include "platform/linux/secret_service_keychain.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/posix_shell.h"
#include "platform/posix/user_name.h"
#include "platform/shared/ini_defaults.h"
#include "platform/shared/no_activity.h"
#include "platform/shared/pooled_tool_starter.h"
#include "platform/simulated/simulated_host.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

#include <sys/resource.h>
#include <unistd.h>

namespace corvane {

namespace {

/// A core file would hold the administrator's password while it is in use. Turning the process undumpable
/// (PR_SET_DUMPABLE) would do as well, but takes /proc/self from the process too, which desktop portals read.
void forbidCoreFiles() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_CORE, &limit) != 0) return;
    // A core handler that the kernel pipes to ignores the limit 0, but is never started at 1.
    limit.rlim_cur = limit.rlim_max < 1 ? limit.rlim_max : 1;
    ::setrlimit(RLIMIT_CORE, &limit);
}

std::unique_ptr<PrivilegedRunner> makeRunner(const std::string& toolRoot) {
    if (::geteuid() == 0) return std::make_unique<RootRunner>(toolRoot);
    return std::make_unique<SudoRunner>(toolRoot);
}

} // namespace

std::unique_ptr<Host> makeLinuxHost(const LinuxHostOptions& options) {
    const std::string root = options.toolRoot.toStdString();
    auto host = std::make_unique<Host>();
    host->userName = QString::fromStdString(posix::userName());
    host->applicationSupport = options.applicationSupport;
    // The tools' texts are read, so they must not be translated.
    const posix::Environment untranslated{"LC_ALL=C.UTF-8", "LANGUAGE="};
    host->shell = std::make_unique<PosixShell>(root, untranslated);
    host->tools = std::make_unique<PooledToolStarter>(root, untranslated);
    host->privileged = makeRunner(root);
    host->keychain = std::make_unique<SecretServiceKeychain>();
    host->ownerCheck = std::make_unique<NoOwnerCheck>();
    host->defaults = std::make_unique<IniDefaults>(options.settingsFile);
    host->activity = std::make_unique<NoActivity>();
    host->echoSockets = std::make_unique<LinuxEchoSockets>();
    return host;
}

std::unique_ptr<Host> makeLinuxHost() {
    forbidCoreFiles();
    posix::allowManyDescriptors();
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return makeLinuxHost({
        .toolRoot = QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../libexec/wendrel/nm"),
        .applicationSupport = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
        .settingsFile = config + "/Wendrel/" + defaultsDomain + ".ini",
    });
}

std::unique_ptr<Host> makeHost() {
    return networkManagerAnswers() ? makeLinuxHost() : makeSimulatedHost();
}

} // namespace corvane
