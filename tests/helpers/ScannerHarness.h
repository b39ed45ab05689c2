// A `RepositoryScanner` in virtual time, whose repository scans a test answers by hand.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "FileEventsByHand.h"
#include "NameCollator.h"
#include "RepositoryScanner.h"
#include "ScanLog.h"
#include "Simulation.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

inline GitRepository repositoryAt(const std::string& path) {
    GitRepository repository;
    repository.path = path;
    repository.name = path.substr(path.rfind('/') + 1);
    repository.currentBranch = "main";
    repository.branches = {{.name = "main", .isCurrent = true}};
    return repository;
}

// The verdict on a repository of one Node project.
inline DependencySummary verdict(DependencyHealth health) {
    return {.ecosystems = {{.manager = "npm", .status = health}}};
}

inline GitHubRepoScanResult gitHubSuccess(std::vector<std::int64_t> issues,
                                          std::vector<std::int64_t> pullRequests = {}) {
    std::vector<GitHubIssue> issueRecords;
    for (const auto number : issues) {
        issueRecords.push_back({.id = number, .number = number, .title = "An issue"});
    }
    std::vector<GitHubPullRequest> pullRequestRecords;
    for (const auto number : pullRequests) {
        pullRequestRecords.push_back({.id = number, .number = number, .title = "A pull request"});
    }
    return {GitHubRepoScanResult::Success{
        {.issues = std::move(issueRecords), .pullRequests = std::move(pullRequestRecords)}}};
}

class ScannerHarness {
  public:
    explicit ScannerHarness(std::vector<std::string> repoPaths = {}) {
        options.configuration.repoPaths = std::move(repoPaths);
        options.autoStart = false;
        options.scanRepositoryHandler = [this](const std::string& path, ScanCompletion completion) {
            scannedPaths.push_back(path);
            if (answersAtOnce) {
                completion(answer(path));
            } else {
                waiting.emplace_back(path, std::move(completion));
            }
        };
        options.issueScanHandler = [this](const std::string& path,
                                          GitHubIssueRefreshPolicy policy) {
            issueScans.emplace_back(path, policy);
            return answerOfGitHub(path);
        };
        options.dependencyScanHandler = [this](const std::string& path, bool forceRefresh) {
            dependencyScans.emplace_back(path, forceRefresh);
            return answerOfDependencies(path);
        };
        options.saveConfiguration = [this](const AppConfiguration& configuration) {
            savedConfigurations.push_back(configuration);
        };
        options.report = [this](std::string_view line) { reports.emplace_back(line); };
    }

    RepositoryScanner& make() {
        scanner = std::make_unique<RepositoryScanner>(
            RepositoryScanner::Services{.loop = simulation.loop,
                                        .queues = simulation.queues,
                                        .log = log,
                                        .collator = collator,
                                        .git =
                                            [this](const GitInvocation& invocation) {
                                                gitInvocations.push_back(invocation);
                                                return gitAnswer;
                                            },
                                        .home = folder.path(),
                                        .fileEvents = &fileEvents},
            options);
        observation = scanner->observe([this](auto property) { notified.push_back(property); });
        return *scanner;
    }

    // Answers the scan that has waited longest.
    void answerNext() {
        auto [path, completion] = std::move(waiting.front());
        waiting.pop_front();
        completion(answer(path));
        simulation.runUntilIdle();
    }

    // One whole refresh, answered at once.
    void refresh(const RepositoryRefreshRequest& request = {}) {
        answersAtOnce = true;
        scanner->requestRefresh(request);
        simulation.runUntilIdle();
    }

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& repository : scanner->repositories()) result.push_back(repository->name);
        return result;
    }

    // Shows these repositories as if a full scan had found them.
    RepositoryScanner& makeShowing(std::vector<GitRepository> repositories) {
        RepositoryScanner& made = make();
        std::vector<RepositorySnapshot> snapshots;
        for (GitRepository& repository : repositories) {
            snapshots.push_back(std::make_shared<const GitRepository>(std::move(repository)));
        }
        made.setRepositories(std::move(snapshots));
        simulation.runUntilIdle();
        forget();
        return made;
    }

    // Drops what was noted so far.
    void forget() {
        notified.clear();
        scannedPaths.clear();
        issueScans.clear();
        dependencyScans.clear();
        gitInvocations.clear();
        lines.clear();
    }

    const GitRepository& repository(std::size_t index) const {
        return *scanner->repositories().at(index);
    }

    // Lines of the scan log that begin with `family`.
    std::vector<std::string> linesOf(std::string_view family) const {
        std::vector<std::string> found;
        for (const std::string& line : lines) {
            if (line.starts_with(family)) found.push_back(line);
        }
        return found;
    }

    std::ptrdiff_t timesNotified(RepositoryScanner::Property property) const {
        return std::ranges::count(notified, property);
    }

    TemporaryFolder folder;
    Simulation simulation;
    ScanLog log{{.home = folder.path()}, simulation.loop, simulation.queues};
    std::vector<std::string> lines;  // of the scan log
    ScanLog::Observers::Token lineObservation =
        log.observe([this](std::string_view line) { lines.emplace_back(line); });
    FileEventsByHand fileEvents;
    NameCollator collator{"en_US"};
    RepositoryScanner::Options options;
    // What a scan of the path gives; by default a tidy repository at that path.
    std::function<std::optional<GitRepository>(const std::string& path)> answer = repositoryAt;
    bool answersAtOnce = false;
    std::deque<std::pair<std::string, ScanCompletion>> waiting;
    std::vector<std::string> scannedPaths;
    std::vector<GitInvocation> gitInvocations;
    std::optional<std::string> gitAnswer = "";  // to each of them
    // What GitHub answers for the path; by default that it does not know it.
    std::function<GitHubRepoScanResult(const std::string& path)> answerOfGitHub =
        [](const std::string&) { return GitHubRepoScanResult{GitHubRepoScanResult::Skipped{}}; };
    std::vector<std::pair<std::string, GitHubIssueRefreshPolicy>> issueScans;
    // What a check of the path's dependencies finds; by default that there are none.
    std::function<DependencySummary(const std::string& path)> answerOfDependencies =
        [](const std::string&) { return DependencySummary::notApplicable; };
    std::vector<std::pair<std::string, bool>> dependencyScans;  // with force or without
    std::vector<AppConfiguration> savedConfigurations;
    std::vector<std::string> reports;
    std::vector<RepositoryScanner::Property> notified;
    RepositoryScanner::Observers::Token observation;
    std::unique_ptr<RepositoryScanner> scanner;
};

}  // namespace tarnbeck::testing
