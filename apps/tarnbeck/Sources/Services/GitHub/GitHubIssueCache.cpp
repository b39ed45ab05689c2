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

std::shared_ptr<const GitHubIssueCache::Entries> GitHubIssueCache::entries() const {
    std::call_once(loaded_, [this] {
        const Result<std::string> bytes = readFile(cacheFile_);
        auto found = bytes ? GitHubIssueCacheFormat::decoded(*bytes) : std::nullopt;
        publish(std::make_shared<const Entries>(std::move(found).value_or(Entries())));
    });
    const std::lock_guard lock(mutex_);
    return cache_;
}

// What was there before is freed after the lock has gone.
void GitHubIssueCache::publish(std::shared_ptr<const Entries> entries) const {
    const std::lock_guard lock(mutex_);
    cache_.swap(entries);
}

std::optional<GitHubIssueCache::CacheEntry> GitHubIssueCache::entry(const std::string& path) const {
    const auto present = entries();
    const auto found = present->find(path);
    if (found == present->end()) return std::nullopt;
    return found->second;
}

std::optional<GitHubRepositoryData> GitHubIssueCache::cachedData(const std::string& path) const {
    const auto found = entry(path);
    if (!found || tools_.clock.wallNow() - found->fetchedAt >= lifetime) return std::nullopt;
    return found->data;
}

void GitHubIssueCache::store(const GitHubRepositoryData& data, const std::string& path) {
    const auto kept = replaceEntry(path, {.fetchedAt = tools_.clock.wallNow(), .data = data});
    if (!kept) return persistSoon();
    tools_.log.write(
        fmt::format("ISSUES CACHE GUARD: not caching empty result for {} (had {} issues, {} PRs)",
                    path, kept->issues.size(), kept->pullRequests.size()));
}

std::optional<GitHubRepositoryData> GitHubIssueCache::replaceEntry(const std::string& path,
                                                                   CacheEntry entry) {
    const std::lock_guard lock(storing_);
    Entries next = *entries();
    CacheEntry& present = next[path];
    if (isEmpty(entry.data) && !isEmpty(present.data)) return present.data;
    present = std::move(entry);
    publish(std::make_shared<const Entries>(std::move(next)));
    return std::nullopt;
}

void GitHubIssueCache::persistSoon() {
    if (persistWaits_.exchange(true)) return;
    queue_->post([this] { persistCache(); });
}

void GitHubIssueCache::persistCache() {
    persistWaits_ = false;  // whoever stores from here on asks for a writing of their own
    const auto present = entries();
    // Where the folder can't be made, writing fails too, unless it was there all the same.
    createDirectories(std::string(parentPath(cacheFile_)), 0700);
    writeFileAtomically(cacheFile_, encoder_.pieces(*present), 0600);
}

}  // namespace tarnbeck
