#include "ThreadPriority.h"

#include <cstring>

#include <pthread.h>
#include <sys/resource.h>

namespace tarnbeck {

void applyWorkClass(WorkClass workClass) {
    constexpr int additionalNiceness = 5;
    constexpr id_t callingThread = 0;  // on Linux a niceness belongs to the thread
    if (workClass != WorkClass::utility) return;
    // Counted from what the program was started with, which may be nicer than that already.
    setpriority(PRIO_PROCESS, callingThread,
                getpriority(PRIO_PROCESS, callingThread) + additionalNiceness);
}

void nameThread(const char* name) {
    constexpr std::size_t longest = 15;  // what the kernel takes
    // Labels are told apart by their ends.
    const std::size_t length = std::strlen(name);
    pthread_setname_np(pthread_self(), name + (length > longest ? length - longest : 0));
}

}  // namespace tarnbeck
