#include "WatchCapacity.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include "FileSystem.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;

bool belongsToUser(const fs::path& process) {
    struct stat attributes {};
    return stat(process.c_str(), &attributes) == 0 && attributes.st_uid == getuid();
}

// A descriptor's entry tells each of its watches in a line.
std::int64_t watchesIn(const fs::path& descriptorInformation) {
    std::ifstream lines(descriptorInformation);
    std::int64_t count = 0;
    for (std::string line; std::getline(lines, line);) count += line.starts_with("inotify wd:");
    return count;
}

std::int64_t watchesOf(const fs::path& process) {
    std::int64_t count = 0;
    std::error_code error;
    for (fs::directory_iterator each(process / "fd", error), end; !error && each != end;
         each.increment(error)) {
        std::error_code gone;
        const fs::path target = fs::read_symlink(each->path(), gone);
        if (target != "anon_inode:inotify") continue;
        count += watchesIn(process / "fdinfo" / each->path().filename());
    }
    return count;
}

}  // namespace

std::optional<std::int64_t> watchLimit() {
    const auto text = readFile("/proc/sys/fs/inotify/max_user_watches");
    std::int64_t limit = 0;
    if (!text ||
        std::from_chars(text->data(), text->data() + text->size(), limit).ec != std::errc()) {
        return std::nullopt;
    }
    return limit;
}

std::optional<WatchCapacity> watchCapacity() {
    const auto limit = watchLimit();
    if (!limit) return std::nullopt;
    WatchCapacity capacity{.limit = *limit};
    std::error_code error;
    for (fs::directory_iterator each("/proc", error), end; !error && each != end;
         each.increment(error)) {
        const std::string name = each->path().filename();
        const bool isProcess = name.find_first_not_of("0123456789") == std::string::npos;
        if (isProcess && belongsToUser(each->path())) capacity.used += watchesOf(each->path());
    }
    return capacity;
}

}  // namespace tarnbeck
