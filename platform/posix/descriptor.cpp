#include "platform/posix/descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace corvane::posix {

void Descriptor::reset() {
    if (fd_ >= 0) ::close(std::exchange(fd_, -1));
}

static Descriptor aboveStandard(Descriptor descriptor) {
    if (descriptor.get() > STDERR_FILENO) return descriptor;
    return Descriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

Pipe openPipe() {
    int ends[2] = {-1, -1};
#ifdef __APPLE__
    // There is no pipe2; children are started with POSIX_SPAWN_CLOEXEC_DEFAULT instead.
    const bool opened = ::pipe(ends) == 0;
    if (opened) {
        ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    }
#else
    const bool opened = ::pipe2(ends, O_CLOEXEC) == 0;
#endif
    Pipe pipe;
    if (!opened) {
        pipe.error = errno;
        return pipe;
    }
    Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    pipe.reading = aboveStandard(std::move(reading));
    pipe.writing = aboveStandard(std::move(writing));
    if (!pipe.reading.valid() || !pipe.writing.valid()) pipe.error = errno;
    return pipe;
}

void allowManyDescriptors() {
    constexpr rlim_t enough = 4096;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= enough) return;
    limit.rlim_cur = std::min(enough, limit.rlim_max);
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

int syncToMedium(int fd) {
#ifdef __APPLE__
    // Not every file system knows it.
    if (::fcntl(fd, F_FULLFSYNC) == 0) return 0;
#endif
    return ::fsync(fd) == 0 ? 0 : errno;
}

} // namespace corvane::posix
