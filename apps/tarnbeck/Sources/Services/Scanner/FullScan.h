// One walk through all configured repositories, strictly one after the other, off the main thread.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Clock.h"
#include "GitCommand.h"
#include "GitRepository.h"
#include "RepositoryRefreshSupport.h"
#include "WorkQueues.h"

namespace tarnbeck {

// Takes a scan's result: absent when the repository could not be scanned. Called once, from any
// thread.
using ScanCompletion = std::function<void(std::optional<GitRepository>)>;

// Scans one repository; the path may begin with a tilde. Returns at once or blocks; called off the
// main thread.
using ScanRepositoryHandler = std::function<void(const std::string& path, ScanCompletion)>;

// When the path's issues and pull requests were last fetched, as far as it is known. Any thread.
using KnownFetchDate = std::function<std::optional<WallTime>(const std::string& path)>;
using FetchDates = std::unordered_map<std::string, WallTime>;  // by path

class FullScan : public std::enable_shared_from_this<FullScan> {
  public:
    struct Input {
        std::vector<std::string> repoPaths;        // as configured
        std::vector<std::string> configuredPaths;  // the same, tildes expanded
        SnapshotsByPath previousReposByPath;
        FailureCounts consecutiveScanFailuresByPath;
        bool refreshRemotes = false;
    };
    struct Result {
        std::vector<RepositorySnapshot> merged;
        FailureCounts consecutiveScanFailuresByPath;
        SnapshotsByPath previousReposByPath;  // this and the next as they were at the beginning
        FetchDates fetchDates;
    };
    struct Tools {
        WorkQueues& queues;
        ScanLog& log;
        const NameCollator& collator;
        GitRunner git;
        ScanRepositoryHandler scanRepositoryHandler;
        KnownFetchDate lastKnownIssueFetchDate;
    };

    FullScan(Tools tools, Input input, std::function<void(Result)> finished);

    // Begins on a background queue; `finished` is called there when all have been scanned.
    void start();
    // Scans no further repository and never finishes. Any thread.
    void cancel() { cancelled_ = true; }

  private:
    void gatherFetchDates();
    void scanOn();
    void fetch(const std::string& path);
    void keep(std::optional<GitRepository> repository);
    void finish();

    Tools tools_;
    Input input_;
    std::function<void(Result)> finished_;
    FetchDates fetchDates_;
    std::vector<RepositorySnapshot> scanned_;
    std::size_t next_ = 0;
    // Set by the first of two that meet after each scan: the handler's return and its completion.
    // The second one goes on, so that a handler that completes at once does not nest the calls.
    std::atomic<bool> halfDone_{false};
    std::atomic<bool> cancelled_{false};
};

}  // namespace tarnbeck
