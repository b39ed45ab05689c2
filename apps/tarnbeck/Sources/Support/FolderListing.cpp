#include "FolderListing.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace tarnbeck {
namespace {

bool isFolder(DIR* parent, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
    struct stat information {};
    return fstatat(dirfd(parent), entry.d_name, &information, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(information.st_mode);
}

}  // namespace

bool FolderListing::open(const std::string& path) {
    directory_.reset(opendir(path.c_str()));
    return directory_ != nullptr;
}

std::optional<FolderListing::Entry> FolderListing::next() {
    while (directory_) {
        const dirent* entry = readdir(directory_.get());
        if (!entry) break;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            return Entry{.name = name, .isFolder = isFolder(directory_.get(), *entry)};
        }
    }
    return std::nullopt;
}

}  // namespace tarnbeck
