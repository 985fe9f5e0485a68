// The ping monitor over real hosts, inside the lab (tests/lab/lab.sh): is every host probed in time, does the
// main thread stay free, and what does it cost beside a bare loop that starts the same processes at the same
// rate?
//
//   ping_bench [--seconds 60] [--alive 180] [--dead 20] [--raw]
//
// --raw leaves the kernel's ping sockets forbidden, so that ping takes a raw one; otherwise they are allowed,
// as systemd does it.
#include "app/clients/ping_monitor.h"
#include "bench/report.h"
#include "platform/linux/linux_host.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QEvent>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

using namespace corvane;
using Clock = std::chrono::steady_clock;

namespace {

struct Plan {
    int seconds = 60;
    int alive = 180;
    int dead = 20;
};

struct Cost {
    long probes = 0;
    double cpuSeconds = 0;
    Cost operator+(const Cost& other) const { return {probes + other.probes, cpuSeconds + other.cpuSeconds}; }
    double msPerProbe() const { return cpuSeconds * 1e3 / static_cast<double>(std::max(probes, 1L)); }
};

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

double cpuSeconds() {
    double sum = 0;
    for (const int whose : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage used{};
        ::getrusage(whose, &used);
        sum += static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
               static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) / 1e6;
    }
    return sum;
}

/// How long the main thread has been ready to run and waited for a processor so far: what other programs, not
/// this one, hold it up with.
class ProcessorWait {
  public:
    double ms() const {
        char text[128] = {};
        if (::pread(file_, text, sizeof text - 1, 0) <= 0) return 0;
        unsigned long long ran = 0, waited = 0;
        return std::sscanf(text, "%llu %llu", &ran, &waited) == 2 ? static_cast<double>(waited) / 1e6 : 0;
    }

  private:
    // proc(5); the main thread's.
    const int file_ = ::open("/proc/self/schedstat", O_RDONLY | O_CLOEXEC);
};

/// Posts to the main thread every 5 ms, unless it still has the last one, and keeps how long the slowest
/// took.
class HoldWatcher : public QObject {
  public:
    HoldWatcher() : thread_([this] { run(); }) {}
    ~HoldWatcher() override { end(); }
    void end() {
        ending_ = true;
        if (thread_.joinable()) thread_.join();
    }
    /// Without the wait for a processor, and with it.
    double longestHoldMs() const { return longestHold_; }
    double longestAnswerMs() const { return longestAnswer_; }

  protected:
    void customEvent(QEvent*) override {
        const double answer = milliseconds(Clock::now() - postedAt_);
        longestAnswer_ = std::max(longestAnswer_, answer);
        longestHold_ = std::max(longestHold_, answer - (wait_.ms() - waitedBefore_));
        pending_ = false;
    }

