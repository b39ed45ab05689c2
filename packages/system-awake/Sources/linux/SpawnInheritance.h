// How a child is kept from getting what it was not given, on this system.
#pragma once

#include <spawn.h>

namespace system_awake {

inline constexpr short inheritanceFlags = 0;

inline void closeAllFrom(posix_spawn_file_actions_t& actions, int first) {
    posix_spawn_file_actions_addclosefrom_np(&actions, first);
}

}  // namespace system_awake
