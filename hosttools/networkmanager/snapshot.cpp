#include "hosttools/networkmanager/snapshot.h"

namespace corvane::networkmanager {

static Variant lookup(GVariant* dictionary, const char* key, const char* type) {
    return Variant(g_variant_lookup_value(dictionary, key, type ? G_VARIANT_TYPE(type) : nullptr));
}

static std::string text(GVariant* dictionary, const char* key) {
    const Variant value = lookup(dictionary, key, nullptr);
    const bool isText = value && (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) ||
                                  g_variant_is_of_type(value.get(), G_VARIANT_TYPE_OBJECT_PATH));
    return isText ? g_variant_get_string(value.get(), nullptr) : std::string();
}

static std::uint32_t number(GVariant* dictionary, const char* key) {
    const Variant value = lookup(dictionary, key, "u");
    return value ? g_variant_get_uint32(value.get()) : 0;
}

static bool flag(GVariant* dictionary, const char* key, bool otherwise) {
    const Variant value = lookup(dictionary, key, "b");
    return value ? g_variant_get_boolean(value.get()) != FALSE : otherwise;
}

Variant Profile::value(const char* section, const char* key) const {
    const Variant group = lookup(settings.get(), section, "a{sv}");
    return group ? lookup(group.get(), key, nullptr) : nullptr;
}

std::string Profile::text(const char* section, const char* key) const {
    const Variant found = value(section, key);
    return found && g_variant_is_of_type(found.get(), G_VARIANT_TYPE_STRING)
               ? g_variant_get_string(found.get(), nullptr)
               : std::string();
}

static Device readDevice(const std::string& path, GVariant* properties, GVariant* interfaces) {
    Device device;
    device.path = path;
    device.interface = text(properties, "Interface");
    device.mac = text(properties, "HwAddress");
    device.type = number(properties, "DeviceType");
    device.state = number(properties, "State");
    device.managed = flag(properties, "Managed", false);
    device.active = text(properties, "ActiveConnection");
    device.ip4 = text(properties, "Ip4Config");
    device.ip6 = text(properties, "Ip6Config");
    device.dhcp4 = text(properties, "Dhcp4Config");
    if (const Variant available = lookup(properties, "AvailableConnections", "ao")) {
        GVariantIter iterator;
        const char* each = nullptr;
        g_variant_iter_init(&iterator, available.get());
        while (g_variant_iter_next(&iterator, "&o", &each)) device.available.emplace_back(each);
    }
    // Devices without a cable count as connected to one.
    device.carrier = true;
    if (const Variant wired = lookup(interfaces, wiredInterface, "a{sv}"))
        device.carrier = flag(wired.get(), "Carrier", true);
    return device;
}

/// Nothing for a profile that NetworkManager made up for what another program configured.
static bool isExternal(GVariant* properties) {
    constexpr std::uint32_t external = 0x8;
    return (number(properties, "Flags") & external) != 0;
}

static Profile readProfile(const std::string& path, Variant settings) {
    Profile profile;
    profile.path = path;
    profile.settings = std::move(settings);
    profile.id = profile.text("connection", "id");
    profile.uuid = profile.text("connection", "uuid");
    profile.type = profile.text("connection", "type");
    profile.interface = profile.text("connection", "interface-name");
    profile.isPort =
        !profile.text("connection", "master").empty() || !profile.text("connection", "controller").empty();
    if (const Variant value = profile.value("connection", "autoconnect"))
        profile.autoconnect = g_variant_get_boolean(value.get()) != FALSE;
    const Variant metric = profile.value("ipv4", "route-metric");
    if (metric && g_variant_is_of_type(metric.get(), G_VARIANT_TYPE_INT64) &&
        g_variant_get_int64(metric.get()) >= 0)
        profile.metric = static_cast<std::uint32_t>(g_variant_get_int64(metric.get()));
    return profile;
}

std::optional<Snapshot> Snapshot::take(const Bus& bus) {
    if (!bus.connected()) return std::nullopt;
    Reply managed =
        bus.call("/org/freedesktop", "org.freedesktop.DBus.ObjectManager", "GetManagedObjects", nullptr);
    if (!managed || !g_variant_is_of_type(managed.value.get(), G_VARIANT_TYPE("(a{oa{sa{sv}}})")))
        return std::nullopt;

    Snapshot snapshot;
    snapshot.objects_ = Variant(g_variant_get_child_value(managed.value.get(), 0));
    std::vector<std::string> profilePaths;
    GVariantIter iterator;
    const char* path = nullptr;
    GVariant* raw = nullptr;
    g_variant_iter_init(&iterator, snapshot.objects_.get());
    while (g_variant_iter_next(&iterator, "{&o@a{sa{sv}}}", &path, &raw)) {
        const Variant interfaces(raw);
        if (const Variant device = lookup(raw, deviceInterface, "a{sv}"))
            snapshot.devices_.push_back(readDevice(path, device.get(), raw));
        if (const Variant active = lookup(raw, activeInterface, "a{sv}"))
            snapshot.activated_[path] = text(active.get(), "Connection");
        if (const Variant profile = lookup(raw, profileInterface, "a{sv}");
            profile && !isExternal(profile.get()))
            profilePaths.emplace_back(path);
    }
    std::vector<Reply> settings = bus.callEach(profilePaths, profileInterface, "GetSettings");
    for (std::size_t i = 0; i < settings.size(); ++i)
        // A profile of another user, or one deleted this moment, can't be read.
        if (settings[i] && g_variant_is_of_type(settings[i].value.get(), G_VARIANT_TYPE("(a{sa{sv}})")))
            snapshot.profiles_.push_back(
                readProfile(profilePaths[i], Variant(g_variant_get_child_value(settings[i].value.get(), 0))));
    return snapshot;
}

const Device* Snapshot::device(const std::string& interface) const {
    for (const Device& device : devices_)
        if (device.interface == interface) return &device;
    return nullptr;
}

const Device* Snapshot::activeDevice(const Profile& profile) const {
    for (const Device& device : devices_)
        if (const auto at = activated_.find(device.active);
            at != activated_.end() && at->second == profile.path)
            return &device;
    return nullptr;
}

Variant Snapshot::property(const std::string& path, const char* interface, const char* name) const {
    if (path.empty() || !g_variant_is_object_path(path.c_str())) return nullptr;
    const Variant object = lookup(objects_.get(), path.c_str(), "a{sa{sv}}");
    const Variant properties = object ? lookup(object.get(), interface, "a{sv}") : nullptr;
    return properties ? lookup(properties.get(), name, nullptr) : nullptr;
}

} // namespace corvane::networkmanager
