// What the cache file of issues and pull requests says: one JSON object with an entry for each
// repository path. Pure; any thread.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "GitHubRepositoryData.h"
#include "Record.h"

namespace tarnbeck::GitHubIssueCacheFormat {

struct CacheEntry {
    Date fetchedAt;
    GitHubRepositoryData data;

    bool operator==(const CacheEntry&) const = default;
};

using Entries = std::map<std::string, CacheEntry, std::less<>>;

// The entries in the bytes of a file; nothing when a single one can't be read. An entry's lists may
// be missing or null, its time may not; keys that are unknown are passed over.
std::optional<Entries> decoded(std::string_view bytes);

// The text of a file, compact, in pieces: one for each entry, which is kept for as long as the
// entry stays the same, so that a file of many entries is not encoded anew for one of them. Bytes
// that are not UTF-8 are replaced. One thread at a time.
class Encoder {
  public:
    // They view into this, up to the next call.
    std::vector<std::string_view> pieces(const Entries& entries);

  private:
    struct Piece {
        CacheEntry entry;
        std::string text;
    };
    std::map<std::string, Piece, std::less<>> pieces_;
};

}  // namespace tarnbeck::GitHubIssueCacheFormat
