// What is done to one repository: each kind of operation runs once at a time for a path, off the
// main thread, and changes that repository's entry alone.
#include <memory>
#include <utility>

#include <fmt/format.h>

#include "Overloaded.h"
#include "Paths.h"
#include "RepositoryScanner.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;

constexpr auto remoteTimeout = 15s;

using Scanned = std::optional<GitRepository>;

// Fetches, pulls what can be fast-forwarded, and ends with a fresh snapshot.
class Sync : public std::enable_shared_from_this<Sync> {
  public:
    struct Tools {
        WorkQueues& queues;
        GitRunner git;
        ScanRepositoryHandler scan;
        std::shared_ptr<std::atomic<bool>> gone;
    };
    using Finished = std::function<void(Scanned)>;

    Sync(Tools tools, std::string path, Finished finished)
        : tools_(std::move(tools)), path_(std::move(path)), finished_(std::move(finished)) {}

    void start() {
        inBackground([](Sync& self) {
            self.git({"fetch", "--prune", "--quiet"});
            self.scanThen([](Sync& sync, const Scanned& fresh) { sync.pullWhere(fresh); });
        });
    }

  private:
    // The decision rests on the picture after the fetch, not on what was on screen.
    void pullWhere(const Scanned& fresh) {
        const bool canPull = fresh && !fresh->gitConfigurationIssue &&
                             fresh->syncStatus.is<GitSyncStatus::Behind>() &&
                             fresh->uncommittedChanges.empty() && !fresh->isDetachedHead;
        inBackground([canPull](Sync& self) {
            if (canPull) self.git({"pull", "--ff-only"});
            self.scanThen([](Sync& sync, Scanned last) { sync.finished_(std::move(last)); });
        });
    }

    void git(const std::vector<std::string>& words) {
        std::vector<std::string> all = {"-C", path_};
        all.insert(all.end(), words.begin(), words.end());
        tools_.git({.executableArgs = std::move(all),
                    .logRepoPath = path_,
                    .logicalArgs = words,
                    .timeout = remoteTimeout,
                    .allowEmpty = true});
    }

    template <class Next>
    void scanThen(Next next) {
        tools_.scan(path_, [self = shared_from_this(), next](Scanned scanned) {
            next(*self, std::move(scanned));
        });
    }

    template <class Step>
    void inBackground(Step step) {
        tools_.queues.userInitiated([self = shared_from_this(), step] {
            if (!*self->tools_.gone) step(*self);
        });
    }

    const Tools tools_;
    const std::string path_;
    const Finished finished_;
};

// Takes what a background step found to the main thread.
template <class Apply>
ScanCompletion onMainThread(MainLoop& loop, Apply apply) {
    return [&loop, apply](Scanned scanned) {
        loop.post(
            [apply, scanned = std::make_shared<Scanned>(std::move(scanned))] { apply(*scanned); });
    };
}

}  // namespace

void RepositoryScanner::refreshGitForRepo(const std::string& path) {
    if (!repositoryAt(path)) return;
    if (isInProgress(gitScan, path)) {
        queuedGitRefreshPaths_.insert(path);
        return;
    }
    setInProgress(gitScan, path, true);
    services_.queues.userInitiated(
        [path, scan = scanRepositoryHandler_,
         completion = onMainThread(
             services_.loop, anchor_.guarded([path](RepositoryScanner& self, Scanned& scanned) {
                 self.applyGitRefresh(path, scanned);
             }))] { scan(path, completion); });
}

void RepositoryScanner::applyGitRefresh(const std::string& path, Scanned& scanned) {
    const RepositorySnapshot present = repositoryAt(path);
    if (!present) {
        setInProgress(gitScan, path, false);
        return;
    }
    if (scanned) {
        replaceRepository(
            RepositoryRefreshSupport::carryingOverFrom(*present, *std::move(scanned)));
        refreshFileWatchingPaths(false);
    }
    setInProgress(gitScan, path, false);
    if (queuedGitRefreshPaths_.erase(path) > 0) refreshGitForRepo(path);
}

void RepositoryScanner::syncRepo(const std::string& path) {
    const RepositorySnapshot present = repositoryAt(path);
    if (!present || isInProgress(gitScan, path)) return;
    if (!present->syncStatus.is<GitSyncStatus::Behind>()) return;
    setInProgress(gitScan, path, true);
    const auto apply = anchor_.guarded(
        [path](RepositoryScanner& self, Scanned& scanned) { self.applySync(path, scanned); });
    std::make_shared<Sync>(Sync::Tools{.queues = services_.queues,
                                       .git = services_.git,
                                       .scan = scanRepositoryHandler_,
                                       .gone = gone_},
                           path, onMainThread(services_.loop, apply))
        ->start();
}

void RepositoryScanner::applySync(const std::string& path, Scanned& scanned) {
    const RepositorySnapshot present = repositoryAt(path);
    if (present && scanned) {
        replaceRepository(
            RepositoryRefreshSupport::carryingOverFrom(*present, *std::move(scanned)));
        refreshDependenciesForRepo(path);  // a pull may have changed the manifests
    }
    setInProgress(gitScan, path, false);
}

void RepositoryScanner::refreshIssuesForRepo(const std::string& path) {
    if (!repositoryAt(path) || !configuration().showIssues) return;
    if (isInProgress(issueScan, path)) {
        services_.log.write("ISSUES targeted refresh queued while running for " + path);
        queuedIssueRefreshPaths_.insert(path);
        return;
    }
    setInProgress(issueScan, path, true);
    const auto apply =
        anchor_.guarded([path](RepositoryScanner& self, const GitHubRepoScanResult& result) {
            self.applyIssueRefresh(path, result);
        });
    services_.queues.utility(
        [path, handler = issueScanHandler_, &loop = services_.loop, apply, gone = gone_] {
            if (*gone) return;
            loop.post([apply, result = handler(path, GitHubIssueRefreshPolicy::forceRefresh)] {
                apply(result);
            });
        });
}

void RepositoryScanner::applyIssueRefresh(const std::string& path,
                                          const GitHubRepoScanResult& result) {
    std::visit(Overloaded{
                   [&](const GitHubRepoScanResult::Success& success) {
                       const RepositorySnapshot present = repositoryAt(path);
                       if (!present) return;
                       services_.log.write(fmt::format(
                           "ISSUES targeted refresh success for {}: {} issues, {} PRs", path,
                           success.data.issues.size(), success.data.pullRequests.size()));
                       takeGitHubData(*present, success.data);
                   },
                   [&](const GitHubRepoScanResult::Skipped&) {
                       services_.log.write("ISSUES targeted refresh skipped for " + path);
                   },
                   [&](const GitHubRepoScanResult::Failed&) {
                       services_.log.write("ISSUES targeted refresh failed for " + path);
                   },
               },
               result.value);
    setInProgress(issueScan, path, false);
    if (queuedIssueRefreshPaths_.erase(path) > 0) refreshIssuesForRepo(path);
}

void RepositoryScanner::addRepo(const std::string& path) {
    AppConfiguration changed = configuration();
    changed.repoPaths.push_back(expandingTilde(path, services_.home));
    changed.dropRepeatedRepoPaths(services_.home);
    if (changed.repoPaths.size() == configuration().repoPaths.size()) return;
    saveConfiguration_(changed);
    setConfiguration(std::move(changed));
    refreshFileWatchingPaths(true);
    requestRefresh(RepositoryRefreshRequest::byHand());
}

}  // namespace tarnbeck
