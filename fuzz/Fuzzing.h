// What every fuzz target has: the input as text, and a promise that ends the run when broken.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

inline void promise(bool kept) {
    if (!kept) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
