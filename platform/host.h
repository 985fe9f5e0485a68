// What the program stands on: one set of system services, chosen at start.
#pragma once

#include "platform/activity.h"
#include "platform/echo_socket.h"
#include "platform/keychain.h"
#include "platform/owner_check.h"
#include "platform/privileged_runner.h"
#include "platform/shell.h"
#include "platform/tool_starter.h"
#include "platform/user_defaults.h"

#include <QString>

#include <memory>

namespace corvane {

struct Host {
    /// True when no real network stands behind the tools; the window then says so all the time.
    bool simulated = false;
    /// What the window says about a simulated network; empty otherwise.
    QString notice;
    /// A second line of help for the password dialog; empty when there is none.
    QString passwordHelp;
    /// The current user's short name.
    QString userName;
    /// The user's application-support folder; the program's own folder "Wendrel" is made inside.
    QString applicationSupport;

    std::unique_ptr<Shell> shell;
    std::unique_ptr<ToolStarter> tools;
    std::unique_ptr<PrivilegedRunner> privileged;
    std::unique_ptr<Keychain> keychain;
    std::unique_ptr<OwnerCheck> ownerCheck;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<ActivityAssertion> activity;
    std::unique_ptr<EchoSockets> echoSockets;
};

/// The host of this machine: the system's own tools on a Mac; on Linux NetworkManager where it answers, else the
/// simulated Mac. Each platform folder defines it.
std::unique_ptr<Host> makeHost();

} // namespace corvane
