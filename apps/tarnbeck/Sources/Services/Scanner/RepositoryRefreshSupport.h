// What becomes of scan results: counting failures, keeping the snapshots of repositories that
// fail, and carrying over what slower sources found. Pure, but for lines in the scan log and
// questions to the file system where it is said. Any thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "GitHubRepositoryData.h"
#include "GitRepository.h"
#include "NameCollator.h"
#include "ScanLog.h"

namespace tarnbeck {

using FailureCounts = std::unordered_map<std::string, int>;
using SnapshotsByPath = std::unordered_map<std::string, RepositorySnapshot>;

// The snapshots under their paths; a repeated path ends the process.
SnapshotsByPath keyedByPath(const std::vector<RepositorySnapshot>& repositories);

}  // namespace tarnbeck

namespace tarnbeck::RepositoryRefreshSupport {

struct FailureUpdate {
    const FailureCounts& previousFailureCounts;
    const std::vector<std::string>& configuredPaths;  // tildes expanded
    const std::vector<RepositorySnapshot>& scanned;
};
// 0 for a path that was scanned, one more for each that was not, none for what is not configured.
FailureCounts updatedConsecutiveScanFailures(const FailureUpdate& update);

struct DropDecision {
    bool drop = false;
    std::string reason;

    bool operator==(const DropDecision&) const = default;
};
struct DropQuestion {
    std::string at;
    int failureCount = 0;
    int firstFailureBeyondThreshold = 0;
};
// Whether a repository that failed again and again has really gone. Asks the file system; writes
// the line "KEEPING SNAPSHOT …" when the count is at the threshold and it stays.
DropDecision shouldDropSnapshotAfterRepeatedFailures(const DropQuestion& question, ScanLog& log);

struct ScanMerge {
    const std::vector<RepositorySnapshot>& scanned;
    const std::vector<std::string>& configuredPaths;
    const SnapshotsByPath& previousReposByPath;
    const FailureCounts& consecutiveScanFailuresByPath;
};
// The scanned repositories and the kept snapshots of those that failed, by name; equal names in
// configured order. Asks the file system; writes "DROPPING STALE SNAPSHOT …" for what goes.
std::vector<RepositorySnapshot> mergeScanResults(const ScanMerge& merge,
                                                 const NameCollator& collator, ScanLog& log);

struct AsyncDataSources {
    const SnapshotsByPath& previousReposByPath;
    // What the issue cache knows of a path; absent for nothing.
    const std::function<std::optional<GitHubRepositoryData>(const std::string& path)>&
        cachedGitHubDataByPath;
};
// The list with issues, pull requests and dependency verdicts carried over where a fresh snapshot
// has none yet.
std::vector<RepositorySnapshot> preserveAsyncData(std::vector<RepositorySnapshot> repositories,
                                                  const AsyncDataSources& sources);

// A fresh snapshot of one repository, with the issues, pull requests and dependency verdict of the
// present one where it has none yet.
GitRepository carryingOverFrom(const GitRepository& present, GitRepository fresh);

struct Prioritization {
    const std::vector<std::string>& paths;  // none twice; others than the repositories' are ignored
    const NameCollator& collator;
};
// Those at `paths` first, in that order, then the rest by name; as they stand without any paths.
std::vector<RepositorySnapshot> prioritized(std::vector<RepositorySnapshot> repositories,
                                            const Prioritization& by);

}  // namespace tarnbeck::RepositoryRefreshSupport
