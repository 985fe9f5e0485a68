// The program's few options. They are read before Qt starts, since one of them decides which screen Qt draws
// on.
#pragma once

#include <optional>
#include <string>

namespace corvane {

struct Options {
    bool help = false, version = false;
    /// The simulated Mac, whatever network this machine has.
    bool simulated = false;
    /// Write pictures of every screen into this folder instead of showing a window.
    std::optional<std::string> gallery;
    /// Why the arguments can't be used; empty when they can.
    std::string error;

    /// Options of Qt itself ("-platform", "-style" …) are left alone.
    static Options read(int count, const char* const* arguments);
    static const char* usage();
};

/// Exit codes, as sysexits.h has them.
enum ExitCode { exitFine = 0, exitFailed = 1, exitUsage = 64, exitNoDisplay = 69 };

} // namespace corvane
