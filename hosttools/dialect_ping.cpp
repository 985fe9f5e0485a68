// ping(8). Its status: 0 with a reply, 2 without, 68 (EX_NOHOST) for an unknown name, 64 (EX_USAGE).
#include "hosttools/dialect.h"

#include "core/support/text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace corvane::hosttools {

namespace {

struct PingOptions {
    int count = 1;
    int waitMs = 1000;
    std::optional<std::string> device;
    std::string host;
};

} // namespace

static bool parseOptions(const std::vector<std::string>& arguments, PingOptions& options,
                         std::string& wrong) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (!word.starts_with('-')) {
            options.host = word;
            return i + 1 == arguments.size();
        }
        if (word == "-n" || word == "-q" || word == "-o") continue;
        if (word != "-c" && word != "-W" && word != "-b") {
            wrong = "ping: invalid option -- '" + word.substr(1) + "'\n";
            return false;
        }
        if (++i == arguments.size()) {
            wrong = "ping: option requires an argument -- " + word.substr(1) + "\n";
            return false;
        }
        long number = 0;
        if (word == "-b")
            options.device = arguments[i];
        else if (word == "-c" && text::parseInteger(arguments[i], 1, 1000, number))
            options.count = static_cast<int>(number);
        else if (word == "-W" && text::parseInteger(arguments[i], 1, 600000, number))
            options.waitMs = static_cast<int>(number);
        else {
            wrong = (word == "-c" ? "ping: invalid count of packets to transmit: `"
                                  : "ping: invalid timing interval: `") +
                    arguments[i] + "'\n";
            return false;
        }
    }
    return false;
}

static std::string fixed(double value, int digits) {
    char out[64];
    std::snprintf(out, sizeof out, "%.*f", digits, value);
    return out;
}

static std::string statistics(const std::string& host, int sent, const std::vector<double>& times) {
    const int received = static_cast<int>(times.size());
    std::string out = "\n--- " + host + " ping statistics ---\n" + std::to_string(sent) +
                      " packets transmitted, " + std::to_string(received) + " packets received, " +
                      fixed(100.0 * (sent - received) / sent, 1) + "% packet loss\n";
    if (times.empty()) return out;
    double sum = 0;
    double squares = 0;
    for (const double t : times) {
        sum += t;
        squares += t * t;
    }
    const double mean = sum / received;
    const double deviation = std::sqrt(std::max(0.0, squares / received - mean * mean));
    const auto [least, most] = std::minmax_element(times.begin(), times.end());
    return out + "round-trip min/avg/max/stddev = " + fixed(*least, 3) + "/" + fixed(mean, 3) + "/" +
           fixed(*most, 3) + "/" + fixed(deviation, 3) + " ms\n";
}

Printed ping(const std::vector<std::string>& arguments, Pinger& pinger) {
    PingOptions options;
    std::string wrong;
    if (!parseOptions(arguments, options, wrong))
        return {{}, wrong + "usage: ping [-n] [-b boundif] [-c count] [-W waittime] host\n", 64};
    Printed printed;
    std::vector<double> times;
    for (int sequence = 0; sequence < options.count; ++sequence) {
        const PingReply reply = pinger.ping(options.host, options.waitMs, options.device);
        if (reply.kind == PingReply::Kind::unresolved)
            return {{}, "ping: cannot resolve " + options.host + ": Unknown host\n", 68};
        if (sequence == 0) printed.out = "PING " + options.host + " (" + reply.address + "): 56 data bytes\n";
        if (!reply.note.empty()) printed.err += "ping: " + reply.note + "\n";
        if (reply.kind != PingReply::Kind::reply) {
            if (sequence + 1 < options.count)
                printed.out += "Request timeout for icmp_seq " + std::to_string(sequence) + "\n";
            continue;
        }
        times.push_back(reply.ms);
        printed.out += "64 bytes from " + reply.address + ": icmp_seq=" + std::to_string(sequence) +
                       " ttl=" + std::to_string(reply.ttl) + " time=" + fixed(reply.ms, 3) + " ms\n";
    }
    printed.out += statistics(options.host, options.count, times);
    printed.status = times.empty() ? 2 : 0;
    return printed;
}

} // namespace corvane::hosttools
