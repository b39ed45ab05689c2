// What `posix_spawn` is told on this system beyond what POSIX has.
#pragma once

#include <spawn.h>
#include <unistd.h>

namespace tarnbeck {

inline constexpr short systemSpawnFlags = 0;

// Every descriptor of our own is close-on-exec from birth; this closes what a library opened, or
// what this program was started with. The last action of all.
inline void closeAllButStandard(posix_spawn_file_actions_t& actions) {
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

}  // namespace tarnbeck
