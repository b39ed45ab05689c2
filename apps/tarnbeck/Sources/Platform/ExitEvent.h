// A descriptor that becomes readable (to `poll`) when a child process has ended.
#pragma once

#include <sys/types.h>

#include "FileDescriptor.h"

namespace tarnbeck {

// `child` is a child of this process that has not been reaped. Invalid when the system has no more
// descriptors.
FileDescriptor exitEventOf(pid_t child);

}  // namespace tarnbeck
