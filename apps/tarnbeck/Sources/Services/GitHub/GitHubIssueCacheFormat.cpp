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
        .fetchedAt = stored.fetchedAt,
        .data = {.issues = std::move(stored.issues).value_or(ImmutableList<GitHubIssue>()),
                 .pullRequests =
                     std::move(stored.pullRequests).value_or(ImmutableList<GitHubPullRequest>())}};
}

// A member of the file's object, with a comma in front.
std::string encodedMember(std::string_view path, const CacheEntry& entry) {
    std::string json = ",";
    JsonText::appendText(json, path);
    json += ':';
    appendJson(json, StoredEntry{entry.data.issues, entry.data.pullRequests, entry.fetchedAt});
    json.shrink_to_fit();
    return json;
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

std::vector<std::string_view> Encoder::pieces(const Entries& entries) {
    std::vector<std::string_view> texts = {"{"};
    for (const auto& [path, entry] : entries) {
        const auto [piece, isNew] = pieces_.try_emplace(path);
        if (isNew || piece->second.entry != entry) {
            piece->second = {.entry = entry, .text = encodedMember(path, entry)};
        }
        texts.emplace_back(piece->second.text);
    }
    if (texts.size() > 1) texts[1].remove_prefix(1);
    texts.emplace_back("}");
    return texts;
}

}  // namespace tarnbeck::GitHubIssueCacheFormat
