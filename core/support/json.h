// A JSON document that keeps what it doesn't understand: numbers stay the text that stood in the file, so
// that a value read and written again is the same value to the last digit. Parsing is RFC 8259 through
// nlohmann-json.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace corvane {

class JsonValue {
  public:
    struct Null {
        friend bool operator==(const Null&, const Null&) = default;
    };
    /// A number as written in the document; who makes one vouches that the literal is a JSON number.
    struct Number {
        std::string literal;
        friend bool operator==(const Number&, const Number&) = default;
    };
    using Array = std::vector<JsonValue>;

    /// The members of an object, always sorted by the UTF-8 bytes of their keys, each key once. A flat
    /// vector: objects are small and are built far more often than they are changed.
    class Object {
      public:
        using value_type = std::pair<std::string, JsonValue>;
        using Members = std::vector<value_type>;
        using const_iterator = const value_type*;

        Object() = default;
        Object(std::initializer_list<value_type> members);
        /// In any order; of several members with one key the last wins.
        static Object of(Members members);

        const_iterator begin() const { return members_.data(); }
        const_iterator end() const { return members_.data() + members_.size(); }
        std::size_t size() const { return members_.size(); }
        bool empty() const { return members_.empty(); }
        const_iterator find(std::string_view key) const;
        bool contains(std::string_view key) const { return find(key) != end(); }
        /// The value under the key, null until it is given one.
        JsonValue& operator[](std::string_view key);
        void insert_or_assign(std::string_view key, JsonValue value) { (*this)[key] = std::move(value); }
        /// Leaves a value that is there already alone.
        void emplace(std::string_view key, JsonValue value);
        std::size_t erase(std::string_view key);

        friend bool operator==(const Object& a, const Object& b) { return a.members_ == b.members_; }

      private:
        Members members_;
    };

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
    struct ParseResult;
    /// A byte order mark in front is skipped. Floating-point numbers beyond a double's range are refused.
    static ParseResult parse(std::string_view text);
    /// Indented by two blanks, keys sorted by their UTF-8 bytes, ending without a new line. Bytes of a string
    /// that aren't UTF-8 come out as U+FFFD.
    std::string prettyPrinted() const;

    friend bool operator==(const JsonValue& a, const JsonValue& b) { return a.value_ == b.value_; }

  private:
    std::variant<Null, bool, Number, std::string, Array, Object> value_;
};

struct JsonValue::ParseResult {
    std::optional<JsonValue> value;
    std::string error;
};

} // namespace corvane
