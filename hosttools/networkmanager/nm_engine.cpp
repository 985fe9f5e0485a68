#include "hosttools/networkmanager/nm_engine.h"

#include "core/netconfig/ipv4.h"
#include "core/support/text.h"
#include "hosttools/networkmanager/kernel.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <thread>

namespace corvane::networkmanager {

using hosttools::Addressing;
using hosttools::Failure;

bool waitFor(std::chrono::milliseconds limit, const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

// Of Settings.Update2 and AddConnection2.
static constexpr std::uint32_t toDisk = 0x1;
static constexpr std::uint32_t blockAutoconnect = 0x20;

std::string errorText(const Reply& reply) {
    if (reply.denied) return hosttools::adminRequired;
    return "** Error: " + reply.error + (reply.error.ends_with('.') ? "" : ".");
}

Failure NmEngine::unavailable(const std::string& tool) {
    // The other tools ask the kernel only.
    if (tool != "networksetup") return std::nullopt;
    forget();
    if (snapshot_) return std::nullopt;
    return "** Error: NetworkManager isn't running.";
}

void NmEngine::forget() {
    if (!bus_) bus_.emplace();
    entries_.clear();
    snapshot_ = Snapshot::take(*bus_);
    if (snapshot_) entries_ = serviceList(*snapshot_);
}

const Entry* NmEngine::find(const std::string& service) {
    for (const Entry& entry : entries_)
        if (entry.name == service) return &entry;
    return nullptr;
}

std::vector<hosttools::Service> NmEngine::services() {
    std::vector<hosttools::Service> listed;
    for (const Entry& entry : entries_) {
        hosttools::Service service{entry.name, entry.enabled, entry.hardwarePort, std::nullopt};
        if (!entry.interface.empty()) service.device = entry.interface;
        listed.push_back(service);
    }
    return listed;
}

static std::string textIn(GVariant* dictionary, const char* key) {
    const Variant value(g_variant_lookup_value(dictionary, key, G_VARIANT_TYPE_STRING));
    return value ? g_variant_get_string(value.get(), nullptr) : std::string();
}

void NmEngine::readUse(const Entry& entry, Addressing& addressing) const {
    const Device& device = *entry.device;
    if (const Variant data = snapshot_->property(device.ip6, ip6Interface, "AddressData");
        data && g_variant_n_children(data.get()) > 0) {
        const Variant first(g_variant_get_child_value(data.get(), 0));
        addressing.ipv6 = textIn(first.get(), "address");
    }
    if (const Variant gateway = snapshot_->property(device.ip6, ip6Interface, "Gateway"))
        if (const char* router = g_variant_get_string(gateway.get(), nullptr); *router)
            addressing.ipv6Router = router;
    if (addressing.method != Addressing::Method::dhcp) return;

    // The lease itself first: other addresses on the device may be temporary ones.
    if (const Variant options = snapshot_->property(device.dhcp4, dhcp4Interface, "Options")) {
        const std::string ip = textIn(options.get(), "ip_address");
        if (!ip.empty()) {
            addressing.ip = ip;
            addressing.mask = textIn(options.get(), "subnet_mask");
            const std::string routers = textIn(options.get(), "routers");
            if (!routers.empty()) addressing.router = routers.substr(0, routers.find(' '));
            return;
        }
    }
    const Variant data = snapshot_->property(device.ip4, ip4Interface, "AddressData");
    if (!data || g_variant_n_children(data.get()) == 0) return;
    const Variant first(g_variant_get_child_value(data.get(), 0));
    const Variant prefix(g_variant_lookup_value(first.get(), "prefix", G_VARIANT_TYPE_UINT32));
    addressing.ip = textIn(first.get(), "address");
    if (prefix && g_variant_get_uint32(prefix.get()) <= 32)
        addressing.mask = IPv4::format(IPv4::maskValue(static_cast<int>(g_variant_get_uint32(prefix.get()))));
    if (const Variant gateway = snapshot_->property(device.ip4, ip4Interface, "Gateway"))
        if (const char* router = g_variant_get_string(gateway.get(), nullptr); *router)
            addressing.router = router;
}

std::optional<Addressing> NmEngine::addressing(const std::string& service) {
    const Entry* entry = find(service);
    if (!entry) return std::nullopt;
    Addressing a;
    a.method = Addressing::Method::dhcp;
    a.wireless = entry->hardwarePort == "Wi-Fi";
    if (entry->device && !entry->device->mac.empty()) a.mac = text::lowered(entry->device->mac);
    if (!entry->profile) return a;
    const ProfileEdit profile(*entry->profile);
    if (!profile.valid()) return a;
    a.method = profile.method();
    a.dns = profile.dns();
    a.ipv6Method = profile.ipv6Method();
    if (a.method == Addressing::Method::manual) profile.readManual(a);
    if (entry->active && entry->device) readUse(*entry, a);
    return a;
}

std::optional<std::vector<hosttools::Route>> NmEngine::routes(const std::string& service) {
    const Entry* entry = find(service);
    if (!entry) return std::nullopt;
    if (!entry->profile) return std::vector<hosttools::Route>{};
    const ProfileEdit profile(*entry->profile);
    return profile.valid() ? profile.routes() : std::vector<hosttools::Route>{};
}

Failure NmEngine::save(const std::string& path, ProfileEdit& profile) {
    const Reply reply =
        bus_->call(path, profileInterface, "Update2",
                   g_variant_new("(@a{sa{sv}}ua{sv})", profile.settings(), toDisk, nullptr), 10000);
    return reply ? Failure() : errorText(reply);
}

Failure NmEngine::add(ProfileEdit& profile, bool autoconnect, std::string& path) {
    const std::uint32_t flags = autoconnect ? toDisk : toDisk | blockAutoconnect;
    const Reply reply =
        bus_->call(settingsPath, settingsInterface, "AddConnection2",
                   g_variant_new("(@a{sa{sv}}ua{sv})", profile.settings(), flags, nullptr), 10000);
    if (!reply) return errorText(reply);
    const char* made = nullptr;
    g_variant_get(reply.value.get(), "(&oa{sv})", &made, nullptr);
    path = made;
    return std::nullopt;
}

Failure NmEngine::putIntoEffect(const Entry& entry, const std::string& profilePath) {
    activation_.clear();
    if (!entry.device || !entry.device->managed) return std::nullopt;
    if (entry.active && entry.device->state >= deviceDisconnected) {
        // Version 0 takes the profile as it was saved just now.
        GVariantBuilder none;
        g_variant_builder_init(&none, G_VARIANT_TYPE("a{sa{sv}}"));
        const Reply reply =
            bus_->call(entry.device->path, deviceInterface, "Reapply",
                       g_variant_new("(a{sa{sv}}tu)", &none, static_cast<guint64>(0), 0u), 10000);
        if (reply) return std::nullopt;
        if (reply.denied) return errorText(reply);
        // Not every change can be made on a running device: activate anew.
    }
    if (!entry.enabled || !entry.device->carrier || entry.device->state <= deviceUnavailable)
        return std::nullopt;
    const Reply reply =
        bus_->call(nmPath, nmInterface, "ActivateConnection",
                   g_variant_new("(ooo)", profilePath.c_str(), entry.device->path.c_str(), "/"), 15000);
    if (!reply) return errorText(reply);
    const char* made = nullptr;
    g_variant_get(reply.value.get(), "(&o)", &made);
    activation_ = made;
    return std::nullopt;
}

Failure NmEngine::edit(const std::string& service, const std::function<void(ProfileEdit&)>& change) {
    const Entry* entry = find(service);
    if (!entry) return "** Error: The parameters were not valid.";
    std::string path;
    if (entry->profile) {
        ProfileEdit profile(*entry->profile);
        if (!profile.valid()) return "** Error: The profile of " + service + " can't be read.";
        change(profile);
        path = entry->profile->path;
        if (const Failure failure = save(path, profile)) return failure;
    } else {
        ProfileEdit profile(entry->name, "802-3-ethernet", entry->interface);
        change(profile);
        if (const Failure failure = add(profile, true, path)) return failure;
    }
    return putIntoEffect(*entry, path);
}

Failure NmEngine::setDHCP(const std::string& service) {
    return edit(service, [](ProfileEdit& profile) { profile.setDHCP(); });
}

Failure NmEngine::waitForAddress(const Entry& entry, const std::string& ip) {
    if (!entry.device || !entry.enabled || !entry.device->carrier) return std::nullopt;
    bool inUse = false;
    waitFor(std::chrono::seconds(15), [&] {
        // Of a new activation its own state counts: the device goes through "disconnected" when it changes
        // profiles.
        const Variant state = activation_.empty()
                                  ? bus_->property(entry.device->path, deviceInterface, "State")
                                  : bus_->property(activation_, activeInterface, "State");
        const std::uint32_t now = state ? g_variant_get_uint32(state.get()) : 0;
        const bool settled = now == (activation_.empty() ? deviceActivated : activeActivated);
        inUse = settled && kernel::hasAddress(entry.interface, ip);
        return inUse || (activation_.empty() ? now <= deviceDisconnected : now == 0 || now > activeActivated);
    });
    if (inUse) return std::nullopt;
    return "** Error: " + entry.interface + " didn't take the address " + ip + ".";
}

Failure NmEngine::setManual(const std::string& service, const std::string& ip, const std::string& mask,
                            const std::optional<std::string>& router) {
    const std::string address = IPv4::format(IPv4::parse(ip).value_or(0));
    const int prefix = IPv4::prefixLength(mask).value_or(24);
    if (const Failure failure =
            edit(service, [&](ProfileEdit& profile) { profile.setManual(address, prefix, router); }))
        return failure;
    const Entry* entry = find(service);
    return entry ? waitForAddress(*entry, address) : Failure();
}

Failure NmEngine::setDNS(const std::string& service, const std::vector<std::string>& servers) {
    return edit(service, [&](ProfileEdit& profile) { profile.setDNS(servers); });
}

Failure NmEngine::setRoutes(const std::string& service, const std::vector<hosttools::Route>& routes) {
    return edit(service, [&](ProfileEdit& profile) { profile.setRoutes(routes); });
}

Failure NmEngine::setOrder(const std::vector<std::string>& services) {
    // Devices without a profile come last anyway, by name; only one that is to stand elsewhere needs its own.
    std::size_t last = services.size();
    for (; last > 0; --last) {
        const Entry* entry = find(services[last - 1]);
        if (entry && entry->profile) break;
        if (last < services.size() && services[last - 1] > services[last]) break;
    }
    std::map<std::string, std::uint32_t> wanted;
    std::uint32_t metric = 0;
    for (std::size_t i = 0; i < services.size(); ++i) {
        const Entry* entry = find(services[i]);
        metric += 100;
        if (!entry || (!entry->profile && i >= last)) continue;
        if (entry->profile && entry->profile->metric == metric) continue;
        if (const Failure failure =
                edit(services[i], [&](ProfileEdit& profile) { profile.setMetric(metric); }))
            return failure;
        if (entry->active) wanted[entry->interface] = metric;
    }
    // The kernel follows within a moment; who reads the default route next shall see the new one.
    const auto followed = [&] {
        const auto routes = kernel::defaultRoutes();
        return std::all_of(routes.begin(), routes.end(), [&](const kernel::MetricRoute& route) {
            const auto at = wanted.find(route.route.device);
            return at == wanted.end() || at->second == route.metric;
        });
    };
    waitFor(std::chrono::seconds(1), followed);
    return std::nullopt;
}

} // namespace corvane::networkmanager
