#include "RepositorySectionExpansionStore.h"

#include <utility>

#include "Json.h"

namespace tarnbeck {
namespace {

using State = RepositorySectionExpansionStore::State;

// False when something in it is no Boolean.
bool readEntry(const JsonValue& json, std::map<std::string, bool>& entry) {
    const JsonObject* object = json.if_object();
    if (!object) return false;
    for (const auto& [key, value] : *object) {
        const bool* boolean = value.if_bool();
        if (!boolean) return false;
        entry[std::string(key)] = *boolean;
    }
    return true;
}

State decodedState(std::string_view bytes) {
    const Result<JsonValue> json = parsedJson(bytes);
    const JsonObject* object = json ? json->if_object() : nullptr;
    if (!object) return {};
    State state;
    for (const auto& [path, value] : *object) {
        if (!readEntry(value, state[std::string(path)])) return {};
    }
    return state;
}

}  // namespace

State RepositorySectionExpansionStore::loadDictionaryState(std::string_view forKey) const {
    const std::optional<std::string> bytes = userDefaults.data(forKey);
    return bytes ? decodedState(*bytes) : State{};
}

void RepositorySectionExpansionStore::saveDictionaryState(const State& state,
                                                          std::string_view forKey) const {
    JsonObject object;
    for (const auto& [path, entry] : state) {
        JsonObject encoded;
        for (const auto& [key, value] : entry) encoded[key] = value;
        object[path] = std::move(encoded);
    }
    userDefaults.setData(forKey, jsonText(object));
}

}  // namespace tarnbeck
