#include "platform/posix/child_pool.h"

#include "platform/posix/descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <deque>
#include <iterator>
#include <map>
#include <mutex>
#include <poll.h>
#include <sched.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace corvane::posix {

namespace {

using Clock = std::chrono::steady_clock;

/// How long a killed child may take to go.
constexpr auto grace = std::chrono::seconds(1);
/// A start holds its thread until the child has its own program: a millisecond, or ten on a busy machine.
/// With several starting, hundreds of children are under way within a tenth of a second.
constexpr std::size_t starterCount = 3;

struct Order {
    ChildPool::Id id;
    std::string path;
    std::vector<std::string> arguments;
};

/// A child that was started. Output open → (closed) ending → reaped; killed at any time in between.
struct Child {
    ChildPool::Id id = 0;
    pid_t pid = -1;
    Descriptor output;
    ChildResult result;
    /// Nobody wants its result any more.
    bool cancelled = false;
    bool killed = false;
    /// Of its time, or of the grace once it was killed.
    Clock::time_point deadline;
    /// While it is ending: when to see again whether it has, and how long to wait after that.
    Clock::time_point nextLook;
    std::chrono::milliseconds pause{1};

    bool ending() const { return !output.valid(); }
    void kill() {
        killGroup(pid);
        killed = true;
        deadline = Clock::now() + grace;
    }
    void cancel() {
        cancelled = true;
        output.reset();
        kill();
    }
};

} // namespace

class ChildPool::Threads {
  public:
    Threads(Environment environment, Limits limits, std::function<void()> childEnded)
        : environment_(std::move(environment)), limits_(limits), childEnded_(std::move(childEnded)) {}
    ~Threads();

    Id start(std::string path, std::vector<std::string> arguments);
    void cancel(Id id);
    std::optional<Ended> take();

  private:
    int begin();
    void wake();
    void report(Id id, ChildResult result);

    void startAll();
    Child startOne(const Order& order) const;

    void keepAll();
    bool takeNews();
    int untilNextLook() const;
    void wait();
    void read(Child& child);
    /// True when the child is done with.
    bool bury(Child& child, Clock::time_point now);
    void buryAll();

    const Environment environment_;
    const Limits limits_;
    const std::function<void()> childEnded_;

    // The caller's.
    std::vector<std::thread> starters_;
    std::thread keeper_;
    Id lastId_ = 0;

    // Between all threads.
    std::mutex mutex_;
    std::condition_variable ordered_;
    Pipe wakeUp_;
    bool woken_ = false;
    bool noMoreStarts_ = false;
    bool ending_ = false;
    std::deque<Order> orders_;
    /// Being started just now; true once cancelled.
    std::map<Id, bool> starting_;
    std::vector<Child> started_;
    std::vector<Id> cancels_;
    std::deque<Ended> ended_;

    // The keeper's.
    std::vector<Child> children_;
    std::vector<pollfd> watched_;
};

ChildPool::Threads::~Threads() {
    {
        const std::lock_guard lock(mutex_);
        noMoreStarts_ = true;
        ordered_.notify_all();
    }
    for (std::thread& starter : starters_) starter.join();
    if (!keeper_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
        wake();
    }
    keeper_.join();
}

/// An errno value, or zero with the threads running.
int ChildPool::Threads::begin() {
    if (!starters_.empty()) return 0;
    if (!keeper_.joinable()) wakeUp_ = openPipe();
    if (wakeUp_.error != 0) return wakeUp_.error;
    try {
        if (!keeper_.joinable()) keeper_ = std::thread([this] { keepAll(); });
        while (starters_.size() < starterCount) starters_.emplace_back([this] { startAll(); });
    } catch (const std::system_error& error) {
        // One is enough to go on.
        return starters_.empty() ? error.code().value() : 0;
    }
    return 0;
}

/// With the lock held. At most one byte is ever in the pipe, so that writing never blocks.
void ChildPool::Threads::wake() {
    if (std::exchange(woken_, true)) return;
    while (::write(wakeUp_.writing.get(), "", 1) < 0 && errno == EINTR) {
    }
}

ChildPool::Id ChildPool::Threads::start(std::string path, std::vector<std::string> arguments) {
    const Id id = ++lastId_;
    const int error = begin();
    const std::lock_guard lock(mutex_);
    if (error != 0) {
        ChildResult failed;
        failed.startError = error;
        report(id, std::move(failed));
        return id;
    }
    orders_.push_back({id, std::move(path), std::move(arguments)});
    ordered_.notify_one();
    return id;
}

void ChildPool::Threads::cancel(Id id) {
    const std::lock_guard lock(mutex_);
    if (std::erase_if(orders_, [id](const Order& order) { return order.id == id; }) > 0) return;
    if (const auto starting = starting_.find(id); starting != starting_.end()) {
        starting->second = true;
        return;
    }
    if (!keeper_.joinable()) return;
    cancels_.push_back(id);
    wake();
}

std::optional<ChildPool::Ended> ChildPool::Threads::take() {
    const std::lock_guard lock(mutex_);
    if (ended_.empty()) return std::nullopt;
    Ended first = std::move(ended_.front());
    ended_.pop_front();
    return first;
}

