// A cache in a home of its own, in virtual time, and what it is filled with.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "GitHubIssueCache.h"
#include "ObservedLog.h"

namespace tarnbeck::testing {

inline GitHubIssue issueOf(std::int64_t number) {
    return {.id = number,
            .number = number,
            .title = "Issue",
            .state = "OPEN",
            .labels = {"bug"},
            .author = "ann",
            .createdAt = "2026-02-01T08:00:00Z",
            .updatedAt = "2026-02-02T09:00:00Z",
            .url = "i"};
}

inline GitHubPullRequest pullRequestOf(std::int64_t number) {
    return {.id = number, .number = number, .title = "Change", .isDraft = true, .url = "p"};
}

// `issues` issues and `pullRequests` pull requests, numbered from 1.
inline GitHubRepositoryData dataWith(int issues, int pullRequests) {
    std::vector<GitHubIssue> issueList;
    for (int number = 1; number <= issues; ++number) issueList.push_back(issueOf(number));
    std::vector<GitHubPullRequest> pullRequestList;
    for (int number = 1; number <= pullRequests; ++number) {
        pullRequestList.push_back(pullRequestOf(number));
    }
    return {.issues = std::move(issueList), .pullRequests = std::move(pullRequestList)};
}

class GitHubIssueCacheFixture : public ::testing::Test {
  protected:
    GitHubIssueCacheFixture() { restart(); }

    std::string file() const { return home_ / "cache/github-issues-cache.json"; }
    void write(std::string_view content) const {
        home_.write("cache/github-issues-cache.json", content);
    }
    bool fileExists() const { return std::filesystem::exists(file()); }

    GitHubIssueCache& cache() { return *cache_; }
    // A new run of the program over the same file.
    void restart() {
        cache_.reset();
        cache_ = std::make_unique<GitHubIssueCache>(
            file(), GitHubIssueCache::Tools{
                        .log = log_.log, .clock = simulation_.loop, .queues = simulation_.queues});
    }
    void advance(std::chrono::nanoseconds duration) { simulation_.advance(duration); }
    const std::vector<std::string>& lines() const { return log_.lines; }

    TemporaryFolder home_;
    Simulation simulation_;
    ObservedLog log_{simulation_};
    std::unique_ptr<GitHubIssueCache> cache_;
};

}  // namespace tarnbeck::testing
