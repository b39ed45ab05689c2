#include "DependencyScanner.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "DependencyScanner+Discovery.h"
#include "DependencyScanner+Fingerprints.h"
#include "DependencyScanner+Node.h"
#include "DependencyScanner+Python.h"

namespace tarnbeck::DependencyScanner {
namespace {

using Results = std::vector<DependencyEcosystemResult>;

bool hasProjects(const DependencyMarkers& markers) {
    return !markers.nodeProjects.empty() || !markers.pythonProjects.empty();
}

// Node's results come first.
Results joinedResults(Results node, Results python) {
    std::ranges::move(python, std::back_inserter(node));
    return node;
}

Results checkedProjects(const DependencyTools& tools, const std::string& repoPath,
                        const DependencyMarkers& markers) {
    Results node;
    Results python;
    if (!markers.nodeProjects.empty()) {
        node = scanNode(tools, {.projectPaths = markers.nodeProjects, .repoPath = repoPath});
    }
    if (!markers.pythonProjects.empty()) {
        python = scanPython(tools, {.projectPaths = markers.pythonProjects, .repoPath = repoPath});
    }
    return joinedResults(std::move(node), std::move(python));
}

bool allFailed(const DependencySummary& summary) {
    return std::ranges::all_of(summary.ecosystems, [](const DependencyEcosystemResult& result) {
        return result.status == DependencyHealth::error;
    });
}

}  // namespace

DependencySummary scan(const DependencyTools& tools, const Memory& memory,
                       const ScanRequest& request) {
    DependencyCache& cache = memory.cache;
    const std::string& repoPath = request.at;
    if (request.forceRefresh) cache.invalidateMarkersCache(repoPath);
    const DependencyMarkers markers = cachedDependencyMarkers(memory, repoPath);
    if (!hasProjects(markers)) return DependencySummary::notApplicable;
    const std::string fingerprint = buildFingerprint(repoPath, markers);
    if (!request.forceRefresh) {
        if (auto cached = cache.cachedSummary(repoPath, fingerprint)) return *std::move(cached);
    }
    DependencySummary summary{.ecosystems = checkedProjects(tools, repoPath, markers),
                              .checkedAt = memory.clock.wallNow()};
    if (allFailed(summary)) {
        auto lastGood = cache.lastKnownSummary(repoPath, false);
        if (lastGood && lastGood->status() != DependencyHealth::notApplicable) {
            summary = *std::move(lastGood);
        }
    }
    cache.store(summary, repoPath, fingerprint);
    return summary;
}

DependencySummary initialSummary(const Memory& memory, const std::string& repoPath) {
    if (auto lastGood = memory.cache.lastKnownSummary(repoPath, false)) {
        return *std::move(lastGood);
    }
    const DependencyMarkers markers = cachedDependencyMarkers(memory, repoPath);
    if (!hasProjects(markers)) return DependencySummary::notApplicable;
    return {.ecosystems = joinedResults(
                initialNodeSummaries({.projectPaths = markers.nodeProjects, .repoPath = repoPath}),
                initialPythonSummaries(
                    {.projectPaths = markers.pythonProjects, .repoPath = repoPath}))};
}

DependencyMarkers cachedDependencyMarkers(const Memory& memory, const std::string& repoPath) {
    const std::string structure = structureFingerprint(repoPath);
    if (auto markers = memory.cache.markers(repoPath, structure)) return *std::move(markers);
    DependencyMarkers markers = discoverMarkers(repoPath);
    memory.cache.storeMarkers(markers, repoPath, structure);
    return markers;
}

}  // namespace tarnbeck::DependencyScanner
