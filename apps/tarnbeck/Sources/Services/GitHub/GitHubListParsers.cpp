#include "GitHubListParsers.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <boost/json/monotonic_resource.hpp>

#include "JsonCoding.h"

namespace tarnbeck::GitHubListParsers {
namespace {

const JsonArray noObjects;

// The array of objects that the value is; an empty one for everything else.
const JsonArray& objectsIn(const JsonValue* value) {
    const JsonArray* array = value ? value->if_array() : nullptr;
    const auto isObject = [](const JsonValue& each) { return each.is_object(); };
    return array && std::ranges::all_of(*array, isObject) ? *array : noObjects;
}

std::optional<std::string> textIn(const JsonObject& object, std::string_view key) {
    const JsonValue* value = object.if_contains(key);
    const auto* text = value ? value->if_string() : nullptr;
    if (!text) return std::nullopt;
    return std::string(text->data(), text->size());
}

ImmutableList<std::string> parseLabels(const JsonObject& item) {
    std::vector<std::string> labels;
    for (const JsonValue& label : objectsIn(item.if_contains("labels"))) {
        if (auto name = textIn(label.get_object(), "name")) labels.push_back(*std::move(name));
    }
    return labels;
}

std::string parseAuthor(const JsonObject& item) {
    const JsonValue* value = item.if_contains("author");
    const JsonObject* author = value ? value->if_object() : nullptr;
    return author ? textIn(*author, "login").value_or("") : "";
}

// What an issue and a pull request have in common; nothing when one of the indispensable is
// missing.
template <class Item>
std::optional<Item> parsedItem(const JsonObject& source) {
    const JsonValue* numberValue = source.if_contains("number");
    const auto number = numberValue ? JsonDecoding::ifInteger(*numberValue) : std::nullopt;
    auto title = textIn(source, "title");
    auto url = textIn(source, "url");
    if (!number || !title || !url) return std::nullopt;
    Item item;
    item.id = *number;
    item.number = *number;
    item.title = *std::move(title);
    item.state = textIn(source, "state").value_or("OPEN");
    item.labels = parseLabels(source);
    item.author = parseAuthor(source);
    item.createdAt = textIn(source, "createdAt").value_or("");
    item.updatedAt = textIn(source, "updatedAt");
    item.url = *std::move(url);
    return item;
}

// `complete` adds what only this kind of item has.
template <class Item, class Complete>
ImmutableList<Item> parsedList(std::string_view bytes, Complete complete) {
    boost::json::monotonic_resource storage;
    const Result<JsonValue> json = parsedJson(bytes, &storage);
    std::vector<Item> items;
    for (const JsonValue& source : objectsIn(json ? &*json : nullptr)) {
        auto item = parsedItem<Item>(source.get_object());
        if (!item) continue;
        complete(*item, source.get_object());
        items.push_back(*std::move(item));
    }
    return items;
}

}  // namespace

ImmutableList<GitHubIssue> parseIssuesJSON(std::string_view bytes) {
    return parsedList<GitHubIssue>(bytes, [](GitHubIssue& /*issue*/, const JsonObject&) {});
}

ImmutableList<GitHubPullRequest> parsePullRequestsJSON(std::string_view bytes) {
    return parsedList<GitHubPullRequest>(
        bytes, [](GitHubPullRequest& pullRequest, const JsonObject& source) {
            const JsonValue* isDraft = source.if_contains("isDraft");
            pullRequest.isDraft = isDraft && isDraft->is_bool() && isDraft->get_bool();
        });
}

}  // namespace tarnbeck::GitHubListParsers
