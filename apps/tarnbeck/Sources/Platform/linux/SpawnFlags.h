// What `posix_spawn` is told on this system beyond what POSIX has.
#pragma once

#include <climits>

#include <linux/close_range.h>
#include <unistd.h>

namespace tarnbeck {

inline constexpr short systemSpawnFlags = 0;

// Every descriptor of our own is close-on-exec from birth; this keeps from the next child what a
// library opened, or what this program was started with. Done here and not by an action of the
// child, which costs the parent several microseconds.
inline void keepAllButStandardFromChildren() {
    close_range(STDERR_FILENO + 1, UINT_MAX, CLOSE_RANGE_CLOEXEC);
}

}  // namespace tarnbeck
