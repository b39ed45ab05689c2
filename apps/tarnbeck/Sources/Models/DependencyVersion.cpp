#include "DependencyVersion.h"

#include <charconv>
#include <system_error>

#include "Text.h"

namespace tarnbeck {
namespace {

std::int64_t numberOf(std::string_view digits) {
    std::int64_t number = 0;
    const char* end = digits.data() + digits.size();
    const auto [behind, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && behind == end ? number : 0;
}

}  // namespace

std::optional<VersionComponents> parseVersionComponents(std::string_view version) {
    VersionComponents components{};
    std::size_t found = 0;
    while (found < components.size()) {
        const std::string_view digits = takingDecimalDigits(version);
        if (digits.empty()) break;
        components[found++] = numberOf(digits);
    }
    if (found == 0) return std::nullopt;
    return components;
}

DependencyUpdateType infer(const VersionStep& step) {
    const auto current = parseVersionComponents(step.current);
    const auto latest = parseVersionComponents(step.latest);
    if (!current || !latest) return DependencyUpdateType::unknown;
    constexpr std::array<DependencyUpdateType, 3> raised = {
        DependencyUpdateType::major, DependencyUpdateType::minor, DependencyUpdateType::patch};
    for (std::size_t index = 0; index < raised.size(); ++index) {
        if ((*current)[index] < (*latest)[index]) return raised[index];
        if ((*current)[index] > (*latest)[index]) return DependencyUpdateType::unknown;
    }
    return DependencyUpdateType::unknown;
}

bool isOlder(std::string_view version, std::string_view than) {
    const auto components = parseVersionComponents(version);
    const auto others = parseVersionComponents(than);
    return components && others && *components < *others;
}

}  // namespace tarnbeck
