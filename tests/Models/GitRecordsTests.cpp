#include "GitRepository.h"

namespace tarnbeck {
namespace {

StatusColor colorOf(const std::string& status) {
    return FileChange{status, "f"}.statusColor();
}

TEST(FileChange_StatusColor, ModifiedIsBlue) {
    EXPECT_EQ(colorOf("M"), StatusColor::blue);
}

TEST(FileChange_StatusColor, AddedIsGreen) {
    EXPECT_EQ(colorOf("A"), StatusColor::green);
}

TEST(FileChange_StatusColor, DeletedIsRed) {
    EXPECT_EQ(colorOf("D"), StatusColor::red);
}

TEST(FileChange_StatusColor, UntrackedIsGray) {
    EXPECT_EQ(colorOf("??"), StatusColor::gray);
}

TEST(FileChange_StatusColor, ConflictIsOrange) {
    EXPECT_EQ(colorOf("UU"), StatusColor::orange);
}

TEST(FileChange_StatusColor, AllElseHasTheSecondaryTextColor) {
    for (const char* status : {"R", "C", "T", "MM", "AM", "AA", "?", "m", ""}) {
        EXPECT_EQ(colorOf(status), StatusColor::secondary) << status;
    }
}

TEST(FileChange_DirectoryPath, IsTheParentWithATrailingSlash) {
    EXPECT_EQ((FileChange{"M", "src/app/main.cpp"}.directoryPath()), "src/app/");
}

TEST(FileChange_DirectoryPath, IsEmptyForAFileAtTheTop) {
    EXPECT_EQ((FileChange{"M", "main.cpp"}.directoryPath()), "");
}

TEST(FileChange_DirectoryPath, IsTheParentOfANestedRepositoryToo) {
    EXPECT_EQ((FileChange{"??", "vendor/nested/"}.directoryPath()), "vendor/");
    EXPECT_EQ((FileChange{"??", "nested/"}.directoryPath()), "");
}

TEST(FileChange_CanDiscard, HoldsForModifiedAddedDeletedAndUntracked) {
    for (const char* status : {"M", "A", "D", "MM", "AM", "MD", "AD", "??"}) {
        EXPECT_TRUE((FileChange{status, "f"}.canDiscard())) << status;
    }
}

TEST(FileChange_CanDiscard, DoesNotHoldForRenamesCopiesAndConflicts) {
    for (const char* status : {"R", "RM", "RD", "C", "CM", "UU", "AA", "DD", "AU", "UD", "UA", "DU",
                               "T", "?", "!!", "DM", ""}) {
        EXPECT_FALSE((FileChange{status, "f"}.canDiscard())) << status;
    }
}

std::string shortPath(const std::string& path, const std::string& home) {
    return GitWorktree{.path = path}.shortPath(home);
}

TEST(GitWorktree_ShortPath, HomeAtTheBeginningBecomesATilde) {
    EXPECT_EQ(shortPath("/home/ann/work/r", "/home/ann"), "~/work/r");
}

TEST(GitWorktree_ShortPath, HomeItselfIsATilde) {
    EXPECT_EQ(shortPath("/home/ann", "/home/ann"), "~");
}

TEST(GitWorktree_ShortPath, PathElsewhereStandsAsItIs) {
    EXPECT_EQ(shortPath("/srv/home/ann/r", "/home/ann"), "/srv/home/ann/r");
}

TEST(GitWorktree_ShortPath, PathThatBeginsWithTheTextOfTheHomeIsShortenedToo) {
    EXPECT_EQ(shortPath("/home/anna/r", "/home/ann"), "~a/r");
}

TEST(GitWorktree_ShortPath, UnknownHomeShortensNothing) {
    EXPECT_EQ(shortPath("/r", ""), "/r");
}

}  // namespace
}  // namespace tarnbeck
