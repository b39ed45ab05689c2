#include "SystemPaths.h"

namespace tarnbeck {

std::string withoutSystemPrefix(std::string path) {
    return path;
}

bool isPackage(const std::string& /*directory*/) {
    return false;
}

}  // namespace tarnbeck
