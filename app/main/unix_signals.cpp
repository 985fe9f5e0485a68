#include "app/main/unix_signals.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace corvane {
namespace {

constexpr std::array endings{SIGINT, SIGTERM, SIGHUP};

/// A handler may do no more than write a byte: the pipe carries it to the event loop. Never closed, since a
/// late signal may still be writing.
std::array<int, 2> pipeEnds{-1, -1};
std::atomic<bool> wanted{false};

void handle(int) {
    const int kept = errno;
    const char byte = 1;
    if (wanted) [[maybe_unused]]
        const auto written = ::write(pipeEnds[1], &byte, 1);
    errno = kept;
}

bool openPipe() {
    if (pipeEnds[0] >= 0) return true;
    if (::pipe(pipeEnds.data()) != 0) return false;
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    return true;
}

} // namespace

UnixSignals::UnixSignals(std::function<void()> asked, QObject* parent) : QObject(parent) {
    if (!openPipe()) return;
    notifier_ = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [asked = std::move(asked)] {
        char bytes[16];
        while (::read(pipeEnds[0], bytes, sizeof bytes) > 0) {
        }
        asked();
    });
    wanted = true;
    struct sigaction action = {};
    action.sa_handler = handle;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : endings) ::sigaction(signal, &action, nullptr);
}

UnixSignals::~UnixSignals() {
    wanted = false;
    for (const int signal : endings) ::signal(signal, SIG_DFL);
}

} // namespace corvane
