#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>

#include "AppVersionInfo.h"
#include "TemporaryFolder.h"

namespace app_version {
namespace {

using namespace std::chrono_literals;

const WallTime noon = std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + 12h;

Bundle bundleOf(std::map<std::string, Bundle::Value> info) {
    return {.info = std::move(info), .executablePath = {}};
}

TEST(AppVersionInfo_Current, HasTheVersionsOfTheBundle) {
    const auto info = AppVersionInfo::current(
        bundleOf({{"CFBundleShortVersionString", "1.2"}, {"CFBundleVersion", "34"}}));
    EXPECT_EQ(info, (AppVersionInfo{"1.2", "34", std::nullopt}));
}

TEST(AppVersionInfo_Current, IsZeroWhereAVersionIsMissing) {
    const auto info = AppVersionInfo::current({});
    EXPECT_EQ(info, (AppVersionInfo{"0", "0", std::nullopt}));
}

TEST(AppVersionInfo_Current, IsZeroWhereAVersionIsNoText) {
    const auto info = AppVersionInfo::current(
        bundleOf({{"CFBundleShortVersionString", 1.2}, {"CFBundleVersion", true}}));
    EXPECT_EQ(info, (AppVersionInfo{"0", "0", std::nullopt}));
}

TEST(AppVersionInfo_Current, IsAsOldAsTheExecutable) {
    const tarnbeck::testing::TemporaryFolder folder;
    const std::string file = folder.write("program", "");
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(noon.time_since_epoch());
    const timespec times[] = {{seconds.count() + 99, 0}, {seconds.count(), 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    EXPECT_EQ(AppVersionInfo::current({.info = {}, .executablePath = file}).buildDate, noon);
}

TEST(AppVersionInfo_Current, HasNoDateWhereTheExecutableIsMissing) {
    EXPECT_EQ(AppVersionInfo::current({.info = {}, .executablePath = "/nowhere"}).buildDate,
              std::nullopt);
}

TEST(AppVersionInfo_RunningExecutable, IsThisProgram) {
    EXPECT_EQ(std::filesystem::path(runningExecutablePath()).filename(), "app_version_tests");
}

TEST(AppVersionInfo_DisplayLabel, IsInTheUsersTimeZone) {
    setenv("TZ", "Asia/Tokyo", 1);
    const AppVersionInfo info{"1.2", "34", noon};
    EXPECT_EQ(info.displayLabel(), "1.2 (34) • build 2026-03-01 21:00:00");
}

}  // namespace
}  // namespace app_version
