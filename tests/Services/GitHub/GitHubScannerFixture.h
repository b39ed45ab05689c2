// A scanner in a home of its own: recorded answers of git, a program that plays `gh`, and virtual
// time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "GitHubScanner.h"
#include "ObservedLog.h"
#include "PosixProcessLauncher.h"
#include "RecordedGh.h"

namespace tarnbeck::testing {

// What `gh` prints of items numbered from 1.
inline std::string ghIssues(int count) {
    std::string list = "[";
    for (int number = 1; number <= count; ++number) {
        list += (number > 1 ? "," : "") + ghIssue(number, "Issue");
    }
    return list + "]";
}
inline std::string ghPullRequests(int count) {
    std::string list = "[";
    for (int number = 1; number <= count; ++number) {
        list += (number > 1 ? "," : "") + ghPullRequest(number, "Change");
    }
    return list + "]";
}

class GitHubScannerFixture : public ::testing::Test {
  protected:
    static constexpr auto useCache = GitHubIssueRefreshPolicy::useCache;
    static constexpr auto forceRefresh = GitHubIssueRefreshPolicy::forceRefresh;

    GitHubScanner& scanner() {
        if (!scanner_) scanner_ = std::make_unique<GitHubScanner>(options_, tools());
        return *scanner_;
    }
    // A new run of the program over the same home.
    void restart() { scanner_.reset(); }

    GitHubRepoScanResult scan(GitHubIssueRefreshPolicy policy = useCache) {
        return scanner().scan({.at = "/repo", .policy = policy});
    }
    // How many issues and pull requests a scan gave: "2+1"; or else "failed" or "skipped".
    static std::string inShort(const GitHubRepoScanResult& result) {
        if (result.is<GitHubRepoScanResult::Skipped>()) return "skipped";
        if (const auto* data = result.data()) {
            return fmt::format("{}+{}", data->issues.size(), data->pullRequests.size());
        }
        return "failed";
    }

    void ghLists(int issues, int pullRequests) {
        gh_.plays("issue", "print", ghIssues(issues));
        gh_.plays("pr", "print", ghPullRequests(pullRequests));
    }
    void ghFails(std::string_view resource) { gh_.plays(resource, "fail 1", "went wrong"); }

    WallTime now() const { return simulation_.loop.wallNow(); }
    void advance(std::chrono::nanoseconds duration) { simulation_.advance(duration); }
    const std::vector<std::string>& lines() const { return log_.lines; }

    GitHubScanner::Tools tools() {
        return {
            .launcher = launcher_,
            .git =
                [this](const GitInvocation& invocation) {
                    gitInvocations_.push_back(invocation);
                    return remote_;
                },
            .log = log_.log,
            .clock = simulation_.loop,
            .queues = simulation_.queues,
            .pause = [this](std::chrono::nanoseconds duration) { pauses_.push_back(duration); }};
    }

    RecordedGh gh_;
    Simulation simulation_;
    ObservedLog log_{simulation_};
    PosixProcessLauncher launcher_;
    std::optional<std::string> remote_ = "https://github.com/owner/repo.git";
    std::vector<GitInvocation> gitInvocations_;
    std::vector<std::chrono::nanoseconds> pauses_;
    GitHubScanner::Options options_{.home = gh_.home(), .ghCandidates = {RecordedGh::executable}};
    std::unique_ptr<GitHubScanner> scanner_;
};

}  // namespace tarnbeck::testing
