// The three values that decide what the status item looks like.
#pragma once

#include <cstdint>
#include <optional>

namespace tarnbeck {

struct MenuBarIconRenderState {
    std::int64_t gitBadgeCount = 0;
    std::optional<std::int64_t> runnerBusyCount;  // absent: runners are not shown at all
    bool awakeActive = false;

    bool operator==(const MenuBarIconRenderState&) const = default;
};

}  // namespace tarnbeck
