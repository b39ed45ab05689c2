// What the application does differently on each system.
#pragma once

#include <memory>

#include "CaffeinateLaunching.h"

namespace tarnbeck {

// How the machine is kept awake.
std::unique_ptr<system_awake::CaffeinateLaunching> makeCaffeinateLauncher();

// Whether there is something to show windows on, as far as the environment tells.
bool hasDisplay();

// Before the first window, unless the user has chosen one.
void chooseSceneGraph();

}  // namespace tarnbeck
