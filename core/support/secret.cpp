#include "core/support/secret.h"

#include <openssl/crypto.h>

namespace corvane {

void wipe(std::string& text) {
    // A longer text may have stood in the same buffer before: all of it goes, not only the present length.
    text.resize(text.capacity());
    OPENSSL_cleanse(text.data(), text.size());
    text.clear();
}

Secret& Secret::operator=(const Secret& other) {
    if (this != &other) {
        // Wiped first: assigning a longer text gives the old buffer back as it is.
        wipe(text_);
        text_ = other.text_;
    }
    return *this;
}

Secret& Secret::operator=(Secret&& other) noexcept {
    if (this != &other) {
        wipe(text_);
        text_.swap(other.text_);
        // Short texts live inside the string object itself, where a swap may leave bytes behind.
        wipe(other.text_);
    }
    return *this;
}

} // namespace corvane
