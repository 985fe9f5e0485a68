#include "app/model/route_store.h"

namespace corvane {

/// More than a table that is edited by hand, and than one command line sets.
static constexpr std::size_t mostRoutes = 1000;

RouteStore::RouteStore(const Shell& shell, QObject* parent) : QObject(parent), shell_(shell) {}

RouteStore::~RouteStore() {
    ending_ = true;
}

std::optional<std::vector<StaticRoute>> RouteStore::read(const Shell& shell, const std::string& service) {
    const std::string output = shell.run(NetworkSetup::tool, {"-getadditionalroutes", service});
    if (!NetworkSetup::isAnswer(output)) return std::nullopt;
    auto routes = StaticRoute::parse(output);
    // A part of them isn't enough: setting it would take the others away.
    if (routes.size() > mostRoutes) return std::nullopt;
    return routes;
}

void RouteStore::load(const std::string& service) {
    auto& newest = waiting_[service];
    if (newest && *newest) return;
    newest = std::make_shared<std::atomic<bool>>(true);
    const unsigned asked = forgotten_[service];
    reader_.start(
        [this, service, waits = newest]() -> std::optional<std::vector<StaticRoute>> {
            *waits = false;
            if (ending_) return std::nullopt;
            return read(shell_, service);
        },
        [this, service, asked](std::optional<std::vector<StaticRoute>> routes) {
            if (!routes || asked != forgotten_[service]) return;
            store(service, std::move(*routes));
            emit loaded(service);
        });
}

std::optional<std::vector<StaticRoute>> RouteStore::of(const std::string& service) const {
    const auto found = routes_.find(service);
    return found == routes_.end() ? std::nullopt : std::optional(found->second);
}

void RouteStore::forget(const std::string& service) {
    ++forgotten_[service];
    waiting_.erase(service);
    if (routes_.erase(service) > 0) emit changed();
}

void RouteStore::store(const std::string& service, std::vector<StaticRoute> routes) {
    const auto [at, isNew] = routes_.try_emplace(service);
    // The rows keep their ids while the system's table stays as it is.
    if (!isNew && StaticRoute::sameRoutes(at->second, routes)) return;
    at->second = std::move(routes);
    emit changed();
}

} // namespace corvane
