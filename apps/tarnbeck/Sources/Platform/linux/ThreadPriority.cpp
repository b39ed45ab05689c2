#include "ThreadPriority.h"

#include <pthread.h>
#include <sys/resource.h>

#include <cstring>

namespace tarnbeck {

void applyWorkClass(WorkClass workClass) {
    constexpr int utilityNiceness = 5;
    // On Linux a niceness belongs to the thread; 0 names the calling one.
    if (workClass == WorkClass::utility) setpriority(PRIO_PROCESS, 0, utilityNiceness);
}

void nameThread(const char* name) {
    constexpr std::size_t longest = 15;  // what the kernel takes
    // Labels are told apart by their ends.
    const std::size_t length = std::strlen(name);
    pthread_setname_np(pthread_self(), name + (length > longest ? length - longest : 0));
}

}  // namespace tarnbeck
