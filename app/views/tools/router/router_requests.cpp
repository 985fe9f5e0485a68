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
    connect(&client_, &VideohubClient::stateChanged, this, &RouterRequests::followState);
    connect(&client_, &VideohubClient::statusChanged, this, &RouterRequests::followStatus);
    connect(&client_, &VideohubClient::answered, this, &RouterRequests::followAnswer);
}

void RouterRequests::route(const std::vector<int>& outputs, int input) {
    meet(Trouble::none);
    for (const int output : outputs)
        remember(Kind::route, output, {.id = client_.route(output, input), .input = input, .name = {}});
}

void RouterRequests::lock(const std::vector<int>& outputs, LockWish wish) {
    meet(Trouble::none);
    for (const int output : outputs) {
        const auto id = wish == LockWish::take      ? client_.lock(output)
                        : wish == LockWish::release ? client_.unlock(output)
                                                    : client_.forceUnlock(output);
        remember(Kind::lock, output, {.id = id, .wish = wish, .name = {}});
    }
}

void RouterRequests::renameInput(int input, const QString& name) {
    meet(Trouble::none);
    remember(Kind::inputName, input, {.id = client_.renameInput(input, name), .name = name});
}

void RouterRequests::renameOutput(int output, const QString& name) {
    meet(Trouble::none);
    remember(Kind::outputName, output, {.id = client_.renameOutput(output, name), .name = name});
}

void RouterRequests::remember(Kind kind, int port, Request request) {
    if (request.id == 0) return meet(Trouble::unsent);
    // What was asked for earlier is wanted no longer, even if nothing needs to change now.
    end([&](const auto& entry) { return entry.first == std::pair(kind, port); });
    if (isDone(kind, port, request)) return;
    request.age.start();
    requests_[{kind, port}] = std::move(request);
    clock_.start();
}

void RouterRequests::meet(Trouble trouble) {
    if (std::exchange(trouble_, trouble) != trouble) emit changed();
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

void RouterRequests::followStatus() {
    if (client_.status().isConnected()) return;
    end([](const auto&) { return true; });
    // What was never sent stays said over a new connection.
    if (trouble_ != Trouble::unsent || client_.status().kind() == ConnectionStatus::Kind::idle)
        meet(Trouble::none);
}

void RouterRequests::followState() {
    end([&](const auto& entry) { return isDone(entry.first.first, entry.first.second, entry.second); });
}

void RouterRequests::followAnswer(std::uint64_t id, bool accepted) {
    if (!accepted) {
        end([id](const auto& entry) { return entry.second.id == id; });
        return meet(Trouble::refused);
    }
    for (auto& [key, request] : requests_) request.isAnswered = request.isAnswered || request.id == id;
    if (trouble_ == Trouble::unanswered) meet(Trouble::none);
}

void RouterRequests::tick() {
    bool newlyShown = false;
    for (auto& [key, request] : requests_) {
        if (request.isShown || request.age.elapsed() < shownAfter) continue;
        request.isShown = newlyShown = true;
    }
    bool unanswered = false;
    end([&](const auto& entry) {
        const Request& request = entry.second;
        const bool expired = request.age.hasExpired(forgottenAfter);
        unanswered = unanswered || (expired && !request.isAnswered);
        return expired;
    });
    if (newlyShown) emit changed();
    if (unanswered && trouble_ == Trouble::none) meet(Trouble::unanswered);
}

const RouterRequests::Request* RouterRequests::shown(Kind kind, int port) const {
    const auto found = requests_.find({kind, port});
    return found != requests_.end() && found->second.isShown ? &found->second : nullptr;
}

std::optional<int> RouterRequests::routeAsked(int output) const {
    const auto found = requests_.find({Kind::route, output});
    return found != requests_.end() ? std::optional(found->second.input) : std::nullopt;
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
