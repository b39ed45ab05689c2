#include "DependencyCache.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "AtomicFile.h"
#include "DependencyScanner+Fingerprints.h"
#include "FileSystem.h"
#include "Paths.h"

namespace tarnbeck {
namespace {

bool isOfThisScheme(const DependencyCache::CacheEntry& entry) {
    return entry.fingerprint.starts_with(DependencyScanner::fingerprintScheme);
}

}  // namespace

DependencyCache::DependencyCache(std::string cacheFileURL, Tools tools)
    : cacheFileURL_(std::move(cacheFileURL)),
      tools_(tools),
      cacheQueue_(tools.queues.serial("com.tarnbeck.dependency-cache")) {}

DependencyCache::~DependencyCache() {
    cacheQueue_->drain();
}

std::string DependencyCache::ordinaryFile(const std::string& home) {
    return home + "/.config/tarnbeck/dependency-cache.json";
}

void DependencyCache::loadIfNeeded() {
    std::call_once(cacheLoaded_, [this] {
        const Result<std::string> bytes = readFile(cacheFileURL_);
        auto found = bytes ? DependencyCacheFormat::decoded(*bytes) : std::nullopt;
        if (!found) return;
        const std::lock_guard lock(mutex_);
        cache_ = *std::move(found);
    });
}

std::optional<DependencySummary> DependencyCache::cachedSummary(const std::string& repoPath,
                                                                const std::string& fingerprint) {
    loadIfNeeded();
    const std::lock_guard lock(mutex_);
    const auto found = cache_.find(repoPath);
    if (found == cache_.end()) return std::nullopt;
    const CacheEntry& entry = found->second;
    if (entry.fingerprint != fingerprint) return std::nullopt;
    if (tools_.loop.wallNow() - entry.checkedAt >= summaryLifetime) return std::nullopt;
    if (entry.summary.hasErrors()) return std::nullopt;
    return entry.summary;
}

std::optional<DependencySummary> DependencyCache::lastKnownSummary(const std::string& repoPath,
                                                                   bool includeErrors) {
    loadIfNeeded();
    const std::lock_guard lock(mutex_);
    const auto found = cache_.find(repoPath);
    if (found == cache_.end() || !isOfThisScheme(found->second)) return std::nullopt;
    const DependencySummary& summary = found->second.summary;
    if (!includeErrors && summary.hasErrors()) return std::nullopt;
    return summary;
}

void DependencyCache::store(const DependencySummary& summary, const std::string& repoPath,
                            const std::string& fingerprint) {
    loadIfNeeded();
    CacheEntry entry{
        .fingerprint = fingerprint, .checkedAt = tools_.loop.wallNow(), .summary = summary};
    {
        const std::lock_guard lock(mutex_);
        if (isClosed_) return;
        cache_[repoPath] = std::move(entry);
        pruneStaleEntries();
    }
    schedulePersist();
}

void DependencyCache::pruneStaleEntries() {
    std::erase_if(cache_, [](const auto& entry) { return !isOfThisScheme(entry.second); });
    if (cache_.size() <= mostSummaries) return;
    std::vector<Entries::iterator> byAge;
    byAge.reserve(cache_.size());
    for (auto entry = cache_.begin(); entry != cache_.end(); ++entry) byAge.push_back(entry);
    std::ranges::stable_sort(byAge, {}, [](const auto& entry) { return entry->second.checkedAt; });
    byAge.resize(cache_.size() - mostSummaries);
    for (const auto entry : byAge) cache_.erase(entry);
}

std::optional<DependencyMarkers> DependencyCache::markers(const std::string& repoPath,
                                                          const std::string& structureFingerprint) {
    const WallTime now = tools_.loop.wallNow();
    const std::lock_guard lock(mutex_);
    const auto found = markersCache_.find(repoPath);
    if (found == markersCache_.end()) return std::nullopt;
    MarkersCacheEntry& entry = found->second;
    if (entry.structureFingerprint != structureFingerprint ||
        now - entry.cachedAt >= markersLifetime) {
        markersCache_.erase(found);
        return std::nullopt;
    }
    entry.lastAccessedAt = now;
    return entry.markers;
}

void DependencyCache::storeMarkers(const DependencyMarkers& markers, const std::string& repoPath,
                                   const std::string& structureFingerprint) {
    const WallTime now = tools_.loop.wallNow();
    const std::lock_guard lock(mutex_);
    if (markersCache_.size() >= mostMarkers) evictLRUMarkersCacheEntry();
    markersCache_[repoPath] = {.markers = markers,
                               .structureFingerprint = structureFingerprint,
                               .cachedAt = now,
                               .lastAccessedAt = now};
}

void DependencyCache::evictLRUMarkersCacheEntry() {
    const auto oldest = std::ranges::min_element(
        markersCache_, {}, [](const auto& entry) { return entry.second.lastAccessedAt; });
    if (oldest != markersCache_.end()) markersCache_.erase(oldest);
}

void DependencyCache::invalidateCache(const std::string& repoPath) {
    loadIfNeeded();
    {
        const std::lock_guard lock(mutex_);
        cache_.erase(repoPath);
        markersCache_.erase(repoPath);
    }
    schedulePersist();
}

void DependencyCache::invalidateMarkersCache(const std::string& repoPath) {
    const std::lock_guard lock(mutex_);
    markersCache_.erase(repoPath);
}

// Each call puts the writing off. The timer belongs to the main thread.
void DependencyCache::schedulePersist() {
    persistWaits_ = true;
    tools_.loop.post(anchor_.guarded([](DependencyCache& self) {
        if (!self.persistWaits_) return;  // drained meanwhile
        self.persistWorkItem_ = self.tools_.loop.after(
            delayBeforeWrite, self.anchor_.guarded([](DependencyCache& later) {
                later.cacheQueue_->post([&later] { later.persistCacheNow(); });
            }));
    }));
}

void DependencyCache::persistCacheNow() {
    persistWaits_ = false;  // whoever stores from here on asks for a writing of their own
    Entries entries;
    {
        const std::lock_guard lock(mutex_);
        entries = cache_;
    }
    // Where the folder can't be made, writing fails too, unless it was there all the same.
    createDirectories(std::string(parentPath(cacheFileURL_)), 0700);
    writeFileAtomically(cacheFileURL_, DependencyCacheFormat::encoded(entries), 0600);
}

void DependencyCache::drain() {
    persistWithoutDelay();
    cacheQueue_->drain();
}

void DependencyCache::close() {
    {
        const std::lock_guard lock(mutex_);
        isClosed_ = true;
    }
    persistWithoutDelay();
}

void DependencyCache::persistWithoutDelay() {
    persistWorkItem_.cancel();
    if (persistWaits_) cacheQueue_->post([this] { persistCacheNow(); });
}

}  // namespace tarnbeck
