#include "platform/posix/child_process.h"

#include "platform/posix/descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sched.h>
#include <thread>
#include <unistd.h>

namespace corvane::posix {

namespace {

using Clock = std::chrono::steady_clock;

struct Stream {
    Descriptor reading;
    std::string* kept;
};

/// Milliseconds for poll, rounded up, so that the deadline has passed when poll says that nothing came.
int remaining(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
}

/// False when the deadline passed first.
bool collect(std::vector<Stream>& streams, Clock::time_point deadline, std::size_t limit) {
    std::array<char, 65536> buffer;
    std::array<pollfd, 2> waiting;
    while (!streams.empty()) {
        for (std::size_t i = 0; i < streams.size(); ++i) waiting[i] = {streams[i].reading.get(), POLLIN, 0};
        const int ready = ::poll(waiting.data(), static_cast<nfds_t>(streams.size()), remaining(deadline));
        if (ready < 0 && errno != EINTR) return true;
        // A child that never stops writing never lets poll time out.
        if (Clock::now() >= deadline) return false;
        if (ready <= 0) continue;
        for (std::size_t i = streams.size(); i-- > 0;) {
            if (waiting[i].revents == 0) continue;
            const ssize_t count = ::read(streams[i].reading.get(), buffer.data(), buffer.size());
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) {
                streams.erase(streams.begin() + static_cast<std::ptrdiff_t>(i));
                continue;
            }
            std::string& kept = *streams[i].kept;
            kept.append(buffer.data(), std::min(static_cast<std::size_t>(count), limit - kept.size()));
        }
    }
    return true;
}

/// False when the deadline passed first. A child's output ends in the last moments of its exit, so there is
/// next to nothing to wait for; the pauses grow for the odd tool that closes its output and stays.
bool reap(pid_t child, Clock::time_point deadline, int& status) {
    auto pause = std::chrono::microseconds(50);
    for (int round = 0;; ++round) {
        if (const std::optional<int> ended = reapIfEnded(child)) {
            status = *ended;
            return true;
        }
        if (Clock::now() >= deadline) return false;
        if (round < 3) {
            ::sched_yield();
            continue;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::microseconds(10'000));
    }
}

} // namespace

ChildResult runChild(const ChildCall& call) {
    ChildResult result;
    Pipe input;
    if (!call.input.empty()) {
        // Written before the child lives: nobody can close the other end in between (no SIGPIPE), and the
        // child finds the end of its input right behind.
        input = openPipe();
        result.startError = call.input.size() > maxInput ? E2BIG : input.error;
        if (result.startError != 0) return result;
        const ssize_t written = ::write(input.writing.get(), call.input.data(), call.input.size());
        if (written != static_cast<ssize_t>(call.input.size())) {
            result.startError = written < 0 ? errno : EIO;
            return result;
        }
        input.writing.reset();
    }
    Pipe output = openPipe();
    Pipe errors = call.mergeErrors ? Pipe{} : openPipe();
    result.startError = output.error != 0 ? output.error : errors.error;
    if (result.startError != 0) return result;

    pid_t child = -1;
    const int errorEnd = call.mergeErrors ? output.writing.get() : errors.writing.get();
    result.startError = spawn({.path = call.path,
                               .arguments = call.arguments,
                               .environment = call.environment,
                               .input = input.reading.get(),
                               .output = output.writing.get(),
                               .errors = errorEnd,
                               .ownSession = call.ownSession},
                              child);
    input.reading.reset();
    output.writing.reset();
    errors.writing.reset();
    if (result.startError != 0) return result;

    const Clock::time_point deadline = Clock::now() + call.timeLimit;
    std::vector<Stream> streams;
    streams.push_back({std::move(output.reading), &result.output});
    if (!call.mergeErrors) streams.push_back({std::move(errors.reading), &result.errors});
    if (collect(streams, deadline, call.outputLimit) && reap(child, deadline, result.status)) return result;

    result.timedOut = true;
    killGroup(child);
    if (!reap(child, Clock::now() + std::chrono::seconds(1), result.status)) reapInBackground(child);
    return result;
}

} // namespace corvane::posix
