// What the dependency checks remember: finished summaries, in memory and in a file for the next
// run, and the lists of projects, in memory only. Any number of threads at once.
//
// The file is one JSON object from repository path to entry; dates are seconds since 2001. It is
// read once, by whoever touches the summaries first; one that can't be read counts as absent. A
// store lets a queue write it two seconds later, and each further store puts that off, so that a
// burst writes once. Nobody waits for the encoding or for the disk. Errors of writing leave the old
// file, and are otherwise without consequence.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "DependencyCacheFormat.h"
#include "DependencyMarkers.h"
#include "DependencyStatus.h"
#include "MainLoop.h"
#include "WeakAnchor.h"
#include "WorkQueues.h"

namespace tarnbeck {

class DependencyCache {
  public:
    using CacheEntry = DependencyCacheFormat::CacheEntry;

    static constexpr std::chrono::seconds summaryLifetime{3600};  // as old as this, it has expired
    static constexpr std::chrono::seconds markersLifetime{300};
    static constexpr std::size_t mostSummaries = 128;
    static constexpr std::size_t mostMarkers = 64;
    static constexpr std::chrono::milliseconds delayBeforeWrite{2000};

    // Both must outlive the cache.
    struct Tools {
        MainLoop& loop;
        WorkQueues& queues;
    };

    // Does not touch the file yet. Made and destroyed on the main thread.
    DependencyCache(std::string cacheFileURL, Tools tools);
    // Waits for a writing that has begun; what was to be written later is lost.
    ~DependencyCache();
    DependencyCache(const DependencyCache&) = delete;
    DependencyCache& operator=(const DependencyCache&) = delete;

    // `.config/tarnbeck/dependency-cache.json` under the home.
    static std::string ordinaryFile(const std::string& home);

    const std::string& cacheFileURL() const { return cacheFileURL_; }

    // A summary that is as good as a new check: of this fingerprint, young, and without errors.
    std::optional<DependencySummary> cachedSummary(const std::string& repoPath,
                                                   const std::string& fingerprint);
    // The last summary of a repository, however old.
    std::optional<DependencySummary> lastKnownSummary(const std::string& repoPath,
                                                      bool includeErrors);
    // Makes `summary` the repository's entry, stored now. Entries of older schemes go, and beyond
    // the limit the oldest ones.
    void store(const DependencySummary& summary, const std::string& repoPath,
               const std::string& fingerprint);

    // The list of projects that was kept with this structure, while it is young.
    std::optional<DependencyMarkers> markers(const std::string& repoPath,
                                             const std::string& structureFingerprint);
    // Beyond the limit the one goes that was asked for least recently.
    void storeMarkers(const DependencyMarkers& markers, const std::string& repoPath,
                      const std::string& structureFingerprint);

    // Forgets all of a repository.
    void invalidateCache(const std::string& repoPath);
    // Forgets its list of projects.
    void invalidateMarkersCache(const std::string& repoPath);

    // Writes what still waits to be written, and waits for it: for the end of a program that shall
    // not lose it. Main thread.
    void drain();

    // Takes no more summaries from now on, and begins to write what waits without waiting for it:
    // for the end of a program, before checks that are cut off could leave something here. Main
    // thread.
    void close();

  private:
    using Entries = DependencyCacheFormat::Entries;
    struct MarkersCacheEntry {
        DependencyMarkers markers;
        std::string structureFingerprint;
        WallTime cachedAt;
        WallTime lastAccessedAt;
    };

    void loadIfNeeded();
    void pruneStaleEntries();          // under `mutex_`
    void evictLRUMarkersCacheEntry();  // under `mutex_`
    void schedulePersist();
    void persistCacheNow();
    void persistWithoutDelay();

    const std::string cacheFileURL_;
    const Tools tools_;
    std::once_flag cacheLoaded_;
    std::mutex mutex_;       // held for a moment only
    bool isClosed_ = false;  // guarded by `mutex_`, as the next two
    Entries cache_;
    std::unordered_map<std::string, MarkersCacheEntry> markersCache_;
    Timer persistWorkItem_;                   // main thread
    std::atomic<bool> persistWaits_ = false;  // something is not in the file yet
    std::shared_ptr<SerialQueue> cacheQueue_;
    WeakAnchor<DependencyCache> anchor_{*this};
};

}  // namespace tarnbeck
