#include "app/clients/ping_monitor.h"

#include "core/diagnostics/host_text.h"

#include <QTimer>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;

/// A probe that needs no tool: its outcome comes with the next turn of the event loop, as a tool's would
/// later.
class Foregone final : public ToolStarter::Job {
  public:
    explicit Foregone(std::function<void()> done) {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(done));
        timer_.setSingleShot(true);
        timer_.start(0);
    }

  private:
    QTimer timer_;
};

/// The host stands where the tool looks for options ("-f" floods), and ends at a NUL in exec's eyes. Neither
/// is part of any host's name.
bool canBeHost(const std::string& host) {
    return !host.starts_with('-') && host.find('\0') == std::string::npos;
}

} // namespace

/// One target's probes and pauses. Destroying it cancels them: nothing more is stored.
class PingMonitor::Loop : public QObject {
  public:
    Loop(PingMonitor& monitor, const Uuid& target, std::string host)
        : monitor_(monitor), target_(target), host_(std::move(host)) {
        pause_.setSingleShot(true);
        pause_.setTimerType(Qt::PreciseTimer);
        connect(&pause_, &QTimer::timeout, this, &Loop::probe);
        probe();
    }
    const std::string& host() const { return host_; }

  private:
    void probe() {
        started_ = Clock::now();
        probe_ = monitor_.ping(host_, monitor_.pace_.waitMs, std::nullopt,
                               [this](const PingOutcome& outcome) { probed(outcome); });
    }
    void probed(const PingOutcome& outcome) {
        const Pace& pace = monitor_.pace_;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(started_ + pace.period - Clock::now());
        pause_.start(std::max(left, pace.shortestPause));
        // Last, since whoever hears of it may end this loop.
        monitor_.record(target_, outcome);
    }

    PingMonitor& monitor_;
    const Uuid target_;
    const std::string host_;
    Clock::time_point started_;
    QTimer pause_;
    std::unique_ptr<ToolStarter::Job> probe_;
};

PingMonitor::PingMonitor(ToolStarter& tools, QObject* parent) : PingMonitor(tools, Pace{}, parent) {}

PingMonitor::PingMonitor(ToolStarter& tools, Pace pace, QObject* parent)
    : QObject(parent), tools_(tools), pace_(pace) {}

PingMonitor::~PingMonitor() = default;

void PingMonitor::update(const std::vector<PingTarget>& targets) {
    std::map<Uuid, std::string> wanted;
    for (const PingTarget& target : targets)
        if (const auto host = HostText::trim(target.host); !host.empty()) wanted.emplace(target.id, host);

    bool changed = false;
    for (auto task = tasks_.begin(); task != tasks_.end();) {
        const auto found = wanted.find(task->first);
        if (found != wanted.end() && found->second == task->second->host()) {
            ++task;
            continue;
        }
        states_.erase(task->first);
        task = tasks_.erase(task);
        changed = true;
    }
    for (const auto& [id, host] : wanted) {
        if (tasks_.contains(id)) continue;
        tasks_.emplace(id, std::make_unique<Loop>(*this, id, host));
        changed = true;
    }
    if (changed) emit targetsChanged();
}

std::unique_ptr<ToolStarter::Job> PingMonitor::ping(const std::string& host, int waitMs,
                                                    const std::optional<std::string>& boundTo, Probed done) {
    if (!canBeHost(host))
        return std::make_unique<Foregone>([done = std::move(done)] { done(PingOutcome::unresolved()); });
    std::vector<std::string> arguments = Ping::arguments(host, waitMs);
    if (boundTo) arguments.insert(arguments.begin(), {"-b", *boundTo});
    return tools_.start(Ping::tool, arguments, [done = std::move(done)](const ToolStarter::Result& result) {
        done(result.started ? Ping::parse(result.output, result.status) : PingOutcome::unresolved());
    });
}

void PingMonitor::record(Uuid target, const PingOutcome& outcome) {
    State& state = states_[target];
    state.outcome = outcome;
    if (outcome.isReply()) state.lastReply = QDateTime::currentDateTimeUtc();
    state.history.push_back(outcome.isReply());
    if (state.history.size() > State::historyLimit) state.history.erase(state.history.begin());
    emit stateChanged(target);
}

} // namespace corvane
