#include "RepositoryRefreshSupport.h"

#include <algorithm>
#include <memory>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

#include "FileSystem.h"
#include "UniqueKeys.h"

namespace tarnbeck {

SnapshotsByPath keyedByPath(const std::vector<RepositorySnapshot>& repositories) {
    return uniquelyKeyed(
        repositories, [](const RepositorySnapshot& repository) { return repository->path; },
        [](const RepositorySnapshot& repository) { return repository; });
}

}  // namespace tarnbeck

namespace tarnbeck::RepositoryRefreshSupport {
namespace {

constexpr int keptWithoutQuestion = 2;  // failures in a row before anybody asks
constexpr int droppedAnyway = 10;

RepositorySnapshot keptSnapshot(const std::string& path, const ScanMerge& merge, ScanLog& log) {
    const auto previous = merge.previousReposByPath.find(path);
    if (previous == merge.previousReposByPath.end()) return nullptr;
    const auto failures = merge.consecutiveScanFailuresByPath.find(path);
    if (failures == merge.consecutiveScanFailuresByPath.end()) return previous->second;
    const int count = failures->second;
    if (count < keptWithoutQuestion) return previous->second;
    const DropDecision decision = shouldDropSnapshotAfterRepeatedFailures(
        {.at = path, .failureCount = count, .firstFailureBeyondThreshold = keptWithoutQuestion},
        log);
    if (!decision.drop) return previous->second;
    log.write(fmt::format("DROPPING STALE SNAPSHOT {}: {} consecutive scan failures at {} — {}",
                          previous->second->name, count, path, decision.reason));
    return nullptr;
}

// The first of the two that is not empty, when the fresh list is. A previous snapshot settles the
// matter even with an empty list: the cache is for the time before the first one.
template <class List>
void carryOver(List& fresh, const List* previous, const List* cached) {
    if (!fresh.empty()) return;
    const List* source = previous ? previous : cached;
    if (source) fresh = *source;
}

bool isWithoutVerdict(const DependencySummary& summary) {
    const DependencyHealth status = summary.status();
    return status == DependencyHealth::notApplicable || status == DependencyHealth::checking;
}

void carryOverVerdict(GitRepository& fresh, const GitRepository& present) {
    if (isWithoutVerdict(fresh.dependencySummary) && !isWithoutVerdict(present.dependencySummary)) {
        fresh.dependencySummary = present.dependencySummary;
    }
}

}  // namespace

FailureCounts updatedConsecutiveScanFailures(const FailureUpdate& update) {
    std::unordered_set<std::string_view> scannedPaths;
    for (const auto& repository : update.scanned) scannedPaths.insert(repository->path);
    FailureCounts counts;
    for (const std::string& path : update.configuredPaths) {
        const auto previous = update.previousFailureCounts.find(path);
        const int before = previous == update.previousFailureCounts.end() ? 0 : previous->second;
        counts[path] = scannedPaths.contains(path) ? 0 : before + 1;
    }
    return counts;
}

DropDecision shouldDropSnapshotAfterRepeatedFailures(const DropQuestion& question, ScanLog& log) {
    if (!isDirectory(question.at)) return {true, "path does not exist"};
    if (!exists(question.at + "/.git")) return {true, ".git is missing"};
    if (question.failureCount >= droppedAnyway) {
        return {true, fmt::format("repository scan failed {}x while path still exists",
                                  question.failureCount)};
    }
    if (question.failureCount == question.firstFailureBeyondThreshold) {
        log.write(fmt::format(
            "KEEPING SNAPSHOT at {}: repeated scan failures but repository path still exists",
            question.at));
    }
    return {false, "repository path still exists"};
}

std::vector<RepositorySnapshot> mergeScanResults(const ScanMerge& merge,
                                                 const NameCollator& collator, ScanLog& log) {
    SnapshotsByPath scanned = keyedByPath(merge.scanned);
    std::vector<RepositorySnapshot> merged;
    merged.reserve(merge.configuredPaths.size());
    for (const std::string& path : merge.configuredPaths) {
        auto fresh = scanned.extract(path);
        auto repository = fresh ? std::move(fresh.mapped()) : keptSnapshot(path, merge, log);
        if (repository) merged.push_back(std::move(repository));
    }
    for (const auto& repository : merge.scanned) {
        if (scanned.contains(repository->path)) merged.push_back(repository);
    }
    std::ranges::stable_sort(merged, [&](const auto& left, const auto& right) {
        return collator.compare(left->name, right->name) < 0;
    });
    return merged;
}

std::vector<RepositorySnapshot> preserveAsyncData(std::vector<RepositorySnapshot> repositories,
                                                  const AsyncDataSources& sources) {
    for (RepositorySnapshot& repository : repositories) {
        const auto found = sources.previousReposByPath.find(repository->path);
        const GitRepository* previous =
            found == sources.previousReposByPath.end() ? nullptr : found->second.get();
        if (previous == repository.get()) continue;
        const std::optional<GitHubRepositoryData> cached =
            previous ? std::nullopt : sources.cachedGitHubDataByPath(repository->path);
        auto changed = std::make_shared<GitRepository>(*repository);
        carryOver(changed->issues, previous ? &previous->issues : nullptr,
                  cached ? &cached->issues : nullptr);
        carryOver(changed->pullRequests, previous ? &previous->pullRequests : nullptr,
                  cached ? &cached->pullRequests : nullptr);
        if (previous) carryOverVerdict(*changed, *previous);
        repository = std::move(changed);
    }
    return repositories;
}

GitRepository carryingOverFrom(const GitRepository& present, GitRepository fresh) {
    carryOver<ImmutableList<GitHubIssue>>(fresh.issues, &present.issues, nullptr);
    carryOver<ImmutableList<GitHubPullRequest>>(fresh.pullRequests, &present.pullRequests, nullptr);
    carryOverVerdict(fresh, present);
    return fresh;
}

std::vector<RepositorySnapshot> prioritized(std::vector<RepositorySnapshot> repositories,
                                            const Prioritization& by) {
    if (by.paths.empty()) return repositories;
    const auto ranks = uniquelyKeyed(
        by.paths, [](const std::string& path) { return path; },
        [&](const std::string& path) { return &path - by.paths.data(); });
    const auto rankOf = [&](const RepositorySnapshot& repository) {
        const auto found = ranks.find(repository->path);
        return found == ranks.end() ? std::ssize(by.paths) : found->second;
    };
    std::ranges::stable_sort(repositories, [&](const auto& left, const auto& right) {
        const auto leftRank = rankOf(left);
        const auto rightRank = rankOf(right);
        if (leftRank != rightRank) return leftRank < rightRank;
        return by.collator.compare(left->name, right->name) < 0;
    });
    return repositories;
}

}  // namespace tarnbeck::RepositoryRefreshSupport
