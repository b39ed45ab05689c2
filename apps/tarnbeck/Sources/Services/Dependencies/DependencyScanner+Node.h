// What npm and pnpm say of a Node project. Unless it says otherwise, an operation blocks and is
// never called from the main thread; any number of threads at once.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "DependencyMarkers.h"
#include "DependencyStatus.h"
#include "DependencyTools.h"

namespace tarnbeck::DependencyScanner {

// The verdict on each project, one after the other, by path. A failure stays in its own result.
std::vector<DependencyEcosystemResult> scanNode(const DependencyTools& tools,
                                                const ProjectPlaces& places);
DependencyEcosystemResult scanNodeProject(const DependencyTools& tools, const ProjectPlace& place);

// What is shown until the projects have been checked. Reads their manifests; any thread. The
// members of a pnpm workspace may be shown under another manager than they are checked with.
std::vector<DependencyEcosystemResult> initialNodeSummaries(const ProjectPlaces& places);

// "pnpm", "npm", "yarn" or "bun": what the manifest declares, or else the one whose lockfile is
// there, or else npm. Reads the manifest; any thread.
std::string detectNodeManager(const std::string& projectPath);

// What the manifest says under "packageManager"; absent where that is no text or can't be read.
std::optional<std::string> packageManagerField(const std::string& projectPath);

struct NodeOutdatedInvocation {
    std::vector<std::string> args;  // the first is the tool's name
    std::string cwd;

    bool operator==(const NodeOutdatedInvocation&) const = default;
};
struct NodeOutdatedQuestion {
    std::string manager;
    std::string repoPath;
    std::string projectPath;
    std::string project;  // the path relative to the repository
};
// The command that lists what is outdated. Looks for a pnpm workspace; any thread.
NodeOutdatedInvocation nodeOutdatedInvocation(const NodeOutdatedQuestion& question);

}  // namespace tarnbeck::DependencyScanner
