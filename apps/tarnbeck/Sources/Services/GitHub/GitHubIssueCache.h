// The last answers from GitHub, a repository at a time: in memory for all readers, and in a file
// for the next run. Entries are never removed. Any number of threads at once.
//
// Nobody waits for the encoding or for the disk: a store replaces the entry in memory and lets a
// queue write the file. Stores that come while a writing waits are written with it. The file is
// read once, by whoever touches the cache first; one that can't be read counts as absent. Errors
// of writing leave the old file, and are otherwise without consequence.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Clock.h"
#include "GitHubIssueCacheFormat.h"
#include "GitHubRepositoryData.h"
#include "ScanLog.h"
#include "WorkQueues.h"

namespace tarnbeck {

class GitHubIssueCache {
  public:
    using CacheEntry = GitHubIssueCacheFormat::CacheEntry;

    // As old as this, an entry does not count as an answer any more.
    static constexpr std::chrono::minutes lifetime{15};

    struct Tools {
        ScanLog& log;
        const Clock& clock;
        WorkQueues& queues;
    };

    // Does not touch the file yet. What `tools` refers to must outlive the cache.
    GitHubIssueCache(std::string cacheFile, Tools tools);
    // Waits until what was stored is on disk.
    ~GitHubIssueCache();
    GitHubIssueCache(const GitHubIssueCache&) = delete;
    GitHubIssueCache& operator=(const GitHubIssueCache&) = delete;

    // The entry of a repository, however old.
    std::optional<CacheEntry> entry(const std::string& path) const;
    // Its lists, where they are younger than `lifetime`. An entry from a time to come (the clock
    // was turned back) is young.
    std::optional<GitHubRepositoryData> cachedData(const std::string& path) const;

    // Makes `data` the repository's entry, fetched now. Two empty lists never replace an entry that
    // has content: the log says so, and the entry stays as it was.
    void store(const GitHubRepositoryData& data, const std::string& path);

    // Waits until what was stored so far is on disk. Not from a task of a serial queue.
    void drain();

  private:
    using Entries = GitHubIssueCacheFormat::Entries;

    std::shared_ptr<const Entries> entries() const;
    void publish(std::shared_ptr<const Entries> entries) const;
    // Absent when the entry was replaced; where the guard forbids that, the data that stays.
    std::optional<GitHubRepositoryData> replaceEntry(const std::string& path, CacheEntry entry);
    void persistSoon();
    void persistCache();

    const std::string cacheFile_;
    const Tools tools_;
    mutable std::once_flag loaded_;
    std::mutex storing_;        // held by who makes the next state out of the present one
    mutable std::mutex mutex_;  // held for a moment only, since readers wait for it
    mutable std::shared_ptr<const Entries> cache_;  // guarded by `mutex_`
    std::atomic<bool> persistWaits_ = false;
    GitHubIssueCacheFormat::Encoder encoder_;  // touched on the queue only
    std::shared_ptr<SerialQueue> queue_;
};

}  // namespace tarnbeck
