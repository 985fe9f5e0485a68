#include "platform/linux/privileged_runners.h"

#include "core/support/text.h"
#include "core/support/uuid.h"
#include "platform/posix/tool_root.h"
#include "platform/posix/user_name.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

using PrivilegedScript::Outcome;

/// sudo reads no longer password (SUDO_CONV_REPL_MAX of sudo_plugin.h).
constexpr std::size_t longestPassword = 1023;

/// The password and its new line in memory that never moves and is wiped at the end.
class PasswordLine {
  public:
    explicit PasswordLine(std::string_view password) : size_(std::min(password.size(), longestPassword)) {
        std::copy_n(password.begin(), size_, bytes_.begin());
        bytes_[size_++] = '\n';
    }
    PasswordLine(const PasswordLine&) = delete;
    PasswordLine& operator=(const PasswordLine&) = delete;
    ~PasswordLine() { ::explicit_bzero(bytes_.data(), bytes_.size()); }
    std::string_view view() const { return {bytes_.data(), size_}; }

  private:
    std::array<char, longestPassword + 1> bytes_;
    std::size_t size_;
};

/// A password that a line can't carry can't be the right one either.
bool fitsOneLine(std::string_view password) {
    return password.size() <= longestPassword &&
           password.find_first_of(std::string_view("\n\r\0", 3)) == password.npos;
}

/// Says by a line on standard error that sudo let the script start: all before it is sudo's own, all behind
/// it the script's, whatever the words. The script doesn't get what is left of standard input: sudo doesn't
/// read the password when its rules ask for none.
constexpr const char* wrapper =
    "exec </dev/null; export LC_ALL=C.UTF-8; printf '%s\\n' \"$1\" >&2; exec /bin/sh -c \"$2\"";

/// sudo's own words (in the C locale) when the script wasn't started.
Outcome refusal(std::string_view words, const std::string& user, int status) {
    const auto says = [&](std::string_view piece) { return text::contains(words, piece); };
    if (says("is not in the sudoers file") || says("may not run sudo") || says("is not allowed to")) {
        return posix::failedOutcome(status, text::quoted(user) +
                                                " isn't an administrator of this computer: sudo doesn't "
                                                "let this account make changes.");
    }
    if (says("Sorry, try again") || says("incorrect password attempt") || says("no password was provided")) {
        return posix::failedOutcome(PrivilegedScript::authorizationDenied, "The password isn't right.");
    }
    if (says("a password is required")) {
        return posix::failedOutcome(PrivilegedScript::authorizationInteractionNotAllowed,
                                    "sudo needs an administrator's password.");
    }
    const std::string text(text::trim(words));
    return posix::failedOutcome(status,
                                text.empty() ? "sudo didn't start the change and gave no reason." : text);
}

} // namespace

SudoRunner::SudoRunner(std::string toolRoot, std::string sudo, std::chrono::milliseconds timeLimit)
    : toolRoot_(std::move(toolRoot)), sudo_(std::move(sudo)), timeLimit_(timeLimit),
      environment_(posix::environmentWith({"LC_ALL=C", "LANGUAGE="})), currentUser_(posix::userName()) {}

ApplyResult SudoRunner::run(const PrivilegedRequest& request, const std::optional<Credentials>& credentials) {
    const std::string script = PrivilegedScript::script(posix::underRoot(toolRoot_, request));
    const Attempt made = attempt(script, credentials);
    // Once the script runs the password was right, whatever words the script prints.
    return PrivilegedScript::judge(made.outcome, credentials.has_value() && !made.scriptStarted);
}

SudoRunner::Attempt SudoRunner::attempt(const std::string& script,
                                        const std::optional<Credentials>& credentials) const {
    if (::access(sudo_.c_str(), X_OK) != 0) {
        return {
            posix::failedOutcome(ENOENT, "This computer has no sudo (" + sudo_ +
                                             "), and Wendrel doesn't run as root: it can't make changes.")};
    }
    // sudo checks the account that starts it; it has no way to take another one's name and password.
    if (credentials && credentials->user != currentUser_) {
        return {posix::failedOutcome(EPERM, "On this computer changes are made as " +
                                                text::quoted(currentUser_) + "; sudo can't use the account " +
                                                text::quoted(credentials->user) + ".")};
    }
    if (credentials && !fitsOneLine(credentials->password.reveal())) {
        return {posix::failedOutcome(PrivilegedScript::authorizationDenied, "The password isn't right.")};
    }

    const std::string started = "started " + Uuid::generate().text();
    std::vector<std::string> arguments{"-k"};
    if (credentials) {
        arguments.insert(arguments.end(), {"-S", "-p", ""});
    } else {
        arguments.emplace_back("-n");
    }
    arguments.insert(arguments.end(), {"--", "/bin/sh", "-c", wrapper, "sh", started, script});

    const PasswordLine line(credentials ? credentials->password.reveal() : std::string_view());
    const posix::ChildResult result =
        posix::runChild({.path = sudo_,
                         .arguments = std::move(arguments),
                         .environment = environment_,
                         .input = credentials ? line.view() : std::string_view(),
                         .mergeErrors = false,
                         .ownSession = true,
                         .timeLimit = timeLimit_});
    const std::string mark = started + "\n";
    const std::size_t at = result.errors.find(mark);
    if (at != std::string::npos) {
        return {posix::scriptOutcome(result, std::string_view(result.errors).substr(at + mark.size())), true};
    }
    if (result.startError != 0 || result.timedOut) return {posix::scriptOutcome(result, {})};
    return {refusal(text::validUtf8(result.errors), currentUser_, result.status)};
}

} // namespace corvane
