// The one owner of the repository snapshots and of all that keeps them fresh. Views and faces
// observe it; every source of change ends in one of its doors. At most one full scan runs at a
// time, requests that arrive meanwhile become one, and a scan's results replace the list in one
// step, with the data of slower sources carried over.
//
// Main thread only, unless it says otherwise. One source file a topic.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "AppConfiguration.h"
#include "DependencyScanner.h"
#include "DependencyTools.h"
#include "FileEvents.h"
#include "FileSystemWatcher.h"
#include "FullScan.h"
#include "GitCommand.h"
#include "GitHubRepoScanResult.h"
#include "GitRepository.h"
#include "MainLoop.h"
#include "NameCollator.h"
#include "ObserverList.h"
#include "RepeatingTimer.h"
#include "RepositoryRefreshRequest.h"
#include "RepositoryRefreshSupport.h"
#include "ScanLog.h"
#include "WatchRoots.h"
#include "WeakAnchor.h"
#include "WorkQueues.h"

namespace tarnbeck {

class GitHubScanner;

class RepositoryScanner {
  public:
    // What observers are told of; see `State`.
    enum class Property {
        repositories,
        isScanning,
        dependencyScanInProgress,
        dependencyScanCompletedCount,
        dependencyScanTotalCount,
        issueScanInProgress,
        issueScanInProgressForRepo,
        dependencyScanInProgressForRepo,
        gitScanInProgressForRepo,
        lastIssueRefresh,
        lastScan,
        configuration,
    };

    struct State {
        std::vector<RepositorySnapshot> repositories;  // by name
        bool isScanning = false;
        bool dependencyScanInProgress = false;
        std::int64_t dependencyScanCompletedCount = 0;
        std::int64_t dependencyScanTotalCount = 0;
        bool issueScanInProgress = false;
        std::unordered_map<std::string, bool> issueScanInProgressForRepo;  // by path, as the next
        std::unordered_map<std::string, bool> dependencyScanInProgressForRepo;
        std::unordered_map<std::string, bool> gitScanInProgressForRepo;
        std::optional<WallTime> lastIssueRefresh;
        std::optional<WallTime> lastScan;
        AppConfiguration configuration;
    };

    // What the scanner works with. All must outlive it and its background work.
    struct Services {
        MainLoop& loop;
        WorkQueues& queues;
        ScanLog& log;
        const NameCollator& collator;
        GitRunner git;
        std::string home;
        FileEvents* fileEvents = nullptr;  // absent: no change is seen when it happens
    };

    // Asks GitHub for one repository's open issues and pull requests. Blocks; called off the main
    // thread, by several threads at once.
    using IssueScanHandler = std::function<GitHubRepoScanResult(const std::string& path,
                                                                GitHubIssueRefreshPolicy policy)>;

    // What the issue cache remembers of a repository from earlier runs.
    struct KnownGitHubData {
        // Asked on a background queue.
        KnownFetchDate lastKnownIssueFetchDate = [](const std::string&) { return std::nullopt; };
        // Asked on the main thread, when the dates have been asked for.
        std::function<std::optional<GitHubRepositoryData>(const std::string& path)> lastKnownData =
            [](const std::string&) { return std::nullopt; };
    };

    // Checks one repository's dependencies, past what is remembered with `forceRefresh`. Blocks for
    // as long as package managers take; called off the main thread, by several threads at once.
    using DependencyScanHandler =
        std::function<DependencySummary(const std::string& path, bool forceRefresh)>;
    // What to show of a repository's dependencies until they have been checked. Blocks on the disk.
    using InitialDependencySummary = std::function<DependencySummary(const std::string& path)>;

    struct Options {
        AppConfiguration configuration;
        bool autoStart = true;
        ScanRepositoryHandler scanRepositoryHandler;
        IssueScanHandler issueScanHandler = [](const std::string&, GitHubIssueRefreshPolicy) {
            return GitHubRepoScanResult{GitHubRepoScanResult::Skipped{}};
        };
        DependencyScanHandler dependencyScanHandler = [](const std::string&, bool) {
            return DependencySummary::notApplicable;
        };
        std::chrono::nanoseconds fileSystemRefreshMinimumInterval = std::chrono::seconds(5);
        std::chrono::nanoseconds issueRefreshInterval = std::chrono::seconds(300);  // 0: never
        KnownGitHubData knownGitHubData = {};
        // Keeps a configuration that the scanner changed; must return soon.
        std::function<void(const AppConfiguration&)> saveConfiguration =
            [](const AppConfiguration&) {};
        // Gets one line without a line feed when file events can't be had. Any thread.
        std::function<void(std::string_view message)> report = [](std::string_view) {};
    };

