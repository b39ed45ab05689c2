#include "MeasuredText.h"
#include "StatusTileRenderer.h"

namespace tarnbeck {
namespace {

using StatusTileRenderer::badgeText;
using StatusTileRenderer::toolTip;
using testing::commandsOf;
using testing::measuredText;
using testing::textOf;

VectorImage tile(const MenuBarIconRenderState& state) {
    return StatusTileRenderer::render(state, measuredText);
}

TEST(StatusTile_Badge, IsTheCountUpTo99) {
    EXPECT_EQ(badgeText({.gitBadgeCount = 1}), "1");
    EXPECT_EQ(badgeText({.gitBadgeCount = 99}), "99");
}

TEST(StatusTile_Badge, IsAPlusSignFromThere) {
    EXPECT_EQ(badgeText({.gitBadgeCount = 100}), "+");
}

TEST(StatusTile_Badge, IsNotThereForNothingToCount) {
    EXPECT_EQ(badgeText({.gitBadgeCount = 0, .runnerBusyCount = 3}), "");
    EXPECT_EQ(badgeText({.gitBadgeCount = -1}), "");
    EXPECT_TRUE(commandsOf<VectorImage::Text>(tile({})).empty());
}

TEST(StatusTile_Badge, StaysWithinTheTile) {
    const auto texts = commandsOf<VectorImage::Text>(tile({.gitBadgeCount = 88}));
    ASSERT_EQ(texts.size(), 1);
    EXPECT_EQ(textOf(texts[0]), "88");
    EXPECT_GE(texts[0].in.x, 1);
    EXPECT_LE(texts[0].in.x + texts[0].in.width, StatusTileRenderer::side);
    EXPECT_LE(texts[0].in.y + texts[0].in.height, StatusTileRenderer::side);
}

TEST(StatusTile_Badge, IsTwelveHighAndBold) {
    const auto texts = commandsOf<VectorImage::Text>(tile({.gitBadgeCount = 8}));
    ASSERT_EQ(texts.size(), 1);
    EXPECT_EQ(texts[0].runs.at(0).size, 12);
    EXPECT_TRUE(texts[0].runs.at(0).isBold);
}

TEST(StatusTile_Ground, IsASquareWithRoundCornersAndAnEdge) {
    const VectorImage image = tile({.gitBadgeCount = 8});
    EXPECT_EQ(image.width, image.height);
    const auto rects = commandsOf<VectorImage::RoundedRect>(image);
    ASSERT_EQ(rects.size(), 2);
    EXPECT_EQ(rects[0].radius, 5);
    EXPECT_EQ(rects[0].color.ink, Ink::tile);
    EXPECT_EQ(rects[0].width, 0);
    EXPECT_EQ(rects[1].color.ink, Ink::tileEdge);
    EXPECT_EQ(rects[1].width, 1);
}

TEST(StatusTile_Ground, IsNeverTintedByTheSystem) {
    EXPECT_FALSE(tile({}).isTemplate);
}

TEST(StatusTile_Glyph, IsThereWithABadgeAndWithout) {
    EXPECT_EQ(commandsOf<VectorImage::Curve>(tile({})).size(), 1);
    EXPECT_EQ(commandsOf<VectorImage::Curve>(tile({.gitBadgeCount = 8})).size(), 1);
}

TEST(StatusTile_Awake, IsAGreenDotOverAllElse) {
    const auto greenIn = [](const VectorImage& image) {
        const auto* oval = std::get_if<VectorImage::FilledOval>(&image.commands.back());
        return oval && oval->color.ink == Ink::tileGreen;
    };
    EXPECT_TRUE(greenIn(tile({.gitBadgeCount = 8, .awakeActive = true})));
    EXPECT_FALSE(greenIn(tile({.gitBadgeCount = 8})));
}

TEST(StatusTile_ToolTip, TellsAllCountsInFull) {
    EXPECT_EQ(toolTip({.gitBadgeCount = 1234, .runnerBusyCount = 1, .awakeActive = true}),
              "Tarnbeck · 1234 dirty repos · 1 busy runner · awake");
}

TEST(StatusTile_ToolTip, CountsOneInTheSingular) {
    EXPECT_EQ(toolTip({.gitBadgeCount = 1, .runnerBusyCount = 2}),
              "Tarnbeck · 1 dirty repo · 2 busy runners");
}

TEST(StatusTile_ToolTip, IsTheNameAloneForNothingToTell) {
    EXPECT_EQ(toolTip({}), "Tarnbeck");
}

}  // namespace
}  // namespace tarnbeck
