#include "MainViewOutline.h"
#include "StatusBarContent.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::outline;

TEST(StatusBarContent, TellsAllThereIsToTell) {
    EXPECT_EQ(outline(statusBarContent({.healthy = 12,
                                        .attention = 3,
                                        .gitAttention = 2,
                                        .issueAttention = 4,
                                        .dependencyAttention = 5,
                                        .syncNeeded = 1,
                                        .checking = 6,
                                        .sinceIssueRefresh = 125s,
                                        .sinceScan = 7h})),
              "* [checkmark.circle.fill] 12 healthy green\n"
              "* [exclamationmark.triangle.fill] 3 need attention orange\n"
              "details\n"
              "[arrow.triangle.branch] Git 2 secondary\n"
              "[exclamationmark.bubble] Issues 4 secondary\n"
              "[shippingbox] Deps 5 · Sync 1 secondary\n"
              "trailing\n"
              "[] Checking 6 blue\n"
              "[] Issues 2m ago secondary\n"
              "[clock.arrow.circlepath] Last scan: 7h ago secondary\n");
}

TEST(StatusBarContent, LeavesOutWhatIsNotSo) {
    EXPECT_EQ(outline(statusBarContent({.healthy = 1})),
              "* [checkmark.circle.fill] 1 healthy green\n"
              "details\n"
              "[arrow.triangle.branch] Git 0 secondary\n"
              "[exclamationmark.bubble] Issues 0 secondary\n"
              "[shippingbox] Deps 0 secondary\n"
              "trailing\n");
}

TEST(StatusBarContent, HealthyIsToldWhenThereAreNone) {
    EXPECT_EQ(statusBarContent({.attention = 2}).pills.front().text, "0 healthy");
}

TEST(StatusBarContent, ElapsedTimeIsInTheLargestUnitThatFits) {
    EXPECT_EQ(elapsedText(59s), "59s");
    EXPECT_EQ(elapsedText(60s), "1m");
    EXPECT_EQ(elapsedText(59min + 59s), "59m");
    EXPECT_EQ(elapsedText(60min), "1h");
    EXPECT_EQ(elapsedText(23h + 59min), "23h");
    EXPECT_EQ(elapsedText(24h), "1d");
    EXPECT_EQ(elapsedText(24h * 400), "400d");
}

TEST(StatusBarContent, ElapsedTimeIsCutToWholeUnits) {
    EXPECT_EQ(elapsedText(1999ms), "1s");
    EXPECT_EQ(elapsedText(119s), "1m");
}

TEST(StatusBarContent, NegativeElapsedTimeIsNone) {
    EXPECT_EQ(elapsedText(-5min), "0s");
    EXPECT_EQ(elapsedText(0s), "0s");
}

}  // namespace
}  // namespace tarnbeck
