// The one owner of the repository snapshots and of all that keeps them fresh. Views and faces
// observe it; every source of change ends in one of its doors. At most one full scan runs at a
// time, requests that arrive meanwhile become one, and a scan's results replace the list in one
// step, with the data of slower sources carried over.
//
// Main thread only, unless it says otherwise. One source file a topic.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "AppConfiguration.h"
#include "FullScan.h"
#include "GitCommand.h"
#include "GitHubRepositoryData.h"
#include "GitRepository.h"
#include "MainLoop.h"
#include "NameCollator.h"
#include "ObserverList.h"
#include "RepeatingTimer.h"
#include "RepositoryRefreshRequest.h"
#include "RepositoryRefreshSupport.h"
#include "ScanLog.h"
#include "WeakAnchor.h"
#include "WorkQueues.h"

namespace tarnbeck {

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
    };

    // What the issue cache remembers of a repository from earlier runs; asked on the main thread.
    struct KnownGitHubData {
        std::function<std::optional<WallTime>(const std::string& path)> lastKnownIssueFetchDate =
            [](const std::string&) { return std::nullopt; };
        std::function<std::optional<GitHubRepositoryData>(const std::string& path)> lastKnownData =
            [](const std::string&) { return std::nullopt; };
    };

    struct Options {
        AppConfiguration configuration;
        bool autoStart = true;
        ScanRepositoryHandler scanRepositoryHandler;
        KnownGitHubData knownGitHubData = {};
    };

    RepositoryScanner(Services services, Options options);
    ~RepositoryScanner();
    RepositoryScanner(const RepositoryScanner&) = delete;
    RepositoryScanner& operator=(const RepositoryScanner&) = delete;

    // What the running program makes its scanner of: real scans, started at once. `configuration`
    // is that of `loadInitialConfiguration`.
    static Options ordinaryOptions(const Services& services, AppConfiguration configuration);

    // The first refresh, and the pulse from then on. Done by the constructor with `autoStart`.
    void start();

    const State& state() const { return state_; }
    const std::vector<RepositorySnapshot>& repositories() const { return state_.repositories; }
    bool isScanning() const { return state_.isScanning; }
    const AppConfiguration& configuration() const { return state_.configuration; }
    void setConfiguration(AppConfiguration configuration);
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
    using FetchDates = std::unordered_map<std::string, WallTime>;

    template <class Value>
    void publish(Property property, Value State::*field, Value value);

    void queueRefresh(const RepositoryRefreshRequest& request);
    void startFullScan(const RepositoryRefreshRequest& request);
    FullScan::Input fullScanInput(const RepositoryRefreshRequest& request) const;
    FetchDates knownFetchDates(const std::vector<std::string>& configuredPaths) const;
    void finishFullScan(FullScan::Result& result, const FetchDates& fetchDates);
    void replaceRepositories(std::vector<RepositorySnapshot> merged);
    void takeLastIssueRefreshFrom(const FetchDates& fetchDates);
    void startBackgroundPasses(const RepositoryRefreshRequest& request);
    std::optional<RepositoryRefreshRequest> takeQueuedRequest();
    void requestRefreshAfterPause(const RepositoryRefreshRequest& request);

    Services services_;
    ScanRepositoryHandler scanRepositoryHandler_;
    KnownGitHubData knownGitHubData_;
    State state_;
    Observers observers_;
    std::optional<RepeatingTimer> scanTimer_;
    bool scanRequestedWhileScanning_ = false;
    std::optional<RepositoryRefreshRequest> queuedRefreshRequest_;
    std::optional<RepositoryRefreshRequest> activeRefreshRequest_;
    std::weak_ptr<FullScan> fullScan_;
    int dependencyScanGeneration_ = 0;
    int issueScanGeneration_ = 0;
    FailureCounts consecutiveScanFailuresByPath_;
    WeakAnchor<RepositoryScanner> anchor_{*this};
};

}  // namespace tarnbeck
