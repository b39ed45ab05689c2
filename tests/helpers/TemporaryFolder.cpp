#include "TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tarnbeck::testing {
namespace fs = std::filesystem;

namespace {

// A new folder below `parent`; empty when it can't be made there.
std::string newFolderBelow(const fs::path& parent) {
    std::error_code ignored;
    fs::create_directories(parent, ignored);
    std::string pattern = parent / "run-XXXXXX";
    return mkdtemp(pattern.data()) ? pattern : std::string();
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
    const char* chosen = std::getenv("TARNBECK_TEST_FOLDER");
    const char* home = std::getenv("HOME");
    path_ = newFolderBelow(chosen ? chosen : "/var/lib/tarnbeck-tests");
    if (path_.empty() && home) path_ = newFolderBelow(fs::path(home) / ".tarnbeck-tests");
    if (path_.empty()) throw std::runtime_error("no place for a temporary folder");
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
