#include "DesktopSystem.h"

#include "CaffeinateProcessLauncher.h"

namespace tarnbeck {

std::unique_ptr<system_awake::CaffeinateLaunching> makeCaffeinateLauncher() {
    return std::make_unique<system_awake::CaffeinateProcessLauncher>("/usr/bin/caffeinate");
}

bool hasDisplay() {
    return true;
}

// The system's own is what windows are drawn with.
void chooseSceneGraph() {}

}  // namespace tarnbeck
