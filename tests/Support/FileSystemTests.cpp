#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

#include "FileSystem.h"
#include "FolderListing.h"
#include "MachineRights.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;

class FileSystemQuestions : public ::testing::Test {
  protected:
    std::string link(const std::string& target) const {
        fs::create_symlink(target, folder_ / "link");
        return folder_ / "link";
    }

    mode_t modeOf(const std::string& path) const {
        struct stat information {};
        EXPECT_EQ(stat(path.c_str(), &information), 0) << path;
        return information.st_mode & 07777;
    }

    testing::TemporaryFolder folder_;
};

TEST_F(FileSystemQuestions, DanglingLinkIsMissing) {
    EXPECT_FALSE(exists(link("gone")));
}

TEST_F(FileSystemQuestions, LinkInACircleIsMissing) {
    EXPECT_FALSE(exists(link("link")));
}

TEST_F(FileSystemQuestions, LinkThatLeadsSomewhereExists) {
    folder_.write("file", "");
    EXPECT_TRUE(exists(link("file")));
}

TEST_F(FileSystemQuestions, LinkToAFolderIsAFolder) {
    folder_.makeFolder("inner");
    EXPECT_TRUE(isDirectory(link("inner")));
    EXPECT_FALSE(isDirectory(folder_.write("file", "")));
    EXPECT_FALSE(isDirectory(folder_ / "gone"));
}

TEST_F(FileSystemQuestions, ExecutableFileIsARegularOneWithPermission) {
    const std::string file = folder_.write("tool", "");
    chmod(file.c_str(), 0644);
    EXPECT_FALSE(isExecutableFile(file));
    chmod(file.c_str(), 0755);
    EXPECT_TRUE(isExecutableFile(file));
    EXPECT_TRUE(isExecutableFile(link("tool")));
}

TEST_F(FileSystemQuestions, FolderIsNoExecutableFile) {
    EXPECT_FALSE(isExecutableFile(folder_.makeFolder("inner")));
    EXPECT_FALSE(isExecutableFile(folder_ / "gone"));
}

TEST_F(FileSystemQuestions, FoldersAreMadeWithTheirParents) {
    EXPECT_EQ(createDirectories(folder_ / "a/b/c", 0700), std::nullopt);
    EXPECT_EQ(modeOf(folder_ / "a/b/c"), 0700U);
    EXPECT_NE(modeOf(folder_ / "a/b"), 0700U);
}

TEST_F(FileSystemQuestions, FolderThatIsThereStaysAsItIs) {
    chmod(folder_.makeFolder("a").c_str(), 0755);
    EXPECT_EQ(createDirectories(folder_ / "a", 0700), std::nullopt);
    EXPECT_EQ(modeOf(folder_ / "a"), 0755U);
}

TEST_F(FileSystemQuestions, FileInTheWayOfAFolderIsAFailure) {
    folder_.write("a", "");
    EXPECT_EQ(createDirectories(folder_ / "a", 0700), "File exists");
    EXPECT_EQ(createDirectories(folder_ / "a/b", 0700), "File exists");
}

TEST_F(FileSystemQuestions, FileIsReadToItsEnd) {
    const std::string content(200'001, 'x');
    EXPECT_EQ(*readFile(folder_.write("file", content)), content);
    EXPECT_EQ(*readFile(folder_.write("empty", "")), "");
}

TEST_F(FileSystemQuestions, FailedReadingSaysWhyInTheSystemsWords) {
    EXPECT_EQ(readFile(folder_ / "gone").error(), "No such file or directory");
    EXPECT_EQ(readFile(folder_.path()).error(), "Is a directory");
    const std::string locked = folder_.write("locked", "x");
    chmod(locked.c_str(), 0);
    const testing::WithoutRootRights rights;
    EXPECT_EQ(readFile(locked).error(), "Permission denied");
}

TEST_F(FileSystemQuestions, PipeAndDeviceAreRefusedInsteadOfWaitedFor) {
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(readFile(folder_ / "pipe").error(), "Not a regular file");
    EXPECT_EQ(readFile("/dev/zero").error(), "Not a regular file");
}

TEST_F(FileSystemQuestions, FileThatIsTooLargeIsRefused) {
    const std::string file = folder_.write("file", std::string(100, 'x'));
    EXPECT_EQ(readFile(file, 100)->size(), 100U);
    EXPECT_EQ(readFile(file, 99).error(), "File too large");
    fs::resize_file(file, std::uintmax_t{6} << 30);  // takes no room on the disk
    EXPECT_EQ(readFile(file).error(), "File too large");
}

class FolderListings : public FileSystemQuestions {
  protected:
    // Each entry with a slash behind a folder, sorted.
    std::vector<std::string> entries(const std::string& path) {
        if (!listing_.open(path)) return {"can't be read"};
        std::vector<std::string> names;
        while (const auto entry = listing_.next()) {
            names.push_back(std::string(entry->name) + (entry->isFolder ? "/" : ""));
        }
        std::ranges::sort(names);
        return names;
    }

  private:
    FolderListing listing_;
};

TEST_F(FolderListings, TellFilesAndFoldersAndCountNoLinkAsAFolder) {
    folder_.write("file", "");
    folder_.write("folder/in", "");
    std::filesystem::create_directory_symlink(folder_ / "folder", folder_ / "link");
    EXPECT_THAT(entries(folder_.path()), ::testing::ElementsAre("file", "folder/", "link"));
    EXPECT_THAT(entries(folder_ / "folder"), ::testing::ElementsAre("in"));
}

TEST_F(FolderListings, OfWhatIsNoFolderFail) {
    EXPECT_THAT(entries(folder_ / "gone"), ::testing::ElementsAre("can't be read"));
    EXPECT_THAT(entries(folder_.write("file", "")), ::testing::ElementsAre("can't be read"));
}

}  // namespace
}  // namespace tarnbeck
