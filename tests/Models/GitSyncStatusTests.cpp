#include "GitSyncStatus.h"
#include "JsonCoding.h"

namespace tarnbeck {
namespace {

const GitSyncStatus upToDate = GitSyncStatus::UpToDate{"origin/main"};
const GitSyncStatus ahead = GitSyncStatus::Ahead{"origin/main", 2};
const GitSyncStatus behind = GitSyncStatus::Behind{"origin/main", 3};
const GitSyncStatus diverged = GitSyncStatus::Diverged{"origin/main", 2, 3};
const GitSyncStatus noUpstream = GitSyncStatus::NoUpstream{};
const GitSyncStatus unknown = GitSyncStatus::Unknown{};

TEST(GitSyncStatus_BadgeValue, TellsEachCase) {
    EXPECT_EQ(upToDate.badgeValue(), "Up to date");
    EXPECT_EQ(ahead.badgeValue(), "Ahead 2");
    EXPECT_EQ(behind.badgeValue(), "Behind 3");
    EXPECT_EQ(diverged.badgeValue(), "Diverged 2↑ 3↓");
    EXPECT_EQ(noUpstream.badgeValue(), "No upstream");
    EXPECT_EQ(unknown.badgeValue(), "Unknown");
}

TEST(GitSyncStatus_SummaryLabel, CountsCommitsThatDiffer) {
    EXPECT_EQ(ahead.summaryLabel(), "ahead 2");
    EXPECT_EQ(behind.summaryLabel(), "behind 3");
    EXPECT_EQ(diverged.summaryLabel(), "diverged (2↑ 3↓)");
}

TEST(GitSyncStatus_SummaryLabel, IsAbsentWhereNothingDiffersOrNothingIsKnown) {
    EXPECT_EQ(upToDate.summaryLabel(), std::nullopt);
    EXPECT_EQ(noUpstream.summaryLabel(), std::nullopt);
    EXPECT_EQ(unknown.summaryLabel(), std::nullopt);
}

TEST(GitSyncStatus_Default, IsUnknown) {
    EXPECT_EQ(GitSyncStatus{}, unknown);
}

TEST(GitSyncStatus_Equality, CasesDifferThoughTheirPayloadIsTheSame) {
    EXPECT_NE((GitSyncStatus{GitSyncStatus::Ahead{"o/m", 1}}),
              (GitSyncStatus{GitSyncStatus::Behind{"o/m", 1}}));
    EXPECT_NE(noUpstream, unknown);
}

TEST(GitSyncStatus_Equality, EveryPartOfThePayloadCounts) {
    EXPECT_NE(upToDate, (GitSyncStatus{GitSyncStatus::UpToDate{"fork/main"}}));
    EXPECT_NE(ahead, (GitSyncStatus{GitSyncStatus::Ahead{"origin/main", 1}}));
    EXPECT_NE(diverged, (GitSyncStatus{GitSyncStatus::Diverged{"origin/main", 2, 2}}));
    EXPECT_NE(diverged, (GitSyncStatus{GitSyncStatus::Diverged{"origin/main", 3, 3}}));
}

TEST(GitSyncStatus_Hashing, EqualValuesHashAlike) {
    const std::hash<GitSyncStatus> hash;
    EXPECT_EQ(hash(diverged), hash(GitSyncStatus::Diverged{"origin/main", 2, 3}));
    EXPECT_EQ(hash(unknown), hash(GitSyncStatus{}));
}

TEST(GitSyncStatus_Hashing, CaseAndPayloadTakePart) {
    const std::hash<GitSyncStatus> hash;
    EXPECT_NE(hash(noUpstream), hash(unknown));
    EXPECT_NE(hash(GitSyncStatus::Ahead{"o/m", 1}), hash(GitSyncStatus::Behind{"o/m", 1}));
    EXPECT_NE(hash(diverged), hash(GitSyncStatus::Diverged{"origin/main", 3, 2}));
}

TEST(GitSyncStatus_Json, NamesTheStateAndItsPayload) {
    const auto text = [](const GitSyncStatus& status) { return jsonText(encodedJson(status)); };
    EXPECT_EQ(text(upToDate), R"({"state":"upToDate","upstream":"origin/main"})");
    EXPECT_EQ(text(ahead), R"({"state":"ahead","upstream":"origin/main","count":2})");
    EXPECT_EQ(text(behind), R"({"state":"behind","upstream":"origin/main","count":3})");
    EXPECT_EQ(text(diverged),
              R"({"state":"diverged","upstream":"origin/main","ahead":2,"behind":3})");
    EXPECT_EQ(text(noUpstream), R"({"state":"noUpstream"})");
    EXPECT_EQ(text(unknown), R"({"state":"unknown"})");
}

}  // namespace
}  // namespace tarnbeck
