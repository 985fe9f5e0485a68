#include "core/support/json.h"

#include <algorithm>
#include <charconv>

namespace corvane {

namespace {

bool keyLess(const JsonValue::Object::value_type& member, std::string_view key) {
    return member.first < key;
}

} // namespace

JsonValue::Object::Object(std::initializer_list<value_type> members) : Object(of(Members(members))) {}

JsonValue::Object JsonValue::Object::of(Members members) {
    const auto unordered = [](const value_type& a, const value_type& b) { return a.first >= b.first; };
    if (std::adjacent_find(members.begin(), members.end(), unordered) != members.end()) {
        std::stable_sort(members.begin(), members.end(),
                         [](const value_type& a, const value_type& b) { return a.first < b.first; });
        // Seen from the back, the first of equal keys is the one that stood last in the document.
        const auto keptFrom = std::unique(members.rbegin(), members.rend(),
                                          [](const auto& a, const auto& b) { return a.first == b.first; });
        members.erase(members.begin(), keptFrom.base());
    }
    Object object;
    object.members_ = std::move(members);
    return object;
}

JsonValue::Object::const_iterator JsonValue::Object::find(std::string_view key) const {
    const auto at = std::lower_bound(begin(), end(), key, keyLess);
    return at != end() && at->first == key ? at : end();
}

JsonValue& JsonValue::Object::operator[](std::string_view key) {
    auto at = std::lower_bound(members_.begin(), members_.end(), key, keyLess);
    if (at == members_.end() || at->first != key) at = members_.emplace(at, std::string(key), JsonValue());
    return at->second;
}

void JsonValue::Object::emplace(std::string_view key, JsonValue value) {
    const auto at = std::lower_bound(members_.begin(), members_.end(), key, keyLess);
    if (at == members_.end() || at->first != key) members_.emplace(at, std::string(key), std::move(value));
}

std::size_t JsonValue::Object::erase(std::string_view key) {
    const auto at = std::lower_bound(members_.begin(), members_.end(), key, keyLess);
    if (at == members_.end() || at->first != key) return 0;
    members_.erase(at);
    return 1;
}

std::optional<long> JsonValue::integer() const {
    const Number* number = this->number();
    if (!number) return std::nullopt;
    const std::string& literal = number->literal;
    long value = 0;
    const auto [end, error] = std::from_chars(literal.data(), literal.data() + literal.size(), value);
    if (error != std::errc() || end != literal.data() + literal.size()) return std::nullopt;
    return value;
}

} // namespace corvane
