// What the one screen of the application shows at a moment, in the window and in the popover alike.
// Plain values; the sections' rows are asked for one by one (see `MainView::section`).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "AppToast.h"
#include "StatusColor.h"
#include "TextEnumeration.h"
#include "ViewAlert.h"

namespace tarnbeck {

// Which aspect of a repository the view is about.
enum class DomainMode { git, issues, dependencies, combined };
constexpr auto rawValues(DomainMode /*tag*/) {
    return std::to_array<std::pair<DomainMode, std::string_view>>({
        {DomainMode::git, "Git"},
        {DomainMode::issues, "Issues"},
        {DomainMode::dependencies, "Deps"},
        {DomainMode::combined, "Combined"},
    });
}

enum class FilterMode { all, dirty };
constexpr auto rawValues(FilterMode /*tag*/) {
    return std::to_array<std::pair<FilterMode, std::string_view>>({
        {FilterMode::all, "All"},
        {FilterMode::dirty, "Needs"},
    });
}

enum class SortMode { name, cleanFirst, dirtyFirst, issuePriority, mostIssues, recentlyUpdated };
constexpr auto rawValues(SortMode /*tag*/) {
    return std::to_array<std::pair<SortMode, std::string_view>>({
        {SortMode::name, "Name"},
        {SortMode::cleanFirst, "Clean First"},
        {SortMode::dirtyFirst, "Dirty First"},
        {SortMode::issuePriority, "Issue Priority"},
        {SortMode::mostIssues, "Most Issues"},
        {SortMode::recentlyUpdated, "Recently Updated"},
    });
}

enum class ViewMode { list, columns };
constexpr auto rawValues(ViewMode /*tag*/) {
    return std::to_array<std::pair<ViewMode, std::string_view>>({
        {ViewMode::list, "list"},
        {ViewMode::columns, "columns"},
    });
}

struct ToolbarPill {
    std::string title;
    std::string_view symbol;
    std::string help;  // empty: none
    bool isSelected = false;
    std::string accessibleValue;  // empty: none
    bool operator==(const ToolbarPill&) const = default;
};

struct SortMenuEntry {
    SortMode mode = SortMode::name;
    std::string_view symbol;
    bool isChecked = false;  // it is the one in use
    bool operator==(const SortMenuEntry&) const = default;
};

struct ControlStrip {
    // What never changes; widths in device-independent pixels.
    static constexpr std::string_view filterLabel = "Filter";  // before the two choices
    static constexpr double filterWidth = 180;
    static constexpr double domainWidth = 300;
    static constexpr std::string_view searchSymbol = "magnifyingglass";
    static constexpr std::string_view searchPrompt = "Filter";
    static constexpr double searchWidth = 270;

    ToolbarPill viewToggle;
    ToolbarPill scan;
    ToolbarPill sort;
    std::vector<SortMenuEntry> sortMenu;
    std::optional<ToolbarPill> equalize;
    ToolbarPill awake;
    std::string awakeFailure;  // why the machine can't be kept awake; empty: it can
    ToolbarPill settings;
    FilterMode filter = FilterMode::dirty;
    DomainMode domain = DomainMode::git;
    std::string searchText;
    std::optional<ToolbarPill> clearSearch;  // at the end of the search field
    bool operator==(const ControlStrip&) const = default;
};

struct StatusPill {
    std::string_view symbol;  // may be empty
    std::string text;
    StatusColor color = StatusColor::secondary;
    bool isProminent = false;
    bool operator==(const StatusPill&) const = default;
};

struct StatusBar {
    std::vector<StatusPill> pills;            // always shown
    std::vector<StatusPill> detailPills;      // where there is room
    std::vector<StatusPill> trailingDetails;  // at the right, where there is more room
    bool operator==(const StatusBar&) const = default;
};

// There is nothing to show at all.
struct EmptyState {
    std::string_view symbol;
    std::string title;
    std::string line;
    std::string button;
    bool operator==(const EmptyState&) const = default;
};

// There are repositories, but none to show.
struct EmptyResult {
    std::string_view symbol;  // empty in the list
    bool isLoading = false;
    std::string text;
    bool operator==(const EmptyResult&) const = default;
};

struct SectionList {
    // One repository's place in the list. `revision` changes when its section is to be asked for
    // anew.
    struct Entry {
        std::string path;
        std::uint64_t revision = 0;
        bool operator==(const Entry&) const = default;
    };
    ViewMode mode = ViewMode::columns;
    std::vector<Entry> entries;  // in the order on the screen
    bool operator==(const SectionList&) const = default;
};

struct MainViewContent {
    std::optional<ControlStrip> strip;
    std::variant<EmptyState, EmptyResult, SectionList> area;
    StatusBar statusBar;
    AppToast toast;
    std::optional<ViewAlert> alert;
    double backdropOpacity = 1;             // 0 to 1
    std::uint64_t splitViewResetToken = 0;  // another one: scroll to the first column
    bool operator==(const MainViewContent&) const = default;
};

}  // namespace tarnbeck
