#include "app/clients/videohub_client.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// The time to answer is counted in this many steps: a main thread that was held up runs one late timer, not
/// all of them, and so never takes an answer that waits in the socket for silence.
constexpr int answerSteps = 5;
/// After this many connections in a row whose ping stays unanswered the router is one that knows no ping.
constexpr int unansweredLimit = 2;

} // namespace

VideohubClient::VideohubClient(QObject* parent, VideohubTiming timing)
    : QObject(parent), timing_(timing), line_(nullptr, timing.line) {
    watch_.timer.setSingleShot(true);
    QObject::connect(&watch_.timer, &QTimer::timeout, this, &VideohubClient::watch);
    line_.onStatus = [this](const LineConnection::Status& status) {
        if (!status.isConnected()) watch_.timer.stop();
        // Who can't be reached doesn't ignore pings either.
        if (status.isFailed() && !status_.isConnected()) watch_.unanswered = 0;
        if (status == status_) return;
        status_ = status;
        emit statusChanged();
    };
    line_.onConnected = [this] {
        parser_ = {};
        startWatch();
        if (state_ == Videohub::State()) return;
        state_ = {};
        emit stateChanged();
    };
    line_.onLine = [this](std::string_view line) { received(line); };
}

VideohubClient::~VideohubClient() = default;

void VideohubClient::connect(const QString& host, std::uint16_t port) {
    watch_.answers = false;
    watch_.unanswered = 0;
    line_.connect(host, port);
}

void VideohubClient::disconnect() {
    line_.disconnect();
}

std::uint64_t VideohubClient::route(int output, int input) {
    return request(Videohub::route(output, input));
}

std::uint64_t VideohubClient::lock(int output) {
    return request(Videohub::lock(output, static_cast<char>(Videohub::Lock::owned)));
}

std::uint64_t VideohubClient::unlock(int output) {
    return request(Videohub::lock(output, static_cast<char>(Videohub::Lock::unlocked)));
}

std::uint64_t VideohubClient::forceUnlock(int output) {
    return request(Videohub::lock(output, Videohub::forceUnlock));
}

std::uint64_t VideohubClient::renameInput(int input, const QString& name) {
    return request(Videohub::labelInput(input, name.toStdString()));
}

std::uint64_t VideohubClient::renameOutput(int output, const QString& name) {
    return request(Videohub::labelOutput(output, name.toStdString()));
}

std::uint64_t VideohubClient::request(const std::string& block) {
    if (!status_.isConnected()) return 0;
    ++watch_.owed;
    line_.send(block);
    return ++requests_;
}

void VideohubClient::received(std::string_view line) {
    heard_.start();
    const auto block = parser_.feed(line);
    if (!block) return;
    const bool accepted = block->header == "ACK", isAnswer = accepted || block->header == "NAK";
    if (isAnswer && answersPing()) return;
    const QPointer self(this);
    const bool changed = state_.apply(block->header, block->lines);
    if (isAnswer) {
        const auto waiting = static_cast<std::uint64_t>(watch_.owed);
        watch_.owed = std::max(0, watch_.owed - 1);
        emit answered(requests_ - (waiting > 0 ? waiting - 1 : 0), accepted);
    }
    if (self && changed) emit stateChanged();
}

bool VideohubClient::answersPing() {
    // Answers come in the order of the requests.
    if (!watch_.pinged || watch_.ahead > 0) {
        watch_.ahead = std::max(0, watch_.ahead - 1);
        return false;
    }
    if (!watch_.answers && watch_.owed > 0) {
        // From a router that knows no ping this would be the request's. Rather one answer too many than a
        // refusal that nobody sees.
        watch_.mixed = true;
        return false;
    }
    watch_.pinged = false;
    watch_.answers = true;
    return !std::exchange(watch_.mixed, false);
}

void VideohubClient::startWatch() {
    watch_.owed = 0;
    watch_.pinged = watch_.mixed = false;
    watch_.waits = 0;
    watch_.received = 0;
    watch_.timer.start(timing_.quiet);
}

void VideohubClient::watch() {
    if (line_.received() != watch_.received) {
        // An answer to the last ping that isn't here by now won't be waited for.
        watch_.pinged = watch_.mixed = false;
        watch_.waits = 0;
        watch_.received = line_.received();
    }
    const auto silence = line_.silence();
    if (watch_.waits == 0 && silence < timing_.quiet) {
        watch_.timer.start(timing_.quiet - static_cast<int>(silence));
        return;
    }
    if (watch_.waits == 0) {
        watch_.pinged = true;
        watch_.ahead = watch_.owed;
        line_.send(Videohub::ping);
    }
    if (watch_.waits++ < answerSteps) {
        watch_.timer.start(std::max(1, timing_.answer / answerSteps));
        return;
    }
    watch_.pinged = watch_.mixed = false;
    const bool spoke = watch_.received > 0;
    if (spoke && !watch_.answers && watch_.unanswered >= unansweredLimit) {
        // It is pinged on without an answer being asked for: the first one that comes proves it wrong, and
        // over a dead line the system itself gives up after minutes.
        watch_.waits = 0;
        watch_.timer.start(timing_.quiet);
        return;
    }
    if (spoke) ++watch_.unanswered;
    line_.dropped(host() +
                  (spoke ? QStringLiteral(" stopped answering") : QStringLiteral(" doesn't answer")));
}

} // namespace corvane
