#include "GitReferenceVisibility.h"

namespace tarnbeck::GitReferenceVisibility {
namespace {

using ::testing::ElementsAre;

TEST(GitReferenceVisibility_Worktrees, LinkedOnesAreVisibleInTheirOrder) {
    const GitWorktree second{.path = "/second"};
    const GitWorktree first{.path = "/first", .isDetached = true};
    EXPECT_THAT(visibleWorktrees({second, first}), ElementsAre(second, first));
}

TEST(GitReferenceVisibility_Worktrees, MainOneIsNot) {
    EXPECT_THAT(visibleWorktrees({{.path = "/r", .isMainWorktree = true}}), ElementsAre());
}

TEST(GitReferenceVisibility_Worktrees, BareOneIsNot) {
    EXPECT_THAT(visibleWorktrees({{.path = "/r", .isBare = true}}), ElementsAre());
}

TEST(GitReferenceVisibility_RemoteBranches, OnesWithARemoteAreVisibleInTheirOrder) {
    EXPECT_THAT(visibleRemoteBranches({"origin/z", "origin/a/b", "fork/m"}),
                ElementsAre("origin/z", "origin/a/b", "fork/m"));
}

TEST(GitReferenceVisibility_RemoteBranches, NameWithoutARemoteIsNot) {
    EXPECT_THAT(visibleRemoteBranches({"origin"}), ElementsAre());
}

TEST(GitReferenceVisibility_RemoteBranches, MainMasterAndHeadOfAnyRemoteAreNot) {
    EXPECT_THAT(visibleRemoteBranches({"origin/main", "fork/master", "origin/HEAD"}),
                ElementsAre());
}

TEST(GitReferenceVisibility_RemoteBranches, BranchWhoseLastPartIsMainIsNot) {
    EXPECT_THAT(visibleRemoteBranches({"origin/team/main"}), ElementsAre());
}

TEST(GitReferenceVisibility_RemoteBranches, NameThatOnlyEndsLikeMainIsVisible) {
    EXPECT_THAT(visibleRemoteBranches({"origin/domain", "origin/main/x", "origin/head"}),
                ElementsAre("origin/domain", "origin/main/x", "origin/head"));
}

}  // namespace
}  // namespace tarnbeck::GitReferenceVisibility
