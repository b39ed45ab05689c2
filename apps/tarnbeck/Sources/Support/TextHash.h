// Looks texts up in a hash table of std::string without making one.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace tarnbeck {

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>()(text);
    }
};

}  // namespace tarnbeck
