#include <chrono>

#include "RepositoryJson.h"
#include "Snapshots.h"

namespace tarnbeck::cli {
namespace {

using namespace tarnbeck::testing;

std::vector<std::string> keysOf(const JsonValue& json) {
    std::vector<std::string> keys;
    for (const auto& member : json.as_object()) keys.emplace_back(member.key());
    return keys;
}

std::string syncStatusJson(GitSyncStatus status) {
    const JsonValue json = repositoryJson(withSync(cleanRepository("/r/a"), std::move(status)));
    return jsonText(json.as_object().at("syncStatus"));
}

TEST(RepositoryJson_Keys, StandInDeclaredOrderWithTheDerivedOnesBehind) {
    EXPECT_THAT(keysOf(repositoryJson(cleanRepository("/r/a"))),
                ::testing::ElementsAre(
                    "path", "name", "currentBranch", "isDetachedHead", "branches", "remoteBranches",
                    "gitHubOwnerRepos", "worktrees", "tags", "uncommittedChanges", "stashCount",
                    "stashes", "syncStatus", "gitConfigurationIssue", "dependencySummary", "issues",
                    "pullRequests", "isClean", "statusIcon", "statusColor", "summaryParts"));
}

TEST(RepositoryJson_Keys, AreAllThereInAWholeRecord) {
    GitRepository repository = withChanges(cleanRepository("/r/a"), 1);
    repository.remoteBranches = {"origin/main"};
    repository.gitHubOwnerRepos = {"owner/repo"};
    repository.worktrees = {{.path = "/r/a",
                             .branch = "main",
                             .commitHash = "1a2b",
                             .isMainWorktree = true,
                             .changes = {{.status = "??", .filePath = "new"}}}};
    repository.tags = {"v1"};
    repository.stashCount = 1;
    repository.stashes = {{.reference = "stash@{0}", .subject = "WIP"}};
    repository.syncStatus = GitSyncStatus::UpToDate{.upstream = "origin/main"};
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    EXPECT_EQ(
        jsonText(repositoryJson(repository)),
        R"({"path":"/r/a","name":"a","currentBranch":"main","isDetachedHead":false,)"
        R"("branches":[{"name":"main","isCurrent":true}],"remoteBranches":["origin/main"],)"
        R"("gitHubOwnerRepos":["owner/repo"],)"
        R"("worktrees":[{"path":"/r/a","branch":"main","commitHash":"1a2b","isBare":false,)"
        R"("isDetached":false,"isMainWorktree":true,)"
        R"("changes":[{"status":"??","filePath":"new"}]}],"tags":["v1"],)"
        R"("uncommittedChanges":[{"status":"M","filePath":"file1"}],"stashCount":1,)"
        R"("stashes":[{"reference":"stash@{0}","subject":"WIP"}],)"
        R"("syncStatus":{"state":"upToDate","upstream":"origin/main"},)"
        R"("gitConfigurationIssue":"coreBareWorktreeMismatch",)"
        R"("dependencySummary":{"ecosystems":[],"checkedAt":null},"issues":[],"pullRequests":[],)"
        R"("isClean":false,"statusIcon":"exclamationmark.triangle.fill","statusColor":"orange",)"
        R"("summaryParts":["git config issue","1 change","1 stash"]})");
}

TEST(RepositoryJson_AbsentValues, AreNull) {
    GitRepository repository = cleanRepository("/r/a");
    repository.currentBranch.reset();
    repository.worktrees = {{.path = "/r/b"}};
    const JsonValue json = repositoryJson(repository);
    EXPECT_TRUE(json.at("currentBranch").is_null());
    EXPECT_TRUE(json.at("gitConfigurationIssue").is_null());
    EXPECT_TRUE(json.at("dependencySummary").at("checkedAt").is_null());
    EXPECT_TRUE(json.at("worktrees").at(0).at("branch").is_null());
    EXPECT_TRUE(json.at("worktrees").at(0).at("commitHash").is_null());
}

TEST(RepositoryJson_SyncStatus, UpToDateNamesItsUpstream) {
    EXPECT_EQ(syncStatusJson(GitSyncStatus::UpToDate{.upstream = "o/m"}),
              R"({"state":"upToDate","upstream":"o/m"})");
}

TEST(RepositoryJson_SyncStatus, AheadHasACount) {
    EXPECT_EQ(syncStatusJson(GitSyncStatus::Ahead{.upstream = "o/m", .count = 2}),
              R"({"state":"ahead","upstream":"o/m","count":2})");
}

TEST(RepositoryJson_SyncStatus, BehindHasACount) {
    EXPECT_EQ(syncStatusJson(GitSyncStatus::Behind{.upstream = "o/m", .count = 3}),
              R"({"state":"behind","upstream":"o/m","count":3})");
}

TEST(RepositoryJson_SyncStatus, DivergedHasBothCounts) {
    EXPECT_EQ(syncStatusJson(GitSyncStatus::Diverged{.upstream = "o/m", .ahead = 1, .behind = 2}),
              R"({"state":"diverged","upstream":"o/m","ahead":1,"behind":2})");
}

TEST(RepositoryJson_SyncStatus, NoUpstreamHasNothingElse) {
    EXPECT_EQ(syncStatusJson(GitSyncStatus::NoUpstream{}), R"({"state":"noUpstream"})");
}

TEST(RepositoryJson_SyncStatus, UnknownHasNothingElse) {
    EXPECT_EQ(syncStatusJson(GitSyncStatus::Unknown{}), R"({"state":"unknown"})");
}

TEST(RepositoryJson_OwnerRepos, AreSorted) {
    GitRepository repository = cleanRepository("/r/a");
    repository.gitHubOwnerRepos = {"zeta/a", "alpha/z", "alpha/b"};
    EXPECT_EQ(jsonText(repositoryJson(repository).at("gitHubOwnerRepos")),
              R"(["alpha/b","alpha/z","zeta/a"])");
}

TEST(RepositoryJson_Derived, FollowTheRecord) {
    const JsonValue json = repositoryJson(
        withSync(cleanRepository("/r/a"), GitSyncStatus::Behind{.upstream = "o/m", .count = 3}));
    EXPECT_EQ(jsonText(json.at("isClean")), "true");
    EXPECT_EQ(jsonText(json.at("statusIcon")), R"("arrow.down.circle.fill")");
    EXPECT_EQ(jsonText(json.at("statusColor")), R"("yellow")");
    EXPECT_EQ(jsonText(json.at("summaryParts")), R"(["behind 3"])");
}

TEST(RepositoryJson_Dates, AreIso8601) {
    GitRepository repository = cleanRepository("/r/a");
    repository.dependencySummary.checkedAt = noon;
    EXPECT_EQ(jsonText(repositoryJson(repository).at("dependencySummary").at("checkedAt")),
              R"("2026-03-01T12:00:00Z")");
}

TEST(RepositoryJson_Text, BrokenUtf8IsReplacedAndTheResultParses) {
    const std::string text = jsonText(repositoryJson(cleanRepository("/r/a\xFF\n\"b")));
    const auto parsed = parsedJson(text);
    ASSERT_TRUE(parsed) << text;
    EXPECT_EQ(parsed->at("name").as_string(), "a\uFFFD\n\"b");
}

TEST(RepositoryJson_Array, OneElementALine) {
    EXPECT_EQ(jsonArrayText({JsonValue(1), JsonValue("two")}), "[\n1,\n\"two\"\n]\n");
}

TEST(RepositoryJson_Array, OfNothingIsEmpty) {
    EXPECT_EQ(jsonArrayText({}), "[]\n");
}

}  // namespace
}  // namespace tarnbeck::cli
