// Linux with NetworkManager, through host tools that speak the Mac tools' command lines and texts.
#pragma once

#include "platform/host.h"

namespace corvane {

struct LinuxHostOptions {
    /// The folder under which the NetworkManager tools stand at the Mac's paths.
    QString toolRoot;
    QString applicationSupport;
    /// The settings file (INI).
    QString settingsFile;
};

/// Whether a NetworkManager answers on the system bus.
bool networkManagerAnswers();
std::unique_ptr<Host> makeLinuxHost(const LinuxHostOptions& options);
/// In the user's own folders, with the tools beside the program.
std::unique_ptr<Host> makeLinuxHost();

} // namespace corvane
