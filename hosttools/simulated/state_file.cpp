#include "hosttools/simulated/state.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::simulated {

namespace {

/// Larger files are no state files.
constexpr std::size_t maxBytes = 4u << 20;

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    int number() const { return number_; }
    bool open() const { return number_ >= 0; }

  private:
    int number_;
};

std::string reason(const std::string& what, const std::string& path) {
    return what + " " + path + ": " + std::strerror(errno) + ".";
}

/// Waits for the exclusive lock; the kernel lets go of it when the process ends, however it ends.
bool lock(const Descriptor& file) {
    int result = 0;
    do result = ::flock(file.number(), LOCK_EX);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

} // namespace

LoadResult StateFile::read() const {
    const Descriptor file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.open()) return {std::nullopt, reason("Can't read", path_)};
    std::string text;
    char block[16384];
    for (;;) {
        const ssize_t count = ::read(file.number(), block, sizeof block);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return {std::nullopt, reason("Can't read", path_)};
        if (count == 0) break;
        text.append(block, static_cast<std::size_t>(count));
        if (text.size() > maxBytes) return {std::nullopt, path_ + " is too large for a network state."};
    }
    const JsonValue::ParseResult parsed = JsonValue::parse(text);
    if (!parsed.value) return {std::nullopt, path_ + ": " + parsed.error};
    if (std::optional<State> state = fromJson(*parsed.value)) return {std::move(state), {}};
    return {std::nullopt, path_ + " doesn't describe a network."};
}

std::optional<std::string> StateFile::write(const State& state) const {
    const std::string temporary = path_ + "." + std::to_string(::getpid()) + ".new";
    const std::string text = toJson(state).prettyPrinted() + "\n";
    {
        const Descriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
        if (!file.open()) return reason("Can't write", temporary);
        std::size_t done = 0;
        while (done < text.size()) {
            const ssize_t count = ::write(file.number(), text.data() + done, text.size() - done);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) {
                const std::string failure = reason("Can't write", temporary);
                ::unlink(temporary.c_str());
                return failure;
            }
            done += static_cast<std::size_t>(count);
        }
    }
    if (::rename(temporary.c_str(), path_.c_str()) == 0) return std::nullopt;
    const std::string failure = reason("Can't write", path_);
    ::unlink(temporary.c_str());
    return failure;
}

std::optional<std::string> StateFile::change(const std::function<void(State&)>& edit) const {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
    const Descriptor guard(::open((path_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!guard.open() || !lock(guard)) return reason("Can't lock", path_);
    LoadResult loaded;
    if (::access(path_.c_str(), F_OK) != 0 && errno == ENOENT)
        loaded.state = defaultState(currentTime());
    else
        loaded = read();
    if (!loaded.state) return loaded.error;
    edit(*loaded.state);
    return write(*loaded.state);
}

LoadResult StateFile::load() const {
    if (::access(path_.c_str(), F_OK) != 0 && errno == ENOENT)
        if (const auto failure = change([](State&) {})) return {std::nullopt, *failure};
    LoadResult loaded = read();
    if (!loaded.state || !loaded.state->noticeLinks(currentTime())) return loaded;
    // Somebody pulled or plugged a cable in the file: note when, so that leases take their time.
    if (const auto failure = change([](State& state) { state.noticeLinks(currentTime()); }))
        return {std::nullopt, *failure};
    return read();
}

} // namespace corvane::simulated
