#include <sys/stat.h>

#include "ConfigurationFixture.h"
#include "MachineRights.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using testing::WithoutRootRights;

class AppConfiguration_Failures : public testing::ConfigurationFixture {};
class AppConfiguration_BrokenFile : public testing::ConfigurationFixture {};
class AppConfiguration_FullDisk : public testing::ConfigurationFixture {};

TEST_F(AppConfiguration_Failures, MalformedFileGivesTheDefaultsAndSaysWhere) {
    write("{\n  \"showTags\": false,\n}");
    EXPECT_EQ(load(), AppConfiguration{});
    EXPECT_THAT(messages_, ElementsAre(StartsWith("Failed to load config: line 3: ")));
}

TEST_F(AppConfiguration_Failures, EmptyAndTruncatedFilesAreMalformed) {
    for (const char* content : {"", "{", "{\"showTags\": fal", "{} {}"}) {
        write(content);
        messages_.clear();
        EXPECT_EQ(load(), AppConfiguration{});
        EXPECT_THAT(messages_, ElementsAre(StartsWith("Failed to load config: line 1: ")))
            << content;
    }
}

TEST_F(AppConfiguration_Failures, BytesThatAreNotUtf8AreMalformed) {
    write("{\"runnerNamePrefix\": \"\xFF\"}");
    EXPECT_EQ(load(), AppConfiguration{});
    EXPECT_THAT(messages_, ElementsAre(StartsWith("Failed to load config: ")));
}

TEST_F(AppConfiguration_Failures, UnreadableFileGivesTheDefaultsAndTheSystemsWords) {
    write(R"({"showTags": false})");
    ASSERT_EQ(chmod(place_.file().c_str(), 0), 0);
    const WithoutRootRights rights;
    EXPECT_EQ(load(), AppConfiguration{});
    EXPECT_THAT(messages_, ElementsAre("Failed to load config: Permission denied"));
}

TEST_F(AppConfiguration_Failures, FolderInPlaceOfTheFileCantBeRead) {
    home_.makeFolder(fileName);
    EXPECT_EQ(load(), AppConfiguration{});
    EXPECT_THAT(messages_, ElementsAre("Failed to load config: Is a directory"));
}

TEST_F(AppConfiguration_Failures, FileInPlaceOfTheFolderFailsTheSaving) {
    home_.write(".config", "in the way");
    EXPECT_FALSE(AppConfiguration{}.save(place_));
    EXPECT_THAT(messages_, ElementsAre("Failed to save config: File exists"));
    EXPECT_EQ(contentOf(home_ / ".config"), "in the way");
}

TEST_F(AppConfiguration_Failures, FolderThatCantBeMadeFailsTheSaving) {
    home_.makeFolder(".config");
    ASSERT_EQ(chmod((home_ / ".config").c_str(), 0500), 0);
    const WithoutRootRights rights;
    EXPECT_FALSE(AppConfiguration{}.save(place_));
    EXPECT_THAT(messages_, ElementsAre("Failed to save config: Permission denied"));
}

TEST_F(AppConfiguration_Failures, FolderThatCantBeWrittenKeepsTheOldFile) {
    write(R"({"showTags": false})");
    ASSERT_EQ(chmod(place_.folder().c_str(), 0500), 0);
    {
        const WithoutRootRights rights;
        EXPECT_FALSE(AppConfiguration{}.save(place_));
    }
    ASSERT_EQ(chmod(place_.folder().c_str(), 0700), 0);
    EXPECT_THAT(messages_, ElementsAre("Failed to save config: Permission denied"));
    EXPECT_EQ(contentOf(place_.file()), R"({"showTags": false})");
    EXPECT_THAT(namesIn(".config/tarnbeck"), ElementsAre("config.json"));
}

TEST_F(AppConfiguration_Failures, LinkIntoAMissingFolderFailsTheSavingAndStays) {
    home_.makeFolder(".config/tarnbeck");
    fs::create_symlink(home_ / "gone/config.json", place_.file());
    EXPECT_FALSE(AppConfiguration{}.save(place_));
    EXPECT_THAT(messages_, ElementsAre("Failed to save config: No such file or directory"));
    EXPECT_TRUE(fs::is_symlink(place_.file()));
}

