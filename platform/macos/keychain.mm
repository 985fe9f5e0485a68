// Generic-password items in the user's login keychain. The data that the keychain hands over is immutable and
// stays in memory until the system frees it; only our own copies are overwritten.
#include "core/support/text.h"
#include "platform/macos/foundation_text.h"
#include "platform/macos/mac_services.h"

#import <Security/Security.h>

namespace corvane {

namespace {

/// A delete may take one item at a time in the login keychain; so many at most.
constexpr int maxDeletions = 64;

NSMutableDictionary<NSString*, id>* queryFor(const std::string& service) {
    NSMutableDictionary<NSString*, id>* query = [NSMutableDictionary dictionary];
    query[(__bridge NSString*)kSecClass] = (__bridge id)kSecClassGenericPassword;
    query[(__bridge NSString*)kSecAttrService] = foundationText(service);
    return query;
}

NSMutableDictionary<NSString*, id>* firstMatchOf(const std::string& service) {
    NSMutableDictionary<NSString*, id>* query = queryFor(service);
    query[(__bridge NSString*)kSecMatchLimit] = (__bridge id)kSecMatchLimitOne;
    return query;
}

std::string reasonFor(OSStatus status) {
    NSString* message = CFBridgingRelease(SecCopyErrorMessageString(status, nullptr));
    if (message.length == 0) return "error " + std::to_string(status);
    return plainText(message);
}

class LoginKeychain final : public Keychain {
  public:
    bool exists(const std::string& service) override {
        @autoreleasepool {
            // No data is asked for, so the keychain neither unlocks nor prompts.
            return SecItemCopyMatching((__bridge CFDictionaryRef)firstMatchOf(service), nullptr) ==
                   errSecSuccess;
        }
    }

    std::optional<Credentials> load(const std::string& service) override {
        @autoreleasepool {
            NSMutableDictionary<NSString*, id>* query = firstMatchOf(service);
            query[(__bridge NSString*)kSecReturnAttributes] = @YES;
            query[(__bridge NSString*)kSecReturnData] = @YES;
            CFTypeRef found = nullptr;
            const OSStatus status = SecItemCopyMatching((__bridge CFDictionaryRef)query, &found);
            const id item = CFBridgingRelease(found);
            if (status != errSecSuccess || ![item isKindOfClass:[NSDictionary class]]) return std::nullopt;
            return credentialsIn(static_cast<NSDictionary*>(item));
        }
    }

    void remove(const std::string& service) override {
        @autoreleasepool {
            NSDictionary* query = queryFor(service);
            for (int round = 0; round < maxDeletions; ++round) {
                if (SecItemDelete((__bridge CFDictionaryRef)query) != errSecSuccess) return;
            }
        }
    }

  protected:
    std::optional<std::string> add(const std::string& service, const std::string& itemLabel,
                                   const Credentials& credentials) override {
        @autoreleasepool {
            NSMutableDictionary<NSString*, id>* item = queryFor(service);
            item[(__bridge NSString*)kSecAttrAccount] = foundationText(credentials.user);
            item[(__bridge NSString*)kSecAttrLabel] = foundationText(itemLabel);
            item[(__bridge NSString*)kSecValueData] = secretData(credentials.password.reveal());
            const OSStatus status = SecItemAdd((__bridge CFDictionaryRef)item, nullptr);
            if (status == errSecSuccess) return std::nullopt;
            return "The password couldn't be saved in the keychain: " + reasonFor(status);
        }
    }

  private:
    static std::optional<Credentials> credentialsIn(NSDictionary* item) {
        const id account = item[(__bridge NSString*)kSecAttrAccount];
        const id data = item[(__bridge NSString*)kSecValueData];
        if (![account isKindOfClass:[NSString class]] || ![data isKindOfClass:[NSData class]])
            return std::nullopt;
        NSData* bytes = static_cast<NSData*>(data);
        const std::string_view password(static_cast<const char*>(bytes.bytes), bytes.length);
        if (text::validUtf8Prefix(password) != password.size()) return std::nullopt;
        return Credentials{plainText(static_cast<NSString*>(account)), Secret(password)};
    }
};

} // namespace

std::unique_ptr<Keychain> makeMacKeychain() {
    return std::make_unique<LoginKeychain>();
}

} // namespace corvane
