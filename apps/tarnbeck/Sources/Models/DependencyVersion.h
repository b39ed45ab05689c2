// What two version texts of any package manager say about each other, by their first three numbers
// alone. Pure and total; any thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "DependencyStatus.h"

namespace tarnbeck {

// Major, minor and patch.
using VersionComponents = std::array<std::int64_t, 3>;

// The first three runs of decimal digits (Unicode's included); what is missing, is no plain number
// or passes 64 bits is 0. Absent for a text without a digit. "v1.2.3-beta.4" gives 1, 2, 3.
std::optional<VersionComponents> parseVersionComponents(std::string_view version);

struct VersionStep {
    std::string_view current;
    std::string_view latest;
};

// Which component the step raises. Equal texts, a downgrade, a difference further behind, and texts
// without a digit are all `unknown`.
DependencyUpdateType infer(const VersionStep& step);

// True when both have components and those of `version` are lower.
bool isOlder(std::string_view version, std::string_view than);

}  // namespace tarnbeck
