#include "platform/shared/pooled_tool_starter.h"

#include "core/support/text.h"
#include "platform/posix/tool_root.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <unordered_map>
#include <utility>

namespace corvane {

/// Where the pool's results meet those who wait for them. Only wake-ups go through the event queue, one a
/// result: a `done` that turns a nested event loop then holds up no other.
class PooledToolStarter::Desk : public QObject {
  public:
    Desk(const posix::Environment& environment, Limits limits)
        : pool_(posix::environmentWith(environment), limits,
                [this] { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }) {}

    posix::ChildPool::Id start(std::string path, const std::vector<std::string>& arguments, Done done) {
        const auto id = pool_.start(std::move(path), arguments);
        awaited_.emplace(id, std::move(done));
        return id;
    }
    void cancel(posix::ChildPool::Id id) {
        if (awaited_.erase(id) > 0) pool_.cancel(id);
    }

    void customEvent(QEvent*) override {
        std::optional<posix::ChildPool::Ended> ended = pool_.take();
        if (!ended) return;
        auto waiting = awaited_.extract(ended->id);
        // Cancelled after it had ended.
        if (waiting.empty()) return;
        posix::ChildResult& child = ended->result;
        Result result{child.startError == 0, child.status, std::move(child.output)};
        if (text::validUtf8Prefix(result.output) != result.output.size())
            result.output = text::validUtf8(result.output);
        waiting.mapped()(result);
    }

  private:
    std::unordered_map<posix::ChildPool::Id, Done> awaited_;
    // Last, so that its threads have ended before anything else goes.
    posix::ChildPool pool_;
};

class PooledToolStarter::Started final : public Job {
  public:
    Started(std::weak_ptr<Desk> desk, posix::ChildPool::Id id) : desk_(std::move(desk)), id_(id) {}
    Started(const Started&) = delete;
    Started& operator=(const Started&) = delete;
    ~Started() override {
        if (const auto desk = desk_.lock()) desk->cancel(id_);
    }

  private:
    std::weak_ptr<Desk> desk_;
    posix::ChildPool::Id id_;
};

PooledToolStarter::PooledToolStarter(std::string toolRoot, const posix::Environment& environment,
                                     Limits limits)
    : toolRoot_(std::move(toolRoot)), desk_(std::make_shared<Desk>(environment, limits)) {}

PooledToolStarter::~PooledToolStarter() = default;

std::unique_ptr<ToolStarter::Job>
PooledToolStarter::start(const std::string& path, const std::vector<std::string>& arguments, Done done) {
    const auto id = desk_->start(posix::underRoot(toolRoot_, path), arguments, std::move(done));
    return std::make_unique<Started>(desk_, id);
}

} // namespace corvane
