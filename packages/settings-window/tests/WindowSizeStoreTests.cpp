#include "RememberedNumbers.h"
#include "WindowSizeStore.h"

namespace settings_window::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

class WindowSizeStore_Size : public ::testing::Test {
  protected:
    RememberedNumbers remembered_;
    WindowSizeStore store_{.defaults = remembered_.defaults(),
                           .widthKey = "width",
                           .heightKey = "height",
                           .minWidth = 100,
                           .maxWidth = 1000,
                           .minHeight = 50,
                           .maxHeight = 500};
};

TEST_F(WindowSizeStore_Size, BetweenTheLimitsStays) {
    EXPECT_EQ(store_.clamped({300, 200}), (WindowSize{300, 200}));
}

TEST_F(WindowSizeStore_Size, BeyondALimitIsMovedToIt) {
    EXPECT_EQ(store_.clamped({1001, 49}), (WindowSize{1000, 50}));
    EXPECT_EQ(store_.clamped({99, 501}), (WindowSize{100, 500}));
}

TEST_F(WindowSizeStore_Size, IsTheDefaultWhereNothingIsSaved) {
    EXPECT_EQ(store_.load({300, 200}), (WindowSize{300, 200}));
}

TEST_F(WindowSizeStore_Size, DefaultIsClampedToo) {
    EXPECT_EQ(store_.load({2000, 10}), (WindowSize{1000, 50}));
}

TEST_F(WindowSizeStore_Size, FallsBackForEachNumberByItself) {
    remembered_.numbers = {{"width", 400}};
    EXPECT_EQ(store_.load({300, 200}), (WindowSize{400, 200}));
    remembered_.numbers = {{"height", 400}};
    EXPECT_EQ(store_.load({300, 200}), (WindowSize{300, 400}));
}

TEST_F(WindowSizeStore_Size, ThatWasSavedTooLargeIsClampedAtLoad) {
    remembered_.numbers = {{"width", 5000}, {"height", 200}};
    EXPECT_EQ(store_.load({300, 200}), (WindowSize{1000, 200}));
}

TEST_F(WindowSizeStore_Size, IsSavedClamped) {
    store_.save({5000, 20});
    EXPECT_THAT(remembered_.numbers, ElementsAre(Pair("height", 50), Pair("width", 1000)));
}

}  // namespace
}  // namespace settings_window::testing
