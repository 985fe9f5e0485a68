#include "platform/posix/child_pool.h"

#include "platform/posix/descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <deque>
#include <iterator>
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
/// So many are started before the others are looked after again: starting one takes up to a millisecond.
constexpr std::size_t startsAtATime = 8;

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
};

} // namespace

class ChildPool::Worker {
  public:
    Worker(Environment environment, Limits limits, std::function<void()> childEnded)
        : environment_(std::move(environment)), limits_(limits), childEnded_(std::move(childEnded)) {}
    ~Worker();

    Id start(std::string path, std::vector<std::string> arguments);
    void cancel(Id id);
    std::optional<Ended> take();

  private:
    int begin();
    void wake();
    void run();
    bool takeOrders();
    void startSome();
    void startOne(Order& order);
    int untilNextLook() const;
    void wait();
    void read(Child& child);
    /// True when the child is done with.
    bool bury(Child& child, Clock::time_point now);
    void buryAll();
    void report(Id id, ChildResult result);

    const Environment environment_;
    const Limits limits_;
    const std::function<void()> childEnded_;

    // The caller's.
    std::thread thread_;
    Id lastId_ = 0;

    // Between the two.
    std::mutex mutex_;
    Pipe wakeUp_;
    bool woken_ = false;
    bool stopping_ = false;
    std::vector<Order> orders_;
    std::vector<Id> cancels_;
    std::deque<Ended> ended_;

    // The thread's.
    std::deque<Order> waiting_;
    std::vector<Child> children_;
    std::vector<pollfd> watched_;
};

ChildPool::Worker::~Worker() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        wake();
    }
    thread_.join();
}

/// An errno value, or zero with the thread running.
int ChildPool::Worker::begin() {
    if (thread_.joinable()) return 0;
    wakeUp_ = openPipe();
    if (wakeUp_.error != 0) return wakeUp_.error;
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error& error) {
        return error.code().value();
    }
    return 0;
}

/// With the lock held. At most one byte is ever in the pipe, so that writing never blocks.
void ChildPool::Worker::wake() {
    if (std::exchange(woken_, true)) return;
    while (::write(wakeUp_.writing.get(), "", 1) < 0 && errno == EINTR) {
    }
}

ChildPool::Id ChildPool::Worker::start(std::string path, std::vector<std::string> arguments) {
    const Id id = ++lastId_;
    if (const int error = begin(); error != 0) {
        ChildResult failed;
        failed.startError = error;
        report(id, std::move(failed));
        return id;
    }
    const std::lock_guard lock(mutex_);
    orders_.push_back({id, std::move(path), std::move(arguments)});
    wake();
    return id;
}

void ChildPool::Worker::cancel(Id id) {
    if (!thread_.joinable()) return;
    const std::lock_guard lock(mutex_);
    cancels_.push_back(id);
    wake();
}

std::optional<ChildPool::Ended> ChildPool::Worker::take() {
    const std::lock_guard lock(mutex_);
    if (ended_.empty()) return std::nullopt;
    Ended first = std::move(ended_.front());
    ended_.pop_front();
    return first;
}

void ChildPool::Worker::report(Id id, ChildResult result) {
    const std::lock_guard lock(mutex_);
    ended_.push_back({id, std::move(result)});
    childEnded_();
}

void ChildPool::Worker::run() {
    while (takeOrders()) {
        startSome();
        wait();
        const auto now = Clock::now();
        std::erase_if(children_, [&](Child& child) { return bury(child, now); });
    }
    buryAll();
}

/// False when it is time to stop.
bool ChildPool::Worker::takeOrders() {
    std::vector<Order> orders;
    std::vector<Id> cancels;
    {
        const std::lock_guard lock(mutex_);
        if (stopping_) return false;
        orders.swap(orders_);
        cancels.swap(cancels_);
        if (std::exchange(woken_, false)) {
            char byte;
            while (::read(wakeUp_.reading.get(), &byte, 1) < 0 && errno == EINTR) {
            }
        }
    }
    std::move(orders.begin(), orders.end(), std::back_inserter(waiting_));
    for (const Id id : cancels) {
        std::erase_if(waiting_, [id](const Order& order) { return order.id == id; });
        const auto child = std::find_if(children_.begin(), children_.end(),
                                        [id](const Child& other) { return other.id == id; });
        if (child == children_.end()) continue;
        child->cancelled = true;
        child->output.reset();
        child->kill();
    }
    return true;
}

void ChildPool::Worker::startSome() {
    for (std::size_t i = 0; i < startsAtATime && !waiting_.empty(); ++i) {
        startOne(waiting_.front());
        waiting_.pop_front();
    }
}

void ChildPool::Worker::startOne(Order& order) {
    Child child;
    child.id = order.id;
    Pipe pipe = openPipe();
    child.result.startError = pipe.error;
    if (pipe.error == 0) {
        const int end = pipe.writing.get();
        child.result.startError = spawn({.path = order.path,
                                         .arguments = order.arguments,
                                         .environment = environment_,
                                         .output = end,
                                         .errors = end},
                                        child.pid);
    }
    if (child.result.startError != 0) {
        report(child.id, std::move(child.result));
        return;
    }
    child.output = std::move(pipe.reading);
    child.deadline = Clock::now() + limits_.time;
    children_.push_back(std::move(child));
}

/// Milliseconds for poll, rounded up, so that the time has come when poll says that nothing else did.
int ChildPool::Worker::untilNextLook() const {
    if (!waiting_.empty()) return 0;
    if (children_.empty()) return -1;
    auto next = Clock::time_point::max();
    for (const Child& child : children_)
        next = std::min({next, child.deadline, child.ending() ? child.nextLook : child.deadline});
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
}

void ChildPool::Worker::wait() {
    watched_.clear();
    watched_.push_back({wakeUp_.reading.get(), POLLIN, 0});
    // poll passes over a descriptor below zero.
    for (const Child& child : children_) watched_.push_back({child.output.get(), POLLIN, 0});
    if (::poll(watched_.data(), static_cast<nfds_t>(watched_.size()), untilNextLook()) <= 0) return;
    for (std::size_t i = 0; i < children_.size(); ++i)
        if (watched_[i + 1].revents != 0) read(children_[i]);
}

void ChildPool::Worker::read(Child& child) {
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

bool ChildPool::Worker::bury(Child& child, Clock::time_point now) {
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
    if (!child.cancelled) report(child.id, std::move(child.result));
    return true;
}

void ChildPool::Worker::buryAll() {
    for (Child& child : children_) {
        child.cancelled = true;
        child.output.reset();
        child.kill();
    }
    while (!children_.empty()) {
        const auto now = Clock::now();
        std::erase_if(children_, [&](Child& child) { return bury(child, now); });
        if (!children_.empty()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

ChildPool::ChildPool(Environment environment, Limits limits, std::function<void()> childEnded)
    : worker_(std::make_unique<Worker>(std::move(environment), limits, std::move(childEnded))) {}

ChildPool::~ChildPool() = default;

ChildPool::Id ChildPool::start(std::string path, std::vector<std::string> arguments) {
    return worker_->start(std::move(path), std::move(arguments));
}

void ChildPool::cancel(Id id) {
    worker_->cancel(id);
}

std::optional<ChildPool::Ended> ChildPool::take() {
    return worker_->take();
}

} // namespace corvane::posix
