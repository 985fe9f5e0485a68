#include "platform/macos/foundation_text.h"
#include "platform/macos/mac_services.h"

#import <LocalAuthentication/LocalAuthentication.h>

#include <algorithm>

namespace corvane {

namespace {

class DeviceOwnerCheck final : public OwnerCheck {
  public:
    bool available() const override {
        @autoreleasepool {
            LAContext* context = [[LAContext alloc] init];
            return [context canEvaluatePolicy:LAPolicyDeviceOwnerAuthenticationWithBiometrics error:nil];
        }
    }

    void evaluate(const std::string& reason, const std::string& fallbackTitle, double reuseSeconds,
                  std::function<void(bool)> answer) override {
        @autoreleasepool {
            LAContext* context = [[LAContext alloc] init];
            context.localizedFallbackTitle = foundationText(fallbackTitle);
            context.touchIDAuthenticationAllowableReuseDuration =
                std::clamp(reuseSeconds, 0.0, double(LATouchIDAuthenticationMaximumAllowableReuseDuration));
            // An empty reason raises an exception.
            NSString* shown = reason.empty() ? @"use the saved password" : foundationText(reason);
            [context evaluatePolicy:LAPolicyDeviceOwnerAuthentication
                    localizedReason:shown
                              reply:^(BOOL success, NSError*) {
                                // A context that is released cancels its evaluation: the block keeps it.
                                (void)context;
                                answer(success);
                              }];
        }
    }
};

} // namespace

std::unique_ptr<OwnerCheck> makeMacOwnerCheck() {
    return std::make_unique<DeviceOwnerCheck>();
}

} // namespace corvane
