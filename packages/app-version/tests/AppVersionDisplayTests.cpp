#include <cstdlib>

#include "AppVersionDisplay.h"

namespace app_version {
namespace {

using namespace std::chrono_literals;

const AppVersionInfo info{
    "1.2", "34", std::chrono::sys_days{std::chrono::year{2026} / 7 / 1} + 23h + 4s + 900ms};

TEST(AppVersionDisplay_Label, NamesVersionsAndDate) {
    EXPECT_EQ(AppVersionDisplay::label(info, "UTC"), "1.2 (34) • build 2026-07-01 23:00:04");
}

TEST(AppVersionDisplay_Label, IsInTheTimeZone) {
    EXPECT_EQ(AppVersionDisplay::label(info, "Europe/Berlin"),
              "1.2 (34) • build 2026-07-02 01:00:04");
}

TEST(AppVersionDisplay_Label, HasNoDateWhereNoneIsKnown) {
    EXPECT_EQ(AppVersionDisplay::label({"0", "0", std::nullopt}, "UTC"), "0 (0) • build unknown");
}

TEST(AppVersionDisplay_Label, IsTheSameInEveryLocale) {
    setenv("LC_ALL", "ar_EG.UTF-8", 1);
    EXPECT_EQ(AppVersionDisplay::label(info, "UTC"), "1.2 (34) • build 2026-07-01 23:00:04");
}

TEST(AppVersionDisplay_Current, IsTheLabelOfTheBundle) {
    EXPECT_EQ(AppVersionDisplay::current(
                  {.info = {{"CFBundleVersion", "7"}}, .executablePath = "/nowhere"}),
              "0 (7) • build unknown");
}

}  // namespace
}  // namespace app_version
