#include "hosttools/networkmanager/bus.h"

namespace corvane::networkmanager {

Bus::Bus() : connection_(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr)) {
    // A bus that goes away is reported by the next call, not by ending the process.
    if (connection_) g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
}

static bool isDenied(const GError* error) {
    if (g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED)) return true;
    char* name = g_dbus_error_get_remote_error(error);
    const std::string remote = name ? name : "";
    g_free(name);
    return remote.ends_with(".PermissionDenied") || remote.ends_with(".NotAuthorized");
}

static Reply failed(GError* error) {
    Reply reply;
    reply.denied = isDenied(error);
    g_dbus_error_strip_remote_error(error);
    reply.error = error->message;
    g_error_free(error);
    return reply;
}

Reply Bus::call(const std::string& path, const char* interface, const char* method, GVariant* arguments,
                int limitMs) const {
    GError* error = nullptr;
    GVariant* value =
        g_dbus_connection_call_sync(connection_.get(), nmService, path.c_str(), interface, method, arguments,
                                    nullptr, G_DBUS_CALL_FLAGS_NONE, limitMs, nullptr, &error);
    if (!value) return failed(error);
    return {Variant(value), {}, false};
}

namespace {

struct Pending {
    Reply reply;
    std::size_t* left = nullptr;
};

void finished(GObject* source, GAsyncResult* result, gpointer data) {
    auto* pending = static_cast<Pending*>(data);
    GError* error = nullptr;
    GVariant* value = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error);
    pending->reply = value ? Reply{Variant(value), {}, false} : failed(error);
    --*pending->left;
}

} // namespace

std::vector<Reply> Bus::callEach(const std::vector<std::string>& paths, const char* interface,
                                 const char* method) const {
    std::size_t left = paths.size();
    std::vector<Pending> pending(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        pending[i].left = &left;
        g_dbus_connection_call(connection_.get(), nmService, paths[i].c_str(), interface, method, nullptr,
                               nullptr, G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, finished, &pending[i]);
    }
    while (left > 0) g_main_context_iteration(nullptr, TRUE);
    std::vector<Reply> replies;
    for (Pending& each : pending) replies.push_back(std::move(each.reply));
    return replies;
}

Variant Bus::property(const std::string& path, const char* interface, const char* name) const {
    const Reply reply =
        call(path, "org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", interface, name), 2000);
    if (!reply) return nullptr;
    GVariant* value = nullptr;
    g_variant_get(reply.value.get(), "(v)", &value);
    return Variant(value);
}

} // namespace corvane::networkmanager
