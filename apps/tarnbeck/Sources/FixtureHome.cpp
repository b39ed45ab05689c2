#include "FixtureHome.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tarnbeck {

FixtureHome::FixtureHome() {
    constexpr const char* complaint = "No folder for fixtures";
    std::error_code error;
    path_ = std::filesystem::temp_directory_path(error) / "tarnbeck-fixtures-XXXXXX";
    if (error) throw std::system_error(error, complaint);
    if (!mkdtemp(path_.data())) {
        throw std::system_error(errno, std::generic_category(), complaint);
    }
    setenv("HOME", path_.c_str(), 1);
    // What leads away from the home, for us and for what we are made of.
    for (const char* name :
         {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        unsetenv(name);
    }
}

FixtureHome::~FixtureHome() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace tarnbeck
