#include "core/netconfig/privileged_script.h"

#include "core/support/secret.h"
#include "core/support/text.h"

namespace corvane::PrivilegedScript {

namespace {

constexpr std::string_view scriptCommand = "do shell script ";
constexpr std::string_view userKeyword = " user name ";
constexpr std::string_view passwordKeyword = " password ";
constexpr std::string_view privilegesClause = " with administrator privileges";

} // namespace

std::string script(const PrivilegedRequest& request) {
    return request.script ? *request.script : NetworkSetup::shellScript(request.commands) + " 2>&1";
}

std::string source(const PrivilegedRequest& request) {
    std::string text(scriptCommand);
    text += NetworkSetup::appleScriptString(script(request));
    text += " with prompt ";
    text += NetworkSetup::appleScriptString("Wendrel wants to " + request.purpose + ".");
    text += privilegesClause;
    return text;
}

std::string source(const PrivilegedRequest& request, std::string_view user, std::string_view password) {
    const auto scriptLiteral = NetworkSetup::appleScriptString(script(request));
    const auto userLiteral = NetworkSetup::appleScriptString(user);
    auto passwordLiteral = NetworkSetup::appleScriptString(password);
    std::string text;
    // All the room at once, so that no smaller buffer is freed with the password still in it.
    text.reserve(scriptCommand.size() + scriptLiteral.size() + userKeyword.size() + userLiteral.size() +
                 passwordKeyword.size() + passwordLiteral.size() + privilegesClause.size());
    text += scriptCommand;
    text += scriptLiteral;
    text += userKeyword;
    text += userLiteral;
    text += passwordKeyword;
    text += passwordLiteral;
    text += privilegesClause;
    wipe(passwordLiteral);
    return text;
}

ApplyResult judge(const Outcome& outcome, bool withCredentials) {
    if (outcome.error) {
        const auto& [number, message] = *outcome.error;
        if (number == userCancelled || number == authorizationCanceled) return ApplyResult::cancelled();
        const bool denied = number == authorizationDenied || number == authorizationInteractionNotAllowed ||
                            text::contains(text::lowered(message), "password");
        if (withCredentials && denied) return ApplyResult::passwordRejected();
        return ApplyResult::failed(message);
    }
    if (NetworkSetup::outputIndicatesError(outcome.output)) {
        return ApplyResult::failed(std::string(text::trim(outcome.output)));
    }
    return ApplyResult::success();
}

} // namespace corvane::PrivilegedScript
