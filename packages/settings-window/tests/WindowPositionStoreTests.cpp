#include "RememberedNumbers.h"
#include "WindowPositionStore.h"

namespace settings_window::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using SavedValues = WindowPositionStore::SavedValues;

class WindowPositionStore_Position : public ::testing::Test {
  protected:
    const WindowFrame area_{{100, 50}, {1000, 800}};
    RememberedNumbers remembered_;
    WindowPositionStore store_{.defaults = remembered_.defaults(), .xKey = "x", .topYKey = "top"};
};

TEST_F(WindowPositionStore_Position, IsNoneWhereNothingIsSaved) {
    EXPECT_EQ(store_.savedValues(), std::nullopt);
    EXPECT_EQ(store_.load({300, 200}, area_), std::nullopt);
}

TEST_F(WindowPositionStore_Position, IsNoneWhereOnlyOneNumberIsSaved) {
    remembered_.numbers = {{"x", 200}};
    EXPECT_EQ(store_.load({300, 200}, area_), std::nullopt);
    remembered_.numbers = {{"top", 200}};
    EXPECT_EQ(store_.savedValues(), std::nullopt);
}

TEST_F(WindowPositionStore_Position, IsSavedAsLeftAndTopEdge) {
    store_.save({{200, 300}, {400, 250}});
    EXPECT_THAT(remembered_.numbers, ElementsAre(Pair("top", 550), Pair("x", 200)));
    EXPECT_EQ(store_.savedValues(), (SavedValues{200, 550}));
}

TEST_F(WindowPositionStore_Position, KeepsTheTopInPlaceForAnotherHeight) {
    store_.save({{200, 300}, {400, 250}});
    EXPECT_EQ(store_.load({400, 100}, area_), (WindowPoint{200, 450}));
}

TEST_F(WindowPositionStore_Position, InsideTheAreaStays) {
    EXPECT_EQ(WindowPositionStore::clamped({200, 300}, {400, 250}, area_), (WindowPoint{200, 300}));
}

TEST_F(WindowPositionStore_Position, OutsideTheAreaIsMovedToItsEdges) {
    EXPECT_EQ(WindowPositionStore::clamped({0, 0}, {400, 250}, area_), (WindowPoint{100, 50}));
    EXPECT_EQ(WindowPositionStore::clamped({2000, 2000}, {400, 250}, area_),
              (WindowPoint{700, 600}));
}

TEST_F(WindowPositionStore_Position, ThatWasSavedOutsideIsMovedAtLoad) {
    remembered_.numbers = {{"x", -500}, {"top", 5000}};
    EXPECT_EQ(store_.load({400, 250}, area_), (WindowPoint{100, 600}));
}

TEST_F(WindowPositionStore_Position, WindowLargerThanTheAreaIsAtItsLeftAndBottom) {
    EXPECT_EQ(WindowPositionStore::clamped({300, 300}, {2000, 1000}, area_),
              (WindowPoint{100, 50}));
}

}  // namespace
}  // namespace settings_window::testing
