#include "Snapshots.h"
#include "SyncOutcome.h"

namespace tarnbeck::cli {
namespace {

using namespace tarnbeck::testing;

const GitSyncStatus behindOne = GitSyncStatus::Behind{.upstream = "origin/main", .count = 1};
const GitSyncStatus behindThree = GitSyncStatus::Behind{.upstream = "origin/main", .count = 3};
const GitSyncStatus upToDate = GitSyncStatus::UpToDate{.upstream = "origin/main"};

RepositorySnapshot withStatus(const GitSyncStatus& status) {
    return snapshot(withSync(cleanRepository("/r/a"), status));
}

SyncOutcome outcome(RepositorySnapshot before, RepositorySnapshot after,
                    std::optional<std::string> failure = std::nullopt) {
    return syncOutcome({std::move(before), std::move(after), std::move(failure)});
}
SyncOutcome unchanged(const GitSyncStatus& status) {
    return outcome(withStatus(status), withStatus(status));
}

TEST(SyncOutcome, OfAFastForwardTellsTheCommits) {
    EXPECT_EQ(outcome(withStatus(behindThree), withStatus(upToDate)),
              (SyncOutcome{"main is 3 commits further: up to date with origin/main"}));
    EXPECT_EQ(outcome(withStatus(behindOne), withStatus(upToDate)).text,
              "main is 1 commit further: up to date with origin/main");
}

TEST(SyncOutcome, OfABranchThatIsUpToDateIsNoFailure) {
    EXPECT_EQ(unchanged(upToDate), (SyncOutcome{"main is up to date with origin/main"}));
}

TEST(SyncOutcome, OfABranchThatIsAheadIsNoFailure) {
    EXPECT_EQ(unchanged(GitSyncStatus::Ahead{.upstream = "origin/main", .count = 2}),
              (SyncOutcome{"main is 2 commits ahead of origin/main: there is nothing to pull"}));
}

TEST(SyncOutcome, OfADivergedBranchSaysWhatItTakes) {
    EXPECT_EQ(
        unchanged(GitSyncStatus::Diverged{.upstream = "origin/main", .ahead = 1, .behind = 2}),
        (SyncOutcome{"main and origin/main have diverged (1 commit against 2 commits): that takes "
                     "a merge or a rebase",
                     true}));
}

TEST(SyncOutcome, OfABranchWithoutUpstreamIsAFailure) {
    EXPECT_EQ(unchanged(GitSyncStatus::NoUpstream{}),
              (SyncOutcome{"main has no upstream branch", true}));
}

TEST(SyncOutcome, OfAnUnknownRelationIsAFailure) {
    EXPECT_TRUE(unchanged(GitSyncStatus::Unknown{}).isFailure);
}

TEST(SyncOutcome, OfADetachedHeadSaysThatThereIsNoBranch) {
    const auto head = snapshot(detached(cleanRepository("/r/a")));
    EXPECT_EQ(outcome(head, head),
              (SyncOutcome{"HEAD is detached: there is no branch to sync", true}));
}

TEST(SyncOutcome, OfADirtyRepositorySaysWhatToDo) {
    const auto dirty = snapshot(withChanges(withSync(cleanRepository("/r/a"), behindOne), 1));
    EXPECT_EQ(outcome(dirty, dirty),
              (SyncOutcome{"main stays 1 commit behind origin/main: there are uncommitted changes; "
                           "commit, stash or discard them first",
                           true}));
}

TEST(SyncOutcome, OfAFailedPullHasGitsWords) {
    EXPECT_EQ(
        outcome(withStatus(behindOne), withStatus(behindOne), "no space left (git pull)"),
        (SyncOutcome{"main stays 1 commit behind origin/main: no space left (git pull)", true}));
}

TEST(SyncOutcome, OfAFailedFetchHasGitsWordsWhateverTheStatus) {
    EXPECT_EQ(outcome(withStatus(upToDate), withStatus(upToDate), "no such host (git fetch)"),
              (SyncOutcome{"no such host (git fetch)", true}));
}

}  // namespace
}  // namespace tarnbeck::cli
