#include "SystemPaths.h"

namespace tarnbeck {

std::string withoutSystemPrefix(std::string path) {
    return path;
}

bool isPackage(const std::string& /*directory*/) {
    return false;
}

bool isHidden(const std::string& /*directory*/, std::string_view name) {
    return name.starts_with('.');
}

timespec modificationTime(const struct stat& information) {
    return information.st_mtim;
}

}  // namespace tarnbeck
