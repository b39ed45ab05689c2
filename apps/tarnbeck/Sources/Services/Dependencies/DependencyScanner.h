// Whether the Node and Python dependencies of a repository are up to date: asked of its package
// managers, which takes minutes, or answered from what was found before while nothing has changed.
//
// Topics: +Discovery (which folders are projects), +Fingerprints (whether anything changed), +Node
// with +Expo, +Python with +PythonClassification.
#pragma once

#include <string>

#include "Clock.h"
#include "DependencyCache.h"
#include "DependencyMarkers.h"
#include "DependencyStatus.h"
#include "DependencyTools.h"

namespace tarnbeck::DependencyScanner {

// What the front door works with. All that is referred to must outlive its use.
struct Memory {
    DependencyCache& cache;
    const Clock& clock;
};

struct ScanRequest {
    std::string at;             // the repository's path
    bool forceRefresh = false;  // asks the managers whatever is remembered
};

// The verdict on a repository. Never fails: what went wrong stands in the summary. When every
// project failed, the last good verdict is given instead, if there is one. Blocks for as long as
// the managers take, never from the main thread; any number of threads at once.
DependencySummary scan(const DependencyTools& tools, const Memory& memory,
                       const ScanRequest& request);

// What to show until a scan has finished: the last good verdict, or that each project is being
// checked. Blocks on the disk.
DependencySummary initialSummary(const Memory& memory, const std::string& repoPath);

// The repository's projects, remembered for a while. Blocks on the disk.
DependencyMarkers cachedDependencyMarkers(const Memory& memory, const std::string& repoPath);

}  // namespace tarnbeck::DependencyScanner
