#include "platform/linux/secret_service_keychain.h"

#include "core/support/text.h"

#include <libsecret/secret.h>

#include <memory>

namespace corvane {

namespace {

template <auto release>
struct Releaser {
    template <typename T>
    void operator()(T* thing) const {
        release(thing);
    }
};
using ErrorPointer = std::unique_ptr<GError, Releaser<g_error_free>>;
using TablePointer = std::unique_ptr<GHashTable, Releaser<g_hash_table_unref>>;
using ValuePointer = std::unique_ptr<SecretValue, Releaser<secret_value_unref>>;

/// The secrets' own memory is wiped by libsecret when it is released.
struct ItemsReleaser {
    void operator()(GList* items) const { g_list_free_full(items, g_object_unref); }
};
using Items = std::unique_ptr<GList, ItemsReleaser>;

const SecretSchema* schema() {
    static const SecretSchema value = {"app.halvorant.WendrelX",
                                       SECRET_SCHEMA_NONE,
                                       {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                        {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                        {nullptr, {}}},
                                       0,
                                       nullptr,
                                       nullptr,
                                       nullptr,
                                       nullptr,
                                       nullptr,
                                       nullptr,
                                       nullptr};
    return &value;
}

/// libsecret speaks on GLib's shared session bus connection, which ends the program when the bus goes away
/// unless told otherwise.
void outliveTheBus() {
    GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (bus == nullptr) return;
    g_dbus_connection_set_exit_on_close(bus, FALSE);
    g_object_unref(bus);
}

/// Empty when there is none and when no Secret Service answers.
Items search(const std::string& service, int flags) {
    outliveTheBus();
    GError* error = nullptr;
    GList* found = secret_password_search_sync(schema(), static_cast<SecretSearchFlags>(flags), nullptr,
                                               &error, "service", service.c_str(), nullptr);
    const ErrorPointer held(error);
    return Items(found);
}

} // namespace

bool SecretServiceKeychain::exists(const std::string& service) {
    return search(service, SECRET_SEARCH_NONE) != nullptr;
}

std::optional<Credentials> SecretServiceKeychain::load(const std::string& service) {
    const Items items = search(service, SECRET_SEARCH_UNLOCK | SECRET_SEARCH_LOAD_SECRETS);
    if (!items) return std::nullopt;
    auto* item = SECRET_RETRIEVABLE(items->data);
    const TablePointer attributes(secret_retrievable_get_attributes(item));
    const auto* account =
        attributes ? static_cast<const char*>(g_hash_table_lookup(attributes.get(), "account")) : nullptr;
    GError* error = nullptr;
    const ValuePointer value(secret_retrievable_retrieve_secret_sync(item, nullptr, &error));
    const ErrorPointer held(error);
    if (!value || account == nullptr) return std::nullopt;
    gsize size = 0;
    const char* bytes = secret_value_get(value.get(), &size);
    const std::string_view password(bytes, size);
    if (text::validUtf8Prefix(password) != password.size()) return std::nullopt;
    return Credentials{account, Secret(password)};
}

void SecretServiceKeychain::remove(const std::string& service) {
    // Clearing passes over locked items, so they are unlocked first; where there is none, nobody is asked.
    if (!search(service, SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK)) return;
    GError* error = nullptr;
    secret_password_clear_sync(schema(), nullptr, &error, "service", service.c_str(), nullptr);
    const ErrorPointer held(error);
}

std::optional<std::string> SecretServiceKeychain::add(const std::string& service,
                                                      const std::string& itemLabel,
                                                      const Credentials& credentials) {
    outliveTheBus();
    const std::string_view password = credentials.password.reveal();
    const ValuePointer value(
        secret_value_new(password.data(), static_cast<gssize>(password.size()), "text/plain"));
    GError* error = nullptr;
    const bool stored = secret_password_store_binary_sync(
        schema(), SECRET_COLLECTION_DEFAULT, itemLabel.c_str(), value.get(), nullptr, &error, "service",
        service.c_str(), "account", credentials.user.c_str(), nullptr);
    const ErrorPointer held(error);
    if (stored) return std::nullopt;
    std::string sentence = "The password couldn't be kept: the desktop's password store didn't take it";
    if (held && held->message != nullptr) sentence += " (" + text::validUtf8(held->message) + ")";
    return sentence + ".";
}

} // namespace corvane
