#include "DependencyCacheFormat.h"

#include <boost/json/monotonic_resource.hpp>

#include "JsonText.h"

namespace tarnbeck::DependencyCacheFormat {

std::optional<Entries> decoded(std::string_view bytes) {
    boost::json::monotonic_resource storage;
    const Result<JsonValue> json = parsedJson(bytes, &storage);
    const JsonObject* object = json ? json->if_object() : nullptr;
    if (!object) return std::nullopt;
    try {
        Entries entries;
        for (const auto& member : *object) {
            decodeJson(member.value(), entries[std::string(member.key())]);
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
        appendJson(json, entry);
    }
    return json += '}';
}

}  // namespace tarnbeck::DependencyCacheFormat
