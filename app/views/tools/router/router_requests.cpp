#include "app/views/tools/router/router_requests.h"

#include "app/clients/videohub_client.h"

#include <utility>

namespace corvane {

namespace {

constexpr int tickMilliseconds = 50;

} // namespace

RouterRequests::RouterRequests(VideohubClient& client, QObject* parent) : QObject(parent), client_(client) {
    clock_.setInterval(tickMilliseconds);
    connect(&clock_, &QTimer::timeout, this, &RouterRequests::tick);
    connect(&client_, &VideohubClient::stateChanged, this, &RouterRequests::follow);
    connect(&client_, &VideohubClient::statusChanged, this, [this] {
        if (!client_.status().isConnected()) end([](const auto&) { return true; });
    });
}

void RouterRequests::route(const std::vector<int>& outputs, int input) {
    for (const int output : outputs) {
        client_.route(output, input);
        remember(Kind::route, output, {.input = input, .name = {}});
    }
}

void RouterRequests::lock(const std::vector<int>& outputs, LockWish wish) {
    for (const int output : outputs) {
        if (wish == LockWish::take)
            client_.lock(output);
        else if (wish == LockWish::release)
            client_.unlock(output);
        else
            client_.forceUnlock(output);
        remember(Kind::lock, output, {.wish = wish, .name = {}});
    }
}

void RouterRequests::renameInput(int input, const QString& name) {
    client_.renameInput(input, name);
    remember(Kind::inputName, input, {.name = name});
}

void RouterRequests::renameOutput(int output, const QString& name) {
    client_.renameOutput(output, name);
    remember(Kind::outputName, output, {.name = name});
}

void RouterRequests::remember(Kind kind, int port, Request request) {
    if (!client_.status().isConnected() || isDone(kind, port, request)) return;
    request.age.start();
    requests_[{kind, port}] = std::move(request);
    clock_.start();
}

bool RouterRequests::isDone(Kind kind, int port, const Request& request) const {
    const auto& state = client_.state();
    const auto is = [port](const auto& entries, const auto& wanted) {
        const auto found = entries.find(port);
        return found != entries.end() && found->second == wanted;
    };
    switch (kind) {
    case Kind::route:
        return is(state.routing, request.input);
    case Kind::lock:
        return is(state.locks,
                  request.wish == LockWish::take ? Videohub::Lock::owned : Videohub::Lock::unlocked);
    case Kind::inputName:
        return is(state.inputLabels, request.name.toStdString());
    case Kind::outputName:
        return is(state.outputLabels, request.name.toStdString());
    }
    return true;
}

template <typename Ended>
void RouterRequests::end(Ended ended) {
    const bool shown =
        std::erase_if(requests_, [&](const auto& entry) { return ended(entry) && entry.second.isShown; }) > 0;
    std::erase_if(requests_, ended);
    if (requests_.empty()) clock_.stop();
    if (shown) emit changed();
}

void RouterRequests::follow() {
    // A refusal doesn't name its request; what is carried out all the same is reported as it happens.
    const bool refusal = client_.state().lastReply == "NAK";
    const bool refused = !std::exchange(refused_, refusal) && refusal;
    end([&](const auto& entry) {
        return refused || isDone(entry.first.first, entry.first.second, entry.second);
    });
}

void RouterRequests::tick() {
    bool newlyShown = false;
    for (auto& [key, request] : requests_) {
        if (request.isShown || request.age.elapsed() < shownAfter) continue;
        request.isShown = newlyShown = true;
    }
    end([](const auto& entry) { return entry.second.age.hasExpired(forgottenAfter); });
    if (newlyShown) emit changed();
}

const RouterRequests::Request* RouterRequests::shown(Kind kind, int port) const {
    const auto found = requests_.find({kind, port});
    return found != requests_.end() && found->second.isShown ? &found->second : nullptr;
}

std::optional<int> RouterRequests::routePending(int output) const {
    const auto* request = shown(Kind::route, output);
    return request ? std::optional(request->input) : std::nullopt;
}

bool RouterRequests::lockPending(int output) const {
    return shown(Kind::lock, output);
}

std::optional<QString> RouterRequests::inputNamePending(int input) const {
    const auto* request = shown(Kind::inputName, input);
    return request ? std::optional(request->name) : std::nullopt;
}

std::optional<QString> RouterRequests::outputNamePending(int output) const {
    const auto* request = shown(Kind::outputName, output);
    return request ? std::optional(request->name) : std::nullopt;
}

} // namespace corvane
