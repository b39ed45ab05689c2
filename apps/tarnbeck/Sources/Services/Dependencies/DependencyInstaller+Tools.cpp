#include <algorithm>

#include "DependencyInstaller.h"
#include "FileSystem.h"

namespace tarnbeck::DependencyInstaller {

std::optional<std::string> resolveUVExecutable(const DependencyTools& tools) {
    const auto found = std::ranges::find_if(tools.uvCandidates, isExecutableFile);
    if (found == tools.uvCandidates.end()) return std::nullopt;
    return *found;
}

}  // namespace tarnbeck::DependencyInstaller
