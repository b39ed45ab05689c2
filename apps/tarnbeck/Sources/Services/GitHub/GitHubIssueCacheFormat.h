// What the cache file of issues and pull requests says: one JSON object with an entry for each
// repository path. Pure; any thread.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "GitHubRepositoryData.h"
#include "Record.h"

namespace tarnbeck::GitHubIssueCacheFormat {

struct CacheEntry {
    GitHubRepositoryData data;
    Date fetchedAt;

    bool operator==(const CacheEntry&) const = default;
};

using Entries = std::map<std::string, CacheEntry, std::less<>>;

// The entries in the bytes of a file; nothing when a single one can't be read. An entry's lists may
// be missing or null, its time may not; keys that are unknown are passed over.
std::optional<Entries> decoded(std::string_view bytes);

// Compact; bytes that are not UTF-8 are replaced.
std::string encoded(const Entries& entries);

}  // namespace tarnbeck::GitHubIssueCacheFormat
