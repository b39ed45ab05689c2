#include "SystemPaths.h"

#include <string_view>

#include <CoreFoundation/CoreFoundation.h>
#include <sys/stat.h>

namespace tarnbeck {

std::string withoutSystemPrefix(std::string path) {
    constexpr std::string_view prefix = "/private";
    if (!path.starts_with("/private/")) return path;
    std::string rest = path.substr(prefix.size());
    struct stat information {};
    return stat(rest.c_str(), &information) == 0 ? rest : path;
}

bool isPackage(const std::string& directory) {
    const auto* bytes = reinterpret_cast<const UInt8*>(directory.data());
    CFURLRef url = CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, bytes, static_cast<CFIndex>(directory.size()), true);
    if (!url) return false;
    CFBooleanRef value = nullptr;
    const bool known = CFURLCopyResourcePropertyForKey(url, kCFURLIsPackageKey, &value, nullptr);
    const bool package = known && value && CFBooleanGetValue(value);
    if (value) CFRelease(value);
    CFRelease(url);
    return package;
}

bool isHidden(const std::string& directory, std::string_view name) {
    if (name.starts_with('.')) return true;
    struct stat information {};
    const std::string path = directory + "/" + std::string(name);
    return lstat(path.c_str(), &information) == 0 && (information.st_flags & UF_HIDDEN) != 0;
}

timespec modificationTime(const struct stat& information) {
    return information.st_mtimespec;
}

}  // namespace tarnbeck
