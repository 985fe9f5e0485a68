#include "app/clients/icmp_sweep.h"

#include "core/netconfig/ipv4.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <random>
#include <semaphore>
#include <system_error>
#include <thread>

namespace corvane::ICMPSweep {

namespace {

using Clock = std::chrono::steady_clock;

double systemSeconds() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

/// What the two threads share. Addresses in host order, times in seconds of the system's clock.
struct Record {
    std::mutex lock;
    std::unordered_map<std::uint32_t, double> sentAt;
    std::unordered_map<std::uint32_t, double> replies;
    bool sending = true;
    std::binary_semaphore receiverEnded{0};
};

/// Wakes at absolute marks, so that the time which the work between them takes doesn't slow the rate. A mark
/// that was missed by a whole interval isn't caught up with: the marks move instead.
class Pace {
  public:
    void sleep(Clock::duration interval) {
        mark_ += interval;
        std::this_thread::sleep_until(mark_);
        if (const auto now = Clock::now(); now - mark_ >= batchInterval) mark_ = now;
    }

  private:
    Clock::time_point mark_ = Clock::now();
};

class Sender {
  public:
    Sender(EchoSocket& socket, std::uint16_t identifier, Record& record, const std::atomic_bool& cancelled)
        : socket_(socket), identifier_(identifier), record_(record), cancelled_(cancelled) {}

    void sendAll(const std::vector<std::string>& addresses, int perSecond, const OnProgress& onProgress) {
        const std::size_t batch = perSecond < 50 ? 1 : static_cast<std::size_t>(perSecond / 50);
        std::size_t index = 0;
        while (index < addresses.size() && !cancelled_) {
            if (const auto address = IPv4::parse(addresses[index])) send(*address);
            ++index;
            if (index % batch != 0) continue;
            if (onProgress) onProgress(static_cast<int>(index));
            pace_.sleep(batchInterval);
        }
        if (!cancelled_ && onProgress) onProgress(static_cast<int>(addresses.size()));
    }

  private:
    /// A system short of room (a full table of neighbours, most often) has some again when hosts that don't
    /// exist have been given up on. The whole sweep waits, since the next address would fare no better.
    void send(std::uint32_t address) {
        const EchoRequest request = echoRequest(identifier_, ++sequence_);
        for (;;) {
            {
                const std::lock_guard guard(record_.lock);
                record_.sentAt[address] = systemSeconds();
            }
            const EchoSocket::Sent sent = socket_.send(address, request);
            if (sent == EchoSocket::Sent::yes) {
                shortSince_.reset();
                return;
            }
            {
                const std::lock_guard guard(record_.lock);
                record_.sentAt.erase(address);
            }
            if (sent == EchoSocket::Sent::no) return;
            const auto now = Clock::now();
            if (!shortSince_) shortSince_ = now;
            if (cancelled_ || now - *shortSince_ > retryLimit) return;
            waitForRoom();
        }
    }

    void waitForRoom() {
        for (auto waited = Clock::duration::zero(); waited < retryInterval && !cancelled_;
             waited += batchInterval)
            pace_.sleep(batchInterval);
    }

    EchoSocket& socket_;
    const std::uint16_t identifier_;
    Record& record_;
    const std::atomic_bool& cancelled_;
    Pace pace_;
    std::uint16_t sequence_ = 0;
    /// Since when the system has been short of room; unset while it isn't.
    std::optional<Clock::time_point> shortSince_;
};

/// The round-trip time of a reply to this sweep, stored; nothing for any other message.
std::optional<double> store(Record& record, const std::optional<EchoReply>& reply, std::uint16_t identifier) {
    if (!reply || reply->identifier != identifier) return std::nullopt;
    const double now = systemSeconds();
    const std::lock_guard guard(record.lock);
    const auto sent = record.sentAt.find(reply->source);
    if (sent == record.sentAt.end()) return std::nullopt;
    // The system's clock may be set back meanwhile.
    const double ms = std::max(0.0, (now - sent->second) * 1000);
    record.replies[reply->source] = ms;
    return ms;
}

void receiveAll(EchoSocket& socket, std::uint16_t identifier, double settle, Record& record,
                const OnReply& onReply, const std::atomic_bool& cancelled) {
    std::array<std::uint8_t, 2048> buffer{};
    std::optional<Clock::time_point> sendingEnded;
    while (!cancelled) {
        if (const std::size_t count = socket.receive(buffer)) {
            const auto reply = parseReply(std::span(buffer).first(std::min(count, buffer.size())));
            if (const auto ms = store(record, reply, identifier); ms && onReply)
                onReply(IPv4::format(reply->source), *ms);
        }
        if (!sendingEnded) {
            const std::lock_guard guard(record.lock);
            if (!record.sending) sendingEnded = Clock::now();
        } else if (std::chrono::duration<double>(Clock::now() - *sendingEnded).count() > settle) {
            break;
        }
    }
    record.receiverEnded.release();
}

std::uint16_t randomIdentifier() {
    std::random_device random;
    return std::uniform_int_distribution<std::uint16_t>(1, 65535)(random);
}

} // namespace

Replies run(const EchoSockets& sockets, const std::vector<std::string>& addresses, const std::string& device,
            int perSecond, double settle, const OnProgress& onProgress, const OnReply& onReply,
            const std::atomic_bool& cancelled) {
    const auto socket = sockets.open(device);
    if (!socket) return {};
    const std::uint16_t identifier = socket->identifier().value_or(randomIdentifier());
    Record record;
    record.sentAt.reserve(addresses.size());
    std::thread receiver;
    try {
        receiver = std::thread([&] { receiveAll(*socket, identifier, settle, record, onReply, cancelled); });
    } catch (const std::system_error&) {
        return {};
    }

    Sender(*socket, identifier, record, cancelled).sendAll(addresses, perSecond, onProgress);
    {
        const std::lock_guard guard(record.lock);
        record.sending = false;
    }
    record.receiverEnded.acquire();
    receiver.join();

    Replies replies;
    const std::lock_guard guard(record.lock);
    for (const auto& [address, ms] : record.replies) replies.emplace(IPv4::format(address), ms);
    return replies;
}

} // namespace corvane::ICMPSweep
