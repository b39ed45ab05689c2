// How a child is spawned: with an empty environment, a session of its own, every signal at its
// default, and no descriptor but those that are named.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include <sys/types.h>

#include "OwnedDescriptor.h"

namespace system_awake {

struct ChildLaunch {
    std::string executable;              // absolute; no search path is used
    std::vector<std::string> arguments;  // behind the program's own name
    OwnedDescriptor standardInput;       // the null device where there is none
    OwnedDescriptor held;                // for the child to hold as descriptor 3; may be none
    // What the parent keeps until the child has ended; may be none.
    OwnedDescriptor keptUntilTheEnd;
};

struct LaunchError {
    int number;
};

// The child's number, or the system's error.
std::variant<pid_t, LaunchError> spawn(const ChildLaunch& launch);

}  // namespace system_awake
