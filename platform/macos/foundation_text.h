// Text between C++ and Foundation; for the Objective-C++ files of this folder.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace corvane {

/// Ill-formed UTF-8 is replaced by U+FFFD, so that there is always a string.
NSString* _Nonnull foundationText(std::string_view text);
/// The empty text for nil; unpaired surrogates are replaced.
std::string plainText(NSString* _Nullable text);

/// A string over bytes of its own that are overwritten when the last reference goes. ASCII is used in place;
/// other text Foundation stores again as UTF-16, and that copy is freed without being overwritten. nil when
/// `text` isn't well-formed UTF-8.
NSString* _Nullable secretText(std::string_view text);
/// The same for bytes, always in place.
NSData* _Nonnull secretData(std::string_view bytes);

} // namespace corvane
