// Watches hosts: each is pinged once a second by the system's tool, in a loop of its own.
#pragma once

#include "core/diagnostics/ping.h"
#include "core/diagnostics/ping_group.h"
#include "platform/tool_starter.h"

#include <QDateTime>
#include <QObject>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// A target's loop lives from the update that first names it with a host until one drops it or changes its
/// host; its state lives exactly as long. probing → (result) → pause → probing …
class PingMonitor : public QObject {
    Q_OBJECT

  public:
    struct State {
        static constexpr std::size_t historyLimit = 30;
        /// Absent before the first probe has ended.
        std::optional<PingOutcome> outcome;
        /// Oldest first; true for a reply.
        std::vector<bool> history;
        std::optional<QDateTime> lastReply;

        friend bool operator==(const State&, const State&) = default;
    };

    /// A target's rhythm.
    struct Pace {
        /// From one probe's start to the next one's.
        std::chrono::milliseconds period{1000};
        /// After a probe that took up the period.
        std::chrono::milliseconds shortestPause{100};
        /// How long a probe waits for its reply.
        int waitMs = 800;
    };

    /// The starter outlives the monitor.
    explicit PingMonitor(ToolStarter& tools, QObject* parent = nullptr);
    PingMonitor(ToolStarter& tools, Pace pace, QObject* parent = nullptr);
    ~PingMonitor() override;

    /// These targets are watched from now on, and no others; an empty list stops everything. A rename keeps a
    /// loop, another host begins anew.
    void update(const std::vector<PingTarget>& targets);
    /// By target id; absent while a target has no result yet.
    const std::map<Uuid, State>& states() const { return states_; }
    bool isRunning() const { return !tasks_.empty(); }

  signals:
    /// A probe has ended.
    void stateChanged(const corvane::Uuid& target);
    /// Loops began or ended.
    void targetsChanged();

  private:
    class Loop;
    using Probed = std::function<void(const PingOutcome&)>;
    /// One probe by the system's tool, out of the named interface if there is one.
    std::unique_ptr<ToolStarter::Job> ping(const std::string& host, int waitMs,
                                           const std::optional<std::string>& boundTo, Probed done);
    /// The id is a copy, since whoever hears of it may end the loop that it came from.
    void record(Uuid target, const PingOutcome& outcome);

    ToolStarter& tools_;
    Pace pace_;
    std::map<Uuid, State> states_;
    std::map<Uuid, std::unique_ptr<Loop>> tasks_;
};

} // namespace corvane
