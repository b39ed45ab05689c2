#include "DependencyScanner+PythonClassification.h"
#include "DependencyScanner+PythonReports.h"
#include "DependencyVersion.h"
#include "Fuzzing.h"

using namespace tarnbeck;
using namespace tarnbeck::DependencyScanner;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOf(data, size);
    const auto updates = parseOutdatedJSON(text, DependencyEcosystem::python);
    const auto forward =
        updates ? normalizedPythonUpdates(*updates) : std::vector<DependencyUpdate>{};
    for (const DependencyUpdate& update : forward) {
        promise(update.currentVersion != update.latestVersion);
        promise(!isOlder(update.latestVersion, update.currentVersion));
    }
    if (const auto blocked = parsePythonBlockedPackagesJSON(text)) {
        for (const auto& [name, reason] : *blocked) {
            promise(reason.find(" blocked: ") != std::string::npos);
        }
    }
    const auto origins = parsePythonOriginMapJSON(text);
    if (origins) {
        promise(applyPythonUpdateOrigins(forward, *origins).size() == forward.size());
    }
    return 0;
}
