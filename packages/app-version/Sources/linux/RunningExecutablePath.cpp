#include <array>
#include <climits>

#include <unistd.h>

#include "AppVersionInfo.h"

namespace app_version {

std::string runningExecutablePath() {
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    return length < 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(length));
}

}  // namespace app_version
