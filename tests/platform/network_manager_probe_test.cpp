#include "platform/linux/linux_host.h"

#include "platform/posix/child_process.h"
#include "scratch.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <gio/gio.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace corvane {

using tests::Scratch;
using tests::Stopwatch;

TEST(NetworkManagerProbe, IsFalseAndQuickWithoutABus) {
    const Scratch scratch;
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + scratch.path("none")).c_str(), 1);
    const Stopwatch watch;
    EXPECT_FALSE(networkManagerAnswers());
    EXPECT_LT(watch.ms(), 400);
}

TEST(NetworkManagerProbe, GivesUpOnABusThatSaysNothing) {
    const Scratch scratch;
    const std::string path = scratch.path("silent");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int silent = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(silent, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(silent, 4), 0);
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
    const Stopwatch watch;
    EXPECT_FALSE(networkManagerAnswers());
    EXPECT_GE(watch.ms(), 400);
    EXPECT_LT(watch.ms(), 900);
    ::usleep(200'000); // the asking thread ends too, which a leak check sees
    ::close(silent);
}

/// A private bus on which the name is owned, or not.
TEST(NetworkManagerProbe, SeesTheOwnerOfTheName) {
    const Scratch scratch;
    const std::string address = "unix:path=" + scratch.path("bus");
    const posix::Environment environment = posix::environmentWith({});
    std::thread bus([&] {
        posix::runChild({.path = "/usr/bin/dbus-daemon",
                         .arguments = {"--session", "--nofork", "--nopidfile", "--address=" + address},
                         .environment = environment,
                         .timeLimit = std::chrono::milliseconds(2000)});
    });
    for (int i = 0; i < 200 && ::access(scratch.path("bus").c_str(), F_OK) != 0; ++i) ::usleep(10'000);
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
    EXPECT_FALSE(networkManagerAnswers());
    GDBusConnection* owner = g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    ASSERT_NE(owner, nullptr);
    GVariant* reply = g_dbus_connection_call_sync(owner, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                  "org.freedesktop.DBus", "RequestName",
                                                  g_variant_new("(su)", "org.freedesktop.NetworkManager", 0U),
                                                  nullptr, G_DBUS_CALL_FLAGS_NONE, 1000, nullptr, nullptr);
    ASSERT_NE(reply, nullptr);
    g_variant_unref(reply);
    EXPECT_TRUE(networkManagerAnswers());
    g_object_unref(owner);
    bus.join();
}

} // namespace corvane
