#include "ScannerHarness.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

using ::testing::IsEmpty;
using testing::repositoryAt;
using Paths = std::vector<std::string>;

RepositorySnapshot withWorktrees(const std::string& path, std::vector<GitWorktree> worktrees) {
    GitRepository repository = repositoryAt(path);
    repository.worktrees = std::move(worktrees);
    return std::make_shared<const GitRepository>(std::move(repository));
}

TEST(BuildWatchPaths, AreTheConfiguredFoldersAndTheWorktreesSortedAndOnce) {
    const testing::TemporaryFolder home;
    const std::string a = home.makeFolder("a");
    const std::string b = home.makeFolder("b");
    const std::string tree = home.makeFolder("Tree");
    EXPECT_EQ(RepositoryScanner::buildWatchPaths(
                  {.configuredPaths = {b, "~/a", a},
                   .repositories = {withWorktrees(b, {{.path = b}, {.path = tree}})},
                   .home = home.path()}),
              (Paths{tree, a, b}));
}

TEST(BuildWatchPaths, LeaveOutWhatIsNoFolder) {
    const testing::TemporaryFolder home;
    const std::string file = home.write("file", "");
    EXPECT_THAT(RepositoryScanner::buildWatchPaths(
                    {.configuredPaths = {"~/missing", file}, .home = home.path()}),
                IsEmpty());
}

TEST(BuildWatchPaths, LeaveOutBareWorktrees) {
    const testing::TemporaryFolder home;
    const std::string bare = home.makeFolder("bare");
    EXPECT_THAT(RepositoryScanner::buildWatchPaths(
                    {.repositories = {withWorktrees("/r/a", {{.path = bare, .isBare = true}})},
                     .home = home.path()}),
                IsEmpty());
}

TEST(BuildWatchRootMapping, LeadsConfiguredPathsToThemselvesAndWorktreesToTheirRepository) {
    const auto roots = RepositoryScanner::buildWatchRootMapping(
        {.configuredPaths = {"~/a"},
         .repositories = {withWorktrees(
             "/home/u/a",
             {{.path = "/home/u/a"}, {.path = "/t/x"}, {.path = "/t/bare", .isBare = true}})},
         .home = "/home/u"});
    EXPECT_EQ(roots, (WatchRootMap{{"/home/u/a", "/home/u/a"}, {"/t/x", "/home/u/a"}}));
}

TEST(BuildWatchRootMapping, ConfiguredPathThatIsAWorktreeOfAnotherLeadsToItself) {
    const auto roots = RepositoryScanner::buildWatchRootMapping(
        {.configuredPaths = {"/r/a", "/r/tree"},
         .repositories = {withWorktrees("/r/a", {{.path = "/r/tree"}})}});
    EXPECT_EQ(roots.at("/r/tree"), "/r/tree");
}

std::optional<std::set<std::string>> affected(const std::set<std::string>& paths,
                                              const WatchRootMap& roots) {
    return RepositoryScanner::repoPathsAffected(paths, roots);
}

TEST(RepoPathsAffected, EventBelowANestedRootMapsToTheInnerRoot) {
    const WatchRootMap roots = {{"/r/outer", "/r/outer"}, {"/r/outer/in", "/r/outer/in"}};
    EXPECT_EQ(affected({"/r/outer/in/x"}, roots), std::set<std::string>{"/r/outer/in"});
    EXPECT_EQ(affected({"/r/outer/inner/x"}, roots), std::set<std::string>{"/r/outer"});
    EXPECT_EQ(affected({"/r/outer/in"}, roots), std::set<std::string>{"/r/outer/in"});
}

TEST(RepoPathsAffected, OneTrailingSlashIsDropped) {
    EXPECT_EQ(affected({"/r/a/"}, {{"/r/a", "/r/a"}}), std::set<std::string>{"/r/a"});
}

TEST(RepoPathsAffected, RootIsNoPrefixOfALongerName) {
    EXPECT_EQ(affected({"/r/ab/x"}, {{"/r/a", "/r/a"}}), std::nullopt);
}

TEST(RepoPathsAffected, NoChangeNeedsAFullScan) {
    EXPECT_EQ(affected({}, {{"/r/a", "/r/a"}}), std::nullopt);
}

TEST(RepoPathsAffected, OnePathOutsideEveryRootNeedsAFullScan) {
    EXPECT_EQ(affected({"/r/a/x", "/x"}, {{"/r/a", "/r/a"}}), std::nullopt);
}

TEST(RepoPathsAffected, SeveralPathsOfOneRepositoryAreOne) {
    EXPECT_EQ(affected({"/r/a/x", "/t/y"}, {{"/r/a", "/r/a"}, {"/t", "/r/a"}}),
              std::set<std::string>{"/r/a"});
}

TEST(RepoPathsAffected, PathThatIsNotUtf8IsMappedLikeAnyOther) {
    EXPECT_EQ(affected({"/r/\xff/x"}, {{"/r/\xff", "/r/\xff"}}), std::set<std::string>{"/r/\xff"});
}

}  // namespace
}  // namespace tarnbeck
