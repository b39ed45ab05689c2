#include <filesystem>

#include <sys/stat.h>

#include "FileManager.h"
#include "MachineRights.h"
#include "TemporaryFolder.h"

namespace single_instance {
namespace {

using tarnbeck::testing::contentOf;
using tarnbeck::testing::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::UnorderedElementsAre;

mode_t modeOf(const std::string& path) {
    struct stat information {};
    EXPECT_EQ(stat(path.c_str(), &information), 0);
    return information.st_mode & 07777U;
}

class SystemFileManager_Files : public ::testing::Test {
  protected:
    TemporaryFolder folder_;
    SystemFileManager files_;
};

TEST_F(SystemFileManager_Files, FoldersAreMadeWithThoseAboveForTheUserAlone) {
    EXPECT_FALSE(files_.createDirectory(folder_ / "a/b/c"));
    EXPECT_EQ(modeOf(folder_ / "a"), 0700U);
    EXPECT_EQ(modeOf(folder_ / "a/b/c"), 0700U);
}

TEST_F(SystemFileManager_Files, FolderThatIsThereIsNoError) {
    EXPECT_FALSE(files_.createDirectory(folder_.path()));
    EXPECT_FALSE(files_.createDirectory(folder_ / "a/"));
    EXPECT_FALSE(files_.createDirectory(folder_ / "a/"));
}

TEST_F(SystemFileManager_Files, FolderWhereAFileStandsIsAnError) {
    const std::string file = folder_.write("file", "");
    EXPECT_EQ(files_.createDirectory(file), std::errc::file_exists);
    EXPECT_EQ(files_.createDirectory(file + "/a/b"), std::errc::not_a_directory);
}

TEST_F(SystemFileManager_Files, WritingLeavesTheFileAndNothingElse) {
    EXPECT_FALSE(files_.writeAtomically(folder_ / "a.json", "content"));
    EXPECT_EQ(contentOf(folder_ / "a.json"), "content");
    EXPECT_EQ(modeOf(folder_ / "a.json"), 0600U);
    EXPECT_THAT(files_.contentsOfDirectory(folder_.path()), Optional(ElementsAre("a.json")));
}

TEST_F(SystemFileManager_Files, FullDiskLeavesNothing) {
    std::error_code error;
    std::optional<std::vector<std::string>> left;
    const auto reason = tarnbeck::testing::runOnSmallDisk(folder_.path(), 1 << 16, [&] {
        error = files_.writeAtomically(folder_ / "a.json", std::string(1 << 20, 'a'));
        left = files_.contentsOfDirectory(folder_.path());
    });
    if (reason) GTEST_SKIP() << *reason;
    EXPECT_EQ(error, std::errc::no_space_on_device);
    EXPECT_THAT(left, Optional(IsEmpty()));
}

TEST_F(SystemFileManager_Files, FolderThatCantBeWrittenIsToldInTheSystemsWords) {
    const std::string closed = folder_.makeFolder("closed");
    chmod(closed.c_str(), 0500);
    const tarnbeck::testing::WithoutRootRights ordinary;
    EXPECT_EQ(files_.writeAtomically(closed + "/a.json", ""), std::errc::permission_denied);
}

TEST_F(SystemFileManager_Files, ListHasHiddenFilesToo) {
    folder_.write(".hidden", "");
    folder_.write("b", "");
    EXPECT_THAT(files_.contentsOfDirectory(folder_.path()),
                Optional(UnorderedElementsAre(".hidden", "b")));
}

TEST_F(SystemFileManager_Files, ListOfAMissingFolderIsAbsent) {
    EXPECT_EQ(files_.contentsOfDirectory(folder_ / "missing"), std::nullopt);
}

TEST_F(SystemFileManager_Files, ContentIsReadWhole) {
    const std::string long_(100'000, 'a');
    EXPECT_EQ(files_.contents(folder_.write("a", long_)), long_);
    EXPECT_EQ(files_.contents(folder_.write("b", "")), "");
}

TEST_F(SystemFileManager_Files, ContentIsThatOfRegularFilesOnly) {
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(files_.contents(folder_ / "pipe"), std::nullopt);
    EXPECT_EQ(files_.contents(folder_.path()), std::nullopt);
    EXPECT_EQ(files_.contents(folder_ / "missing"), std::nullopt);
}

TEST_F(SystemFileManager_Files, ContentOfAGiantIsNotRead) {
    const std::string file = folder_.write("giant", "");
    std::filesystem::resize_file(file, (16 << 20) + 1);
    EXPECT_EQ(files_.contents(file), std::nullopt);
}

TEST_F(SystemFileManager_Files, RemovingTakesFilesAndNoFolders) {
    const std::string file = folder_.write("a/b", "");
    EXPECT_TRUE(files_.removeFile(folder_ / "a"));
    EXPECT_FALSE(files_.removeFile(file));
    EXPECT_EQ(files_.removeFile(file), std::errc::no_such_file_or_directory);
}

}  // namespace
}  // namespace single_instance
