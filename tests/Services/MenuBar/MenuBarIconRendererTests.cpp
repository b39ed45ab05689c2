#include "MeasuredText.h"
#include "MenuBarIconRenderer.h"

namespace tarnbeck {
namespace {

using MenuBarIconRenderer::BranchColors;
using MenuBarIconRenderer::buildCountLines;
using MenuBarIconRenderer::countColumnWidth;
using MenuBarIconRenderer::CountLine;
using MenuBarIconRenderer::drawBranch;
using testing::commandsOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::measuredText;
using testing::textOf;

VectorImage rendered(const MenuBarIconRenderState& state, double thickness = 22) {
    return MenuBarIconRenderer::render(state, {.thickness = thickness, .measure = measuredText});
}

std::vector<std::string> linesOf(const VectorImage& image) {
    std::vector<std::string> lines;
    for (const auto& text : commandsOf<VectorImage::Text>(image)) lines.push_back(textOf(text));
    return lines;
}

// Where the glyph begins: its upper dot is centred at a tenth of its 18 pixels.
double glyphTop(const VectorImage& image) {
    const auto dots = commandsOf<VectorImage::FilledOval>(image);
    return dots.at(0).in.y + 2.2 - 1.8;
}

TEST(MenuBarIcon_Lines, AreNoneForNothingToCount) {
    EXPECT_THAT(buildCountLines(0, std::nullopt), IsEmpty());
}

TEST(MenuBarIcon_Lines, AreNoneForANegativeCountWithoutRunners) {
    EXPECT_THAT(buildCountLines(-1, std::nullopt), IsEmpty());
}

TEST(MenuBarIcon_Lines, CountOfGitStandsAloneWithoutRunners) {
    EXPECT_THAT(buildCountLines(3, std::nullopt), ElementsAre(CountLine{"3", "G"}));
}

TEST(MenuBarIcon_Lines, BothAreThereWithRunnersEvenAtZero) {
    EXPECT_THAT(buildCountLines(0, 0), ElementsAre(CountLine{"0", "R"}, CountLine{"0", "G"}));
}

TEST(MenuBarIcon_Lines, RunnersStandAboveGit) {
    EXPECT_THAT(buildCountLines(5, 2), ElementsAre(CountLine{"2", "R"}, CountLine{"5", "G"}));
}

TEST(MenuBarIcon_Lines, NegativeCountsAreDrawnAsZero) {
    EXPECT_THAT(buildCountLines(-4, -7), ElementsAre(CountLine{"0", "R"}, CountLine{"0", "G"}));
}

TEST(MenuBarIcon_Column, IsZeroWithoutLines) {
    EXPECT_EQ(countColumnWidth({}, measuredText), 0);
}

// 0.6 × 9 for the digit, 0.6 × 6.3 × 2 for the blank and the letter: 12.96.
TEST(MenuBarIcon_Column, IsRoundedUpToWholePoints) {
    EXPECT_EQ(countColumnWidth({{"3", "G"}}, measuredText), 13);
}

TEST(MenuBarIcon_Column, FitsTheWiderOfTwoLines) {
    EXPECT_EQ(countColumnWidth({{"3", "R"}, {"12", "G"}}, measuredText), 19);
    EXPECT_EQ(countColumnWidth({{"12", "R"}, {"3", "G"}}, measuredText), 19);
}

TEST(MenuBarIcon_Size, IsTheGlyphAloneWithoutLines) {
    EXPECT_EQ(rendered({}).width, 18);
}

TEST(MenuBarIcon_Size, HasRoomForTheColumnWithLines) {
    EXPECT_EQ(rendered({.gitBadgeCount = 3}).width, 13 + 3 + 18);
}

TEST(MenuBarIcon_Size, IsTheBarsThicknessRoundedUp) {
    EXPECT_EQ(rendered({}, 24).height, 24);
    EXPECT_EQ(rendered({}, 21.2).height, 22);
}

TEST(MenuBarIcon_Size, IsAtLeast18High) {
    EXPECT_EQ(rendered({}, 17.5).height, 18);
    EXPECT_EQ(rendered({}, 10).height, 18);
}

TEST(MenuBarIcon_Glyph, IsCentredAndOffsetByHalfAPoint) {
    EXPECT_DOUBLE_EQ(glyphTop(rendered({}, 24)), 3.5);
    EXPECT_DOUBLE_EQ(glyphTop(rendered({}, 17.5)), 0.5);
    EXPECT_DOUBLE_EQ(glyphTop(rendered({}, 23)), 3.5);
}

constexpr BranchColors twoColors{.ink = {.ink = Ink::black}, .lowerDot = {.ink = Ink::systemGreen}};

VectorImage branchInSquare() {
    return {.commands = drawBranch({100, 200, 18, 18}, twoColors)};
}

void expectNear(VectorImage::Point point, double x, double y) {
    EXPECT_NEAR(point.x - 100, x, 1e-9);
    EXPECT_NEAR(point.y - 200, y, 1e-9);
}

TEST(MenuBarIcon_Glyph, StemStopsADotsRadiusShortOfBothDots) {
    const auto lines = commandsOf<VectorImage::Line>(branchInSquare());
    ASSERT_EQ(lines.size(), 1);
    expectNear(lines[0].from, 6.84, 4.0);
    expectNear(lines[0].to, 6.84, 14.0);
    EXPECT_EQ(lines[0].width, 1.7);
    EXPECT_EQ(lines[0].color, twoColors.ink);
}

TEST(MenuBarIcon_Glyph, BranchLeavesTheJointAndEndsBelowItsDot) {
    const auto curves = commandsOf<VectorImage::Curve>(branchInSquare());
    ASSERT_EQ(curves.size(), 1);
    expectNear(curves[0].from, 6.84, 8.64);
    expectNear(curves[0].firstControl, 9.0, 8.64);
    expectNear(curves[0].secondControl, 14.04, 7.74);
    expectNear(curves[0].to, 14.04, 6.16);
    EXPECT_EQ(curves[0].width, 1.7);
    EXPECT_EQ(curves[0].color, twoColors.ink);
}

TEST(MenuBarIcon_Glyph, HasFourDotsOfWhichTheLowerIsApart) {
    const auto dots = commandsOf<VectorImage::FilledOval>(branchInSquare());
    ASSERT_EQ(dots.size(), 4);
    const double centres[4][2] = {{6.84, 1.8}, {6.84, 16.2}, {6.84, 8.64}, {14.04, 3.96}};
    for (std::size_t index = 0; index < 4; ++index) {
        const auto& dot = dots[index];
        expectNear({dot.in.x + 2.2, dot.in.y + 2.2}, centres[index][0], centres[index][1]);
        EXPECT_EQ(dot.in.width, 4.4);
        EXPECT_EQ(dot.in.height, 4.4);
        EXPECT_EQ(dot.color, index == 1 ? twoColors.lowerDot : twoColors.ink);
    }
}

TEST(MenuBarIcon_Text, CountIsLargerAndStrongerThanItsLetter) {
    const auto texts = commandsOf<VectorImage::Text>(rendered({.gitBadgeCount = 3}));
    ASSERT_EQ(texts.size(), 1);
    EXPECT_THAT(
        texts[0].runs,
        ElementsAre(VectorImage::TextRun{.text = "3", .size = 9.0, .color = {.ink = Ink::black}},
                    VectorImage::TextRun{
                        .text = " G", .size = 6.3, .color = {.ink = Ink::black, .alpha = 0.62}}));
}

// The line is 10.8 high: round((22 − 10.8) ÷ 2) is 6.
TEST(MenuBarIcon_Text, OneLineIsCentredInTheWholeHeight) {
    const auto texts = commandsOf<VectorImage::Text>(rendered({.gitBadgeCount = 3}));
    ASSERT_EQ(texts.size(), 1);
    EXPECT_EQ(texts[0].in, (VectorImage::Rect{21, 6, 13 + 2, 11}));
}

// Each half is 11 high: round(0.1) is 0.
TEST(MenuBarIcon_Text, TwoLinesShareTheHeightAndBeginAtTheSameEdge) {
    const auto texts =
        commandsOf<VectorImage::Text>(rendered({.gitBadgeCount = 12, .runnerBusyCount = 3}));
    ASSERT_EQ(texts.size(), 2);
    EXPECT_EQ(texts[0].in, (VectorImage::Rect{21, 0, 19 + 2, 11}));
    EXPECT_EQ(texts[1].in, (VectorImage::Rect{21, 11, 19 + 2, 11}));
}

TEST(MenuBarIcon_Text, IsMeasuredAgainstTheWidthItIsDrawnIn) {
    std::vector<double> widths;
    const TextMeasurement measure = [&](const auto& runs, double width) {
        if (runs.size() == 2) widths.push_back(width);
        return measuredText(runs, width);
    };
    MenuBarIconRenderer::render({.gitBadgeCount = 3}, {.thickness = 22, .measure = measure});
    EXPECT_THAT(widths, ElementsAre(15.0));
}

struct Shown {
    MenuBarIconRenderState state;
    std::vector<std::string> lines;
    Ink ink;
    Ink lowerDot;
};

class MenuBarIcon_Shown : public ::testing::TestWithParam<Shown> {};

TEST_P(MenuBarIcon_Shown, LinesColorsAndKindFollowTheState) {
    const VectorImage image = rendered(GetParam().state);
    EXPECT_EQ(linesOf(image), GetParam().lines);
    const auto dots = commandsOf<VectorImage::FilledOval>(image);
    ASSERT_EQ(dots.size(), 4);
    EXPECT_EQ(dots[0].color.ink, GetParam().ink);
    EXPECT_EQ(dots[1].color.ink, GetParam().lowerDot);
    for (const auto& text : commandsOf<VectorImage::Text>(image)) {
        for (const auto& run : text.runs) EXPECT_EQ(run.color.ink, GetParam().ink);
    }
    EXPECT_EQ(image.isTemplate, !GetParam().state.awakeActive);
}

INSTANTIATE_TEST_SUITE_P(
    All, MenuBarIcon_Shown,
    ::testing::Values(Shown{{}, {}, Ink::black, Ink::black},
                      Shown{{.gitBadgeCount = 3}, {"3 G"}, Ink::black, Ink::black},
                      Shown{{.runnerBusyCount = 0}, {"0 R", "0 G"}, Ink::black, Ink::black},
                      Shown{{.gitBadgeCount = 5, .runnerBusyCount = 2, .awakeActive = true},
                            {"2 R", "5 G"},
                            Ink::label,
                            Ink::systemGreen},
                      Shown{{.awakeActive = true}, {}, Ink::label, Ink::systemGreen}));

TEST(MenuBarIcon_State, EqualsOneOfTheSameThreeValues) {
    EXPECT_EQ((MenuBarIconRenderState{3, 2, true}), (MenuBarIconRenderState{3, 2, true}));
    EXPECT_NE((MenuBarIconRenderState{3, 0, true}), (MenuBarIconRenderState{3, {}, true}));
    EXPECT_NE((MenuBarIconRenderState{3, 2, true}), (MenuBarIconRenderState{4, 2, true}));
    EXPECT_NE((MenuBarIconRenderState{3, 2, true}), (MenuBarIconRenderState{3, 2, false}));
}

}  // namespace
}  // namespace tarnbeck
