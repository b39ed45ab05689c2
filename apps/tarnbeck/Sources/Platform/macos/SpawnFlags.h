// What `posix_spawn` is told on this system beyond what POSIX has.
#pragma once

#include <spawn.h>

namespace tarnbeck {

// Pipes can't be made close-on-exec in one step here; this closes what slipped through, and what a
// library opened.
inline constexpr short systemSpawnFlags = POSIX_SPAWN_CLOEXEC_DEFAULT;

// Done by the flag.
inline void keepAllButStandardFromChildren() {}

}  // namespace tarnbeck
