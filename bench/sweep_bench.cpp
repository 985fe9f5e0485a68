// A sweep of a /22 beside fping on the same list at the same rate, inside the lab: pacing, CPU time, hosts
// found. Both ask once over a raw socket; fping's start, measured apart, isn't counted.

#include "app/clients/icmp_sweep.h"
#include "bench/report.h"
#include "core/diagnostics/subnet_hosts.h"
#include "platform/linux/echo_sockets.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace corvane;
using Clock = std::chrono::steady_clock;
using Strings = std::vector<std::string>;

constexpr double settle = 1;
constexpr double goalDeviationPercent = 5;
constexpr double goalCpuRatio = 1;
const std::string device = "en7";
const std::string ownAddress = "10.8.0.2";

[[noreturn]] void fail(const std::string& why) {
    std::fprintf(stderr, "sweep_bench: %s\n", why.c_str());
    std::exit(1);
}

double milliseconds(const rusage& usage) {
    const auto of = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
    };
    return of(usage.ru_utime) + of(usage.ru_stime);
}

struct Ended {
    int status = -1;
    double cpuMs = 0;
};

/// Runs a program to its end; its output goes to the file.
Ended run(const Strings& command, const std::string& outputFile = "/dev/null") {
    std::vector<char*> words;
    for (const auto& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputFile.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t child = 0;
    const int error = posix_spawnp(&child, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) fail(command[0] + " can't be started");
    rusage usage{};
    int status = 0;
    wait4(child, &status, 0, &usage);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, milliseconds(usage)};
}

std::size_t linesOf(const std::string& file) {
    std::ifstream in(file);
    std::size_t count = 0;
    for (std::string line; std::getline(in, line);) ++count;
    return count;
}

/// The far side's hosts: every seventh address. What is to be swept, and how many of it answer.
struct Network {
    Strings addresses = SubnetHosts::of(ownAddress, "22").addresses;
    std::size_t live = 0;
    std::string folder = std::getenv("LAB_DIR");
    std::string listFile = folder + "/sweep.list";

    Network() {
        std::erase(addresses, ownAddress);
        std::ofstream batch(folder + "/sweep.batch");
        std::ofstream list(listFile);
        for (std::size_t i = 0; i < addresses.size(); ++i) {
            list << addresses[i] << '\n';
            if (i % 7 != 0) continue;
            batch << "address add " << addresses[i] << (i == 0 ? "/22" : "/32") << " dev far7\n";
            ++live;
        }
        batch.close();
        if (run({"lab-far", "ip", "-batch", folder + "/sweep.batch"}).status != 0 ||
            run({"ip", "link", "set", device, "up"}).status != 0 ||
            run({"ip", "address", "add", ownAddress + "/22", "dev", device}).status != 0)
            fail("the lab's addresses can't be set");
    }
    /// No neighbour is known, as before a first sweep.
    void forget() const {
        const std::string file = folder + "/neighbours";
        for (int tries = 0; tries < 50; ++tries) {
            run({"ip", "neigh", "flush", "dev", device});
            run({"ip", "neigh", "show", "dev", device, "nud", "all"}, file);
            if (linesOf(file) <= 1) return;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        fail("the kernel keeps its neighbours");
    }
};

/// Notes whether the system was short of room: its neighbour table holds 1,024 for the whole machine, other
/// network namespaces included, so that another lab at the same time fills it.
class NotedSocket final : public EchoSocket {
  public:
    NotedSocket(std::unique_ptr<EchoSocket> socket, bool& isShort)
        : socket_(std::move(socket)), isShort_(isShort) {}
    std::optional<std::uint16_t> identifier() const override { return socket_->identifier(); }
    Sent send(std::uint32_t address, std::span<const std::uint8_t> message) override {
        const Sent sent = socket_->send(address, message);
        if (sent == Sent::notNow) isShort_ = true;
        return sent;
    }
    std::size_t receive(std::span<std::uint8_t> buffer) override { return socket_->receive(buffer); }

  private:
    std::unique_ptr<EchoSocket> socket_;
    bool& isShort_;
};

class NotedSockets final : public EchoSockets {
  public:
    explicit NotedSockets(bool& isShort) : isShort_(isShort) {}
    std::unique_ptr<EchoSocket> open(const std::string& name) const override {
        auto socket = LinuxEchoSockets().open(name);
        if (!socket) fail("no ICMP socket");
        return std::make_unique<NotedSocket>(std::move(socket), isShort_);
    }

