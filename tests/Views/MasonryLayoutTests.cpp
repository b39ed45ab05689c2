#include <limits>

#include "MasonryLayout.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using Placement = MasonryLayout::Placement;

// Of items with the given heights, whatever the width.
MasonryLayout::Measured measured(double width, const std::vector<double>& heights) {
    return repoListLayout.measuredLayout(width, heights.size(),
                                         [&](std::size_t index, double) { return heights[index]; });
}

TEST(MasonryLayout, RepositoriesStandInTwoColumnsOf760AtLeastWith8Between) {
    EXPECT_EQ(repoListLayout.maxColumns, 2);
    EXPECT_EQ(repoListLayout.minimumColumnWidth, 760);
    EXPECT_EQ(repoListLayout.spacing, 8);
}

TEST(MasonryLayout, Width1000HasRoomForOneColumn) {
    EXPECT_EQ(repoListLayout.columnCount(1000), 1);
    EXPECT_EQ(measured(1000, {10}).columnWidth, 1000);
}

TEST(MasonryLayout, Width1600HasTwoColumnsOf796TheSecondAt804) {
    EXPECT_EQ(repoListLayout.columnCount(1600), 2);
    const auto layout = measured(1600, {10, 10});
    EXPECT_EQ(layout.columnWidth, 796);
    EXPECT_THAT(layout.placements, ElementsAre(Placement{0, 0, 10}, Placement{804, 0, 10}));
}

TEST(MasonryLayout, SecondColumnComesAtTheWidthOfTwoAndTheirGap) {
    EXPECT_EQ(repoListLayout.columnCount(1527), 1);
    EXPECT_EQ(repoListLayout.columnCount(1528), 2);
}

TEST(MasonryLayout, HasNoMoreColumnsThanItMay) {
    EXPECT_EQ(repoListLayout.columnCount(100000), 2);
    EXPECT_EQ(repoListLayout.columnCount(std::numeric_limits<double>::infinity()), 2);
}

TEST(MasonryLayout, HasOneColumnAtLeast) {
    EXPECT_EQ(repoListLayout.columnCount(0), 1);
    EXPECT_EQ(repoListLayout.columnCount(-5000), 1);
    EXPECT_EQ(repoListLayout.columnCount(std::numeric_limits<double>::quiet_NaN()), 1);
}

TEST(MasonryLayout, OneColumnAllowedIsOneColumn) {
    const MasonryLayout single{.maxColumns = 1, .minimumColumnWidth = 10, .spacing = 1};
    EXPECT_EQ(single.columnCount(1000), 1);
    EXPECT_EQ((MasonryLayout{.maxColumns = 0, .minimumColumnWidth = 10}.columnCount(1000)), 1);
}

TEST(MasonryLayout, EachGoesBelowTheShortestColumn) {
    const auto layout = measured(1600, {100, 300, 50});
    EXPECT_THAT(layout.placements,
                ElementsAre(Placement{0, 0, 100}, Placement{804, 0, 300}, Placement{0, 108, 50}));
    EXPECT_EQ(layout.totalHeight, 300);
}

TEST(MasonryLayout, EqualColumnsFillFromTheLeft) {
    const auto layout = measured(1600, {40, 40, 40});
    EXPECT_THAT(layout.placements,
                ElementsAre(Placement{0, 0, 40}, Placement{804, 0, 40}, Placement{0, 48, 40}));
}

TEST(MasonryLayout, NothingHasNoHeight) {
    EXPECT_EQ(measured(1600, {}).totalHeight, 0);
    EXPECT_TRUE(measured(1600, {}).placements.empty());
}

TEST(MasonryLayout, ColumnIsNeverNarrowerThanOne) {
    EXPECT_EQ(measured(0, {10}).columnWidth, 1);
    EXPECT_EQ(measured(-20, {10}).columnWidth, 1);
}

TEST(MasonryLayout, AsksForHeightsAtTheWidthOfAColumn) {
    std::vector<double> widths;
    repoListLayout.measuredLayout(1600, 2, [&](std::size_t, double width) {
        widths.push_back(width);
        return 1.0;
    });
    EXPECT_THAT(widths, ElementsAre(796, 796));
}

TEST(MasonryLayout, SizeIsTheProposedWidthAndTheHeightAtIt) {
    const auto height = [](std::size_t, double) { return 100.0; };
    EXPECT_EQ(repoListLayout.size(1600, 3, height), (MasonryLayout::Size{1600, 208}));
}

TEST(MasonryLayout, WithoutAProposedWidthItIsOneColumnWide) {
    const auto height = [](std::size_t, double) { return 100.0; };
    EXPECT_EQ(repoListLayout.size(std::nullopt, 3, height), (MasonryLayout::Size{760, 316}));
}

TEST(ColumnRowLayout, FewColumnsShareTheWidth) {
    EXPECT_EQ(ColumnRowLayout::of(1500, 2), (ColumnRowLayout{750, 1500}));
}

TEST(ColumnRowLayout, ManyColumnsAre480WideAndGoBeyondIt) {
    EXPECT_EQ(ColumnRowLayout::of(1500, 10), (ColumnRowLayout{480, 4800}));
    EXPECT_EQ(ColumnRowLayout::of(1440, 3), (ColumnRowLayout{480, 1440}));
}

TEST(ColumnRowLayout, NoColumnsTakeTheWidthThatIsThere) {
    EXPECT_EQ(ColumnRowLayout::of(1500, 0), (ColumnRowLayout{480, 1500}));
}

}  // namespace
}  // namespace tarnbeck
