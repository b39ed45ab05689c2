#include "TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tarnbeck::testing {
namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    const char* chosen = std::getenv("TARNBECK_TEST_FOLDER");
    std::string pattern =
        (chosen ? chosen : "/var/lib/tarnbeck-tests") + std::string("/run-XXXXXX");
    fs::create_directories(fs::path(pattern).parent_path());
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder at " + pattern);
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::makeFolder(std::string_view name) const {
    fs::create_directories(*this / name);
    return *this / name;
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
    const fs::path path = *this / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

}  // namespace tarnbeck::testing
