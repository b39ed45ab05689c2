// How a child is kept from getting what it was not given, on this system.
#pragma once

#include <spawn.h>

namespace system_awake {

// The child gets only the descriptors that an action has put into place.
inline constexpr short inheritanceFlags = POSIX_SPAWN_CLOEXEC_DEFAULT;

// Done by the flag.
inline void closeAllFrom(posix_spawn_file_actions_t& /*actions*/, int /*first*/) {}

}  // namespace system_awake
