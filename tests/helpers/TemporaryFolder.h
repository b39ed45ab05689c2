// A folder that lives as long as this does. It lies where no component of its path is an excluded
// name, so that discovery and watching treat what is in it like a user's own files.
#pragma once

#include <string>
#include <string_view>

namespace tarnbeck::testing {

class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

    // Both make the folders that are missing, and return the whole path.
    std::string makeFolder(std::string_view name) const;
    std::string write(std::string_view name, std::string_view content) const;

  private:
    std::string path_;
};

// The whole file; a failed expectation when it can't be read.
std::string contentOf(const std::string& path);

}  // namespace tarnbeck::testing