    RepositoryScanner(Services services, Options options);
    ~RepositoryScanner();
    RepositoryScanner(const RepositoryScanner&) = delete;
    RepositoryScanner& operator=(const RepositoryScanner&) = delete;

    // The slower sources. What is referred to must outlive the scanner and its background work.
    struct Sources {
        GitHubScanner& gitHub;
        DependencyTools dependencyTools;
        DependencyScanner::Memory dependencyMemory;
    };
    // What the running program makes its scanner of: real scans, started at once. `configuration`
    // is that of `loadInitialConfiguration`.
    static Options ordinaryOptions(const Services& services, const Sources& sources,
                                   const ConfigurationPlace& place, AppConfiguration configuration);

    // The first refresh, the watcher, and the timers. Done by the constructor with `autoStart`.
    void start();

    const State& state() const { return state_; }
    const std::vector<RepositorySnapshot>& repositories() const { return state_.repositories; }
    bool isScanning() const { return state_.isScanning; }
    const AppConfiguration& configuration() const { return state_.configuration; }
    void setConfiguration(AppConfiguration configuration);
    // Keeps the configuration as it is now, after all that was to be kept before; returns soon.
    void saveConfiguration() const { saveConfiguration_(state_.configuration); }
    // Shows these snapshots, which came by another road than a full scan.
    void setRepositories(std::vector<RepositorySnapshot> repositories);

    // The number of repositories that are not clean.
    std::int64_t dirtyRepoCount() const;

    // Told after each write of a property, once, whether or not the value is another one.
    using Observers = ObserverList<Property>;
    [[nodiscard]] Observers::Token observe(Observers::Observer observer);

    // Asks for a full scan and returns at once. During a scan the request joins those that wait;
    // one further scan, 300 ms after this one, serves them all.
    void requestRefresh(const RepositoryRefreshRequest& request);

    // Begins to ask for a periodic refresh anew, by the configured interval.
    void startPeriodicScan();

    // --- Issues and pull requests (RepositoryScanner+IssueScans.cpp) ---

    // Asks GitHub about all repositories, one after the other in the background, where the
    // configuration shows issues. The pass before this one is superseded.
    void refreshIssues(bool forceRefresh);
    // Begins to ask for forced issue refreshes anew, where the configuration shows issues.
    void startPeriodicIssueRefresh();
    // After a change of the configuration: both of the above.
    void refreshIssueMonitoring();
    // The paths that a person is looking at, in the order on the screen: asked about first.
    void setPrioritizedIssueRepoPaths(std::vector<std::string> paths);
    // Those of the list that are looked at, in their order, then the rest by name.
    std::vector<RepositorySnapshot> prioritizedRepositories(
        std::vector<RepositorySnapshot> from) const;

    // --- Dependencies (RepositoryScanner+DependencyScans.cpp) ---

    // Checks one repository's dependencies past what is remembered, in the background. Any number
    // of calls while a check of it runs lead to one more.
    void refreshDependenciesForRepo(const std::string& path);

    // --- One repository (RepositoryScanner+RepoRefresh.cpp). All return at once. ---

    // Scans its git state anew. Any number of calls while it runs lead to one more run.
    void refreshGitForRepo(const std::string& path);
    // Asks GitHub about it, past the cache. Any number of calls while it runs lead to one more.
    void refreshIssuesForRepo(const std::string& path);
    // Brings a branch that is behind its upstream up to date, by fast-forward only; leaves a
    // dirty, detached or diverged repository alone. Nothing while its git state is being scanned.
    void syncRepo(const std::string& path);
    // Configures another repository and asks for a full scan. Nothing for one that is configured.
    void addRepo(const std::string& path);

    // --- File events (RepositoryScanner+FileSystemRefresh.cpp) ---

