// One watched host as its row shows it. Everything here is a pure function of what the monitor knows.
#pragma once

#include "app/clients/ping_monitor.h"
#include "app/views/widgets/theme.h"

#include <QString>

#include <vector>

namespace corvane {

struct PingRow {
    /// Through which of this machine's interfaces the host would be reached.
    class Route {
      public:
        enum class Kind { local, noLocalSubnet, unknown };
        /// The host lies in the subnet of this interface (BSD name).
        static Route local(std::string name) { return {Kind::local, std::move(name)}; }
        static Route noLocalSubnet() { return {Kind::noLocalSubnet, {}}; }
        /// The host is a name.
        static Route unknown() { return {Kind::unknown, {}}; }
        static Route of(const std::string& host, const std::vector<Ping::LocalInterface>& interfaces);

        Kind kind() const { return kind_; }
        /// "via en5", "No matching subnet" or nothing.
        QString label() const;
        /// What to do about it; empty when there is nothing.
        QString help() const;
        friend bool operator==(const Route&, const Route&) = default;

      private:
        Route(Kind kind, std::string name) : kind_(kind), name_(std::move(name)) {}
        Kind kind_;
        std::string name_;
    };

    /// What the dot says. The history is no part of it.
    enum class Sign { paused, waiting, reply, timeout, unresolved };

    Uuid key;
    /// Each on one line.
    QString name, host;
    Route route = Route::unknown();
    Sign sign = Sign::waiting;
    /// At the time at which the row was made.
    QString status;
    /// Oldest first; empty while paused.
    std::vector<bool> history;

    /// A null state: no probe has ended yet.
    static PingRow of(const PingTarget& target, const std::vector<Ping::LocalInterface>& interfaces,
                      const PingMonitor::State* state, bool paused, const QDateTime& now);
    /// What changes with every probe and, for the age of the last reply, with time.
    void setState(const PingMonitor::State* state, bool paused, const QDateTime& now);
    /// All that the row says, as it is read aloud.
    QString spoken() const;

    static Sign signOf(const PingMonitor::State* state, bool paused);
    /// "13 ms"; below one "0.05 ms".
    static QString milliseconds(double ms);
    static QString statusText(const PingMonitor::State* state, bool paused, const QDateTime& now);

    friend bool operator==(const PingRow&, const PingRow&) = default;
};

/// How many hosts answer, in a few words: "6 of 8 answer · 1 no reply · 1 unknown".
struct PingSummary {
    int answering = 0, silent = 0, unresolved = 0, waiting = 0;
    bool paused = false;
    /// Hosts without an address don't count: nobody pings them.
    static PingSummary of(const std::vector<PingRow>& rows);
    static PingSummary of(const PingGroup& group, const std::map<Uuid, PingMonitor::State>& states,
                          bool paused);
    void count(PingRow::Sign sign);
    int total() const { return answering + silent + unresolved + waiting; }
    QString text() const;
    /// The worst of its hosts.
    PingRow::Sign sign() const;
};

/// The shape and colour of a state: a disc, a disc with a cross, a diamond, a ring, two bars.
void paintPingSign(QPainter& painter, const QRectF& box, PingRow::Sign sign, const QPalette& palette);
theme::Tone toneOf(PingRow::Sign sign);

/// The name of a group; a word for one without.
QString pingGroupTitle(const PingGroup& group);
/// The name of a host; the host itself where it has none.
QString pingTargetTitle(const PingTarget& target);

} // namespace corvane
