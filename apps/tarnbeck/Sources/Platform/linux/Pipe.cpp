#include "Pipe.h"

#include <fcntl.h>
#include <unistd.h>

namespace tarnbeck {

Pipe makePipe() {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) return {};
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace tarnbeck
