#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MenuBarIconRenderer.h"
#include "StatusTileRenderer.h"
#include "VectorIconEngine.h"
#include "VectorPainter.h"

namespace tarnbeck {
namespace {

QImage tile(const MenuBarIconRenderState& state, int pixels = 22) {
    return painted(StatusTileRenderer::render(state, statusTextMeasurement()), pixels);
}

QImage menuBarIcon(const MenuBarIconRenderState& state, int pixels = 22) {
    const TextMeasurement measure = statusTextMeasurement();
    return painted(MenuBarIconRenderer::render(state, {.thickness = 22, .measure = measure}),
                   pixels);
}

// The smallest rectangle around the pixels that `wanted` accepts.
template <class Predicate>
QRect extentOf(const QImage& image, Predicate wanted) {
    QRect extent;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (wanted(image.pixelColor(x, y))) extent |= QRect(x, y, 1, 1);
        }
    }
    return extent;
}

bool isBright(const QColor& color) {
    return color.alpha() > 200 && color.lightness() > 215;
}

bool isGreen(const QColor& color) {
    return color.green() > color.red() + 60 && color.green() > color.blue() + 40;
}

TEST(PaintedTile, HasItsGroundInTheMiddleOfAnEdge) {
    EXPECT_EQ(tile({}, 44).pixelColor(4, 22), QColor(0x1B, 0x21, 0x28));
}

TEST(PaintedTile, HasRoundCorners) {
    EXPECT_EQ(tile({}, 44).pixelColor(0, 0).alpha(), 0);
}

TEST(PaintedTile, EdgeIsLighterThanTheGround) {
    const QImage image = tile({}, 44);
    EXPECT_GT(image.pixelColor(22, 0).lightness(), image.pixelColor(4, 22).lightness() + 20);
}

TEST(PaintedTile, GlyphIsThere) {
    const QRect extent =
        extentOf(tile({}), [](const QColor& color) { return color.lightness() > 150; });
    EXPECT_GE(extent.height(), 14);
    EXPECT_GE(extent.width(), 8);
}

TEST(PaintedTile, DigitsCanBeReadAt22Pixels) {
    const QRect extent = extentOf(tile({.gitBadgeCount = 88}), isBright);
    EXPECT_GE(extent.height(), 8);
    EXPECT_GE(extent.width(), 11);
    EXPECT_LE(extent.right(), 21);
    EXPECT_LE(extent.bottom(), 21);
}

TEST(PaintedTile, GrowsWithItsSlot) {
    const QRect small = extentOf(tile({.gitBadgeCount = 8}), isBright);
    const QRect large = extentOf(tile({.gitBadgeCount = 8}, 44), isBright);
    EXPECT_NEAR(large.height(), 2 * small.height(), 3);
}

TEST(PaintedTile, IsGreenInOnePlaceOnlyWhileAwake) {
    EXPECT_TRUE(extentOf(tile({}), isGreen).isEmpty());
    const QRect dot = extentOf(tile({.gitBadgeCount = 88, .awakeActive = true}), isGreen);
    EXPECT_GE(dot.width(), 4);
    EXPECT_LE(dot.width(), 6);
}

TEST(PaintedMenuBarIcon, IsAsWideAsItsLines) {
    EXPECT_EQ(menuBarIcon({}).width(), 18);
    EXPECT_GT(menuBarIcon({.gitBadgeCount = 3}).width(), 18 + 3 + 8);
}

TEST(PaintedMenuBarIcon, TextStandsBesideTheGlyph) {
    const QImage image = menuBarIcon({.gitBadgeCount = 3}, 44);
    const QRect text = extentOf(image.copy(42, 0, image.width() - 42, 44),
                                [](const QColor& color) { return color.alpha() > 128; });
    EXPECT_GE(text.height(), 10);
    EXPECT_LT(text.left(), 6);
}

TEST(PaintedMenuBarIcon, TwoLinesDoNotTouch) {
    const QImage image = menuBarIcon({.gitBadgeCount = 8, .runnerBusyCount = 8}, 44);
    const QImage text = image.copy(42, 0, image.width() - 42, 44);
    bool hasGap = false;
    for (int y = 16; y < 28; ++y) {
        hasGap |= extentOf(text.copy(0, y, text.width(), 1), [](const QColor& color) {
                      return color.alpha() > 60;
                  }).isEmpty();
    }
    EXPECT_TRUE(hasGap);
}

TEST(PaintedMenuBarIcon, LowerDotIsGreenWhileAwake) {
    const QRect dot = extentOf(menuBarIcon({.awakeActive = true}, 44), isGreen);
    EXPECT_GT(dot.top(), 30);
    EXPECT_TRUE(extentOf(menuBarIcon({}, 44), isGreen).isEmpty());
}

TEST(StatusText, IsMeasuredAsItIsDrawn) {
    const std::vector<VectorImage::TextRun> runs = {{.text = "88", .size = 12, .isBold = true}};
    const TextSize size = statusTextMeasurement()(runs, 100);
    const VectorImage image{
        .width = 40,
        .height = 40,
        .commands = {VectorImage::Text{.in = {0, 0, size.width, size.height}, .runs = runs}}};
    const QRect drawn =
        extentOf(painted(image, 160), [](const QColor& color) { return color.alpha() > 128; });
    EXPECT_LE(drawn.right(), size.width * 4);
    EXPECT_GE(drawn.right(), size.width * 4 - 8);
    EXPECT_LE(drawn.bottom(), size.height * 4);
}

TEST(StatusText, DigitsAreOfEqualWidth) {
    const auto widthOf = [](const char* text) {
        return statusTextMeasurement()({{.text = text, .size = 9}}, 100).width;
    };
    for (const char* digit : {"0", "2", "4", "8"}) EXPECT_EQ(widthOf(digit), widthOf("1"));
}

TEST(VectorIcon, IsDrawnAtTheSizeThatIsAskedFor) {
    const QIcon icon(new VectorIconEngine(StatusTileRenderer::render({}, statusTextMeasurement())));
    EXPECT_EQ(icon.pixmap(QSize(28, 28)).size(), QSize(28, 28));
    EXPECT_EQ(icon.pixmap(QSize(28, 28)).toImage().pixelColor(3, 14), QColor(0x1B, 0x21, 0x28));
}

TEST(VectorIcon, OffersSizesToWhoCannotAsk) {
    const QIcon icon(new VectorIconEngine(StatusTileRenderer::render({}, statusTextMeasurement())));
    EXPECT_TRUE(icon.availableSizes().contains(QSize(22, 22)));
    EXPECT_TRUE(icon.availableSizes().contains(QSize(44, 44)));
}

}  // namespace
}  // namespace tarnbeck
