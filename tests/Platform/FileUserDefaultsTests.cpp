#include <cmath>
#include <limits>

#include <sys/stat.h>
#include <unistd.h>

#include "DeterministicWorkQueues.h"
#include "FileUserDefaults.h"
#include "MachineRights.h"
#include "TemporaryFolder.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class FileUserDefaults_File : public ::testing::Test {
  protected:
    FileUserDefaults open() {
        return FileUserDefaults(file_, queues_,
                                [this](std::string line) { reports_.push_back(std::move(line)); });
    }
    void writeFile(std::string_view content) const { folder_.write("defaults.json", content); }
    std::string fileAfterDraining(FileUserDefaults& defaults) const {
        defaults.drain();
        return contentOf(file_);
    }
    // How many writes wait.
    int runQueue() {
        int count = 0;
        while (queues_.runOne()) ++count;
        return count;
    }

    TemporaryFolder folder_;
    std::string file_ = folder_ / "defaults.json";
    DeterministicWorkQueues queues_;
    std::vector<std::string> reports_;
};

TEST_F(FileUserDefaults_File, HasNothingWhereThereIsNone) {
    const auto defaults = open();
    EXPECT_EQ(defaults.boolean("a"), std::nullopt);
    EXPECT_EQ(defaults.number("a"), std::nullopt);
    EXPECT_EQ(defaults.data("a"), std::nullopt);
}

TEST_F(FileUserDefaults_File, IsNotMadeByReading) {
    { const auto defaults = open(); }
    EXPECT_NE(access(file_.c_str(), F_OK), 0);
}

TEST_F(FileUserDefaults_File, HasWhatWasSetAtOnce) {
    auto defaults = open();
    defaults.setBoolean("boolean", true);
    defaults.setNumber("number", 1.5);
    defaults.setData("data", "bytes");
    EXPECT_EQ(defaults.boolean("boolean"), true);
    EXPECT_EQ(defaults.number("number"), 1.5);
    EXPECT_EQ(defaults.data("data"), "bytes");
}

TEST_F(FileUserDefaults_File, BringsBackWhatWasSet) {
    const std::string bytes("\0\xff{}\"", 5);
    {
        auto defaults = open();
        defaults.setBoolean("boolean", false);
        defaults.setNumber("number", -920);
        defaults.setData("data", bytes);
        defaults.setData("empty", "");
    }
    const auto again = open();
    EXPECT_EQ(again.boolean("boolean"), false);
    EXPECT_EQ(again.number("number"), -920);
    EXPECT_EQ(again.data("data"), bytes);
    EXPECT_EQ(again.data("empty"), "");
}

TEST_F(FileUserDefaults_File, IsOneForPeopleToRead) {
    auto defaults = open();
    defaults.setNumber("b", 2);
    defaults.setBoolean("a", true);
    defaults.setData("c", "foo");
    const std::string content = fileAfterDraining(defaults);
    EXPECT_THAT(content, HasSubstr("\"c\": \"Zm9v\"\n"));
    EXPECT_LT(content.find("\"a\""), content.find("\"b\""));
    EXPECT_TRUE(content.ends_with("}\n"));
}

TEST_F(FileUserDefaults_File, IsForTheUserAlone) {
    file_ = folder_ / "a/b/defaults.json";
    auto defaults = open();
    defaults.setBoolean("a", true);
    defaults.drain();
    struct stat information {};
    ASSERT_EQ(stat(file_.c_str(), &information), 0);
    EXPECT_EQ(information.st_mode & 07777, 0600U);
    ASSERT_EQ(stat((folder_ / "a/b").c_str(), &information), 0);
    EXPECT_EQ(information.st_mode & 07777, 0700U);
}

TEST_F(FileUserDefaults_File, ValueOfAnotherTypeIsAbsent) {
    writeFile(R"({"boolean":true,"number":1,"text":"not base64!","null":null,"list":[]})");
    const auto defaults = open();
    EXPECT_EQ(defaults.number("boolean"), std::nullopt);
    EXPECT_EQ(defaults.data("boolean"), std::nullopt);
    EXPECT_EQ(defaults.boolean("number"), std::nullopt);
    EXPECT_EQ(defaults.data("text"), std::nullopt);
    EXPECT_EQ(defaults.number("null"), std::nullopt);
    EXPECT_EQ(defaults.data("list"), std::nullopt);
}

TEST_F(FileUserDefaults_File, NumbersMayBeWrittenInAnyForm) {
    writeFile(R"({"integer":840,"fraction":0.5,"large":18446744073709551615})");
    const auto defaults = open();
    EXPECT_EQ(defaults.number("integer"), 840);
    EXPECT_EQ(defaults.number("fraction"), 0.5);
    EXPECT_EQ(defaults.number("large"), 18446744073709551615.0);
}

TEST_F(FileUserDefaults_File, ValueOfAnotherTypeIsReplacedBySetting) {
    writeFile(R"({"a":[1,2]})");
    auto defaults = open();
    defaults.setBoolean("a", true);
    EXPECT_EQ(defaults.boolean("a"), true);
}

TEST_F(FileUserDefaults_File, KeepsWhatItDoesNotKnow) {
    writeFile(R"({"foreign":{"list":[1,"ü",null]},"a":false})");
    auto defaults = open();
    defaults.setBoolean("a", true);
    EXPECT_THAT(fileAfterDraining(defaults), HasSubstr("ü"));
    EXPECT_THAT(contentOf(file_), HasSubstr("\"a\": true"));
}