/// With the lock held.
void ChildPool::Threads::report(Id id, ChildResult result) {
    ended_.push_back({id, std::move(result)});
    childEnded_();
}

void ChildPool::Threads::startAll() {
    std::unique_lock lock(mutex_);
    for (;;) {
        ordered_.wait(lock, [this] { return noMoreStarts_ || !orders_.empty(); });
        if (noMoreStarts_) return;
        const Order order = std::move(orders_.front());
        orders_.pop_front();
        starting_.emplace(order.id, false);
        lock.unlock();
        Child child = startOne(order);
        lock.lock();
        const bool cancelled = starting_.extract(order.id).mapped();
        if (child.result.startError == 0) {
            if (cancelled) child.cancel();
            started_.push_back(std::move(child));
            wake();
        } else if (!cancelled) {
            report(order.id, std::move(child.result));
        }
    }
}

Child ChildPool::Threads::startOne(const Order& order) const {
    Child child;
    child.id = order.id;
    Pipe pipe = openPipe();
    child.result.startError = pipe.error;
    if (pipe.error != 0) return child;
    const int end = pipe.writing.get();
    child.result.startError = spawn({.path = order.path,
                                     .arguments = order.arguments,
                                     .environment = environment_,
                                     .output = end,
                                     .errors = end},
                                    child.pid);
    child.output = std::move(pipe.reading);
    child.deadline = Clock::now() + limits_.time;
    return child;
}

void ChildPool::Threads::keepAll() {
    while (takeNews()) {
        wait();
        const auto now = Clock::now();
        std::erase_if(children_, [&](Child& child) { return bury(child, now); });
    }
    buryAll();
}

/// False when it is time to end.
bool ChildPool::Threads::takeNews() {
    std::vector<Child> started;
    std::vector<Id> cancels;
    bool ending;
    {
        const std::lock_guard lock(mutex_);
        started.swap(started_);
        cancels.swap(cancels_);
        ending = ending_;
        if (std::exchange(woken_, false)) {
            char byte;
            while (::read(wakeUp_.reading.get(), &byte, 1) < 0 && errno == EINTR) {
            }
        }
    }
    std::move(started.begin(), started.end(), std::back_inserter(children_));
    for (const Id id : cancels)
        for (Child& child : children_)
            if (child.id == id) child.cancel();
    return !ending;
}

/// Milliseconds for poll, rounded up, so that the time has come when poll says that nothing else did.
int ChildPool::Threads::untilNextLook() const {
    if (children_.empty()) return -1;
    auto next = Clock::time_point::max();
    for (const Child& child : children_)
        next = std::min({next, child.deadline, child.ending() ? child.nextLook : child.deadline});
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
}

void ChildPool::Threads::wait() {
    watched_.clear();
    watched_.push_back({wakeUp_.reading.get(), POLLIN, 0});
    // poll passes over a descriptor below zero.
    for (const Child& child : children_) watched_.push_back({child.output.get(), POLLIN, 0});
    if (::poll(watched_.data(), static_cast<nfds_t>(watched_.size()), untilNextLook()) <= 0) return;
    for (std::size_t i = 0; i < children_.size(); ++i)
        if (watched_[i + 1].revents != 0) read(children_[i]);
}

void ChildPool::Threads::read(Child& child) {
    std::array<char, 65536> block;
    const ssize_t count = ::read(child.output.get(), block.data(), block.size());
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) {
        child.output.reset();
        // The output ends in the last moments of a child's exit.
        ::sched_yield();
        child.nextLook = Clock::now();
        return;
    }
    std::string& kept = child.result.output;
    kept.append(block.data(), std::min(static_cast<std::size_t>(count), limits_.output - kept.size()));
}

bool ChildPool::Threads::bury(Child& child, Clock::time_point now) {
    const bool over = now >= child.deadline;
    if (over && !child.killed) {
        child.result.timedOut = true;
        child.kill();
        return false;
    }
    if (!over && (!child.ending() || now < child.nextLook)) return false;
    const std::optional<int> status = reapIfEnded(child.pid);
    if (!status && !over) {
        child.nextLook = now + child.pause;
        child.pause = std::min(child.pause * 2, std::chrono::milliseconds(20));
        return false;
    }
    if (status)
        child.result.status = *status;
    else
        reapInBackground(child.pid);
    if (child.cancelled) return true;
    const std::lock_guard lock(mutex_);
    report(child.id, std::move(child.result));
    return true;
}

void ChildPool::Threads::buryAll() {
    for (Child& child : children_) {
        child.cancel();
    }
    while (!children_.empty()) {
        const auto now = Clock::now();
        std::erase_if(children_, [&](Child& child) { return bury(child, now); });
        if (!children_.empty()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

ChildPool::ChildPool(Environment environment, Limits limits, std::function<void()> childEnded)
    : threads_(std::make_unique<Threads>(std::move(environment), limits, std::move(childEnded))) {}

ChildPool::~ChildPool() = default;

ChildPool::Id ChildPool::start(std::string path, std::vector<std::string> arguments) {
    return threads_->start(std::move(path), std::move(arguments));
}

void ChildPool::cancel(Id id) {
    threads_->cancel(id);
}

std::optional<ChildPool::Ended> ChildPool::take() {
    return threads_->take();
}

} // namespace corvane::posix
