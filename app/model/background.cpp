#include "app/model/background.h"

#include <QEventLoop>
#include <QPointer>

#include <condition_variable>
#include <deque>
#include <mutex>

namespace corvane {

// What goes between the threads lies behind a mutex of our own; Qt's event queue carries only the wake-up.
class Background::MainQueue : public QObject {
    Q_OBJECT

  public:
    /// The door for other threads; it may outlive the queue and then does nothing.
    struct Door {
        std::mutex mutex;
        MainQueue* queue = nullptr;
        std::deque<std::function<void()>> calls;

        void post(std::function<void()> call) {
            const std::lock_guard lock(mutex);
            if (!queue) return;
            calls.push_back(std::move(call));
            if (calls.size() == 1) wake();
        }
        void wake() { QMetaObject::invokeMethod(queue, "callNext", Qt::QueuedConnection); }
    };

    MainQueue() { door->queue = this; }
    ~MainQueue() override {
        const std::lock_guard lock(door->mutex);
        door->queue = nullptr;
        door->calls.clear();
    }

    // One call a wake-up: a call may turn a nested event loop, in which the next ones must not wait for it.
    Q_INVOKABLE void callNext() {
        std::function<void()> call;
        {
            const std::lock_guard lock(door->mutex);
            if (door->calls.empty()) return;
            call = std::move(door->calls.front());
            door->calls.pop_front();
            if (!door->calls.empty()) door->wake();
        }
        call();
    }

    const std::shared_ptr<Door> door = std::make_shared<Door>();
};

struct Background::Tasks {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> waiting;
    bool ending = false;

    void runAll() {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return ending || !waiting.empty(); });
            if (waiting.empty()) return;
            auto task = std::move(waiting.front());
            waiting.pop_front();
            lock.unlock();
            task();
            task = nullptr;
            lock.lock();
        }
    }
};

Background::Background(QThread::Priority priority)
    : priority_(priority), main_(std::make_unique<MainQueue>()), tasks_(std::make_shared<Tasks>()) {}

Background::~Background() {
    main_.reset();
    if (!thread_) return;
    {
        const std::lock_guard lock(tasks_->mutex);
        tasks_->ending = true;
    }
    tasks_->changed.notify_one();
    thread_->wait();
}

void Background::post(std::function<void()> work, std::function<void()> done) {
    {
        const std::lock_guard lock(tasks_->mutex);
        tasks_->waiting.push_back(
            [work = std::move(work), done = std::move(done), door = main_->door]() mutable {
                work();
                // What the work captured goes before its end is told.
                work = nullptr;
                if (done) door->post(std::move(done));
            });
    }
    tasks_->changed.notify_one();
    if (!thread_) {
        thread_.reset(QThread::create([tasks = tasks_] { tasks->runAll(); }));
        thread_->start(priority_);
    }
}

void Background::postAndWait(const std::function<void()>& work) {
    struct Ended {
        std::mutex mutex;
        std::condition_variable changed;
        bool value = false;
    };
    const auto ended = std::make_shared<Ended>();
    QEventLoop loop;
    post(
        [&work, ended] {
            work();
            const std::lock_guard lock(ended->mutex);
            ended->value = true;
            ended->changed.notify_one();
        },
        [turning = QPointer<QEventLoop>(&loop)] {
            if (turning) turning->quit();
        });
    QObject::connect(main_.get(), &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
    // A quit of the program leaves the loop early; the work's captures live in our caller's frame.
    std::unique_lock lock(ended->mutex);
    ended->changed.wait(lock, [&] { return ended->value; });
}

} // namespace corvane

#include "background.moc"