    // Decides anew what is watched; restarts the watcher when that has changed, or with `force`.
    void refreshFileWatchingPaths(bool force);
    // Something changed at these paths; an empty list: anything may have.
    void requestFileSystemRefresh(std::vector<std::string> changedPaths);

    // What is watched for the configured paths and for the worktrees (bare ones apart) of the
    // repositories: those that are folders now, sorted. Asks the file system; any thread.
    static std::vector<std::string> buildWatchPaths(const WatchSubject& subject);
    // Leads from each configured path to itself, and from each worktree to its repository. Pure.
    static WatchRootMap buildWatchRootMapping(const WatchSubject& subject);
    // The repositories that the changes concern, by the innermost watched folder around each;
    // absent when there is no change, or one that lies in no watched folder: then only a full scan
    // will do. Pure.
    static std::optional<std::set<std::string>> repoPathsAffected(
        const std::set<std::string>& byChangedPaths, const WatchRootMap& watchRootToRepoPath);

    // How many background passes of each kind have been due so far.
    int dependencyScanGeneration() const { return dependencyScanGeneration_; }
    int issueScanGeneration() const { return issueScanGeneration_; }

    // The stored configuration, filled by discovery on a first start. Blocks on the disk.
    static AppConfiguration loadInitialConfiguration(const ConfigurationPlace& place);

    // --- The scan of one repository (RepositoryScanner+StaticScan.cpp); any thread. ---

    struct StaticScan {
        MainLoop& loop;  // for the pauses before a retry
        WorkQueues& queues;
        ScanLog& log;
        GitRunner git;
        std::string home;
        InitialDependencySummary initialDependencySummary = [](const std::string&) {
            return DependencySummary::notApplicable;
        };
    };
    struct ScanRequest {
        std::string at;  // may begin with a tilde
        int retryCount = 0;
    };
    // Runs about a dozen git commands, none of which writes, and completes with the snapshot; with
    // nothing when there is no ".git", or when git failed twice. Blocks while git runs, so never
    // from the main thread. A first failure is tried again after a pause: then this returns at
    // once, and the completion comes from a background queue.
    static void scanRepositoryImpl(const StaticScan& tools, const ScanRequest& request,
                                   const ScanCompletion& completion);

    // Every "owner/repo" on GitHub in the output of `remote -v`, lower-cased. Pure.
    static std::set<std::string> gitHubOwnerRepos(std::string_view fromRemoteOutput);

  private:
    template <class Value>
    void publish(Property property, Value State::*field, Value value);
    // The entry in `repositories`; null when the path has none.
    RepositorySnapshot repositoryAt(const std::string& path) const;
    // Puts a snapshot in the place of the one with its path.
    void replaceRepository(GitRepository repository);
    // A kind of operation on one repository: the published map of those that run, by path.
    struct Operation {
        Property property;
        std::unordered_map<std::string, bool> State::*inProgress;
    };
    static constexpr Operation gitScan{Property::gitScanInProgressForRepo,
                                       &State::gitScanInProgressForRepo};
    static constexpr Operation issueScan{Property::issueScanInProgressForRepo,
                                         &State::issueScanInProgressForRepo};
    static constexpr Operation dependencyScan{Property::dependencyScanInProgressForRepo,
                                              &State::dependencyScanInProgressForRepo};
    bool isInProgress(const Operation& operation, const std::string& path) const;
    void setInProgress(const Operation& operation, const std::string& path, bool running);

    void queueRefresh(const RepositoryRefreshRequest& request);
    void startFullScan(const RepositoryRefreshRequest& request);
    FullScan::Input fullScanInput(const RepositoryRefreshRequest& request) const;
    void finishFullScan(FullScan::Result& result);
    void replaceRepositories(FullScan::Result& result);
    void takeLastIssueRefreshFrom(const FetchDates& fetchDates);
    void startBackgroundPasses(const RepositoryRefreshRequest& request);
    std::optional<RepositoryRefreshRequest> takeQueuedRequest();
    void requestRefreshAfterPause(const RepositoryRefreshRequest& request);

    void scheduleIssueScan(std::vector<RepositorySnapshot> repositories, int generation,
                           GitHubIssueRefreshPolicy policy);
    void applyIssueResult(const std::string& path, const GitHubRepoScanResult& result,
                          int generation);
    void finishIssueScan(int generation, bool anySuccess);
    void takeGitHubData(const GitRepository& present, const GitHubRepositoryData& data);

