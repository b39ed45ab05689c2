#include "GitHubIssueCacheFormat.h"

#include <utility>

#include <boost/json/monotonic_resource.hpp>

#include "JsonText.h"

namespace tarnbeck::GitHubIssueCacheFormat {
namespace {

// An entry as it lies in the file.
struct StoredEntry {
    std::optional<ImmutableList<GitHubIssue>> issues;
    std::optional<ImmutableList<GitHubPullRequest>> pullRequests;
    Date fetchedAt;

    static constexpr auto fields() {
        return std::tuple{field("issues", &StoredEntry::issues),
                          field("pullRequests", &StoredEntry::pullRequests),
                          field("fetchedAt", &StoredEntry::fetchedAt)};
    }
};

CacheEntry decodedEntry(const JsonValue& json) {
    StoredEntry stored;
    decodeJson(json, stored);
    return {
        .data = {.issues = std::move(stored.issues).value_or(ImmutableList<GitHubIssue>()),
                 .pullRequests =
                     std::move(stored.pullRequests).value_or(ImmutableList<GitHubPullRequest>())},
        .fetchedAt = stored.fetchedAt};
}

}  // namespace

std::optional<Entries> decoded(std::string_view bytes) {
    boost::json::monotonic_resource storage;
    const Result<JsonValue> json = parsedJson(bytes, &storage);
    const JsonObject* object = json ? json->if_object() : nullptr;
    if (!object) return std::nullopt;
    try {
        Entries entries;
        for (const auto& member : *object) {
            entries.emplace(std::string_view(member.key()), decodedEntry(member.value()));
        }
        return entries;
    } catch (const JsonDecodingError&) {
        return std::nullopt;
    }
}

std::string encoded(const Entries& entries) {
    std::string json = "{";
    for (const auto& [path, entry] : entries) {
        if (json.size() > 1) json += ',';
        JsonText::appendText(json, path);
        json += ':';
        appendJson(json, StoredEntry{entry.data.issues, entry.data.pullRequests, entry.fetchedAt});
    }
    json += '}';
    return json;
}

}  // namespace tarnbeck::GitHubIssueCacheFormat
