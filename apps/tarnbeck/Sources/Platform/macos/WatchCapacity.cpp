#include "WatchCapacity.h"

namespace tarnbeck {

// A stream of file events takes any number of folders here.
std::optional<std::int64_t> watchLimit() {
    return std::nullopt;
}

std::optional<WatchCapacity> watchCapacity() {
    return std::nullopt;
}

}  // namespace tarnbeck
