#include <array>
#include <set>

#include "ControlStripContent.h"
#include "MainViewOutline.h"
#include "Symbol.h"

namespace tarnbeck {
namespace {

using testing::outline;

constexpr std::array allSortModes = {SortMode::name,       SortMode::cleanFirst,
                                     SortMode::dirtyFirst, SortMode::issuePriority,
                                     SortMode::mostIssues, SortMode::recentlyUpdated};

TEST(ControlStripContent, OfTheColumns) {
    EXPECT_EQ(outline(controlStrip({.sortModes = allSortModes})),
              "Masonry [list.bullet] (Switch to list view)\n"
              "Scan [arrow.clockwise]\n"
              "Sort [arrow.up.arrow.down]\n"
              "  Name [textformat.abc]\n"
              "  Clean First [checkmark.circle]\n"
              "  Dirty First [exclamationmark.triangle] checkmark\n"
              "  Issue Priority [exclamationmark.bubble]\n"
              "  Most Issues [number.circle]\n"
              "  Recently Updated [clock]\n"
              "Equalize [equal] (Distribute columns equally)\n"
              "Awake [cup.and.saucer.fill] (Keep Mac awake) = Off\n"
              "Settings [gearshape]\n"
              "Filter: Needs, Git\n"
              "search [magnifyingglass] Filter: \"\"\n");
}

TEST(ControlStripContent, OfTheListKeptAwakeAndSearched) {
    const std::array modes = {SortMode::issuePriority, SortMode::name};
    EXPECT_EQ(
        outline(controlStrip({.viewMode = ViewMode::list,
                              .sortModes = modes,
                              .sortMode = SortMode::name,
                              .isAwake = true,
                              .filter = FilterMode::all,
                              .domain = DomainMode::dependencies,
                              .searchText = "react"})),
        "Columns [rectangle.split.3x1] (Switch to column view)\n"
        "Scan [arrow.clockwise]\n"
        "Sort [arrow.up.arrow.down]\n"
        "  Issue Priority [exclamationmark.bubble]\n"
        "  Name [textformat.abc] checkmark\n"
        "Awake [cup.and.saucer.fill] (Allow Mac to sleep) selected = On\n"
        "Settings [gearshape]\n"
        "Filter: All, Deps\n"
        "search [magnifyingglass] Filter: \"react\", clear: [xmark.circle.fill] (Clear filter)\n");
}

TEST(ControlStripContent, TellsWhyTheMachineCannotBeKeptAwake) {
    EXPECT_EQ(controlStrip({.awakeFailure = "No such file"}).awakeFailure, "No such file");
}

TEST(ControlStripContent, ControlsHaveTheirWidths) {
    EXPECT_EQ(ControlStrip::filterWidth, 180);
    EXPECT_EQ(ControlStrip::domainWidth, 300);
    EXPECT_EQ(ControlStrip::searchWidth, 270);
}

TEST(ControlStripContent, EachChoiceHasItsWords) {
    EXPECT_EQ(rawValue(FilterMode::all), "All");
    EXPECT_EQ(rawValue(FilterMode::dirty), "Needs");
    EXPECT_EQ(rawValue(DomainMode::git), "Git");
    EXPECT_EQ(rawValue(DomainMode::issues), "Issues");
    EXPECT_EQ(rawValue(DomainMode::dependencies), "Deps");
    EXPECT_EQ(rawValue(DomainMode::combined), "Combined");
    EXPECT_EQ(rawValue(ViewMode::list), "list");
    EXPECT_EQ(rawValue(ViewMode::columns), "columns");
}

TEST(ControlStripContent, EachSymbolIsDrawn) {
    for (const ViewMode mode : {ViewMode::list, ViewMode::columns}) {
        const ControlStrip strip =
            controlStrip({.viewMode = mode, .sortModes = allSortModes, .searchText = "a"});
        std::set<std::string_view> symbols = {strip.viewToggle.symbol,   strip.scan.symbol,
                                              strip.sort.symbol,         strip.awake.symbol,
                                              strip.settings.symbol,     strip.clearSearch->symbol,
                                              ControlStrip::searchSymbol};
        if (strip.equalize) symbols.insert(strip.equalize->symbol);
        for (const SortMenuEntry& entry : strip.sortMenu) symbols.insert(entry.symbol);
        for (const std::string_view symbol : symbols) EXPECT_TRUE(isSymbol(symbol)) << symbol;
    }
}

}  // namespace
}  // namespace tarnbeck
