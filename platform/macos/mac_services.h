// The Mac's own services behind the host's interfaces; macOS 13 and later.
#pragma once

#include "platform/host.h"

#include <memory>

namespace corvane {

/// The system's script interpreter, in this process. Main thread only: the interpreter isn't thread-safe.
std::unique_ptr<PrivilegedRunner> makeMacPrivilegedRunner();
/// Generic-password items in the user's login keychain. Any thread.
std::unique_ptr<Keychain> makeMacKeychain();
/// Touch ID, with the account's password as the fallback. `available` and `evaluate` from any thread.
std::unique_ptr<OwnerCheck> makeMacOwnerCheck();
/// The defaults domain of the bundle's identifier. Any thread.
std::unique_ptr<UserDefaults> makeMacUserDefaults();
/// Keeps App Nap away; the machine may still go to sleep when its user lets it.
std::unique_ptr<ActivityAssertion> makeMacActivity();
/// The system's unprivileged ICMP sockets. Any thread.
std::unique_ptr<EchoSockets> makeMacEchoSockets();

} // namespace corvane