    // One walk over the repositories that have projects.
    struct DependencyPass {
        int generation;
        std::vector<std::string> paths;
    };
    void scheduleDependencyScan(const std::vector<RepositorySnapshot>& repositories,
                                int generation);
    void continueDependencyScan(const std::shared_ptr<const DependencyPass>& pass,
                                std::size_t index);
    void scanDependencies(const std::shared_ptr<const DependencyPass>& pass, std::size_t index);
    bool mayScanDependencies(const DependencyPass& pass, const std::string& path);
    void applyDependencyResult(const DependencyPass& pass, std::size_t index,
                               const DependencySummary& summary);
    void refreshDependenciesWhereQueued(const std::string& path);
    // False when the repository has gone.
    bool takeDependencies(const std::string& path, const DependencySummary& summary);
    void setDependencyScanCompletedCount(std::size_t count);
    bool isCurrent(const DependencyPass& pass) const;
    // `apply(scanner, summary)` is called on the main thread.
    template <class Apply>
    void askForDependencies(const std::string& path, bool forceRefresh, Apply apply);

    void applyGitRefresh(const std::string& path, std::optional<GitRepository>& scanned);
    void applyIssueRefresh(const std::string& path, const GitHubRepoScanResult& result);
    void applySync(const std::string& path, std::optional<GitRepository>& scanned);

    void startFileWatching();
    WatchSubject watchSubject() const;
    void applyWatchPaths(std::vector<std::string> paths, bool force);
    void forgetPendingFileSystemEvents();
    std::chrono::nanoseconds timeToNextFileSystemRefresh() const;
    void scheduleDelayedFileSystemRefresh(std::chrono::nanoseconds after);
    void performFileSystemRefresh();
    std::optional<std::set<std::string>> repositoriesToRefreshFor(
        const std::set<std::string>& changedPaths) const;

    const Services services_;
    const ScanRepositoryHandler scanRepositoryHandler_;
    const IssueScanHandler issueScanHandler_;
    const DependencyScanHandler dependencyScanHandler_;
    const std::chrono::nanoseconds fileSystemRefreshMinimumInterval_;
    const std::chrono::nanoseconds issueRefreshInterval_;
    const KnownGitHubData knownGitHubData_;
    const std::function<void(const AppConfiguration&)> saveConfiguration_;
    const std::function<void(std::string_view)> report_;
    State state_;
    Observers observers_;
    std::optional<RepeatingTimer> scanTimer_;
    std::optional<RepeatingTimer> issueRefreshTimer_;
    std::optional<FileSystemWatcher> fileWatcher_;
    bool scanRequestedWhileScanning_ = false;
    std::optional<RepositoryRefreshRequest> queuedRefreshRequest_;
    std::optional<RepositoryRefreshRequest> activeRefreshRequest_;
    std::weak_ptr<FullScan> fullScan_;
    int dependencyScanGeneration_ = 0;
    int issueScanGeneration_ = 0;
    FailureCounts consecutiveScanFailuresByPath_;
    std::vector<std::string> watchedPaths_;
    WatchRootMap watchRootToRepoPath_;
    Timer delayedFileSystemRefreshTask_;
    std::optional<WallTime> lastFileSystemRefreshAt_;
    std::set<std::string> pendingFileSystemEventPaths_;
    bool pendingFileSystemFullScan_ = false;
    std::vector<std::string> prioritizedIssueRepoPaths_;
    std::unordered_set<std::string> queuedGitRefreshPaths_;
    std::unordered_set<std::string> queuedIssueRefreshPaths_;
    std::unordered_set<std::string> queuedDependencyRefreshPaths_;
    // True when the scanner has gone: what runs in the background ends early.
    const std::shared_ptr<std::atomic<bool>> gone_ = std::make_shared<std::atomic<bool>>(false);
    WeakAnchor<RepositoryScanner> anchor_{*this};
};

template <class Value>
void RepositoryScanner::publish(Property property, Value State::*field, Value value) {
    state_.*field = std::move(value);
    Observers::tell(observers_.current(), property);
}

}  // namespace tarnbeck
