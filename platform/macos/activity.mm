#include "platform/macos/foundation_text.h"
#include "platform/macos/mac_services.h"

namespace corvane {

namespace {

class ActivityToken final : public ActivityAssertion::Token {
  public:
    explicit ActivityToken(const std::string& reason)
        : activity_([NSProcessInfo.processInfo
              beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                reason:foundationText(reason)]) {}
    ActivityToken(const ActivityToken&) = delete;
    ActivityToken& operator=(const ActivityToken&) = delete;
    ~ActivityToken() override { [NSProcessInfo.processInfo endActivity:activity_]; }

  private:
    id<NSObject> activity_;
};

class ProcessActivity final : public ActivityAssertion {
  public:
    std::unique_ptr<Token> begin(const std::string& reason) override {
        return std::make_unique<ActivityToken>(reason);
    }
};

} // namespace

std::unique_ptr<ActivityAssertion> makeMacActivity() {
    return std::make_unique<ProcessActivity>();
}

} // namespace corvane
