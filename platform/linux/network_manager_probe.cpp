#include "platform/linux/linux_host.h"

#include <chrono>
#include <condition_variable>
#include <gio/gio.h>
#include <memory>
#include <mutex>
#include <thread>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds patience{500};

/// Shared with the asking thread, which may outlive the question.
struct Question {
    std::mutex mutex;
    std::condition_variable answered;
    bool done = false;
    bool owned = false;
    GCancellable* cancel = g_cancellable_new();
    Question() = default;
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;
    ~Question() { g_object_unref(cancel); }
};

/// Whether the name has an owner; asking for the owner doesn't start a service, as a call to it would. The
/// connection is its own: GLib's shared one would end the program when the bus goes.
bool nameHasOwner(GCancellable* cancel) {
    gchar* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, cancel, nullptr);
    if (address == nullptr) return false;
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GDBusConnection* bus = g_dbus_connection_new_for_address_sync(address, flags, nullptr, cancel, nullptr);
    g_free(address);
    if (bus == nullptr) return false;
    GVariant* reply = g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
        g_variant_new("(s)", "org.freedesktop.NetworkManager"), G_VARIANT_TYPE("(b)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, static_cast<int>(patience.count()), cancel, nullptr);
    gboolean owned = FALSE;
    if (reply != nullptr) {
        g_variant_get(reply, "(b)", &owned);
        g_variant_unref(reply);
    }
    g_object_unref(bus);
    return owned == TRUE;
}

} // namespace

bool networkManagerAnswers() {
    const auto question = std::make_shared<Question>();
    // A thread of its own: a bus that takes the connection and says nothing would hold this one for ever.
    std::thread([question] {
        const bool owned = nameHasOwner(question->cancel);
        const std::lock_guard lock(question->mutex);
        question->owned = owned;
        question->done = true;
        question->answered.notify_all();
    }).detach();
    std::unique_lock lock(question->mutex);
    if (question->answered.wait_for(lock, patience, [&] { return question->done; })) return question->owned;
    g_cancellable_cancel(question->cancel);
    return false;
}

} // namespace corvane
