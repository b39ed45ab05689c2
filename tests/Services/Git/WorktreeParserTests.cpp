#include "GitOutputParsers.h"
#include "GitReferenceVisibility.h"

namespace tarnbeck::GitOutputParsers {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ParseWorktrees, EmptyOutputGivesNone) {
    EXPECT_THAT(parseWorktrees(""), IsEmpty());
}

TEST(ParseWorktrees, OutputWithoutAnyPathGivesNone) {
    EXPECT_THAT(parseWorktrees("HEAD abc\nbranch refs/heads/main\nbare\n"), IsEmpty());
}

TEST(ParseWorktrees, ReadsPathHashAndBranch) {
    EXPECT_THAT(parseWorktrees("worktree /r\nHEAD abc\nbranch refs/heads/main\n\n"),
                ElementsAre(GitWorktree{
                    .path = "/r", .branch = "main", .commitHash = "abc", .isMainWorktree = true}));
}

TEST(ParseWorktrees, ExactlyTheFirstIsTheMainOne) {
    EXPECT_THAT(parseWorktrees("worktree /r\n\nworktree /s\n\nworktree /t\n"),
                ElementsAre(GitWorktree{.path = "/r", .isMainWorktree = true},
                            GitWorktree{.path = "/s"}, GitWorktree{.path = "/t"}));
}

TEST(ParseWorktrees, EachOneStartsAfreshWithoutEmptyLinesBetween) {
    EXPECT_THAT(parseWorktrees(
                    "worktree /r\nHEAD abc\nbranch refs/heads/main\nbare\ndetached\nworktree /s"),
                ElementsAre(GitWorktree{.path = "/r",
                                        .branch = "main",
                                        .commitHash = "abc",
                                        .isBare = true,
                                        .isDetached = true,
                                        .isMainWorktree = true},
                            GitWorktree{.path = "/s"}));
}

TEST(ParseWorktrees, WhatStandsBeforeTheFirstPathIsForgotten) {
    EXPECT_THAT(parseWorktrees("HEAD abc\nbranch x\nbare\ndetached\nworktree /r"),
                ElementsAre(GitWorktree{.path = "/r", .isMainWorktree = true}));
}

TEST(ParseWorktrees, BranchKeepsWhatFollowsTheHeadsPrefix) {
    EXPECT_EQ(parseWorktrees("worktree /r\nbranch refs/heads/team/fix")[0].branch, "team/fix");
}

TEST(ParseWorktrees, OtherReferenceIsTakenWhole) {
    EXPECT_EQ(parseWorktrees("worktree /r\nbranch refs/remotes/o/x")[0].branch, "refs/remotes/o/x");
}

TEST(ParseWorktrees, DetachedAndBareAreWholeLines) {
    const auto worktrees = parseWorktrees("worktree /r\ndetached \nbare x\nbared");
    EXPECT_FALSE(worktrees[0].isDetached);
    EXPECT_FALSE(worktrees[0].isBare);
}

TEST(ParseWorktrees, BareMainRepositoryIsBareAndMainAndHiddenEitherWay) {
    auto worktrees = parseWorktrees("worktree /r.git\nbare\n\nworktree /linked\n");
    EXPECT_EQ(worktrees[0],
              (GitWorktree{.path = "/r.git", .isBare = true, .isMainWorktree = true}));
    const GitWorktree linked = worktrees[1];
    EXPECT_THAT(GitReferenceVisibility::visibleWorktrees(worktrees), ElementsAre(linked));
    worktrees[0].isBare = false;
    EXPECT_THAT(GitReferenceVisibility::visibleWorktrees(worktrees), ElementsAre(linked));
    worktrees[0] = {.path = "/r.git", .isBare = true};
    EXPECT_THAT(GitReferenceVisibility::visibleWorktrees(worktrees), ElementsAre(linked));
}

TEST(ParseWorktrees, LockedPrunableAndUnknownLinesAreIgnored) {
    EXPECT_THAT(parseWorktrees("worktree /r\nlocked reason\nprunable gone\nfuture thing\n"),
                ElementsAre(GitWorktree{.path = "/r", .isMainWorktree = true}));
}

TEST(ParseWorktrees, PathKeepsItsBlanks) {
    EXPECT_EQ(parseWorktrees("worktree /a b/ c ")[0].path, "/a b/ c ");
}

TEST(ParseWorktrees, EmptyPathIsAPathToo) {
    EXPECT_THAT(parseWorktrees("worktree \nworktree /r"),
                ElementsAre(GitWorktree{.isMainWorktree = true}, GitWorktree{.path = "/r"}));
}

TEST(ParseWorktrees, LastOneNeedsNoLineFeed) {
    EXPECT_EQ(parseWorktrees("worktree /r\nHEAD abc")[0].commitHash, "abc");
}

TEST(ParseWorktrees, ChangesAreLeftToTheScan) {
    EXPECT_TRUE(parseWorktrees("worktree /r")[0].changes.empty());
}

}  // namespace
}  // namespace tarnbeck::GitOutputParsers
