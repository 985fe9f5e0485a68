#include "core/support/uuid.h"

#include <openssl/rand.h>

#include <cstring>
#include <random>

namespace corvane {

namespace {

constexpr std::string_view layout = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";

int digitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

} // namespace

Uuid Uuid::generate() {
    Uuid id;
    if (RAND_bytes(id.bytes_.data(), static_cast<int>(id.bytes_.size())) != 1) {
        std::random_device device;
        for (auto& byte : id.bytes_) byte = static_cast<std::uint8_t>(device());
    }
    id.bytes_[6] = static_cast<std::uint8_t>((id.bytes_[6] & 0x0F) | 0x40); // version 4
    id.bytes_[8] = static_cast<std::uint8_t>((id.bytes_[8] & 0x3F) | 0x80); // RFC 9562 variant
    return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != layout.size()) return std::nullopt;
    Uuid id;
    std::size_t digits = 0;
    for (std::size_t i = 0; i < layout.size(); ++i) {
        if (layout[i] == '-') {
            if (text[i] != '-') return std::nullopt;
            continue;
        }
        const int value = digitValue(text[i]);
        if (value < 0) return std::nullopt;
        auto& byte = id.bytes_[digits / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | value);
        ++digits;
    }
    return id;
}

std::string Uuid::text() const {
    constexpr std::string_view hex = "0123456789ABCDEF";
    std::string result(layout);
    std::size_t digits = 0;
    for (char& c : result) {
        if (c == '-') continue;
        const unsigned byte = bytes_[digits / 2];
        c = hex[digits % 2 == 0 ? byte >> 4 : byte & 0x0F];
        ++digits;
    }
    return result;
}

} // namespace corvane

std::size_t std::hash<corvane::Uuid>::operator()(const corvane::Uuid& id) const noexcept {
    std::uint64_t halves[2];
    std::memcpy(halves, id.bytes_.data(), sizeof halves);
    // The multiplier keeps ids that differ alike in both halves apart.
    return static_cast<std::size_t>(halves[0] ^ (halves[1] * 0x9E3779B97F4A7C15ULL));
}
