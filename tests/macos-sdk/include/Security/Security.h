// Declarations of the Security framework's keychain calls, as far as the program uses them.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

CF_ASSUME_NONNULL_BEGIN
CF_IMPLICIT_BRIDGING_ENABLED

enum : OSStatus { errSecSuccess = 0 };

extern "C" {
extern const CFStringRef kSecClass;
extern const CFStringRef kSecClassGenericPassword;
extern const CFStringRef kSecAttrService;
extern const CFStringRef kSecAttrAccount;
extern const CFStringRef kSecAttrLabel;
extern const CFStringRef kSecValueData;
extern const CFStringRef kSecReturnData;
extern const CFStringRef kSecReturnAttributes;
extern const CFStringRef kSecMatchLimit;
extern const CFStringRef kSecMatchLimitOne;

OSStatus SecItemCopyMatching(CFDictionaryRef query,
                             CFTypeRef _Nullable* _Nullable CF_RETURNS_RETAINED result);
OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef _Nullable* _Nullable CF_RETURNS_RETAINED result);
OSStatus SecItemDelete(CFDictionaryRef query);
CFStringRef _Nullable SecCopyErrorMessageString(OSStatus status, void* _Nullable reserved);
}

CF_IMPLICIT_BRIDGING_DISABLED
CF_ASSUME_NONNULL_END
