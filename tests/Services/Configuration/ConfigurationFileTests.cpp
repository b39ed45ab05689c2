#include <sys/stat.h>

#include "ConfigurationFixture.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AppConfiguration_Saving : public testing::ConfigurationFixture {
  protected:
    mode_t modeOf(const std::string& path) const {
        struct stat information {};
        EXPECT_EQ(lstat(path.c_str(), &information), 0) << path;
        return information.st_mode & 07777;
    }
};

TEST_F(AppConfiguration_Saving, WritesAllKeysSortedAndIndented) {
    ASSERT_TRUE(AppConfiguration{.repoPaths = {"/a"}}.save(place_));
    EXPECT_EQ(contentOf(place_.file()), R"({
  "appBackdropOpacity": 0.78,
  "appMode": "menuBarOnly",
  "discoveryIgnorePaths": [],
  "gitHubBridgeMonitoringEnabled": false,
  "keepAwakeOnLaunch": true,
  "popoverBackdropOpacity": 0.55,
  "repoPaths": [
    "/a"
  ],
  "runnerNamePrefix": "",
  "runnerRefreshIntervalSeconds": 10,
  "runnerRepoSlugs": [],
  "scanDirectories": [
    "~/projects"
  ],
  "scanIntervalMinutes": 30,
  "showDirtyCountInMenuBar": true,
  "showIssues": true,
  "showRemoteBranches": true,
  "showRunnerMonitoring": true,
  "showTags": true
}
)");
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(AppConfiguration_Saving, MakesTheFolderWithItsParents) {
    ASSERT_FALSE(isFile(".config"));
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    EXPECT_TRUE(isFile(fileName));
}

TEST_F(AppConfiguration_Saving, WhatWasSavedReadsBackTheSame) {
    const AppConfiguration configuration{.repoPaths = {"~/a b", "/ü/資料", "/quote\"back\\slash\n"},
                                         .scanDirectories = {},
                                         .discoveryIgnorePaths = {"/d"},
                                         .scanIntervalMinutes = -1,
                                         .showRemoteBranches = false,
                                         .showTags = false,
                                         .showDirtyCountInMenuBar = false,
                                         .showIssues = false,
                                         .keepAwakeOnLaunch = false,
                                         .gitHubBridgeMonitoringEnabled = true,
                                         .showRunnerMonitoring = false,
                                         .runnerRepoSlugs = {"o/r"},
                                         .runnerNamePrefix = "mac-",
                                         .runnerRefreshIntervalSeconds = 60,
                                         .appMode = AppConfiguration::AppMode::regular,
                                         .appBackdropOpacity = 0.1,
                                         .popoverBackdropOpacity = 1};
    ASSERT_TRUE(configuration.save(place_));
    EXPECT_EQ(load(), configuration);
}

TEST_F(AppConfiguration_Saving, BytesThatAreNotUtf8AreReplaced) {
    ASSERT_TRUE((AppConfiguration{.repoPaths = {"/a\xFF/b"}}.save(place_)));
    EXPECT_THAT(load().repoPaths, ElementsAre("/a\uFFFD/b"));
}

TEST_F(AppConfiguration_Saving, LeavesNothingElseInTheFolder) {
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    ASSERT_TRUE(AppConfiguration{.showTags = false}.save(place_));
    EXPECT_THAT(namesIn(".config/tarnbeck"), ElementsAre("config.json"));
}

TEST_F(AppConfiguration_Saving, ReplacesTheFileInsteadOfWritingIntoIt) {
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    fs::create_hard_link(place_.file(), home_ / "old");
    const std::string before = contentOf(home_ / "old");
    ASSERT_TRUE(AppConfiguration{.showTags = false}.save(place_));
    EXPECT_EQ(contentOf(home_ / "old"), before);
}

TEST_F(AppConfiguration_Saving, ModeOfTheFileIsKept) {
    write("{}");
    ASSERT_EQ(chmod(place_.file().c_str(), 0600), 0);
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    EXPECT_EQ(modeOf(place_.file()), 0600U);
}

TEST_F(AppConfiguration_Saving, ModeThatTheUmaskWouldNotGiveIsKeptToo) {
    write("{}");
    ASSERT_EQ(chmod(place_.file().c_str(), 0666), 0);
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    EXPECT_EQ(modeOf(place_.file()), 0666U);
}

TEST_F(AppConfiguration_Saving, LinkToAFileStaysALink) {
    home_.write("dotfiles/config.json", "{}");
    home_.makeFolder(".config/tarnbeck");
    fs::create_symlink("../../dotfiles/config.json", place_.file());
    ASSERT_TRUE(AppConfiguration{.showTags = false}.save(place_));
    EXPECT_TRUE(fs::is_symlink(place_.file()));
    EXPECT_THAT(contentOf(home_ / "dotfiles/config.json"),
                ::testing::HasSubstr("\"showTags\": false"));
    EXPECT_THAT(namesIn("dotfiles"), ElementsAre("config.json"));
    EXPECT_THAT(namesIn(".config/tarnbeck"), ElementsAre("config.json"));
}

TEST_F(AppConfiguration_Saving, LinkToALinkStaysToo) {
    home_.write("real.json", "{}");
    home_.makeFolder(".config/tarnbeck");
    fs::create_symlink(home_ / "real.json", home_ / "hop.json");
    fs::create_symlink(home_ / "hop.json", place_.file());
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    EXPECT_TRUE(fs::is_symlink(place_.file()));
    EXPECT_TRUE(fs::is_symlink(home_ / "hop.json"));
    EXPECT_EQ(load(), AppConfiguration{});
}

TEST_F(AppConfiguration_Saving, LinkedFolderStaysALink) {
    home_.makeFolder("dotfiles/tarnbeck");
    home_.makeFolder(".config");
    fs::create_symlink(home_ / "dotfiles/tarnbeck", place_.folder());
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    EXPECT_TRUE(fs::is_symlink(place_.folder()));
    EXPECT_TRUE(isFile("dotfiles/tarnbeck/config.json"));
}

TEST_F(AppConfiguration_Saving, DanglingLinkIsFilledAndStays) {
    home_.makeFolder(".config/tarnbeck");
    home_.makeFolder("dotfiles");
    fs::create_symlink(home_ / "dotfiles/new.json", place_.file());
    EXPECT_EQ(load(), AppConfiguration{});
    EXPECT_THAT(messages_, IsEmpty());
    ASSERT_TRUE(AppConfiguration{.showTags = false}.save(place_));
    EXPECT_TRUE(fs::is_symlink(place_.file()));
    EXPECT_TRUE(isFile("dotfiles/new.json"));
    EXPECT_FALSE(load().showTags);
}

TEST_F(AppConfiguration_Saving, LinkThatLeadsInCirclesIsReplaced) {
    home_.makeFolder(".config/tarnbeck");
    fs::create_symlink("config.json", place_.file());
    EXPECT_EQ(load(), AppConfiguration{});
    ASSERT_TRUE(AppConfiguration{.showTags = false}.save(place_));
    EXPECT_FALSE(load().showTags);
}

}  // namespace
}  // namespace tarnbeck
