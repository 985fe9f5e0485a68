// A 128-bit identity, written as RFC 9562 text in upper case ("E621E1F8-C36C-495A-93FC-0C247A3E6E5F").
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

class Uuid {
  public:
    /// The nil UUID.
    Uuid() = default;
    /// A random (version 4) UUID.
    static Uuid generate();
    /// Exactly 8-4-4-4-12 hexadecimal digits in either case; anything else gives nothing.
    static std::optional<Uuid> parse(std::string_view text);

    std::string text() const;
    bool isNil() const { return *this == Uuid(); }

    friend bool operator==(const Uuid&, const Uuid&) = default;
    /// Written out: libc++ compares arrays three-way only since LLVM 17, and Xcode 15 ships an older one.
    friend std::strong_ordering operator<=>(const Uuid& a, const Uuid& b) {
        if (a.bytes_ == b.bytes_) return std::strong_ordering::equal;
        return a.bytes_ < b.bytes_ ? std::strong_ordering::less : std::strong_ordering::greater;
    }

  private:
    std::array<std::uint8_t, 16> bytes_{};
    friend struct std::hash<Uuid>;
};

} // namespace corvane

template <>
struct std::hash<corvane::Uuid> {
    std::size_t operator()(const corvane::Uuid& id) const noexcept;
};
