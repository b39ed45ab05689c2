#include "UserSurroundings.h"

#include <cerrno>
#include <cstdlib>

namespace single_instance {

std::string applicationSupportFolder() {
    const char* chosen = std::getenv("XDG_DATA_HOME");
    return chosen && *chosen == '/' ? chosen : userHome() + "/.local/share";
}

std::string mainBundleIdentifier() {
    return {};
}

std::string processName() {
    return program_invocation_short_name;
}

}  // namespace single_instance
