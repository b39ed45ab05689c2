// How many folders the user's programs may watch in all, where the system has such a limit.
#pragma once

#include <cstdint>
#include <optional>

namespace tarnbeck {

struct WatchCapacity {
    std::int64_t limit = 0;  // watches that the system allows this user
    std::int64_t used = 0;   // those that the user's programs hold now, as far as they can be seen
};

// Absent where the system has no limit. `used` takes a walk through the user's processes. Blocks;
// any thread.
std::optional<WatchCapacity> watchCapacity();

// The limit alone, which costs one small read.
std::optional<std::int64_t> watchLimit();

}  // namespace tarnbeck
