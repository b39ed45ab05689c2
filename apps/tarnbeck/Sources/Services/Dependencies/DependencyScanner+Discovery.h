// Which folders of a repository are Node or Python projects. Names and existence decide; of file
// contents only the list of a pnpm workspace (pnpm's own format) is read. Errors of the file system
// are passed over. Blocking; any thread.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "DependencyMarkers.h"

namespace tarnbeck::DependencyScanner {

using Names = std::set<std::string, std::less<>>;

const Names& nodeManifestNames();
const Names& pythonManifestNames();
// Folders of these names are not looked into, at any depth.
const Names& discoveryExcludes();

// "." for the root, "web" for what lies below it, and the project's own path elsewhere. Pure.
std::string relativeProjectPath(const ProjectPlace& place);

// The folders that hold a file of one of the names, sorted.
std::vector<std::string> discoverProjects(const std::string& repoPath, const Names& manifestNames);
// Both kinds in one walk, the Node projects narrowed to the workspace's members.
DependencyMarkers discoverMarkers(const std::string& repoPath);

// The entries of `packages:` in "pnpm-workspace.yaml", by a scan of its lines; none without it.
std::vector<std::string> pnpmWorkspacePackagePatterns(const std::string& repoPath);
// The same of the file's text. Pure.
std::vector<std::string> packagePatternsIn(std::string_view workspaceText);
// The root and those that the workspace's patterns name; all where there are no patterns.
std::vector<std::string> filterNodeProjectsToWorkspacePackages(std::vector<std::string> projects,
                                                               const std::string& repoPath);

struct GlobQuestion {
    std::string_view path;
    std::string_view pattern;  // "*" stands for a part or some of it, "**" for any number of parts
};
bool globMatch(const GlobQuestion& question);

}  // namespace tarnbeck::DependencyScanner
