#include "ExitEvent.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace tarnbeck {

// A pidfd, which is close-on-exec by itself.
FileDescriptor exitEventOf(pid_t child) {
    return FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
}

}  // namespace tarnbeck
