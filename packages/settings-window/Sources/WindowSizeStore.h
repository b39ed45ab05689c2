#pragma once

#include <string>

#include "WindowDefaults.h"
#include "WindowGeometry.h"

namespace settings_window {

// Remembers the size of a window, between limits.
struct WindowSizeStore {
    WindowDefaults defaults;
    std::string widthKey;
    std::string heightKey;
    double minWidth;
    double maxWidth;
    double minHeight;
    double maxHeight;

    // What was saved, clamped; each number that is missing is that of `defaultSize`.
    WindowSize load(WindowSize defaultSize) const;
    WindowSize clamped(WindowSize size) const;
    // Saves it clamped.
    void save(WindowSize size) const;
};

}  // namespace settings_window
