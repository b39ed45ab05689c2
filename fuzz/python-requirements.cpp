#include "DependencyScanner+PythonRequirements.h"
#include "Fuzzing.h"
#include "Text.h"

using namespace tarnbeck;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(decodedUtf8(textOf(data, size)));
    for (const auto& [key, constraint] : DependencyScanner::lowestPythonRequirements({text})) {
        promise(key == DependencyScanner::normalizedPythonName(constraint.package));
        promise(!constraint.package.empty() && !constraint.minimumVersion.empty());
        // What was found reads as itself.
        const auto again = DependencyScanner::parsePythonRequirement(
            constraint.package + "==" + constraint.minimumVersion);
        promise(again == constraint);
    }
    return 0;
}
