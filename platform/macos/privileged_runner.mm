// Commands with administrator rights through NSAppleScript's "do shell script … with administrator
// privileges".
//
// How far the password is wiped: our source text lives in a Secret, and the interpreter's string stands over
// bytes that are overwritten on release. Beyond that nothing can be done from here: the interpreter compiles
// the source into storage of its own (freed, not overwritten), and a password outside ASCII is copied once
// more by Foundation. The script object is therefore made for one run and released with its pool right after
// it.
#include "core/support/text.h"
#include "platform/macos/foundation_text.h"
#include "platform/macos/mac_services.h"

namespace corvane {

namespace {

Secret sourceOf(const PrivilegedRequest& request, const std::optional<Credentials>& credentials) {
    if (!credentials) return Secret(PrivilegedScript::source(request));
    return Secret(PrivilegedScript::source(request, credentials->user, credentials->password.reveal()));
}

/// "do shell script" ends the lines that it returns with CR.
std::string withLineFeeds(NSString* text) {
    return text::replaced(plainText(text), "\r", "\n");
}

PrivilegedScript::Outcome::Error errorOf(NSDictionary<NSString*, id>* info) {
    PrivilegedScript::Outcome::Error error;
    const id number = info[NSAppleScriptErrorNumber];
    if ([number isKindOfClass:[NSNumber class]]) error.number = [static_cast<NSNumber*>(number) intValue];
    const id message = info[NSAppleScriptErrorMessage];
    if ([message isKindOfClass:[NSString class]])
        error.message = withLineFeeds(static_cast<NSString*>(message));
    return error;
}

PrivilegedScript::Outcome execute(const Secret& source) {
    PrivilegedScript::Outcome outcome;
    NSString* text = secretText(source.reveal());
    NSAppleScript* script = text ? [[NSAppleScript alloc] initWithSource:text] : nil;
    if (!script) {
        outcome.error = {0, "The commands can't be handed to the script interpreter."};
        return outcome;
    }
    NSDictionary<NSString*, id>* info = nil;
    NSAppleEventDescriptor* reply = nil;
    if ([script compileAndReturnError:&info]) reply = [script executeAndReturnError:&info];
    if (!reply) {
        outcome.error = errorOf(info);
        return outcome;
    }
    outcome.output = withLineFeeds(reply.stringValue);
    return outcome;
}

class ScriptRunner final : public PrivilegedRunner {
  public:
    ApplyResult run(const PrivilegedRequest& request,
                    const std::optional<Credentials>& credentials) override {
        if (![NSThread isMainThread])
            return ApplyResult::failed("Administrator commands can be run on the main thread only.");
        const Secret source = sourceOf(request, credentials);
        PrivilegedScript::Outcome outcome;
        @autoreleasepool {
            outcome = execute(source);
        }
        return PrivilegedScript::judge(outcome, credentials.has_value());
    }
    bool needsMainThread() const override { return true; }
    bool needsPassword() const override { return true; }
};

} // namespace

std::unique_ptr<PrivilegedRunner> makeMacPrivilegedRunner() {
    return std::make_unique<ScriptRunner>();
}

} // namespace corvane
