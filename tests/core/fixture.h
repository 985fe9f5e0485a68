// Texts of tests/fixtures.
#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace corvane::testing {

inline std::string fileText(const std::string& path) {
    std::ifstream file(std::string(FIXTURES) + path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What one of the system's tools printed.
inline std::string fixture(const std::string& name) {
    return fileText("/tools/" + name);
}

/// What a device sent.
inline std::string deviceFixture(const std::string& name) {
    return fileText("/devices/" + name);
}

inline std::string withCRLF(const std::string& text) {
    std::string result;
    for (const char c : text) result += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return result;
}

} // namespace corvane::testing
