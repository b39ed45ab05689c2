#include "GitPaths.h"

#include <array>
#include <optional>
#include <utility>

namespace tarnbeck::GitPaths {
namespace {

std::optional<char> meaningOfEscape(char letter) {
    constexpr std::array<std::pair<char, char>, 9> meanings = {{{'a', '\a'},
                                                                {'b', '\b'},
                                                                {'f', '\f'},
                                                                {'n', '\n'},
                                                                {'r', '\r'},
                                                                {'t', '\t'},
                                                                {'v', '\v'},
                                                                {'"', '"'},
                                                                {'\\', '\\'}}};
    for (const auto& [candidate, meaning] : meanings) {
        if (candidate == letter) return meaning;
    }
    return std::nullopt;
}

// A byte as three octal digits.
std::optional<char> byteOf(std::string_view digits) {
    if (digits.size() < 3 || digits[0] > '3') return std::nullopt;
    int value = 0;
    for (const char digit : digits.substr(0, 3)) {
        if (digit < '0' || digit > '7') return std::nullopt;
        value = value * 8 + (digit - '0');
    }
    return static_cast<char>(value);
}

// What stands between the quotes, with its escapes resolved.
std::optional<std::string> resolved(std::string_view inner) {
    std::string name;
    name.reserve(inner.size());
    while (!inner.empty()) {
        const char first = inner[0];
        inner.remove_prefix(1);
        if (first == '"') return std::nullopt;
        if (first != '\\') {
            name += first;
            continue;
        }
        if (inner.empty()) return std::nullopt;
        const auto letter = meaningOfEscape(inner[0]);
        const auto meaning = letter ? letter : byteOf(inner);
        if (!meaning) return std::nullopt;
        name += *meaning;
        inner.remove_prefix(letter ? 1 : 3);
    }
    return name;
}

}  // namespace

std::string unquoted(std::string_view printed) {
    const bool isQuoted = printed.size() >= 2 && printed.starts_with('"') && printed.ends_with('"');
    if (isQuoted) {
        if (auto name = resolved(printed.substr(1, printed.size() - 2))) return *std::move(name);
    }
    return std::string(printed);
}

std::string specificationOf(std::string_view name) {
    constexpr std::string_view patternCharacters = "*?[\\";
    const bool hasMeaning =
        name.starts_with(':') || name.find_first_of(patternCharacters) != std::string_view::npos;
    return hasMeaning ? ":(literal)" + std::string(name) : std::string(name);
}

}  // namespace tarnbeck::GitPaths
