#include "hosttools/tool_main.h"

#include <cerrno>
#include <unistd.h>

namespace corvane::hosttools {

Invocation invocation(int argc, char** argv) {
    Invocation called;
    const std::string path = argc > 0 ? argv[0] : "";
    called.tool = path.substr(path.find_last_of('/') + 1);
    int first = 1;
    if (called.tool.starts_with("wendrel-")) {
        called.tool = argc > 1 ? argv[1] : "";
        first = 2;
    }
    for (int i = first; i < argc; ++i) called.arguments.emplace_back(argv[i]);
    return called;
}

static void writeAll(int descriptor, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t count = ::write(descriptor, text.data() + done, text.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;
        done += static_cast<std::size_t>(count);
    }
}

int finish(const Printed& printed) {
    writeAll(STDOUT_FILENO, printed.out);
    writeAll(STDERR_FILENO, printed.err);
    return printed.status;
}

} // namespace corvane::hosttools
