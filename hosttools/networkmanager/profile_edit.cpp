#include "hosttools/networkmanager/profile_edit.h"

#include "core/netconfig/ipv4.h"

#include <cstring>

namespace corvane::networkmanager {

using hosttools::Addressing;

ProfileEdit::ProfileEdit(const Profile& profile)
    : connection_(nm_simple_connection_new_from_dbus(profile.settings.get(), nullptr)) {}

ProfileEdit::ProfileEdit(const std::string& id, const std::string& type, const std::string& interface)
    : connection_(nm_simple_connection_new()) {
    NMSetting* base = nm_setting_connection_new();
    char* uuid = nm_utils_uuid_generate();
    g_object_set(base, NM_SETTING_CONNECTION_ID, id.c_str(), NM_SETTING_CONNECTION_TYPE, type.c_str(),
                 NM_SETTING_CONNECTION_INTERFACE_NAME, interface.c_str(), NM_SETTING_CONNECTION_UUID, uuid,
                 nullptr);
    g_free(uuid);
    nm_connection_add_setting(connection_.get(), base);
    ip4();
    NMSetting* ip6 = nm_setting_ip6_config_new();
    g_object_set(ip6, NM_SETTING_IP_CONFIG_METHOD, NM_SETTING_IP6_CONFIG_METHOD_AUTO, nullptr);
    nm_connection_add_setting(connection_.get(), ip6);
}

NMSettingIPConfig* ProfileEdit::ip4() const {
    if (NMSettingIPConfig* found = nm_connection_get_setting_ip4_config(connection_.get())) return found;
    NMSetting* made = nm_setting_ip4_config_new();
    g_object_set(made, NM_SETTING_IP_CONFIG_METHOD, NM_SETTING_IP4_CONFIG_METHOD_AUTO, nullptr);
    nm_connection_add_setting(connection_.get(), made);
    return NM_SETTING_IP_CONFIG(made);
}

Addressing::Method ProfileEdit::method() const {
    const char* word = nm_setting_ip_config_get_method(ip4());
    if (!word || std::strcmp(word, NM_SETTING_IP4_CONFIG_METHOD_AUTO) == 0) return Addressing::Method::dhcp;
    if (std::strcmp(word, NM_SETTING_IP4_CONFIG_METHOD_MANUAL) == 0 ||
        std::strcmp(word, NM_SETTING_IP4_CONFIG_METHOD_SHARED) == 0)
        return Addressing::Method::manual;
    return Addressing::Method::off;
}

void ProfileEdit::readManual(Addressing& addressing) const {
    if (nm_setting_ip_config_get_num_addresses(ip4()) > 0) {
        NMIPAddress* first = nm_setting_ip_config_get_address(ip4(), 0);
        addressing.ip = nm_ip_address_get_address(first);
        addressing.mask = IPv4::format(IPv4::maskValue(static_cast<int>(nm_ip_address_get_prefix(first))));
    }
    if (const char* gateway = nm_setting_ip_config_get_gateway(ip4())) addressing.router = gateway;
}

std::vector<std::string> ProfileEdit::dns() const {
    std::vector<std::string> servers;
    for (guint i = 0; i < nm_setting_ip_config_get_num_dns(ip4()); ++i)
        servers.emplace_back(nm_setting_ip_config_get_dns(ip4(), static_cast<int>(i)));
    return servers;
}

std::string ProfileEdit::ipv6Method() const {
    NMSettingIPConfig* ip6 = nm_connection_get_setting_ip6_config(connection_.get());
    const char* set = ip6 ? nm_setting_ip_config_get_method(ip6) : nullptr;
    const std::string word = set ? set : "auto";
    if (word == "manual") return "Manual";
    if (word == "link-local") return "Link-local only";
    return word == "disabled" || word == "ignore" ? "Off" : "Automatic";
}

std::vector<hosttools::Route> ProfileEdit::routes() const {
    std::vector<hosttools::Route> listed;
    for (guint i = 0; i < nm_setting_ip_config_get_num_routes(ip4()); ++i) {
        NMIPRoute* route = nm_setting_ip_config_get_route(ip4(), static_cast<int>(i));
        const char* hop = nm_ip_route_get_next_hop(route);
        listed.push_back({nm_ip_route_get_dest(route),
                          IPv4::format(IPv4::maskValue(static_cast<int>(nm_ip_route_get_prefix(route)))),
                          hop ? hop : "0.0.0.0"});
    }
    return listed;
}

void ProfileEdit::setDHCP() {
    nm_setting_ip_config_clear_addresses(ip4());
    // A server that comes late is still found, as on a Mac: NetworkManager would give up after 45 seconds.
    g_object_set(ip4(), NM_SETTING_IP_CONFIG_GATEWAY, nullptr, NM_SETTING_IP_CONFIG_METHOD,
                 NM_SETTING_IP4_CONFIG_METHOD_AUTO, NM_SETTING_IP_CONFIG_DHCP_TIMEOUT, G_MAXINT32, nullptr);
}

void ProfileEdit::setManual(const std::string& ip, int prefix, const std::optional<std::string>& router) {
    nm_setting_ip_config_clear_addresses(ip4());
    GError* error = nullptr;
    NMIPAddress* address = nm_ip_address_new(AF_INET, ip.c_str(), static_cast<guint>(prefix), &error);
    if (address) {
        nm_setting_ip_config_add_address(ip4(), address);
        nm_ip_address_unref(address);
    }
    g_clear_error(&error);
    g_object_set(ip4(), NM_SETTING_IP_CONFIG_METHOD, NM_SETTING_IP4_CONFIG_METHOD_MANUAL,
                 NM_SETTING_IP_CONFIG_GATEWAY, router ? router->c_str() : nullptr, nullptr);
}

void ProfileEdit::setDNS(const std::vector<std::string>& servers) {
    nm_setting_ip_config_clear_dns(ip4());
    for (const std::string& server : servers) nm_setting_ip_config_add_dns(ip4(), server.c_str());
    // Servers that are set replace those of the lease.
    g_object_set(ip4(), NM_SETTING_IP_CONFIG_IGNORE_AUTO_DNS, servers.empty() ? FALSE : TRUE, nullptr);
}

static NMIPRoute* newRoute(const hosttools::Route& wanted) {
    const auto address = IPv4::parse(wanted.destination);
    const auto prefix = IPv4::prefixLength(wanted.mask);
    if (!address || !prefix) return nullptr;
    const std::string destination = IPv4::format(*address & IPv4::maskValue(*prefix));
    const char* hop = wanted.gateway == "0.0.0.0" ? nullptr : wanted.gateway.c_str();
    return nm_ip_route_new(AF_INET, destination.c_str(), static_cast<guint>(*prefix), hop, -1, nullptr);
}

void ProfileEdit::setRoutes(const std::vector<hosttools::Route>& routes) {
    // A route that stays keeps its metric and attributes.
    std::vector<NMIPRoute*> kept;
    for (guint i = 0; i < nm_setting_ip_config_get_num_routes(ip4()); ++i)
        kept.push_back(nm_ip_route_dup(nm_setting_ip_config_get_route(ip4(), static_cast<int>(i))));
    nm_setting_ip_config_clear_routes(ip4());
    for (const hosttools::Route& wanted : routes) {
        NMIPRoute* route = newRoute(wanted);
        if (!route) continue;
        NMIPRoute* added = route;
        for (NMIPRoute* old : kept)
            if (g_strcmp0(nm_ip_route_get_dest(old), nm_ip_route_get_dest(route)) == 0 &&
                nm_ip_route_get_prefix(old) == nm_ip_route_get_prefix(route) &&
                g_strcmp0(nm_ip_route_get_next_hop(old), nm_ip_route_get_next_hop(route)) == 0)
                added = old;
        nm_setting_ip_config_add_route(ip4(), added);
        nm_ip_route_unref(route);
    }
    for (NMIPRoute* old : kept) nm_ip_route_unref(old);
}

void ProfileEdit::setMetric(std::uint32_t metric) {
    g_object_set(ip4(), NM_SETTING_IP_CONFIG_ROUTE_METRIC, static_cast<gint64>(metric), nullptr);
    if (NMSettingIPConfig* ip6 = nm_connection_get_setting_ip6_config(connection_.get()))
        g_object_set(ip6, NM_SETTING_IP_CONFIG_ROUTE_METRIC, static_cast<gint64>(metric), nullptr);
}

void ProfileEdit::setVLAN(const std::string& parent, int tag) {
    NMSetting* vlan = nm_setting_vlan_new();
    g_object_set(vlan, NM_SETTING_VLAN_PARENT, parent.c_str(), NM_SETTING_VLAN_ID, static_cast<guint>(tag),
                 nullptr);
    nm_connection_add_setting(connection_.get(), vlan);
}

GVariant* ProfileEdit::settings() {
    nm_connection_normalize(connection_.get(), nullptr, nullptr, nullptr);
    return nm_connection_to_dbus(connection_.get(), NM_CONNECTION_SERIALIZE_ALL);
}

} // namespace corvane::networkmanager
