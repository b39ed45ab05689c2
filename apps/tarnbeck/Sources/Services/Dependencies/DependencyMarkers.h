// Which folders of one repository are projects.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarnbeck {

// In bytes: what is larger than any manifest that a person writes counts as unreadable.
inline constexpr std::size_t largestManifest = std::size_t{64} << 20;

// Absolute, standardized folders, sorted by bytes. A folder may stand in both lists.
struct DependencyMarkers {
    std::vector<std::string> nodeProjects;  // members of the workspace only, where there is one
    std::vector<std::string> pythonProjects;

    bool operator==(const DependencyMarkers&) const = default;
};

// A project, and the repository that it belongs to: absolute paths.
struct ProjectPlace {
    std::string projectPath;
    std::string repoPath;
};

struct ProjectPlaces {
    std::vector<std::string> projectPaths;
    std::string repoPath;
};

}  // namespace tarnbeck
