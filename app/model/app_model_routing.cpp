// AppModel's service order and static routes.
#include "app/model/app_model.h"
#include "app/model/remote_services.h"
#include "app/model/route_store.h"
#include "core/netconfig/service_order.h"
#include "core/support/text.h"

#include <QPointer>

#include <algorithm>

namespace corvane {

namespace {

QString fromCore(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace

std::optional<std::string> AppModel::internetService() const {
    if (!internetDevice()) return std::nullopt;
    const auto carries = [this](const ServiceInfo* info) { return info && info->device == internetDevice(); };
    // Several services can share a device; the first in the order is the one in use.
    for (const auto& name : serviceOrder())
        if (carries(service(name))) return name;
    for (const ServiceInfo& info : services())
        if (carries(&info)) return info.name;
    return std::nullopt;
}

bool AppModel::applyServiceOrder(const std::vector<std::string>& order) {
    if (busy()) return false;
    if (serviceOrder().empty()) {
        flashError(QStringLiteral("The network services haven't been read yet. Try again in a moment."));
        return false;
    }
    // The tool takes the complete list only; services may have come or gone since this one was made.
    if (!std::is_permutation(order.begin(), order.end(), serviceOrder().begin(), serviceOrder().end())) {
        alerts_.show(Alerts::Kind::informational,
                     QStringLiteral("The list of network services has changed meanwhile. Check the order "
                                    "and apply it again."),
                     {});
        return false;
    }
    return runPrivileged({ServiceOrder::command(order)}, QStringLiteral("change the network service order"),
                         fromCore("Service order updated — " + order.front() + " is first."),
                         QStringLiteral("Couldn't change the service order."));
}

void AppModel::loadRoutes(const std::string& service) {
    if (!isRemoteService(service)) routes_->load(service);
}

std::optional<std::vector<StaticRoute>> AppModel::routes(const std::string& service) const {
    return routes_->of(service);
}

bool AppModel::applyRoutes(const std::vector<StaticRoute>& routes, const std::string& serviceName) {
    // A copy: the caller's may belong to a page that goes away while the script runs.
    const std::string service = serviceName;
    if (busy() || isRemoteService(service)) return false;
    std::vector<std::string> messages;
    for (const StaticRoute& route : routes)
        for (const auto& message : route.errors()) messages.push_back(route.summary() + ": " + message);
    if (!messages.empty()) {
        alerts_.show(Alerts::Kind::informational,
                     fromCore("The static routes can't be set:\n\n" + text::join(messages, "\n")), {});
        return false;
    }
    const std::string purpose =
        routes.empty() ? "remove the static routes on " + service
                       : "set " + text::counted(routes.size(), "static route") + " on " + service;
    const std::string done = routes.empty() ? "Removed" : "Saved";
    const QPointer<AppModel> alive(this);
    const bool applied = runPrivileged({StaticRoute::setCommand(service, routes)}, fromCore(purpose),
                                       fromCore(done + " static routes on " + service + "."),
                                       fromCore("Couldn't set static routes on " + service + "."));
    if (alive) loadRoutes(service);
    return applied;
}

} // namespace corvane
