#include "GitHubIssueCache.h"

#include <utility>

#include <fmt/format.h>

#include "AtomicFile.h"
#include "FileSystem.h"
#include "Paths.h"

namespace tarnbeck {
namespace {

bool isEmpty(const GitHubRepositoryData& data) {
    return data.issues.empty() && data.pullRequests.empty();
}

}  // namespace

GitHubIssueCache::GitHubIssueCache(std::string cacheFile, Tools tools)
    : cacheFile_(std::move(cacheFile)),
      tools_(tools),
      queue_(tools.queues.serial("com.tarnbeck.github-cache")) {}

GitHubIssueCache::~GitHubIssueCache() {
    drain();
}

void GitHubIssueCache::drain() {
    queue_->drain();
}

void GitHubIssueCache::loadOnce() const {
    std::call_once(loaded_, [this] {
        const Result<std::string> bytes = readFile(cacheFile_);
        if (!bytes) return;
        auto entries = GitHubIssueCacheFormat::decoded(*bytes);
        const std::lock_guard lock(mutex_);
        if (entries) cache_ = *std::move(entries);
    });
}

std::optional<GitHubIssueCache::CacheEntry> GitHubIssueCache::entry(const std::string& path) const {
    loadOnce();
    const std::lock_guard lock(mutex_);
    const auto found = cache_.find(path);
    if (found == cache_.end()) return std::nullopt;
    return found->second;
}

std::optional<GitHubRepositoryData> GitHubIssueCache::cachedData(const std::string& path) const {
    const auto found = entry(path);
    if (!found || tools_.clock.wallNow() - found->fetchedAt >= lifetime) return std::nullopt;
    return found->data;
}

void GitHubIssueCache::store(const GitHubRepositoryData& data, const std::string& path) {
    loadOnce();
    CacheEntry entry{.data = data, .fetchedAt = tools_.clock.wallNow()};
    const auto kept = exchangeEntry(path, entry);
    if (!kept) return persistSoon();
    tools_.log.write(
        fmt::format("ISSUES CACHE GUARD: not caching empty result for {} (had {} issues, {} PRs)",
                    path, kept->issues.size(), kept->pullRequests.size()));
}

std::optional<GitHubRepositoryData> GitHubIssueCache::exchangeEntry(const std::string& path,
                                                                    CacheEntry& entry) {
    const std::lock_guard lock(mutex_);
    const auto [present, isNew] = cache_.try_emplace(path);
    if (!isNew && isEmpty(entry.data) && !isEmpty(present->second.data)) {
        return present->second.data;
    }
    std::swap(present->second, entry);
    return std::nullopt;
}

void GitHubIssueCache::persistSoon() {
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(persistWaits_, true)) return;
    }
    queue_->post([this] { persistCache(); });
}

void GitHubIssueCache::persistCache() {
    const auto entries = [this] {
        const std::lock_guard lock(mutex_);
        persistWaits_ = false;
        return cache_;
    }();
    // Where the folder can't be made, writing fails too, unless it was there all the same.
    createDirectories(std::string(parentPath(cacheFile_)), 0700);
    writeFileAtomically(cacheFile_, GitHubIssueCacheFormat::encoded(entries), 0600);
}

}  // namespace tarnbeck
