// What the cache file of dependency summaries says: one JSON object with an entry for each
// repository path. Pure; any thread.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "DependencyStatus.h"
#include "Record.h"

namespace tarnbeck::DependencyCacheFormat {

struct CacheEntry {
    std::string fingerprint;  // when the check ran
    Date checkedAt;           // when the entry was stored
    DependencySummary summary;

    bool operator==(const CacheEntry&) const = default;

    static constexpr auto fields() {
        return std::tuple{field("fingerprint", &CacheEntry::fingerprint),
                          field("checkedAt", &CacheEntry::checkedAt),
                          field("summary", &CacheEntry::summary)};
    }
};

using Entries = std::map<std::string, CacheEntry, std::less<>>;

// The entries in the bytes of a file; nothing when a single one can't be read.
std::optional<Entries> decoded(std::string_view bytes);

// The text of a file, compact. Bytes that are not UTF-8 are replaced.
std::string encoded(const Entries& entries);

}  // namespace tarnbeck::DependencyCacheFormat
