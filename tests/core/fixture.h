// Texts of tests/fixtures.
#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace corvane::testing {

inline std::string fixture(const std::string& name) {
    std::ifstream file(std::string(FIXTURES) + "/tools/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::string withCRLF(const std::string& text) {
    std::string result;
    for (const char c : text) result += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return result;
}

} // namespace corvane::testing
