#include "ThreadPriority.h"

#include <pthread.h>
#include <pthread/qos.h>

namespace tarnbeck {

void applyWorkClass(WorkClass workClass) {
    pthread_set_qos_class_self_np(
        workClass == WorkClass::utility ? QOS_CLASS_UTILITY : QOS_CLASS_USER_INITIATED, 0);
}

void nameThread(const char* name) {
    pthread_setname_np(name);
}

}  // namespace tarnbeck
