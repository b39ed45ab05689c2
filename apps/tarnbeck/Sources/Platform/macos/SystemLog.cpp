#include "SystemLog.h"

#include <os/log.h>

namespace tarnbeck {

// The system keeps one log object for each category; asking again gives the same one.
void writeError(const char* category, const std::string& message) {
    os_log_error(os_log_create("com.tarnbeck", category), "%{public}s", message.c_str());
}

}  // namespace tarnbeck
