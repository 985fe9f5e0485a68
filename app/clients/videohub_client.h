// A Videohub router: its state as it reports it, and requests to change it.
#pragma once

#include "app/clients/line_connection.h"
#include "core/devices/videohub.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// Milliseconds. The program uses these; a test may take shorter ones.
struct VideohubTiming {
    LineTiming line = {};
    /// A router that has been silent this long is asked for a sign of life …
    int quiet = 10'000;
    /// … and has failed when it gives none within this.
    int answer = 5000;
};

/// The status is its line's. Every fresh connection forgets the whole state; the router then sends all of it.
/// A change shows when the router has reported it, never before. While connected, silence leads to a ping;
/// silence after it to failed, so that a pulled cable shows. The answer to a ping is no one's business: it
/// never hides a request's.
class VideohubClient : public QObject {
    Q_OBJECT

  public:
    explicit VideohubClient(QObject* parent = nullptr, VideohubTiming timing = {});
    ~VideohubClient() override;

    const LineConnection::Status& status() const { return status_; }
    const Videohub::State& state() const { return state_; }
    /// The host connected to, or last tried; empty at first.
    const QString& host() const { return line_.host(); }
    /// Milliseconds since it last sent a line; 0 before the first. Goes on when the connection is lost.
    qint64 silence() const { return heard_.isValid() ? heard_.elapsed() : 0; }

    void connect(const QString& host, std::uint16_t port = Videohub::port);
    void disconnect();

    // Each gives the request's number, which rises from one to the next; 0 when it isn't sent for want of a
    // connection.
    std::uint64_t route(int output, int input);
    /// For this computer.
    std::uint64_t lock(int output);
    std::uint64_t unlock(int output);
    /// Also when another client holds it.
    std::uint64_t forceUnlock(int output);
    std::uint64_t renameInput(int input, const QString& name);
    std::uint64_t renameOutput(int output, const QString& name);

  signals:
    void statusChanged();
    /// Once a block that changed something.
    void stateChanged();
    /// Once an answer. A refusal that follows another changes nothing in the state, and neither stays there
    /// when the next request is accepted.
    void answered(std::uint64_t request, bool accepted);

  private:
    /// The pings and the answers that are still owed.
    struct Watch {
        QTimer timer;
        /// Requests without an answer, and how many of them were sent before the ping.
        int owed = 0, ahead = 0;
        bool pinged = false;
        /// An answer was taken for a request's that may have been the ping's.
        bool mixed = false;
        /// Since the ping, a fifth of the time to answer each.
        int waits = 0;
        /// Bytes, when last looked at.
        std::uint64_t received = 0;
        /// Of this host: whether a ping was ever answered, and on how many connections one wasn't.
        bool answers = false;
        int unanswered = 0;
    };

    std::uint64_t request(const std::string& block);
    void received(std::string_view line);
    /// Whether an "ACK" or "NAK" is that of a ping, and nobody else's business.
    bool answersPing();
    void startWatch();
    void watch();

    const VideohubTiming timing_;
    LineConnection::Status status_ = LineConnection::Status::idle();
    Videohub::State state_;
    LineConnection line_;
    Videohub::Parser parser_;
    Watch watch_;
    QElapsedTimer heard_;
    std::uint64_t requests_ = 0;
};

} // namespace corvane
