#include "RepositoryJson.h"

namespace tarnbeck::cli {

JsonValue repositoryJson(const GitRepository& repository) {
    JsonValue json = encodedJson(repository, outputStyle);
    JsonObject& object = json.get_object();
    object["isClean"] = repository.isClean();
    object["statusIcon"] = repository.statusIcon();
    object["statusColor"] = rawValue(repository.statusColor());
    object["summaryParts"] = encodedJson(repository.summaryParts(), outputStyle);
    return json;
}

std::string jsonArrayText(const std::vector<JsonValue>& elements) {
    std::string text = "[";
    for (const JsonValue& element : elements) {
        text += &element == &elements.front() ? "\n" : ",\n";
        text += jsonText(element);
    }
    text += elements.empty() ? "]\n" : "\n]\n";
    return text;
}

}  // namespace tarnbeck::cli
