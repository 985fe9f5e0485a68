#define __STDC_WANT_LIB_EXT1__ 1 // memset_s
#include <string.h>

#include "core/support/text.h"
#include "platform/macos/foundation_text.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace corvane {

namespace {

void* ownedCopy(std::string_view bytes) {
    void* copy = std::malloc(std::max<std::size_t>(bytes.size(), 1));
    if (!copy) throw std::bad_alloc();
    std::copy(bytes.begin(), bytes.end(), static_cast<char*>(copy));
    return copy;
}

void wipeAndFree(void* bytes, NSUInteger length) {
    memset_s(bytes, length, 0, length);
    std::free(bytes);
}

} // namespace

NSString* foundationText(std::string_view text) {
    const std::string valid = text::validUtf8(text);
    NSString* made = [[NSString alloc] initWithBytes:valid.data()
                                              length:valid.size()
                                            encoding:NSUTF8StringEncoding];
    return made ? made : @"";
}

std::string plainText(NSString* text) {
    NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    if (bytes.length == 0) return {};
    return text::validUtf8({static_cast<const char*>(bytes.bytes), bytes.length});
}

NSString* secretText(std::string_view text) {
    // Checked first, since Foundation leaves open who frees the bytes of a string that it couldn't make.
    if (text::validUtf8Prefix(text) != text.size()) return nil;
    return [[NSString alloc] initWithBytesNoCopy:ownedCopy(text)
                                          length:text.size()
                                        encoding:NSUTF8StringEncoding
                                     deallocator:^(void* bytes, NSUInteger length) {
                                       wipeAndFree(bytes, length);
                                     }];
}

NSData* secretData(std::string_view bytes) {
    return [[NSData alloc] initWithBytesNoCopy:ownedCopy(bytes)
                                        length:bytes.size()
                                   deallocator:^(void* owned, NSUInteger length) {
                                     wipeAndFree(owned, length);
                                   }];
}

} // namespace corvane