TEST_F(FileUserDefaults_File, KeepsWhatAnotherProgramChangedMeanwhile) {
    writeFile(R"({"theirs":false,"ours":false})");
    auto defaults = open();
    writeFile(R"({"theirs":true,"ours":false})");
    defaults.setBoolean("ours", true);
    EXPECT_THAT(fileAfterDraining(defaults), HasSubstr("\"theirs\": true"));
    EXPECT_THAT(contentOf(file_), HasSubstr("\"ours\": true"));
}

TEST_F(FileUserDefaults_File, LostMeanwhileIsWrittenWhole) {
    writeFile(R"({"kept":true})");
    auto defaults = open();
    writeFile("{");
    defaults.setBoolean("set", true);
    defaults.drain();
    const auto again = open();
    EXPECT_EQ(again.boolean("kept"), true);
    EXPECT_EQ(again.boolean("set"), true);
}

class FileUserDefaults_Broken : public FileUserDefaults_File,
                                public ::testing::WithParamInterface<const char*> {};

TEST_P(FileUserDefaults_Broken, CountsAsEmptyAndIsReplaced) {
    writeFile(GetParam());
    auto defaults = open();
    EXPECT_EQ(defaults.boolean("a"), std::nullopt);
    defaults.setBoolean("a", true);
    defaults.drain();
    EXPECT_EQ(open().boolean("a"), true);
    EXPECT_THAT(reports_, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Content, FileUserDefaults_Broken,
                         ::testing::Values("", "{\"a\":tr", "[]", "null", "{\"a\":true}}",
                                           "{\"a\":\"\xff\"}"));

TEST_F(FileUserDefaults_File, KeyThatIsNotUtf8ServesAllTheSame) {
    {
        auto defaults = open();
        defaults.setBoolean("a\xff", true);
        EXPECT_EQ(defaults.boolean("a\xff"), true);
    }
    EXPECT_EQ(open().boolean("a\xff"), true);
}

TEST_F(FileUserDefaults_File, NumberThatIsNoneIsAbsent) {
    auto defaults = open();
    defaults.setNumber("a", std::numeric_limits<double>::quiet_NaN());
    defaults.setNumber("b", std::numeric_limits<double>::infinity());
    EXPECT_EQ(defaults.number("a"), std::nullopt);
    EXPECT_EQ(defaults.number("b"), std::nullopt);
    EXPECT_THAT(fileAfterDraining(defaults), HasSubstr("null"));
}

TEST_F(FileUserDefaults_File, WritesThatWaitBecomeOne) {
    auto defaults = open();
    for (int count = 0; count < 100; ++count) defaults.setNumber("a", count);
    defaults.setBoolean("b", true);
    EXPECT_EQ(runQueue(), 1);
    EXPECT_EQ(open().number("a"), 99);
    EXPECT_EQ(open().boolean("b"), true);
}

TEST_F(FileUserDefaults_File, SettingAfterAWriteAsksForAnother) {
    auto defaults = open();
    defaults.setNumber("a", 1);
    EXPECT_EQ(runQueue(), 1);
    defaults.setNumber("a", 2);
    EXPECT_EQ(runQueue(), 1);
    EXPECT_EQ(open().number("a"), 2);
}

TEST_F(FileUserDefaults_File, SettingWhatIsThereWritesNothing) {
    writeFile(R"({"a":true})");
    auto defaults = open();
    defaults.setBoolean("a", true);
    EXPECT_EQ(runQueue(), 0);
}

TEST_F(FileUserDefaults_File, FailureIsToldAndTheOldFileStays) {
    const std::string folder = folder_.makeFolder("closed");
    file_ = folder + "/defaults.json";
    folder_.write("closed/defaults.json", "{}");
    chmod(folder.c_str(), 0500);
    auto defaults = open();
    {
        const WithoutRootRights ordinary;
        defaults.setBoolean("a", true);
        runQueue();
    }
    ASSERT_THAT(reports_, SizeIs(1));
    EXPECT_EQ(reports_[0], "Failed to save " + file_ + ": Permission denied");
    EXPECT_EQ(contentOf(file_), "{}");
    EXPECT_EQ(defaults.boolean("a"), true);
}

TEST_F(FileUserDefaults_File, IsWrittenByTheNextSettingAfterAFailure) {
    const std::string folder = folder_.makeFolder("closed");
    file_ = folder + "/defaults.json";
    chmod(folder.c_str(), 0500);
    auto defaults = open();
    {
        const WithoutRootRights ordinary;
        defaults.setBoolean("a", true);
        runQueue();
    }
    chmod(folder.c_str(), 0700);
    defaults.setBoolean("a", true);
    EXPECT_EQ(runQueue(), 1);
    EXPECT_EQ(open().boolean("a"), true);
}

TEST_F(FileUserDefaults_File, FullDiskLeavesTheOldFile) {
    std::string left;
    const auto reason = runOnSmallDisk(folder_.path(), 1 << 16, [&] {
        writeFile(R"({"a":true})");
        auto defaults = open();
        defaults.setData("large", std::string(1 << 20, 'a'));
        left = fileAfterDraining(defaults);
    });
    if (reason) GTEST_SKIP() << *reason;
    EXPECT_EQ(left, R"({"a":true})");
    EXPECT_EQ(reports_.at(0), "Failed to save " + file_ + ": No space left on device");
}

TEST_F(FileUserDefaults_File, IsWholeAfterManyWritesOnRealThreads) {
    ThreadedWorkQueues queues;
    {
        FileUserDefaults defaults(file_, queues);
        for (int count = 0; count < 200; ++count) {
            defaults.setNumber("number", count);
            defaults.setData("data", std::to_string(count));
        }
    }
    const auto again = open();
    EXPECT_EQ(again.number("number"), 199);
    EXPECT_EQ(again.data("data"), "199");
}

}  // namespace
}  // namespace tarnbeck::testing
