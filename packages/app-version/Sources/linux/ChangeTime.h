// Where this system keeps the time of the last change of a file's content.
#pragma once

#include <sys/stat.h>

namespace app_version {

inline timespec changeTime(const struct stat& information) {
    return information.st_mtim;
}

}  // namespace app_version
