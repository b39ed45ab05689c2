#include "AppConfiguration.h"

#include <algorithm>
#include <cerrno>
#include <unordered_set>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "AtomicFile.h"
#include "FileSystem.h"
#include "JsonCoding.h"
#include "Paths.h"

namespace tarnbeck {
namespace {

Result<AppConfiguration> configurationIn(const std::string& file) {
    const Result<std::string> bytes = readFile(file);
    if (!bytes) return Failure{bytes.error()};
    return AppConfiguration::decoded(*bytes);
}

// Keeps a file that is about to be replaced although nobody could read what it says.
std::optional<std::string> keepBrokenFile(const ConfigurationPlace& place) {
    if (!exists(place.file()) || configurationIn(place.file())) return std::nullopt;
    const Result<std::string> bytes = readFile(place.file());
    if (!bytes) return "the present file can't be kept: " + bytes.error();
    if (const auto failure = writeFileAtomically(place.brokenFile(), *bytes, 0600)) {
        return "the present file can't be kept: " + *failure;
    }
    return std::nullopt;
}

std::optional<std::string> failureOfSaving(const AppConfiguration& configuration,
                                           const ConfigurationPlace& place) {
    if (auto failure = createDirectories(place.folder(), 0700)) return failure;
    if (auto failure = keepBrokenFile(place)) return failure;
    const std::string text =
        jsonText(encodedJson(configuration), JsonLayout::prettySortedKeys) + "\n";
    return writeFileAtomically(place.file(), text, 0644);
}

}  // namespace

AppConfiguration AppConfiguration::load(const ConfigurationPlace& place) {
    if (!exists(place.file())) return {};
    Result<AppConfiguration> configuration = configurationIn(place.file());
    if (configuration) return *std::move(configuration);
    place.report("Failed to load config: " + configuration.error());
    return {};
}

Result<AppConfiguration> AppConfiguration::decoded(std::string_view bytes) {
    const Result<JsonValue> json = parsedJson(bytes);
    if (!json) return Failure{json.error()};
    AppConfiguration configuration;
    try {
        JsonDecoding::fields(*json, configuration, JsonDecoding::Keys::optional);
    } catch (const JsonDecodingError& error) {
        return Failure{error.what()};
    }
    configuration.appBackdropOpacity = std::clamp(configuration.appBackdropOpacity, 0.0, 1.0);
    configuration.popoverBackdropOpacity =
        std::clamp(configuration.popoverBackdropOpacity, 0.0, 1.0);
    return configuration;
}

bool AppConfiguration::save(const ConfigurationPlace& place) const {
    const auto failure = failureOfSaving(*this, place);
    if (failure) place.report("Failed to save config: " + *failure);
    return !failure;
}

void AppConfiguration::dropRepeatedRepoPaths(std::string_view home) {
    std::unordered_set<std::string> seen;
    std::erase_if(repoPaths, [&](const std::string& path) {
        return !seen.insert(expandingTilde(path, home)).second;
    });
}

}  // namespace tarnbeck
