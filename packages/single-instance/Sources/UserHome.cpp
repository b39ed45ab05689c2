#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "UserSurroundings.h"

namespace single_instance {
namespace {

std::string homeInUserDatabase() {
    std::vector<char> buffer(1 << 16);
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    return found && found->pw_dir ? found->pw_dir : "/";
}

}  // namespace

std::string userHome() {
    const char* variable = std::getenv("HOME");
    std::string home = variable && *variable ? variable : homeInUserDatabase();
    while (home.size() > 1 && home.ends_with('/')) home.pop_back();
    return home;
}

}  // namespace single_instance
