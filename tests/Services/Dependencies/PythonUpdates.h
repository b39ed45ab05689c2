// Updates of Python packages, as the tests of their check write them.
#pragma once

#include <string>

#include "DependencyStatus.h"
#include "DependencyVersion.h"

namespace tarnbeck::testing {

inline DependencyUpdate pythonUpdate(
    const std::string& package, const std::string& current, const std::string& latest,
    DependencyUpdateOrigin origin = DependencyUpdateOrigin::unknown) {
    return {.ecosystem = DependencyEcosystem::python,
            .package = package,
            .currentVersion = current,
            .latestVersion = latest,
            .updateType = infer({.current = current, .latest = latest}),
            .origin = origin};
}

}  // namespace tarnbeck::testing
