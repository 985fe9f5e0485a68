// Declarations of the LocalAuthentication framework, as far as the program uses it.
#pragma once

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, LAPolicy) {
    LAPolicyDeviceOwnerAuthenticationWithBiometrics = 1,
    LAPolicyDeviceOwnerAuthentication = 2,
};

extern "C" const NSTimeInterval LATouchIDAuthenticationMaximumAllowableReuseDuration;

@interface LAContext : NSObject
@property(nullable, nonatomic, copy) NSString* localizedFallbackTitle;
@property(nonatomic) NSTimeInterval touchIDAuthenticationAllowableReuseDuration;
- (BOOL)canEvaluatePolicy:(LAPolicy)policy error:(NSError* __autoreleasing _Nullable* _Nullable)error;
- (void)evaluatePolicy:(LAPolicy)policy
       localizedReason:(NSString*)localizedReason
                 reply:(void (^)(BOOL success, NSError* _Nullable error))reply;
@end

NS_ASSUME_NONNULL_END
