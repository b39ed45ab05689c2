// Enumerations that are stored and shown as text. An enumeration takes part by offering, beside
// itself, `constexpr auto rawValues(Enumeration)` with a list of pairs of case and text, in the
// declared order.
#pragma once

#include <optional>
#include <string_view>

namespace tarnbeck {

template <class Enumeration>
concept TextEnumeration = requires(Enumeration value) { rawValues(value); };

template <TextEnumeration Enumeration>
constexpr std::string_view rawValue(Enumeration value) {
    for (const auto& [candidate, text] : rawValues(value)) {
        if (candidate == value) return text;
    }
    return {};
}

template <TextEnumeration Enumeration>
constexpr std::optional<Enumeration> fromRawValue(std::string_view text) {
    for (const auto& [candidate, candidateText] : rawValues(Enumeration{})) {
        if (candidateText == text) return candidate;
    }
    return std::nullopt;
}

}  // namespace tarnbeck
