#include "SystemLog.h"

#include <syslog.h>

namespace tarnbeck {

void writeError(const char* category, const std::string& message) {
    syslog(LOG_USER | LOG_ERR, "%s: %s", category, message.c_str());
}

}  // namespace tarnbeck
