// What pip, uv and the public package index say of a Python project. Unless it says otherwise, an
// operation blocks and is never called from the main thread; any number of threads at once.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "DependencyMarkers.h"
#include "DependencyScanner+PythonClassification.h"
#include "DependencyStatus.h"
#include "DependencyTools.h"

namespace tarnbeck::DependencyScanner {

// The verdict on each project, one after the other, by path. A failure stays in its own result.
std::vector<DependencyEcosystemResult> scanPython(const DependencyTools& tools,
                                                  const ProjectPlaces& places);

// The verdict on one: what pip lists as outdated in its environment, or else uv, or else the
// package index itself.
DependencyEcosystemResult scanPythonProject(const DependencyTools& tools,
                                            const ProjectPlace& place);

struct PythonProject {
    PythonEnvironment environment;
    std::string project;  // as the result names it
};
// The package index's part of it: for an environment whose tools can list what is installed, and no
// more.
DependencyEcosystemResult scanPythonProjectViaAPI(const DependencyTools& tools,
                                                  const PythonProject& project);

// What is shown until the projects have been checked. Any thread.
std::vector<DependencyEcosystemResult> initialPythonSummaries(const ProjectPlaces& places);

// The interpreter of the project's own environment, or else the one among those of its parent
// folders that satisfies most of its requirements. Runs these only where there are several.
std::optional<std::string> detectPythonExecutable(const DependencyTools& tools,
                                                  const ProjectPlace& place);

}  // namespace tarnbeck::DependencyScanner