  private:
    bool& isShort_;
};

struct Measured {
    double cpuMs = 0;
    std::size_t found = 0;
    /// Requests a second between the first batch and the last.
    double rate = 0;
    /// It had to wait for room.
    bool wasShort = false;
};

Measured sweep(const Network& network, int perSecond) {
    network.forget();
    struct Mark {
        int handled;
        Clock::time_point at;
    };
    std::vector<Mark> marks;
    marks.reserve(network.addresses.size() + 1);
    const std::atomic_bool never = false;
    rusage before{};
    rusage after{};
    bool wasShort = false;
    getrusage(RUSAGE_SELF, &before);
    const auto replies = ICMPSweep::run(
        NotedSockets(wasShort), network.addresses, device, perSecond, settle,
        [&](int handled) {
            marks.push_back({handled, Clock::now()});
        },
        nullptr, never);
    getrusage(RUSAGE_SELF, &after);
    // The last mark is told without a pause.
    marks.pop_back();
    const auto took = std::chrono::duration<double>(marks.back().at - marks.front().at).count();
    return {milliseconds(after) - milliseconds(before), replies.size(),
            (marks.back().handled - marks.front().handled) / took, wasShort};
}

Measured fping(const Network& network, const char* interval) {
    network.forget();
    const std::string output = network.folder + "/fping.out";
    // Once each (-r 0), waiting as long as the sweep settles; it prints those that answered.
    const auto ended =
        run({"fping", "-r", "0", "-t", "1000", "-q", "-a", "-i", interval, "-f", network.listFile}, output);
    // 1: some didn't answer.
    if (ended.status != 0 && ended.status != 1) fail("fping failed");
    return {ended.cpuMs, linesOf(output)};
}

double fpingStart() {
    std::vector<double> times;
    for (int i = 0; i < 9; ++i)
        times.push_back(run({"fping", "-r", "0", "-t", "1", "-q", "127.0.0.1"}).cpuMs);
    return bench::median(times);
}

} // namespace

int main() {
    if (!std::getenv("LAB")) fail("run it by tests/lab/lab.sh run -- <this program>");
    const Network network;
    const double start = fpingStart();
    bool complete = true;
    struct Rate {
        int perSecond;
        const char* fpingInterval;
        int rounds;
    };
    // Below 50 a sweep sends one request each 20 ms.
    for (const auto& [perSecond, interval, rounds] :
         {Rate{49, "20", 1}, Rate{500, "2", 5}, Rate{5000, "0.2", 9}}) {
        std::vector<double> own;
        std::vector<double> reference;
        std::vector<double> deviation;
        std::size_t leastFound = network.live;
        std::size_t leastReference = network.live;
        for (int round = 0; round < rounds; ++round) {
            const auto theirs = fping(network, interval);
            const auto ours = sweep(network, perSecond);
            own.push_back(ours.cpuMs);
            reference.push_back(theirs.cpuMs - start);
            if (!ours.wasShort) deviation.push_back(std::abs(ours.rate / perSecond - 1) * 100);
            leastFound = std::min(leastFound, ours.found);
            leastReference = std::min(leastReference, theirs.found);
        }
        const std::string at = " at " + std::to_string(perSecond) + "/s";
        std::printf("sweep of %zu addresses%s: %zu of %zu live hosts found (fping: %zu)\n",
                    network.addresses.size(), at.c_str(), leastFound, network.live, leastReference);
        if (const auto paced = static_cast<int>(deviation.size()); paced < rounds)
            std::printf(
                "in %d of %d rounds the machine's neighbour table was full: pacing is that of the rest\n",
                rounds - paced, rounds);
        bench::reportLimit("worst deviation from the rate," + at, goalDeviationPercent,
                           deviation.empty() ? 100 : *std::max_element(deviation.begin(), deviation.end()),
                           "%");
        bench::reportRatio("CPU time against fping," + at, goalCpuRatio, bench::median(reference),
                           bench::median(own), "ms");
        complete = complete && leastFound == network.live;
    }
    if (!complete) fail("live hosts were missed");
    return 0;
}
