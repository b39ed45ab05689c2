#include "GitOutputParsers.h"

namespace tarnbeck::GitOutputParsers {
namespace {

const std::string upstream = "# branch.upstream origin/main\n";

GitSyncStatus upToDate() {
    return GitSyncStatus::UpToDate{"origin/main"};
}

TEST(ParseSyncStatus, EmptyOutputIsUnknown) {
    EXPECT_EQ(parseSyncStatus(""), GitSyncStatus::Unknown{});
}

TEST(ParseSyncStatus, OutputWithoutLinesHasNoUpstream) {
    EXPECT_EQ(parseSyncStatus("\n\n"), GitSyncStatus::NoUpstream{});
}

TEST(ParseSyncStatus, NoUpstreamLineMeansNoUpstream) {
    EXPECT_EQ(parseSyncStatus("# branch.oid abc\n# branch.head main\n# branch.ab +1 -1\n"),
              GitSyncStatus::NoUpstream{});
}

TEST(ParseSyncStatus, AheadAndBehindIsDiverged) {
    EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab +2 -3"),
              (GitSyncStatus::Diverged{"origin/main", 2, 3}));
}

TEST(ParseSyncStatus, AheadAlone) {
    EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab +2 -0"),
              (GitSyncStatus::Ahead{"origin/main", 2}));
}

TEST(ParseSyncStatus, BehindAlone) {
    EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab +0 -3"),
              (GitSyncStatus::Behind{"origin/main", 3}));
}

TEST(ParseSyncStatus, NeitherIsUpToDate) {
    EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab +0 -0"), upToDate());
}

TEST(ParseSyncStatus, BranchWhoseUpstreamHasGoneIsUpToDate) {
    EXPECT_EQ(parseSyncStatus(upstream), upToDate());
}

TEST(ParseSyncStatus, CountsMayComeBeforeTheUpstream) {
    EXPECT_EQ(parseSyncStatus("# branch.ab +2 -0\n" + upstream),
              (GitSyncStatus::Ahead{"origin/main", 2}));
}

TEST(ParseSyncStatus, CountsMayComeInAnyOrderWithManyBlanks) {
    EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab   -3  +2 "),
              (GitSyncStatus::Diverged{"origin/main", 2, 3}));
}

TEST(ParseSyncStatus, MissingNumberCountsAs0) {
    EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab + -"), upToDate());
}

TEST(ParseSyncStatus, MalformedNumberCountsAs0) {
    for (const char* counts : {"+x -y", "+2x -3.0", "+0x2 -1e1", "+?", "2 3"}) {
        EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab " + counts), upToDate()) << counts;
    }
}

TEST(ParseSyncStatus, NumberBeyondAllBoundsCountsAs0) {
    EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab +99999999999999999999 -3"),
              (GitSyncStatus::Behind{"origin/main", 3}));
}

TEST(ParseSyncStatus, NegativeNumberIsNotAboveZero) {
    EXPECT_EQ(parseSyncStatus(upstream + "# branch.ab +-2 --3"), upToDate());
}

TEST(ParseSyncStatus, UpstreamKeepsAllThatFollows) {
    EXPECT_EQ(parseSyncStatus("# branch.upstream origin/a b"),
              (GitSyncStatus{GitSyncStatus::UpToDate{"origin/a b"}}));
}

TEST(ParseSyncStatus, LinesOfChangesPlayNoPart) {
    EXPECT_EQ(
        parseSyncStatus(upstream + "1 .M N... 100644 100644 100644 a b file\n? # branch.ab +1"),
        upToDate());
}

}  // namespace
}  // namespace tarnbeck::GitOutputParsers
