// Reads what is in a folder, at the least cost: no question is asked about an entry.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tarnbeck {

class FolderReader {
  public:
    enum class Links { follow, never };
    using Found = std::function<void(std::string_view name, bool isFolder)>;

    FolderReader();

    // Tells each entry but "." and ".."; a symbolic link is no folder. The error number, or 0.
    // `links` says what becomes of the path's own last component. Blocks; one thread at a time.
    int read(const std::string& path, Links links, const Found& found);

  private:
    static constexpr std::size_t capacity = 32768;
    std::unique_ptr<std::byte[]> buffer_;
};

}  // namespace tarnbeck
