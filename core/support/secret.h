// A secret text that is wiped when it goes: passwords and keys live in this type only.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// Overwrites the bytes in a way that the compiler may not drop.
void wipe(std::string& text);

class Secret {
  public:
    Secret() = default;
    explicit Secret(std::string_view text) : text_(text) {}
    explicit Secret(const char* text) : text_(text) {}
    /// Takes the text over and wipes the original.
    explicit Secret(std::string&& text) : text_(text) { wipe(text); }
    Secret(const Secret&) = default;
    Secret(Secret&& other) noexcept : text_(other.text_) { wipe(other.text_); }
    Secret& operator=(const Secret& other);
    Secret& operator=(Secret&& other) noexcept;
    ~Secret() { wipe(text_); }

    bool empty() const { return text_.empty(); }
    /// Valid while this object lives; never stored, logged or put into an argument list.
    std::string_view reveal() const { return text_; }

  private:
    std::string text_;
};

} // namespace corvane
