// The system's own source of file events.
#pragma once

#include <memory>

#include "FileEvents.h"

namespace tarnbeck {

// Its streams may outlive it. Any thread.
std::unique_ptr<FileEvents> makeFileEvents();

}  // namespace tarnbeck
