// The two classes of background threads. Applies to the calling thread, once, at its start.
#pragma once

namespace tarnbeck {

enum class WorkClass { userInitiated, utility };

void applyWorkClass(WorkClass workClass);

// Names the calling thread for debuggers; the end of the name is shown where it is too long.
void nameThread(const char* name);

}  // namespace tarnbeck
