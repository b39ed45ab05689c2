#include "WindowPositionStore.h"

#include <algorithm>

namespace settings_window {

std::optional<WindowPositionStore::SavedValues> WindowPositionStore::savedValues() const {
    const auto x = defaults.number(xKey);
    const auto topY = defaults.number(topYKey);
    if (!x || !topY) return std::nullopt;
    return SavedValues{.x = *x, .topY = *topY};
}

std::optional<WindowPoint> WindowPositionStore::load(WindowSize windowSize,
                                                     const WindowFrame& area) const {
    const auto saved = savedValues();
    if (!saved) return std::nullopt;
    return clamped({.x = saved->x, .y = saved->topY - windowSize.height}, windowSize, area);
}

WindowPoint WindowPositionStore::clamped(WindowPoint origin, WindowSize windowSize,
                                         const WindowFrame& area) {
    const double rightmost = std::max(area.right() - windowSize.width, area.left());
    const double topmost = std::max(area.top() - windowSize.height, area.bottom());
    return {.x = std::min(std::max(origin.x, area.left()), rightmost),
            .y = std::min(std::max(origin.y, area.bottom()), topmost)};
}

void WindowPositionStore::save(const WindowFrame& frame) const {
    defaults.setNumber(xKey, frame.left());
    defaults.setNumber(topYKey, frame.top());
}

}  // namespace settings_window
