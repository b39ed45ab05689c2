// Verdicts on dependencies made to order.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "DependencyStatus.h"

namespace tarnbeck::testing {

// "react", from 18.2.0 to 19.0.0.
inline DependencyUpdate updateOf(std::string package,
                                 DependencyUpdateType type = DependencyUpdateType::major,
                                 DependencyUpdateOrigin origin = DependencyUpdateOrigin::unknown) {
    return {.package = std::move(package),
            .currentVersion = "18.2.0",
            .latestVersion = "19.0.0",
            .updateType = type,
            .origin = origin};
}

inline DependencyEcosystemResult nodeResult(std::optional<std::string> project,
                                            DependencyHealth status = DependencyHealth::upToDate,
                                            std::vector<DependencyUpdate> updates = {},
                                            std::optional<std::string> message = {}) {
    return {.ecosystem = DependencyEcosystem::node,
            .project = std::move(project),
            .manager = "npm",
            .status = status,
            .updates = std::move(updates),
            .message = std::move(message)};
}

inline DependencyEcosystemResult pythonResult(std::optional<std::string> project,
                                              DependencyHealth status = DependencyHealth::upToDate,
                                              std::vector<DependencyUpdate> updates = {},
                                              std::optional<std::string> message = {}) {
    DependencyEcosystemResult result =
        nodeResult(std::move(project), status, std::move(updates), std::move(message));
    result.ecosystem = DependencyEcosystem::python;
    result.manager = "pip";
    return result;
}

}  // namespace tarnbeck::testing
