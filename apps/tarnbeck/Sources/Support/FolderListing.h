// Going through the entries of a folder. Blocking; one thread at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <dirent.h>

namespace tarnbeck {

class FolderListing {
  public:
    struct Entry {
        std::string_view name;  // up to the next call
        bool isFolder;          // a symbolic link is none, and neither is what can't be asked
    };

    // False when the folder can't be read. What was open before is closed.
    bool open(const std::string& path);
    // In no order, without "." and ".."; absent at the end.
    std::optional<Entry> next();

  private:
    struct Close {
        void operator()(DIR* directory) const { closedir(directory); }
    };
    std::unique_ptr<DIR, Close> directory_;
};

}  // namespace tarnbeck
