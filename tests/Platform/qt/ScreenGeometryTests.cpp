#include <optional>

#include <gtest/gtest.h>

#include "ScreenGeometry.h"

namespace tarnbeck {
namespace {

// Each has a panel at its top.
constexpr ScreenArea left{{0, 0, 1600, 1000}, {0, 28, 1600, 972}};
constexpr ScreenArea right{{1600, 0, 1280, 1024}, {1600, 28, 1280, 996}};
constexpr ScreenArea below{{0, 1000, 1600, 900}, {0, 1028, 1600, 872}};

TEST(AreaOfWindow, IsThatOfTheScreenUnderItsCentre) {
    EXPECT_EQ(areaOfWindow({1500, 100, 800, 600}, {left, right}), right.available);
    EXPECT_EQ(areaOfWindow({1100, 100, 800, 600}, {left, right}), left.available);
}

TEST(AreaOfWindow, IsThatOfAScreenWhosePanelIsUnderItsCentre) {
    EXPECT_EQ(areaOfWindow({1700, -290, 800, 600}, {left, right}), right.available);
}

TEST(AreaOfWindow, IsThatOfTheFirstWhereThereIsNoScreen) {
    EXPECT_EQ(areaOfWindow({1700, 1200, 800, 600}, {left, right, below}), left.available);
}

TEST(AreaOfWindow, IsThatOfTheFirstWhenItsScreenHasGone) {
    EXPECT_EQ(areaOfWindow({1700, 100, 800, 600}, {left}), left.available);
    EXPECT_EQ(areaOfWindow({100, 100, 800, 600}, {right}), right.available);
}

TEST(AreaOfWindow, IsAbsentWithoutAScreen) {
    EXPECT_EQ(areaOfWindow({0, 0, 800, 600}, {}), std::nullopt);
}

TEST(VisibleFrame, IsAbsentWithoutAScreen) {
    EXPECT_EQ(visibleFrameOf(nullptr), std::nullopt);
}

}  // namespace
}  // namespace tarnbeck