TEST_F(AppConfiguration_BrokenFile, IsKeptBesideBeforeItIsReplaced) {
    write("{ half a");
    ASSERT_TRUE(AppConfiguration{.showTags = false}.save(place_));
    EXPECT_EQ(contentOf(place_.brokenFile()), "{ half a");
    EXPECT_FALSE(load().showTags);
    EXPECT_THAT(namesIn(".config/tarnbeck"), ElementsAre("config.json", "config.json.broken"));
}

TEST_F(AppConfiguration_BrokenFile, WronglyTypedFileCountsAsBroken) {
    write(R"({"showTags": 1})");
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    EXPECT_EQ(contentOf(place_.brokenFile()), R"({"showTags": 1})");
}

TEST_F(AppConfiguration_BrokenFile, GoodFileIsNotKept) {
    write("{}");
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    EXPECT_FALSE(isFile(".config/tarnbeck/config.json.broken"));
}

TEST_F(AppConfiguration_BrokenFile, LatestOneReplacesAnEarlierOne) {
    write("first");
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    write("second");
    ASSERT_TRUE(AppConfiguration{}.save(place_));
    EXPECT_EQ(contentOf(place_.brokenFile()), "second");
}

TEST_F(AppConfiguration_BrokenFile, LoadingAloneTouchesNothing) {
    write("{ half a");
    load();
    EXPECT_THAT(namesIn(".config/tarnbeck"), ElementsAre("config.json"));
    EXPECT_EQ(contentOf(place_.file()), "{ half a");
}

TEST_F(AppConfiguration_BrokenFile, OneThatCantBeReadIsNotReplaced) {
    write("{ half a");
    ASSERT_EQ(chmod(place_.file().c_str(), 0), 0);
    {
        const WithoutRootRights rights;
        EXPECT_FALSE(AppConfiguration{}.save(place_));
    }
    EXPECT_THAT(messages_, ElementsAre("Failed to save config: the present file can't be kept: "
                                       "Permission denied"));
    ASSERT_EQ(chmod(place_.file().c_str(), 0600), 0);
    EXPECT_EQ(contentOf(place_.file()), "{ half a");
}

TEST_F(AppConfiguration_BrokenFile, OneThatCantBeKeptIsNotReplaced) {
    write("{ half a");
    home_.makeFolder(".config/tarnbeck/config.json.broken");
    EXPECT_FALSE(AppConfiguration{}.save(place_));
    EXPECT_THAT(messages_, ElementsAre("Failed to save config: the present file can't be kept: "
                                       "Is a directory"));
    EXPECT_EQ(contentOf(place_.file()), "{ half a");
    EXPECT_THAT(namesIn(".config/tarnbeck"), ElementsAre("config.json", "config.json.broken"));
}

TEST_F(AppConfiguration_FullDisk, OldFileStaysAndNothingElseIsLeft) {
    home_.makeFolder(".config");
    AppConfiguration large;
    large.repoPaths.assign(20000, "/one/of/many/repositories");
    const auto reason = testing::runOnSmallDisk(home_ / ".config", 64 * 1024, [&] {
        EXPECT_TRUE(AppConfiguration{.showTags = false}.save(place_));
        EXPECT_FALSE(large.save(place_));
        EXPECT_THAT(messages_, ElementsAre("Failed to save config: No space left on device"));
        EXPECT_EQ(load(), AppConfiguration{.showTags = false});
        EXPECT_THAT(namesIn(".config/tarnbeck"), ElementsAre("config.json"));
    });
    if (reason) GTEST_SKIP() << "This machine can't mount a small disk for a test: " << *reason;
    EXPECT_THAT(namesIn(".config"), IsEmpty()) << "the disk has gone with its thread";
}

}  // namespace
}  // namespace tarnbeck
