// What the requirement files of a Python project ask for, as far as it is a lowest version, and how
// an environment that fell behind it is told. Unless it says otherwise, pure; any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "DependencyStatus.h"

namespace tarnbeck::DependencyScanner {

struct PythonRequirementConstraint {
    std::string package;         // as the file writes it
    std::string minimumVersion;  // behind "==" or ">="

    bool operator==(const PythonRequirementConstraint&) const = default;
};

// By normalized name.
using PythonConstraints = std::map<std::string, PythonRequirementConstraint, std::less<>>;

// The name under which a package is looked up: trimmed, in lower case, with "-" for "_". A "."
// stays.
std::string normalizedPythonName(std::string_view name);

// The package and the version of a line such as "Foo[bar]==1.2, <3  # why". Absent for everything
// else that a requirement file may hold.
std::optional<PythonRequirementConstraint> parsePythonRequirement(std::string_view line);

// What these texts of requirement files ask for. Of several versions of a package the lowest
// stands; of those that can't be compared the last one.
PythonConstraints lowestPythonRequirements(const std::vector<std::string>& texts);

// The same of the requirement files in a folder; one that can't be read as UTF-8 is passed over.
// Reads files.
PythonConstraints pythonRequirements(const std::string& projectPath);

struct ReconciledPythonUpdates {
    std::vector<DependencyUpdate> updates;
    std::int64_t driftedPackages = 0;  // how many are installed older than asked for
};

// The updates as seen from the requirement files: a package that is installed older than asked for
// counts with the version asked for, and is no update when that is the latest. Reads files.
ReconciledPythonUpdates reconcilePythonUpdates(std::vector<DependencyUpdate> updates,
                                               const std::string& projectPath);

}  // namespace tarnbeck::DependencyScanner
