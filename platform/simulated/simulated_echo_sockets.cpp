#include "platform/simulated/simulated_echo_sockets.h"

#include "core/diagnostics/icmp_echo.h"
#include "core/netconfig/ipv4.h"
#include "hosttools/simulated/simulated_engine.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;

class SimulatedEchoSocket final : public EchoSocket {
  public:
    SimulatedEchoSocket(std::string stateFile, std::string device)
        : stateFile_(std::move(stateFile)), device_(std::move(device)) {}

    std::optional<std::uint16_t> identifier() const override { return std::nullopt; }

    Sent send(std::uint32_t address, std::span<const std::uint8_t> message) override {
        if (message.size() < std::tuple_size_v<ICMPSweep::EchoRequest>) return Sent::no;
        const auto sent = Clock::now();
        if (const auto delay = answer(address)) {
            const std::lock_guard lock(mutex_);
            underWay_.emplace(sent + *delay, reply(address, message));
            arrived_.notify_one();
        }
        return Sent::yes;
    }

    std::size_t receive(std::span<std::uint8_t> buffer) override {
        const auto end = Clock::now() + receiveWait;
        std::unique_lock lock(mutex_);
        for (;;) {
            const auto now = Clock::now();
            if (!underWay_.empty() && underWay_.begin()->first <= now) break;
            if (now >= end) return 0;
            arrived_.wait_until(lock, underWay_.empty() ? end : std::min(end, underWay_.begin()->first));
        }
        const auto message = std::move(underWay_.extract(underWay_.begin()).mapped());
        const std::size_t count = std::min(buffer.size(), message.size());
        std::copy_n(message.begin(), count, buffer.begin());
        return count;
    }

  private:
    using Message = std::vector<std::uint8_t>;

    /// Asked as the simulated ping is; the file is read anew now and then, since cables are pulled in it.
    std::optional<Clock::duration> answer(std::uint32_t address) {
        if (!engine_ || Clock::now() - read_ > std::chrono::milliseconds(250)) {
            // Without a sleep: the engine says how long a reply takes, and this socket lets the time pass.
            engine_ = std::make_unique<simulated::SimulatedEngine>(
                stateFile_, simulated::SimulatedEngine::Clock{simulated::currentTime, {}});
            read_ = Clock::now();
        }
        const auto reply = engine_->ping(IPv4::format(address), longestTripMs, device_);
        if (reply.kind != hosttools::PingReply::Kind::reply) return std::nullopt;
        return std::chrono::duration_cast<Clock::duration>(
            std::chrono::duration<double, std::milli>(reply.ms));
    }

    static Message reply(std::uint32_t source, std::span<const std::uint8_t> request) {
        constexpr std::size_t header = 20;
        Message bytes(header + request.size());
        bytes[0] = 0x45;
        bytes[3] = static_cast<std::uint8_t>(bytes.size());
        for (std::size_t i = 0; i < 4; ++i) bytes[12 + i] = static_cast<std::uint8_t>(source >> (24 - 8 * i));
        std::copy(request.begin(), request.end(), bytes.begin() + header);
        // An echo reply (RFC 792) is the request with its type, and with it the checksum, changed.
        bytes[header] = bytes[header + 2] = bytes[header + 3] = 0;
        const std::uint16_t sum = ICMPSweep::checksum(std::span(bytes).subspan(header));
        bytes[header + 2] = static_cast<std::uint8_t>(sum >> 8);
        bytes[header + 3] = static_cast<std::uint8_t>(sum & 0xFF);
        return bytes;
    }

    static constexpr int longestTripMs = 60'000;
    const std::string stateFile_;
    const std::string device_;
    /// The sender's alone.
    std::unique_ptr<simulated::SimulatedEngine> engine_;
    Clock::time_point read_;

    std::mutex mutex_;
    std::condition_variable arrived_;
    /// Replies by the time that they arrive.
    std::multimap<Clock::time_point, Message> underWay_;
};

} // namespace

std::unique_ptr<EchoSocket> SimulatedEchoSockets::open(const std::string& device) const {
    return std::make_unique<SimulatedEchoSocket>(stateFile_, device);
}

} // namespace corvane
