// What every fuzz target needs: libFuzzer's entry point and a check that ends the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// A property of the parsers that no input may break.
inline void require(bool holds, const char* property) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", property);
    std::abort();
}

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
