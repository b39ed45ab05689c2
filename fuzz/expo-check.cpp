#include "DependencyScanner+Expo.h"
#include "Fuzzing.h"
#include "Text.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck;
    const auto text = decodedUtf8(textOf(data, size));
    for (const auto& [key, issue] : DependencyScanner::parseExpoInstallCheckIssues(text)) {
        promise(key == lowercased(issue.package));
        promise(text.find(issue.package + "@" + issue.installedVersion) != text.npos);
        promise(!issue.package.empty() && !issue.installedVersion.empty());
        promise(text.find(issue.expectedVersion) != text.npos);
    }
    return 0;
}
