#include <array>
#include <climits>
#include <cstdint>

#include <mach-o/dyld.h>

#include "AppVersionInfo.h"

namespace app_version {

std::string runningExecutablePath() {
    std::array<char, PATH_MAX> path{};
    auto size = static_cast<std::uint32_t>(path.size());
    return _NSGetExecutablePath(path.data(), &size) == 0 ? path.data() : std::string();
}

}  // namespace app_version
