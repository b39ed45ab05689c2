#include "ControlStripContent.h"

namespace tarnbeck {
namespace {

std::string_view symbolOf(SortMode mode) {
    switch (mode) {
        case SortMode::name:
            return "textformat.abc";
        case SortMode::cleanFirst:
            return "checkmark.circle";
        case SortMode::dirtyFirst:
            return "exclamationmark.triangle";
        case SortMode::issuePriority:
            return "exclamationmark.bubble";
        case SortMode::mostIssues:
            return "number.circle";
        case SortMode::recentlyUpdated:
            return "clock";
    }
    return {};
}

// It names the layout that a click leads to.
ToolbarPill viewToggle(ViewMode mode) {
    if (mode == ViewMode::columns) {
        return {.title = "Masonry", .symbol = "list.bullet", .help = "Switch to list view"};
    }
    return {.title = "Columns", .symbol = "rectangle.split.3x1", .help = "Switch to column view"};
}

ToolbarPill awakePill(bool isAwake) {
    return {.title = "Awake",
            .symbol = "cup.and.saucer.fill",
            .help = isAwake ? "Allow Mac to sleep" : "Keep Mac awake",
            .isSelected = isAwake,
            .accessibleValue = isAwake ? "On" : "Off"};
}

std::vector<SortMenuEntry> sortMenu(const ControlStripInput& input) {
    std::vector<SortMenuEntry> entries;
    for (const SortMode mode : input.sortModes) {
        entries.push_back(
            {.mode = mode, .symbol = symbolOf(mode), .isChecked = mode == input.sortMode});
    }
    return entries;
}

}  // namespace

ControlStrip controlStrip(const ControlStripInput& input) {
    ControlStrip strip{
        .viewToggle = viewToggle(input.viewMode),
        .scan = {.title = "Scan", .symbol = "arrow.clockwise"},
        .sort = {.title = "Sort", .symbol = "arrow.up.arrow.down"},
        .sortMenu = sortMenu(input),
        .awake = awakePill(input.isAwake),
        .awakeFailure = input.awakeFailure,
        .settings = {.title = "Settings", .symbol = "gearshape"},
        .filter = input.filter,
        .domain = input.domain,
        .searchText = input.searchText,
    };
    if (input.viewMode == ViewMode::columns) {
        strip.equalize = {
            .title = "Equalize", .symbol = "equal", .help = "Distribute columns equally"};
    }
    if (!input.searchText.empty()) {
        strip.clearSearch = {.symbol = "xmark.circle.fill", .help = "Clear filter"};
    }
    return strip;
}

}  // namespace tarnbeck
