#include "app/clients/videohub_client.h"

#include <algorithm>

namespace corvane {

namespace {

/// The time to answer is counted in this many steps: a main thread that was held up runs one late timer, not
/// all of them, and so never takes an answer that waits in the socket for silence.
constexpr int answerSteps = 5;
/// Connections in a row whose ping stays unanswered; the router is then one that knows no ping.
constexpr int unansweredLimit = 2;

} // namespace

VideohubClient::VideohubClient(QObject* parent, VideohubTiming timing)
    : QObject(parent), timing_(timing), line_(nullptr, timing.line) {
    watch_.timer.setSingleShot(true);
    QObject::connect(&watch_.timer, &QTimer::timeout, this, &VideohubClient::watch);
    line_.onStatus = [this](const LineConnection::Status& status) {
        if (!status.isConnected()) watch_.timer.stop();
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

void VideohubClient::route(int output, int input) {
    request(Videohub::route(output, input));
}

void VideohubClient::lock(int output) {
    request(Videohub::lock(output, static_cast<char>(Videohub::Lock::owned)));
}

void VideohubClient::unlock(int output) {
    request(Videohub::lock(output, static_cast<char>(Videohub::Lock::unlocked)));
}

void VideohubClient::forceUnlock(int output) {
    request(Videohub::lock(output, Videohub::forceUnlock));
}

void VideohubClient::renameInput(int input, const QString& name) {
    request(Videohub::labelInput(input, name.toStdString()));
}

void VideohubClient::renameOutput(int output, const QString& name) {
    request(Videohub::labelOutput(output, name.toStdString()));
}

void VideohubClient::request(const std::string& block) {
    if (!status_.isConnected()) return;
    ++watch_.owed;
    line_.send(block);
}

void VideohubClient::received(std::string_view line) {
    const auto block = parser_.feed(line);
    if (!block) return;
    if ((block->header == "ACK" || block->header == "NAK") && answersPing()) return;
    if (state_.apply(block->header, block->lines)) emit stateChanged();
}

bool VideohubClient::answersPing() {
    // Answers come in the order of the requests.
    if (watch_.pinged && watch_.ahead == 0) {
        watch_.pinged = false;
        watch_.answers = true;
        return true;
    }
    watch_.ahead = std::max(0, watch_.ahead - 1);
    watch_.owed = std::max(0, watch_.owed - 1);
    return false;
}

void VideohubClient::startWatch() {
    watch_.owed = 0;
    watch_.pinged = false;
    watch_.waits = 0;
    watch_.received = 0;
    if (watch_.answers || watch_.unanswered < unansweredLimit) watch_.timer.start(timing_.quiet);
}

void VideohubClient::watch() {
    if (line_.received() != watch_.received) {
        // An answer to the last ping that isn't here by now won't be waited for.
        watch_.pinged = false;
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
    watch_.pinged = false;
    const bool spoke = watch_.received > 0;
    if (spoke && !watch_.answers && ++watch_.unanswered >= unansweredLimit) return;
    line_.dropped(host() +
                  (spoke ? QStringLiteral(" stopped answering") : QStringLiteral(" doesn't answer")));
}

} // namespace corvane
