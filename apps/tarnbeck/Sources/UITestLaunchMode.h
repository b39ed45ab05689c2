// Whether the interface runs on fixture data instead of the machine's repositories.
#pragma once

#include "LaunchInput.h"

namespace tarnbeck::UITestLaunchMode {

bool isEnabled(const LaunchInput& input);

}  // namespace tarnbeck::UITestLaunchMode
