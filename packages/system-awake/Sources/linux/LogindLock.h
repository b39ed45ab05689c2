// What logind is asked for.
#pragma once

#include <chrono>
#include <string>
#include <variant>

#include "CaffeinateLaunching.h"
#include "OwnedDescriptor.h"

namespace system_awake {

struct LogindRequest {
    const std::string& what;  // "idle:sleep", say
    const std::string& who;
    const std::string& why;
    std::chrono::milliseconds timeout;
};

// A lock that blocks, and lasts as long as its descriptor is open; or why there is none, in the
// words of logind or of the bus. Blocks for the time-out at most.
std::variant<OwnedDescriptor, LaunchFailure> takeLogindLock(const LogindRequest& request);

}  // namespace system_awake
