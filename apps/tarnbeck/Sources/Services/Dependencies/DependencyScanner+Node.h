// What npm and pnpm say of a Node project. Unless it says otherwise, an operation blocks and is
// never called from the main thread; any number of threads at once.
#pragma once

#include <vector>

#include "DependencyMarkers.h"
#include "DependencyStatus.h"
#include "DependencyTools.h"

namespace tarnbeck::DependencyScanner {

// The verdict on each project, one after the other, by path. A failure stays in its own result.
std::vector<DependencyEcosystemResult> scanNode(const DependencyTools& tools,
                                                const ProjectPlaces& places);

// What is shown until the projects have been checked. Reads their manifests; any thread.
std::vector<DependencyEcosystemResult> initialNodeSummaries(const ProjectPlaces& places);

}  // namespace tarnbeck::DependencyScanner
