// The system's own log, for what an administrator or the user may want to look up later.
#pragma once

#include <string>

namespace tarnbeck {

// Writes one entry of level "error" under the program's name; `category` tells which part speaks.
// The words are public. Never fails: an entry that the system does not take is lost. Any thread.
void writeError(const char* category, const std::string& message);

}  // namespace tarnbeck
