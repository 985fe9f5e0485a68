#include "core/support/json.h"
#include "core/support/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace corvane {

namespace {

using Library = nlohmann::json;

/// Puts the parser's events together to a value; keeps the first fault.
class Builder {
  public:
    enum class Fault { none, syntax, depth, range };

    bool null() { return add(JsonValue()); }
    bool boolean(bool value) { return add(JsonValue(value)); }
    bool number_integer(Library::number_integer_t value) {
        // The parser gives this event for literals with a minus sign only, so that a zero was written "-0".
        return add(JsonValue::Number{value == 0 ? "-0" : std::to_string(value)});
    }
    bool number_unsigned(Library::number_unsigned_t value) {
        return add(JsonValue::Number{std::to_string(value)});
    }
    bool number_float(Library::number_float_t, const std::string& token) {
        // Within the token the parser has put the C locale's decimal point in the place of the dot.
        std::string literal = token;
        for (char& c : literal) {
            if (std::string_view("0123456789+-eE").find(c) == std::string_view::npos) c = '.';
        }
        return add(JsonValue::Number{std::move(literal)});
    }
    bool string(std::string& value) { return add(JsonValue(value)); }
    bool binary(Library::binary_t&) { return false; }
    bool start_object(std::size_t) { return open(true); }
    bool key(std::string& name) {
        Level& level = levels_.back();
        if (level.members.empty()) level.members.reserve(usualMembers_);
        level.key = name;
        return true;
    }
    bool end_object() {
        usualMembers_ = std::min<std::size_t>(levels_.back().members.size(), 16);
        JsonValue value(JsonValue::Object::of(std::move(levels_.back().members)));
        levels_.pop_back();
        return add(std::move(value));
    }
    bool start_array(std::size_t) { return open(false); }
    bool end_array() {
        JsonValue value(std::move(levels_.back().elements));
        levels_.pop_back();
        return add(std::move(value));
    }
    bool parse_error(std::size_t bytesRead, const std::string&, const Library::exception& fault) {
        constexpr int numberOverflow = 406; // as the library's documentation numbers its exceptions
        fault_ = fault.id == numberOverflow ? Fault::range : Fault::syntax;
        bytesRead_ = bytesRead;
        return false;
    }

    JsonValue take() { return std::move(root_); }
    Fault fault() const { return fault_; }
    /// How far the parser had read when it met the fault.
    std::size_t bytesRead() const { return bytesRead_; }

  private:
    struct Level {
        bool isObject = false;
        std::string key;
        JsonValue::Object::Members members;
        JsonValue::Array elements;
    };

    bool open(bool isObject) {
        if (levels_.size() == JsonValue::maxDepth) {
            fault_ = Fault::depth;
            return false;
        }
        levels_.emplace_back().isObject = isObject;
        return true;
    }

    bool add(JsonValue value) {
        if (levels_.empty()) {
            root_ = std::move(value);
        } else if (Level& level = levels_.back(); level.isObject) {
            level.members.emplace_back(std::move(level.key), std::move(value));
        } else {
            level.elements.push_back(std::move(value));
        }
        return true;
    }

    std::vector<Level> levels_;
    JsonValue root_;
    /// Members of the object closed last: neighbours in a document are mostly alike.
    std::size_t usualMembers_ = 0;
    Fault fault_ = Fault::none;
    std::size_t bytesRead_ = 0;
};

/// "The file isn't valid JSON (line 3, column 9).": lines and columns count from 1, columns in characters.
std::string sentenceAt(std::string_view fault, std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, offset);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const auto lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    const auto column =
        1 + std::count_if(before.begin() + static_cast<std::ptrdiff_t>(lineStart), before.end(),
                          [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    std::string sentence(fault);
    sentence += " (line ";
    sentence += std::to_string(line);
    sentence += ", column ";
    sentence += std::to_string(column);
    sentence += ").";
    return sentence;
}

std::string sentence(const Builder& builder, std::string_view text) {
    if (builder.fault() == Builder::Fault::depth) {
        static_assert(JsonValue::maxDepth == 512);
        return "The file is nested more than 512 levels deep.";
    }
    const auto offset = builder.bytesRead() > 0 ? builder.bytesRead() - 1 : 0;
    if (const auto good = text::validUtf8Prefix(text); good < text.size() && good <= offset) {
        return sentenceAt("The file isn't valid UTF-8 text", text, good);
    }
    if (offset >= text.size()) return "The file isn't valid JSON: it ends too early.";
    if (builder.fault() == Builder::Fault::range) {
        return sentenceAt("The file holds a number that is too large", text, offset);
    }
    return sentenceAt("The file isn't valid JSON", text, offset);
}

} // namespace

JsonValue::ParseResult JsonValue::parse(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    if (text::trim(text).empty()) return {std::nullopt, "The file is empty."};
    // The parser would take a NUL for the end of the text and pass over what follows.
    if (const auto nul = text.find('\0'); nul != std::string_view::npos) {
        return {std::nullopt, sentenceAt("The file isn't valid JSON", text, nul)};
    }
    Builder builder;
    try {
        if (Library::sax_parse(text.begin(), text.end(), &builder)) return {builder.take(), {}};
    } catch (const std::exception&) {
        return {std::nullopt, "The file can't be read as JSON."};
    }
    return {std::nullopt, sentence(builder, text)};
}

} // namespace corvane
