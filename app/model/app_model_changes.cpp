// AppModel's changes to the system: presets, global presets and temporary addresses.
#include "app/model/app_model.h"
#include "app/model/privileged_flow.h"
#include "app/model/remote_services.h"
#include "core/netconfig/ipv4.h"
#include "core/netconfig/service_order.h"
#include "core/netconfig/temporary_address.h"
#include "core/support/text.h"

#include <QPointer>

#include <algorithm>

namespace corvane {

namespace {

bool isRemote(const NetworkPreset& preset) {
    return isRemoteService(preset.service);
}

QString fromCore(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace

bool AppModel::tellRemote(const std::vector<NetworkPreset>& presets) {
    std::vector<std::string> sentences;
    for (const NetworkPreset& preset : presets)
        if (isRemote(preset))
            sentences.push_back(text::quoted(preset.name) +
                                " belongs to a remote PC; remote PCs can't be reached yet.");
    if (sentences.empty()) return false;
    alerts_.show(Alerts::Kind::informational, fromCore(text::join(sentences, "\n")), {});
    return true;
}

bool AppModel::apply(const NetworkPreset& preset) {
    return run(ApplyPlan(preset.name, {preset}));
}

bool AppModel::apply(const GlobalPreset& global) {
    if (busy()) return false;
    const std::vector<NetworkPreset> members = global.resolve(library().presets);
    std::vector<NetworkPreset> local, remote;
    std::partition_copy(members.begin(), members.end(), std::back_inserter(remote), std::back_inserter(local),
                        isRemote);

    std::optional<std::vector<std::string>> order;
    bool unknownInternet = false;
    if (global.internetService) {
        if (!lastRefresh_.isValid()) {
            flashError(QStringLiteral("The network services haven't been read yet. Try again in a moment."));
            return false;
        }
        const auto& current = serviceOrder();
        if (!current.empty()) order = ServiceOrder::movedToTop(*global.internetService, current);
        unknownInternet = std::find(current.begin(), current.end(), *global.internetService) == current.end();
    }
    if (local.empty() && !order && !remote.empty()) {
        tellRemote(remote);
        return false;
    }
    const QPointer<AppModel> alive(this);
    const bool applied = run(ApplyPlan(global.name, std::move(local), std::move(order)));
    if (!applied || !alive) return applied;
    if (unknownInternet)
        banner_.showAfterwards({fromCore(text::quoted(*global.internetService) +
                                         " isn't on this computer; the service order stays as it was."),
                                true});
    if (global.pingGroup && pingGroup(*global.pingGroup)) {
        setActivePingGroup(global.pingGroup);
        setPingPaused(false);
        setShowPing(true);
    }
    tellRemote(remote);
    return applied;
}

bool AppModel::run(const ApplyPlan& plan) {
    if (busy() || tellRemote(plan.presets)) return false;
    const std::string title = text::quoted(plan.title);
    const auto errors = plan.errors();
    if (!errors.empty()) {
        alerts_.show(Alerts::Kind::informational,
                     fromCore(title + " can't be applied:\n\n" + text::join(errors, "\n")), {});
        return false;
    }
    return runPrivileged(plan.commands(), fromCore("apply " + title + " to " + plan.target),
                         fromCore("Applied " + title + " to " + plan.target + "."),
                         fromCore("Couldn't apply " + title + "."));
}

bool AppModel::runPrivileged(const std::vector<NetworkSetup::Command>& commands, const QString& purpose,
                             const QString& success, const QString& failure) {
    return flow_->run({commands, purpose, success, failure});
}

bool AppModel::isActive(const NetworkPreset& preset) const {
    const ServiceInfo* info = service(preset.service);
    return info && !isRemote(preset) && preset.matches(info->config);
}

bool AppModel::isActive(const GlobalPreset& global) const {
    const auto members = global.resolve(library().presets);
    return !members.empty() && std::all_of(members.begin(), members.end(),
                                           [this](const NetworkPreset& preset) { return isActive(preset); });
}

bool AppModel::addTempAlias(const std::string& service, const std::string& device, const std::string& ip,
                            const std::string& mask) {
    if (busy()) return false;
    const auto errors = TemporaryAddress::errors(ip, mask);
    const auto address = IPv4::parse(ip);
    if (!errors.empty() || !address) {
        alerts_.show(Alerts::Kind::informational,
                     fromCore("The temporary address can't be added:\n\n" + text::join(errors, "\n")), {});
        return false;
    }
    const TempAlias alias{service, device, IPv4::format(*address), IPv4::normalizeMask(mask).value_or(mask)};
    const QPointer<AppModel> alive(this);
    const bool added = runPrivileged(
        TemporaryAddress::addCommands(alias.device, alias.ip, alias.mask),
        fromCore("add the temporary address " + alias.ip),
        fromCore("Added " + alias.ip + " to " + service + " until the next restart or network change."),
        fromCore("Couldn't add the temporary address " + alias.ip + "."));
    if (added && alive) {
        tempAddresses_.add(alias);
        emit tempAliasesChanged();
    }
    return added;
}

bool AppModel::removeTempAlias(const TempAlias& alias) {
    const TempAlias gone = alias;
    const QPointer<AppModel> alive(this);
    const bool removed = runPrivileged(TemporaryAddress::removeCommands(gone.device, gone.ip),
                                       fromCore("remove the temporary address " + gone.ip),
                                       fromCore("Removed " + gone.ip + " from " + gone.service),
                                       fromCore("Couldn't remove the temporary address " + gone.ip + "."));
    if (removed && alive && tempAddresses_.remove(gone)) emit tempAliasesChanged();
    return removed;
}

const std::vector<AppModel::TempAlias>& AppModel::tempAliases() const {
    return tempAddresses_.all();
}

} // namespace corvane
