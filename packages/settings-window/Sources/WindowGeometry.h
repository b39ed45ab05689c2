// Places and sizes of windows, in points of the screen; y grows upwards, towards a window's top.
#pragma once

namespace settings_window {

struct WindowPoint {
    double x = 0;
    double y = 0;
    bool operator==(const WindowPoint&) const = default;
};

struct WindowSize {
    double width = 0;
    double height = 0;
    bool operator==(const WindowSize&) const = default;
};

// `origin` is the lower left corner.
struct WindowFrame {
    WindowPoint origin;
    WindowSize size;
    bool operator==(const WindowFrame&) const = default;

    double left() const { return origin.x; }
    double right() const { return origin.x + size.width; }
    double bottom() const { return origin.y; }
    double top() const { return origin.y + size.height; }
};

}  // namespace settings_window
