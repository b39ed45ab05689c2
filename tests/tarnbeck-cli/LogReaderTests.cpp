#include <filesystem>
#include <fstream>

#include "LogReader.h"
#include "MachineRights.h"
#include "TemporaryFolder.h"

namespace tarnbeck::cli {
namespace {

namespace fs = std::filesystem;

class LogReaderTest : public ::testing::Test {
  protected:
    void append(const std::string& text) { std::ofstream(path_, std::ios::app) << text; }
    void rotate() { fs::rename(path_, path_ + ".1"); }

    testing::TemporaryFolder folder_;
    std::string path_ = folder_ / "scan.log";
    LogReader reader_{path_};
};

TEST_F(LogReaderTest, GivesTheEarlierGenerationFirst) {
    folder_.write("scan.log.1", "one\ntwo\n");
    folder_.write("scan.log", "three\n");
    EXPECT_EQ(*reader_.readAll(), "one\ntwo\nthree\n");
}

TEST_F(LogReaderTest, NoLogIsTheEmptyText) {
    EXPECT_EQ(*reader_.readAll(), "");
}

TEST_F(LogReaderTest, EarlierGenerationAloneIsALogToo) {
    folder_.write("scan.log.1", "one\n");
    EXPECT_EQ(*reader_.readAll(), "one\n");
}

TEST_F(LogReaderTest, LogThatCantBeReadGivesTheSystemsWords) {
    folder_.write("scan.log", "one\n");
    fs::permissions(path_, fs::perms::none);
    const testing::WithoutRootRights rights;
    const auto text = reader_.readAll();
    ASSERT_FALSE(text);
    EXPECT_EQ(text.error(), "Permission denied");
}

TEST_F(LogReaderTest, NewIsWhatCameSince) {
    append("one\n");
    reader_.readAll();
    EXPECT_EQ(reader_.readNew(), "");
    append("two\nthree\n");
    EXPECT_EQ(reader_.readNew(), "two\nthree\n");
    EXPECT_EQ(reader_.readNew(), "");
}

TEST_F(LogReaderTest, HalfALineWaitsForItsEnd) {
    reader_.readAll();
    append("one\ntw");
    EXPECT_EQ(reader_.readNew(), "one\n");
    append("o\n");
    EXPECT_EQ(reader_.readNew(), "two\n");
}

TEST_F(LogReaderTest, LogThatIsMadeLaterIsReadFromItsBeginning) {
    reader_.readAll();
    EXPECT_EQ(reader_.readNew(), "");
    append("one\n");
    EXPECT_EQ(reader_.readNew(), "one\n");
}

TEST_F(LogReaderTest, RotatedLogIsReadToItsEndAndTheNextFromItsBeginning) {
    append("one\n");
    reader_.readAll();
    append("two\n");
    rotate();
    append("three\n");
    EXPECT_EQ(reader_.readNew(), "two\nthree\n");
    append("four\n");
    EXPECT_EQ(reader_.readNew(), "four\n");
}

TEST_F(LogReaderTest, BetweenRenamingAndMakingTheFormerLogIsReadOn) {
    append("one\n");
    reader_.readAll();
    append("two\n");
    rotate();
    EXPECT_EQ(reader_.readNew(), "two\n");
    append("three\n");
    EXPECT_EQ(reader_.readNew(), "three\n");
}

TEST_F(LogReaderTest, LogThatWasCutOffIsReadFromItsBeginning) {
    append("one\ntwo\n");
    reader_.readAll();
    fs::resize_file(path_, 0);
    append("new\n");
    EXPECT_EQ(reader_.readNew(), "new\n");
}

TEST(LastLines, AreAsManyAsAsked) {
    EXPECT_EQ(lastLines("a\nb\nc\n", 1), "c\n");
    EXPECT_EQ(lastLines("a\nb\nc\n", 2), "b\nc\n");
}

TEST(LastLines, AreAllWhenThereAreNoMore) {
    EXPECT_EQ(lastLines("a\nb\n", 2), "a\nb\n");
    EXPECT_EQ(lastLines("a\nb\n", 99), "a\nb\n");
    EXPECT_EQ(lastLines("", 5), "");
}

TEST(LastLines, NoneIsNone) {
    EXPECT_EQ(lastLines("a\nb\n", 0), "");
}

TEST(LastLines, LineWithoutLineFeedIsOne) {
    EXPECT_EQ(lastLines("a\nb", 1), "b");
    EXPECT_EQ(lastLines("a\nb", 2), "a\nb");
}

TEST(LastLines, EmptyLinesAreLines) {
    EXPECT_EQ(lastLines("a\n\n\n", 2), "\n\n");
    EXPECT_EQ(lastLines("\n", 1), "\n");
    EXPECT_EQ(lastLines("\na", 1), "a");
}

TEST(PrintableLines, KeepLineFeedsAndTabsAndNoOtherControlCharacter) {
    EXPECT_EQ(printableLines("a\tb\033[31m\nc\r\n\nd"), "a\tb\uFFFD[31m\nc\uFFFD\n\nd");
    EXPECT_EQ(printableLines(""), "");
}

}  // namespace
}  // namespace tarnbeck::cli
