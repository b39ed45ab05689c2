// What is done with files here. All of it blocks.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace single_instance {

class FileManager {
  public:
    FileManager() = default;
    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;
    virtual ~FileManager() = default;

    // With the folders above it, for the user alone; no error where it is there already.
    virtual std::error_code createDirectory(const std::string& path) = 0;
    // The file is there whole or not at all, whatever happens.
    virtual std::error_code writeAtomically(const std::string& path, std::string_view bytes) = 0;
    // The names, in the order in which the system lists them; absent where it can't.
    virtual std::optional<std::vector<std::string>> contentsOfDirectory(
        const std::string& path) = 0;
    // Of a regular file; absent where it can't be read. Never waits for a writer.
    virtual std::optional<std::string> contents(const std::string& path) = 0;
    virtual std::error_code removeFile(const std::string& path) = 0;
};

class SystemFileManager : public FileManager {
  public:
    std::error_code createDirectory(const std::string& path) override;
    std::error_code writeAtomically(const std::string& path, std::string_view bytes) override;
    std::optional<std::vector<std::string>> contentsOfDirectory(const std::string& path) override;
    std::optional<std::string> contents(const std::string& path) override;
    std::error_code removeFile(const std::string& path) override;
};

}  // namespace single_instance
