// Maps by path are built on the promise that no path occurs twice. A repeated one is a programming
// error that must not go on quietly.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unordered_map>
#include <utility>

namespace tarnbeck {

[[noreturn]] inline void endForDuplicateKey(const std::string& key) {
    std::fprintf(stderr, "Duplicate values for key: '%s'\n", key.c_str());
    std::abort();
}

// A map from `keyOf(element)` to `valueOf(element)`. Ends the process with "Duplicate values for
// key: '<key>'" on standard error when a key occurs twice.
template <class Range, class KeyOf, class ValueOf>
auto uniquelyKeyed(const Range& elements, KeyOf keyOf, ValueOf valueOf) {
    using Value = std::decay_t<decltype(valueOf(*std::begin(elements)))>;
    std::unordered_map<std::string, Value> map;
    map.reserve(std::size(elements));
    for (const auto& element : elements) {
        const auto [position, inserted] = map.try_emplace(keyOf(element), valueOf(element));
        if (!inserted) endForDuplicateKey(position->first);
    }
    return map;
}

}  // namespace tarnbeck
