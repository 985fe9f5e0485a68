#include "app/main/options.h"

#include <string_view>

namespace corvane {

Options Options::read(int count, const char* const* arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--version") {
            options.version = true;
        } else if (argument == "--simulated") {
            options.simulated = true;
        } else if (argument == "--gallery") {
            if (i + 1 == count)
                options.error = "--gallery needs a folder to write to.";
            else
                options.gallery = arguments[++i];
        } else if (argument.starts_with("--")) {
            options.error = "Unknown option " + std::string(argument) + ".";
        }
    }
    return options;
}

const char* Options::usage() {
    return "Usage: wendrel [--simulated] [--gallery FOLDER] [--help] [--version]\n"
           "\n"
           "  --simulated       Work on a simulated network; nothing on this computer is changed.\n"
           "  --gallery FOLDER  Write pictures of every screen, light and dark, and end.\n";
}

} // namespace corvane
