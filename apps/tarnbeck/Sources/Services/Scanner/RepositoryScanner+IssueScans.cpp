// Issues and pull requests of all repositories: one walk at a time behind the full scans and the
// timer, each repository's answer shown as soon as it is there.
#include <utility>

#include <fmt/format.h>

#include "Overloaded.h"
#include "RepositoryScanner.h"

namespace tarnbeck {
namespace {

std::string inWords(const GitHubRepoScanResult& result) {
    return std::visit(
        Overloaded{
            [](const GitHubRepoScanResult::Success& success) {
                return fmt::format("{} issues, {} PRs", success.data.issues.size(),
                                   success.data.pullRequests.size());
            },
            [](const GitHubRepoScanResult::Skipped&) { return std::string("skipped"); },
            [](const GitHubRepoScanResult::Failed&) { return std::string("failed"); },
        },
        result.value);
}

}  // namespace

void RepositoryScanner::refreshIssues(bool forceRefresh) {
    if (!configuration().showIssues) return;
    scheduleIssueScan(
        repositories(), ++issueScanGeneration_,
        forceRefresh ? GitHubIssueRefreshPolicy::forceRefresh : GitHubIssueRefreshPolicy::useCache);
}

void RepositoryScanner::startPeriodicIssueRefresh() {
    issueRefreshTimer_.reset();
    if (!configuration().showIssues || issueRefreshInterval_.count() <= 0) return;
    issueRefreshTimer_.emplace(services_.loop, issueRefreshInterval_,
                               anchor_.guarded([](auto& self) { self.refreshIssues(true); }));
}

void RepositoryScanner::refreshIssueMonitoring() {
    startPeriodicIssueRefresh();
    refreshIssues(false);
}

void RepositoryScanner::setPrioritizedIssueRepoPaths(std::vector<std::string> paths) {
    prioritizedIssueRepoPaths_ = std::move(paths);
}

std::vector<RepositorySnapshot> RepositoryScanner::prioritizedRepositories(
    std::vector<RepositorySnapshot> from) const {
    return RepositoryRefreshSupport::prioritized(
        std::move(from), {.paths = prioritizedIssueRepoPaths_, .collator = services_.collator});
}

void RepositoryScanner::scheduleIssueScan(std::vector<RepositorySnapshot> repositories,
                                          int generation, GitHubIssueRefreshPolicy policy) {
    publish(Property::issueScanInProgress, &State::issueScanInProgress, true);
    services_.log.write(fmt::format("ISSUES scan scheduled generation={} policy={} repositories={}",
                                    generation, rawValue(policy), repositories.size()));
    const auto apply =
        anchor_.guarded([generation](RepositoryScanner& self, const std::string& path,
                                     const GitHubRepoScanResult& result) {
            self.applyIssueResult(path, result, generation);
        });
    const auto finish = anchor_.guarded([generation](RepositoryScanner& self, bool anySuccess) {
        self.finishIssueScan(generation, anySuccess);
    });
    // The order is worked out there too: comparing hundreds of names takes its time.
    services_.queues.utility([repositories = std::move(repositories), policy, apply, finish,
                              paths = prioritizedIssueRepoPaths_, gone = gone_,
                              handler = issueScanHandler_, &log = services_.log,
                              &loop = services_.loop, &collator = services_.collator] {
        bool anySuccess = false;
        for (const auto& repository : RepositoryRefreshSupport::prioritized(
                 repositories, {.paths = paths, .collator = collator})) {
            if (*gone) return;
            const std::string& path = repository->path;
            auto result = handler(path, policy);
            anySuccess = anySuccess || result.data();
            log.write(fmt::format("ISSUES scan result {}: {}", path, inWords(result)));
            loop.post([apply, path, result = std::move(result)] { apply(path, result); });
        }
        loop.post([finish, anySuccess] { finish(anySuccess); });
    });
}

void RepositoryScanner::applyIssueResult(const std::string& path,
                                         const GitHubRepoScanResult& result, int generation) {
    const RepositorySnapshot present = repositoryAt(path);
    const GitHubRepositoryData* data = result.data();
    if (!present || !data) return;
    if (isInProgress(issueScan, path)) {
        services_.log.write(
            fmt::format("ISSUES scan result skipped for {}: bridge refresh pending", path));
        return;
    }
    const bool isCurrent = generation == issueScanGeneration_;
    const bool hasAny = !present->issues.empty() || !present->pullRequests.empty();
    if (!isCurrent && hasAny) return;
    takeGitHubData(*present, *data);
}

void RepositoryScanner::finishIssueScan(int generation, bool anySuccess) {
    const auto isCurrent = [&] { return generation == issueScanGeneration_; };
    if (isCurrent() && anySuccess) {
        publish(Property::lastIssueRefresh, &State::lastIssueRefresh,
                std::optional(services_.loop.wallNow()));
    }
    // Asked again: whoever was told of the time may have begun another pass.
    if (isCurrent()) publish(Property::issueScanInProgress, &State::issueScanInProgress, false);
}

// Equal data is no change, so that the views are spared an update.
void RepositoryScanner::takeGitHubData(const GitRepository& present,
                                       const GitHubRepositoryData& data) {
    if (present.issues == data.issues && present.pullRequests == data.pullRequests) return;
    GitRepository changed = present;
    changed.issues = data.issues;
    changed.pullRequests = data.pullRequests;
    replaceRepository(std::move(changed));
}

}  // namespace tarnbeck
