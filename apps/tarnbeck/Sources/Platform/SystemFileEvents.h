// The system's own source of file events: inotify on Linux, FSEvents on macOS.
#pragma once

#include <memory>

#include "FileEvents.h"

namespace tarnbeck {

// Its streams may outlive it. Any thread.
//
// On both systems a root need not exist: it is watched from when it does, and again after it was
// away. One that is a link is watched as the folder that it leads to. Links below the roots are not
// followed.
//
// On Linux a stream is one inotify descriptor with a watch on each folder, a descriptor to end it,
// and a thread that sleeps while nothing happens. Neither watched nor read are folders of an
// excluded name, roots with an excluded component, and what is big, often written and of no meaning
// to the state of a repository: "objects", "lfs", "annex" and "fsmonitor--daemon" in ".git", in the
// git folders of submodules and in those of linked worktrees. (An object store alone may have 258
// folders, and the rest of a ".git" a dozen. References, reflogs and all else are told, whatever
// they are called.) A folder that is mounted at two places is told under one of them. Where the
// user's watches are used up, `report` gets one line, the batch says that events were lost, and
// what is watched stays watched.
std::unique_ptr<FileEvents> makeFileEvents();

}  // namespace tarnbeck
