#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "DependencyMarkers.h"
#include "DependencyScanner+Reports.h"
#include "FileSystem.h"
#include "Paths.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

std::optional<std::string> textOf(const JsonValue& value) {
    if (const auto* text = value.if_string()) {
        if (text->empty()) return std::nullopt;
        return std::string(text->data(), text->size());
    }
    if (const auto* number = value.if_int64()) return fmt::format("{}", *number);
    if (const auto* number = value.if_uint64()) return fmt::format("{}", *number);
    if (const auto* number = value.if_double()) {
        // Never in the form with an exponent; without a trailing ".0".
        std::string decimal = fmt::format("{:.17f}", *number);
        const std::string shortest = fmt::format("{}", *number);
        if (shortest.find('e') == std::string::npos) decimal = shortest;
        if (decimal.find('.') != std::string::npos) {
            while (decimal.ends_with('0')) decimal.pop_back();
            if (decimal.ends_with('.')) decimal.pop_back();
        }
        return decimal;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> firstField(const JsonObject& object,
                                      std::span<const std::string_view> keys) {
    for (const std::string_view key : keys) {
        const JsonValue* value = object.if_contains(key);
        if (!value) continue;
        if (auto text = textOf(*value)) return text;
    }
    return std::nullopt;
}

std::vector<std::string> sortedUnique(std::vector<std::string> texts) {
    std::ranges::sort(texts);
    const auto repeated = std::ranges::unique(texts);
    texts.erase(repeated.begin(), repeated.end());
    return texts;
}

std::vector<std::string> standardizedSorted(const std::vector<std::string>& paths) {
    std::vector<std::string> result;
    result.reserve(paths.size());
    for (const std::string& path : paths) result.push_back(standardized(path));
    std::ranges::sort(result);
    return result;
}

std::optional<std::string> reasonsMessage(const std::vector<std::string>& reasons,
                                          std::string_view what) {
    if (reasons.empty()) return std::nullopt;
    const std::size_t shown = std::min<std::size_t>(reasons.size(), 2);
    std::vector<std::string> parts(reasons.begin(),
                                   reasons.begin() + static_cast<std::ptrdiff_t>(shown));
    if (reasons.size() > shown) parts.push_back(fmt::format("+{} more", reasons.size() - shown));
    return fmt::format("{}{}{}", reasons.size(), what, joined(parts, " | "));
}

std::optional<std::string> joinDependencyMessages(
    const std::vector<std::optional<std::string>>& messages) {
    std::vector<std::string> present;
    for (const auto& message : messages) {
        if (message && !message->empty()) present.push_back(*message);
    }
    if (present.empty()) return std::nullopt;
    return joined(present, " • ");
}

std::optional<JsonObject> jsonObjectInFile(const std::string& path) {
    const Result<std::string> bytes = readFile(path, largestManifest);
    if (!bytes) return std::nullopt;
    Result<JsonValue> json = parsedJson(*bytes);
    if (!json || !json->is_object()) return std::nullopt;
    JsonValue manifest = *std::move(json);
    return std::move(manifest.get_object());
}

}  // namespace tarnbeck::DependencyScanner
