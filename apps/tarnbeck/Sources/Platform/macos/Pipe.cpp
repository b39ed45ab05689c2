#include "Pipe.h"

#include <fcntl.h>
#include <unistd.h>

namespace tarnbeck {

// There is no call that makes both in one step here; children are spawned with
// POSIX_SPAWN_CLOEXEC_DEFAULT, so that none inherits the ends in between either.
Pipe makePipe() {
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0) return {};
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace tarnbeck
