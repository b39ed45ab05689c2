#include "WindowSizeStore.h"

#include <algorithm>

namespace settings_window {

WindowSize WindowSizeStore::load(WindowSize defaultSize) const {
    return clamped({.width = defaults.number(widthKey).value_or(defaultSize.width),
                    .height = defaults.number(heightKey).value_or(defaultSize.height)});
}

WindowSize WindowSizeStore::clamped(WindowSize size) const {
    return {.width = std::min(std::max(size.width, minWidth), maxWidth),
            .height = std::min(std::max(size.height, minHeight), maxHeight)};
}

void WindowSizeStore::save(WindowSize size) const {
    const auto [width, height] = clamped(size);
    defaults.setNumber(widthKey, width);
    defaults.setNumber(heightKey, height);
}

}  // namespace settings_window
