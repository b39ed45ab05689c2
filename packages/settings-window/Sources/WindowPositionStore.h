#pragma once

#include <optional>
#include <string>

#include "WindowDefaults.h"
#include "WindowGeometry.h"

namespace settings_window {

// Remembers where a window stood: its left and its top edge, so that the top stays in place when
// the height changes.
struct WindowPositionStore {
    struct SavedValues {
        double x;
        double topY;
        bool operator==(const SavedValues&) const = default;
    };

    WindowDefaults defaults;
    std::string xKey;
    std::string topYKey;

    // Only if both are there.
    std::optional<SavedValues> savedValues() const;
    // The origin for a window of that size, moved into the area; absent where none was saved.
    std::optional<WindowPoint> load(WindowSize windowSize, const WindowFrame& area) const;
    // A window that is larger than the area stays at its left and bottom edges.
    static WindowPoint clamped(WindowPoint origin, WindowSize windowSize, const WindowFrame& area);
    void save(const WindowFrame& frame) const;
};

}  // namespace settings_window
