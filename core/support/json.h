// A JSON document that keeps what it doesn't understand: numbers stay the text that stood in the file, so that
// a value read and written again is the same value to the last digit. Parsing is RFC 8259 through nlohmann-json.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

class JsonValue {
  public:
    struct Null {
        friend bool operator==(const Null&, const Null&) = default;
    };
    /// A number as written in the document.
    struct Number {
        std::string literal;
        friend bool operator==(const Number&, const Number&) = default;
    };
    using Array = std::vector<JsonValue>;
    using Object = std::map<std::string, JsonValue, std::less<>>;

    JsonValue() = default;
    JsonValue(bool value) : value_(value) {}
    JsonValue(long value) : value_(Number{std::to_string(value)}) {}
    JsonValue(int value) : JsonValue(static_cast<long>(value)) {}
    JsonValue(Number value) : value_(std::move(value)) {}
    JsonValue(std::string value) : value_(std::move(value)) {}
    JsonValue(const char* value) : value_(std::string(value)) {}
    JsonValue(Array value) : value_(std::move(value)) {}
    JsonValue(Object value) : value_(std::move(value)) {}

    bool isNull() const { return std::holds_alternative<Null>(value_); }
    /// Each is null unless the value is of that kind.
    const bool* boolean() const { return std::get_if<bool>(&value_); }
    const std::string* string() const { return std::get_if<std::string>(&value_); }
    const Number* number() const { return std::get_if<Number>(&value_); }
    const Array* array() const { return std::get_if<Array>(&value_); }
    const Object* object() const { return std::get_if<Object>(&value_); }
    Array* array() { return std::get_if<Array>(&value_); }
    Object* object() { return std::get_if<Object>(&value_); }
    /// A number without fraction or exponent that fits a long.
    std::optional<long> integer() const;

    /// Documents nested deeper than this are refused.
    static constexpr std::size_t maxDepth = 512;
    /// The value, or an English sentence saying why there is none.
    struct ParseResult {
        std::optional<JsonValue> value;
        std::string error;
    };
    static ParseResult parse(std::string_view text);
    /// Indented by two blanks, keys sorted by their UTF-8 bytes, ending without a new line.
    std::string prettyPrinted() const;

    friend bool operator==(const JsonValue&, const JsonValue&) = default;

  private:
    std::variant<Null, bool, Number, std::string, Array, Object> value_;
};

} // namespace corvane
