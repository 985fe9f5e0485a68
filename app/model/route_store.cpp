#include "app/model/route_store.h"

namespace corvane {

RouteStore::RouteStore(const Shell& shell, QObject* parent) : QObject(parent), shell_(shell) {}

RouteStore::~RouteStore() {
    ending_ = true;
}

void RouteStore::load(const std::string& service) {
    const unsigned asked = forgotten_[service];
    reader_.start(
        [this, service] {
            if (ending_) return std::string();
            return shell_.run(NetworkSetup::tool, {"-getadditionalroutes", service});
        },
        [this, service, asked](const std::string& output) {
            if (asked == forgotten_[service]) store(service, StaticRoute::parse(output));
        });
}

std::optional<std::vector<StaticRoute>> RouteStore::of(const std::string& service) const {
    const auto found = routes_.find(service);
    return found == routes_.end() ? std::nullopt : std::optional(found->second);
}

void RouteStore::forget(const std::string& service) {
    ++forgotten_[service];
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
