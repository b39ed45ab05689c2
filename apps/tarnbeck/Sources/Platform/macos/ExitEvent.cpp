#include "ExitEvent.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/event.h>

namespace tarnbeck {

// A kernel queue that waits for the exit; queues can be polled like any descriptor.
FileDescriptor exitEventOf(pid_t child) {
    FileDescriptor queue(kqueue());
    if (!queue) return queue;
    fcntl(queue.get(), F_SETFD, FD_CLOEXEC);
    struct kevent change {};
    EV_SET(&change, child, EVFILT_PROC, EV_ADD | EV_ONESHOT, NOTE_EXIT, 0, nullptr);
    if (kevent(queue.get(), &change, 1, nullptr, 0, nullptr) == 0 || errno != ESRCH) return queue;
    // The child has ended already and only waits to be reaped: an event that is there at once.
    EV_SET(&change, 1, EVFILT_USER, EV_ADD, NOTE_TRIGGER, 0, nullptr);
    kevent(queue.get(), &change, 1, nullptr, 0, nullptr);
    return queue;
}

}  // namespace tarnbeck
