// What `posix_spawn` is told on this system beyond what POSIX has.
#pragma once

namespace tarnbeck {

// Every descriptor of this program is close-on-exec from birth.
inline constexpr short systemSpawnFlags = 0;

}  // namespace tarnbeck
