#include <filesystem>

#include "DiscardFixture.h"
#include "OwnDescriptors.h"

namespace tarnbeck::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

class Discard_Failure : public DiscardTest {
  protected:
    // What stands in git's place.
    void pretend(const std::string& script) {
        executable = folder.write("git", "#!/bin/sh\n" + script + "\n");
        fs::permissions(executable, fs::perms::owner_all);
    }
};

TEST_F(Discard_Failure, LockedIndexGivesGitsOwnWordsTrimmed) {
    write("file.txt", "changed");
    write(".git/index.lock", "");
    const auto words = discard("file.txt", "M");
    ASSERT_TRUE(words);
    EXPECT_THAT(*words, ::testing::StartsWith("fatal: Unable to create '" + repository +
                                              "/.git/index.lock': File exists."));
    EXPECT_THAT(*words, ::testing::EndsWith("remove the file manually to continue."));
    EXPECT_EQ(contentOf(in("file.txt")), "changed");
    EXPECT_THAT(lines, ElementsAre("Discard failed for file.txt: " + *words));
}

TEST_F(Discard_Failure, SilentOneGivesTheExitStatus) {
    pretend("exit 3");
    EXPECT_EQ(discard("file.txt", "M"), "git discard command failed with exit code 3");
    EXPECT_THAT(lines, ElementsAre("Discard failed for file.txt: git discard command failed with "
                                   "exit code 3"));
}

TEST_F(Discard_Failure, OneThatPrintsOnlyBlanksGivesTheExitStatus) {
    pretend("printf ' \\n\\t\\n' >&2; exit 1");
    EXPECT_EQ(discard("file.txt", "M"), "git discard command failed with exit code 1");
}

TEST_F(Discard_Failure, OneThatPrintsNoUtf8GivesTheExitStatus) {
    pretend("printf 'bad \\377' >&2; exit 128");
    EXPECT_EQ(discard("file.txt", "M"), "git discard command failed with exit code 128");
}

TEST_F(Discard_Failure, DeathByASignalHasItsNumberAsStatus) {
    pretend("kill -9 $$");
    EXPECT_EQ(discard("file.txt", "M"), "git discard command failed with exit code 9");
}

TEST_F(Discard_Failure, OfTheDiscardItselfIsToldToo) {
    write("new.txt", "new");
    pretend("[ \"$3\" = clean ] || exec /usr/bin/git \"$@\"; echo ' went wrong ' >&2; exit 1");
    EXPECT_EQ(discard("new.txt", "??"), "went wrong");
    EXPECT_THAT(lines, ElementsAre("Discard failed for new.txt: went wrong"));
}

TEST_F(Discard_Failure, MissingGitGivesTheSystemsWords) {
    executable = "/nonexistent/git";
    const std::string words = "Could not run git discard command: No such file or directory";
    EXPECT_EQ(discard("file.txt", "M"), words);
    EXPECT_THAT(lines, ElementsAre("Discard failed to start for file.txt: " + words));
}

TEST_F(Discard_Failure, GitThatMayNotBeRunGivesTheSystemsWords) {
    executable = folder.write("git", "no program");
    EXPECT_EQ(discard("file.txt", "M"), "Could not run git discard command: Permission denied");
}

TEST_F(Discard_Failure, UnknownFileGivesGitsOwnWords) {
    pretend("[ \"$3\" = status ] && { echo ' M x'; exit; }; exec /usr/bin/git \"$@\"");
    EXPECT_EQ(discard("unknown.txt", "M"),
              "error: pathspec 'unknown.txt' did not match any file(s) known to git");
}

TEST_F(Discard_Failure, FolderWithoutRepositoryGivesGitsOwnWords) {
    folder.write("plain/a.txt", "a");
    EXPECT_THAT(discardIn({.repoPath = folder / "plain", .filePath = "a.txt", .status = "??"}),
                ::testing::Optional(::testing::StartsWith("fatal: not a git repository")));
    EXPECT_EQ(contentOf(folder / "plain/a.txt"), "a");
}

TEST_F(Discard_Failure, RepositoryWithoutCommitKeepsItsStagedFile) {
    git("/", {"init", "-q", folder / "fresh"});
    folder.write("fresh/a.txt", "a");
    git(folder / "fresh", {"add", "a.txt"});
    EXPECT_THAT(discardIn({.repoPath = folder / "fresh", .filePath = "a.txt", .status = "A"}),
                ::testing::Optional(::testing::HasSubstr("HEAD")));
    EXPECT_EQ(contentOf(folder / "fresh/a.txt"), "a");
}

TEST_F(Discard_Failure, AnswerThatDoesNotEndIsNotActedOn) {
    write("new.txt", "new");
    pretend("sleep 20 & exit 0");
    EXPECT_EQ(discard("new.txt", "??"),
              "new.txt is left alone, because an answer of git did not end");
    EXPECT_EQ(launcher.launches.size(), 1U);
}

TEST_F(Discard_Failure, FloodOnBothPipesHoldsNothingUp) {
    pretend("head -c 3000000 /dev/zero >&2; head -c 3000000 /dev/zero; echo enough >&2; exit 1");
    EXPECT_THAT(discard("file.txt", "M"), ::testing::Optional(::testing::EndsWith("enough")));
}

TEST_F(Discard_Failure, SuccessWritesNoLine) {
    write("file.txt", "changed");
    EXPECT_EQ(discard("file.txt", "M"), std::nullopt);
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(Discard_Failure, NothingIsLeftBehind) {
    write("file.txt", "changed");
    const auto before = openDescriptors();
    discard("file.txt", "M");
    write(".git/index.lock", "");
    write("file.txt", "changed");
    discard("file.txt", "M");
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChildren());
}

}  // namespace
}  // namespace tarnbeck::testing
