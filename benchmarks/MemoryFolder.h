// A folder that goes with this: in memory where the machine has such a place, so that no disk sets
// the pace.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace tarnbeck::benchmark {

class MemoryFolder {
  public:
    MemoryFolder() {
        const std::filesystem::path memory = "/dev/shm";
        const bool hasMemory = access(memory.c_str(), W_OK) == 0;
        std::string pattern =
            (hasMemory ? memory : std::filesystem::temp_directory_path()) / "tarnbeck-bench-XXXXXX";
        path_ = mkdtemp(pattern.data());
    }
    ~MemoryFolder() { std::filesystem::remove_all(path_); }
    MemoryFolder(const MemoryFolder&) = delete;
    MemoryFolder& operator=(const MemoryFolder&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace tarnbeck::benchmark
