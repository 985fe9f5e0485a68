// File descriptors that close themselves and never leak into a child.
#pragma once

#include <utility>

namespace corvane::posix {

class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor() { reset(); }

    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    void reset();

  private:
    int fd_ = -1;
};

/// A pipe whose ends are close-on-exec and above the standard descriptors, whatever of those is closed here.
struct Pipe {
    Descriptor reading;
    Descriptor writing;
    /// An errno value; zero when both ends are open.
    int error = 0;
};
Pipe openPipe();

/// Every tool under way needs a descriptor, and hundreds may be: a Mac's program begins with 256. Raises this
/// process's limit to what hundreds need, as far as the system lets it.
void allowManyDescriptors();

/// Puts a file's or folder's contents on the medium, on a Mac past the drive's own cache too. An errno value,
/// or zero.
int syncToMedium(int fd);

} // namespace corvane::posix
