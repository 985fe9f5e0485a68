// Work off the main thread, whose result comes back to it. One thread each, started at first need; tasks run
// one after another in the order given.
#pragma once

#include <QThread>

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

namespace corvane {

class Background {
  public:
    /// Belongs to the thread that makes it (the main thread), which must run an event loop.
    explicit Background(QThread::Priority priority = QThread::InheritPriority);
    /// Waits for every task that was given. Results that weren't handed back yet are dropped.
    ~Background();
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Runs `work` on the thread, then `done` with its result on the main thread. `done` needs no context of
    /// its own as long as this object is a member of whatever it captures.
    template <typename Work, typename Done>
    void start(Work work, Done done) {
        using Result = std::invoke_result_t<Work>;
        if constexpr (std::is_void_v<Result>) {
            post(std::move(work), std::move(done));
        } else {
            auto result = std::make_shared<std::optional<Result>>();
            post([work = std::move(work), result]() mutable { result->emplace(work()); },
                 [done = std::move(done), result]() mutable { done(std::move(**result)); });
        }
    }

    /// Runs `work` on the thread and turns the main event loop until it has ended. When the program is
    /// quitting, or this object is destroyed meanwhile, it still returns only after `work` has ended: callers
    /// look whether they themselves are still alive.
    template <typename Work>
    std::invoke_result_t<Work> await(Work work) {
        using Result = std::invoke_result_t<Work>;
        if constexpr (std::is_void_v<Result>) {
            postAndWait(work);
        } else {
            std::optional<Result> result;
            postAndWait([&] { result.emplace(work()); });
            return std::move(*result);
        }
    }

  private:
    class MainQueue;
    struct Tasks;

    void post(std::function<void()> work, std::function<void()> done);
    void postAndWait(const std::function<void()>& work);

    QThread::Priority priority_;
    std::unique_ptr<MainQueue> main_;
    std::shared_ptr<Tasks> tasks_;
    std::unique_ptr<QThread> thread_;
};

} // namespace corvane
