// What a privileged run is asked, the source handed to the script interpreter, and how its outcome is judged.
#pragma once

#include "core/netconfig/network_setup.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct PrivilegedRequest {
    std::vector<NetworkSetup::Command> commands;
    /// Completes "Wendrel wants to …" and "Wendrel needs an administrator password to …".
    std::string purpose;
    /// Replaces the joined commands, used as given.
    std::optional<std::string> script;
};

/// The outcome of one privileged run.
class ApplyResult {
  public:
    enum class Kind { success, cancelled, passwordRejected, failed };
    static ApplyResult success() { return {Kind::success, {}}; }
    static ApplyResult cancelled() { return {Kind::cancelled, {}}; }
    static ApplyResult passwordRejected() { return {Kind::passwordRejected, {}}; }
    static ApplyResult failed(std::string message) { return {Kind::failed, std::move(message)}; }
    Kind kind() const { return kind_; }
    /// Empty unless failed.
    const std::string& message() const { return message_; }
    friend bool operator==(const ApplyResult&, const ApplyResult&) = default;

  private:
    ApplyResult(Kind kind, std::string message) : kind_(kind), message_(std::move(message)) {}
    Kind kind_;
    std::string message_;
};

namespace PrivilegedScript {

/// Error numbers of the system's script interpreter and authorisation services.
inline constexpr int userCancelled = -128;
inline constexpr int authorizationCanceled = -60006;
inline constexpr int authorizationDenied = -60005;
inline constexpr int authorizationInteractionNotAllowed = -60007;

/// What an interpreter reported: an error with its number and message, or else the returned text.
struct Outcome {
    struct Error {
        int number = 0;
        /// "Unknown error" when the interpreter gave none.
        std::string message = "Unknown error";
    };
    std::optional<Error> error;
    std::string output;
};

/// The shell script of a request: its ready-made one, or its commands joined with " 2>&1" behind.
std::string script(const PrivilegedRequest& request);
/// The interpreter's source without credentials: the system asks, with the purpose as its prompt.
std::string source(const PrivilegedRequest& request);
/// The interpreter's source with credentials. The text holds the password: the caller wipes it after use.
std::string source(const PrivilegedRequest& request, std::string_view user, std::string_view password);
ApplyResult judge(const Outcome& outcome, bool withCredentials);

} // namespace PrivilegedScript

} // namespace corvane