  private:
    void run() {
        while (!ending_) {
            // Both are the main thread's until it has answered.
            if (!pending_) {
                pending_ = true;
                waitedBefore_ = wait_.ms();
                postedAt_ = Clock::now();
                QCoreApplication::postEvent(this, new QEvent(QEvent::User));
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    std::atomic<bool> ending_ = false;
    std::atomic<bool> pending_ = false;
    Clock::time_point postedAt_;
    ProcessorWait wait_;
    double waitedBefore_ = 0;
    double longestHold_ = 0;
    double longestAnswer_ = 0;
    std::thread thread_;
};

/// Of all processors since the start of the machine, by proc(5), in ticks: in use, and in all.
std::pair<double, double> processorTicks() {
    std::ifstream file("/proc/stat");
    std::string name;
    double used = 0, all = 0, ticks = 0;
    file >> name;
    for (int field = 0; field < 8 && file >> ticks; ++field) {
        all += ticks;
        // Idle, and idle while a disk works.
        if (field != 3 && field != 4) used += ticks;
    }
    return {used, all};
}

bool shell(const QString& script) {
    return QProcess::execute("sh", {"-c", script}) == 0;
}

/// A net of its own on en5's cable: this side at .254, living hosts from .1 on, dead ones from .201 on.
bool layHosts(const Plan& plan, bool raw) {
    if (!raw && !shell("echo 0 2147483647 >/proc/sys/net/ipv4/ping_group_range")) return false;
    return shell("ip link set en5 up && ip address add 10.60.0.254/24 dev en5") &&
           shell(QString("lab-far sh -c 'for i in $(seq %1); do ip address add 10.60.0.$i/24 dev net5 || "
                         "exit 1; done'")
                     .arg(plan.alive));
}

std::vector<std::string> hosts(const Plan& plan) {
    std::vector<std::string> list;
    for (int i = 1; i <= plan.alive; ++i) list.push_back("10.60.0." + std::to_string(i));
    for (int i = 1; i <= plan.dead; ++i) list.push_back("10.60.0." + std::to_string(200 + i));
    return list;
}

Cost bareLoop(const Plan& plan, int seconds) {
    const auto list = hosts(plan);
    QStringList arguments{QString::number(list.size()), QString::number(seconds),
                          WENDREL_NM_ROOT "/sbin/ping", "800"};
    for (const auto& host : list) arguments << QString::fromStdString(host);
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + "/ping_bare_loop", arguments);
    process.waitForFinished(-1);
    const QStringList words = QString(process.readAllStandardOutput()).simplified().split(' ');
    if (process.exitCode() != 0 || words.size() != 2) qFatal("the bare loop failed");
    return {words[0].toLong(), words[1].toDouble()};
}

struct Watched {
    Cost cost;
    double longestGapMs = 0;
    double longestHoldMs = 0;
    double longestAnswerMs = 0;
    double busyPercent = 0;
    int wrong = 0;
    double slowestReplyMs = 0;
};

Watched monitorFor(const Plan& plan) {
    const QTemporaryDir folder;
    const auto host = makeLinuxHost({.toolRoot = WENDREL_NM_ROOT,
                                     .applicationSupport = folder.path(),
                                     .settingsFile = folder.filePath("app.ini")});
    std::vector<PingTarget> targets;
    std::map<Uuid, bool> alive;
    std::map<Uuid, Clock::time_point> lastResult;
    for (const auto& address : hosts(plan)) {
        PingTarget target;
        target.id = Uuid::generate();
        target.host = address;
        alive[target.id] = targets.size() < static_cast<std::size_t>(plan.alive);
        targets.push_back(target);
    }

    Watched seen;
    PingMonitor monitor(*host->tools);
    QObject::connect(&monitor, &PingMonitor::stateChanged, &monitor, [&](const Uuid& id) {
        const auto now = Clock::now();
        seen.longestGapMs = std::max(seen.longestGapMs, milliseconds(now - lastResult[id]));
        lastResult[id] = now;
        ++seen.cost.probes;
        const PingOutcome outcome = *monitor.states().at(id).outcome;
        if (outcome.kind() != (alive[id] ? PingOutcome::Kind::reply : PingOutcome::Kind::timeout))
            ++seen.wrong;
        seen.slowestReplyMs = std::max(seen.slowestReplyMs, outcome.ms());
    });

    const auto ticksBefore = processorTicks();
    const double before = cpuSeconds();
    HoldWatcher watcher;
    const auto start = Clock::now();
    for (const auto& target : targets) lastResult[target.id] = start;
    monitor.update(targets);
    QTimer::singleShot(std::chrono::seconds(plan.seconds), qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    // A host that has fallen silent has a gap too.
    const auto end = Clock::now();
    for (const auto& [id, at] : lastResult)
        seen.longestGapMs = std::max(seen.longestGapMs, milliseconds(end - at));
    const auto ticks = processorTicks();
    seen.busyPercent =
        100 * (ticks.first - ticksBefore.first) / std::max(ticks.second - ticksBefore.second, 1.0);
    monitor.update({});
    watcher.end();
    seen.longestHoldMs = watcher.longestHoldMs();
    seen.longestAnswerMs = watcher.longestAnswerMs();
    // What ran at the end is killed and counted as cost, though not as probes.
    host->tools.reset();
    seen.cost.cpuSeconds = cpuSeconds() - before;
    return seen;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"seconds", "How long.", "n", "60"},
                       {"alive", "Hosts that answer.", "n", "180"},
                       {"dead", "Hosts that don't.", "n", "20"},
                       {"raw", "Without the kernel's ping sockets."}});
    parser.addHelpOption();
    parser.process(application);
    if (!qEnvironmentVariableIsSet("LAB")) {
        std::puts("SKIPPED: not inside the lab; run it by tests/lab/lab.sh run -- <this program>");
        return 77;
    }
    const Plan plan{std::clamp(parser.value("seconds").toInt(), 4, 3600),
                    std::clamp(parser.value("alive").toInt(), 0, 200),
                    std::clamp(parser.value("dead").toInt(), 0, 50)};
    if (!layHosts(plan, parser.isSet("raw"))) {
        std::puts("FAILED: the hosts can't be laid out");
        return 1;
    }
    // Half before and half after, so that a drift of the machine weighs on both alike.
    const Cost first = bareLoop(plan, plan.seconds / 2);
    const Watched seen = monitorFor(plan);
    const Cost bare = first + bareLoop(plan, plan.seconds / 2);

    std::printf(
        "%d hosts (%d of them dead) for %d s: %ld probes ended, %d of them wrong; slowest reply %.2f ms\n",
        plan.alive + plan.dead, plan.dead, plan.seconds, seen.cost.probes, seen.wrong, seen.slowestReplyMs);
    std::printf(
        "main thread's slowest answer %.2f ms, its wait for a processor included; %.0f %% of this machine's "
        "processors were in use\n",
        seen.longestAnswerMs, seen.busyPercent);
    bench::reportLimit("ping: longest time between two results of a host", 1500, seen.longestGapMs, "ms");
    bench::reportLimit("ping: main thread's longest hold", 16, seen.longestHoldMs, "ms");
    bench::reportRatio("ping: CPU a probe, beside a bare loop", 1.3, bare.msPerProbe(),
                       seen.cost.msPerProbe(), "ms");
    return seen.wrong == 0 ? 0 : 1;
}
