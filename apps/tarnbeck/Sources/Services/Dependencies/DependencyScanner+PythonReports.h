// The reports of outdated packages that pip, uv and our own lookup print. Pure; any thread.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "DependencyStatus.h"

namespace tarnbeck::DependencyScanner {

// The updates in a JSON array of objects, or in a JSON object from package to object, which is read
// by ascending name. Absent for anything else. Entries without a version that is newer (in an
// array: another) are left out.
std::optional<std::vector<DependencyUpdate>> parseOutdatedJSON(std::string_view text,
                                                               DependencyEcosystem ecosystem);

// Without those that lead nowhere or back.
std::vector<DependencyUpdate> normalizedPythonUpdates(std::vector<DependencyUpdate> updates);

}  // namespace tarnbeck::DependencyScanner
