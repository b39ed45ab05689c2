#include "UserSurroundings.h"

#include <climits>
#include <cstdlib>

#include <CoreFoundation/CoreFoundation.h>
#include <sysdir.h>

namespace single_instance {

std::string applicationSupportFolder() {
    char path[PATH_MAX] = "";
    const auto state = sysdir_start_search_path_enumeration(SYSDIR_DIRECTORY_APPLICATION_SUPPORT,
                                                            SYSDIR_DOMAIN_MASK_USER);
    if (sysdir_get_next_search_path_enumeration(state, path) == 0) {
        return userHome() + "/Library/Application Support";
    }
    const std::string folder = path;
    return folder.starts_with('~') ? userHome() + folder.substr(1) : folder;
}

std::string mainBundleIdentifier() {
    CFBundleRef bundle = CFBundleGetMainBundle();
    CFStringRef identifier = bundle ? CFBundleGetIdentifier(bundle) : nullptr;
    char text[1024] = "";
    if (!identifier || !CFStringGetCString(identifier, text, sizeof text, kCFStringEncodingUTF8)) {
        return {};
    }
    return text;
}

std::string processName() {
    return getprogname();
}

}  // namespace single_instance
