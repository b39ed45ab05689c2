#include <filesystem>
#include <memory>
#include <optional>

#include "FileEventsByHand.h"
#include "Simulation.h"
#include "TemporaryFolder.h"
#include "UITestFixtureData.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using testing::FileEventsByHand;
using ::testing::IsEmpty;
using testing::Simulation;
using ::testing::SizeIs;
using testing::TemporaryFolder;

const GitRepository& fixture(std::size_t index) {
    return *UITestFixtureData::repositories().at(index);
}

// The names of a list of records.
template <class Record, class Field>
std::vector<Field> each(const ImmutableList<Record>& list, Field Record::*field) {
    std::vector<Field> values;
    for (const Record& record : list) values.push_back(record.*field);
    return values;
}

std::vector<std::string> texts(const ImmutableList<std::string>& list) {
    return {list.begin(), list.end()};
}

TEST(FixtureRepositories, AreThreeInThisOrder) {
    ASSERT_THAT(UITestFixtureData::repositories(), SizeIs(3));
    EXPECT_EQ(fixture(0).path, "/fixtures/repo-clean");
    EXPECT_EQ(fixture(1).path, "/fixtures/repo-dirty");
    EXPECT_EQ(fixture(2).path, "/fixtures/alpha-service");
    EXPECT_EQ(fixture(0).name, "repo-clean");
    EXPECT_EQ(fixture(1).name, "repo-dirty");
    EXPECT_EQ(fixture(2).name, "alpha-service");
}

TEST(FixtureRepositories, LieNowhere) {
    for (const auto& repository : UITestFixtureData::repositories()) {
        EXPECT_FALSE(std::filesystem::exists(repository->path));
    }
}

TEST(FixtureRepositories, HaveNothingOfSlowerSources) {
    for (const auto& repository : UITestFixtureData::repositories()) {
        EXPECT_FALSE(repository->isDetachedHead);
        EXPECT_EQ(repository->syncStatus, GitSyncStatus{});
        EXPECT_EQ(repository->gitConfigurationIssue, std::nullopt);
        EXPECT_THAT(repository->gitHubOwnerRepos, IsEmpty());
        EXPECT_EQ(repository->dependencySummary, DependencySummary::notApplicable);
        EXPECT_THAT(repository->issues, IsEmpty());
        EXPECT_THAT(repository->pullRequests, IsEmpty());
    }
}

TEST(FixtureRepositories, FirstIsClean) {
    const GitRepository& repository = fixture(0);
    EXPECT_TRUE(repository.isClean());
    EXPECT_EQ(repository.currentBranch, "main");
    EXPECT_THAT(repository.branches, ElementsAre(GitBranch{"main", true}));
    EXPECT_THAT(texts(repository.remoteBranches), ElementsAre("origin/main"));
    EXPECT_THAT(repository.worktrees, IsEmpty());
    EXPECT_THAT(texts(repository.tags), ElementsAre("v1.0.0"));
    EXPECT_EQ(repository.stashCount, 0);
}

TEST(FixtureRepositories, SecondHasAChangeABranchAndAStash) {
    const GitRepository& repository = fixture(1);
    EXPECT_FALSE(repository.isClean());
    EXPECT_EQ(repository.currentBranch, "feature/ui-harness");
    EXPECT_THAT(repository.branches,
                ElementsAre(GitBranch{"main", false}, GitBranch{"feature/ui-harness", true}));
    EXPECT_THAT(texts(repository.remoteBranches),
                ElementsAre("origin/HEAD", "origin/main", "origin/feature/ui-harness"));
    EXPECT_THAT(texts(repository.tags), ElementsAre("v0.9.0"));
    EXPECT_THAT(repository.uncommittedChanges, ElementsAre(FileChange{"M", "README.md"}));
    EXPECT_EQ(repository.stashCount, 1);
    EXPECT_THAT(repository.stashes,
                ElementsAre(GitStash{"stash@{0}", "On feature/ui-harness: fixture stash"}));
}

TEST(FixtureRepositories, SecondHasADirtyWorktree) {
    const auto& worktrees = fixture(1).worktrees;
    EXPECT_THAT(worktrees, ElementsAre(GitWorktree{.path = "/fixtures/repo-dirty",
                                                   .branch = "main",
                                                   .commitHash = "abc1111",
                                                   .isMainWorktree = true},
                                       GitWorktree{.path = "/fixtures/repo-dirty-wt",
                                                   .branch = "feature/ui-harness",
                                                   .commitHash = "def2222",
                                                   .changes = {{"M", "Sources/App.swift"}}}));
}

TEST(FixtureRepositories, ThirdHasASecondRemote) {
    const GitRepository& repository = fixture(2);
    EXPECT_EQ(repository.currentBranch, "main");
    EXPECT_THAT(each(repository.branches, &GitBranch::name), ElementsAre("main"));
    EXPECT_THAT(texts(repository.remoteBranches),
                ElementsAre("origin/main", "upstream/release/2026.03"));
    EXPECT_THAT(texts(repository.tags), ElementsAre("v2.3.4"));
}

class FixtureScanner : public ::testing::Test {
  protected:
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& repository : scanner->repositories()) all.push_back(repository->name);
        return all;
    }

    TemporaryFolder home;
    Simulation simulation;
    ScanLog log{{.home = home.path()}, simulation.loop, simulation.queues};
    NameCollator collator{"en_US"};
    FileEventsByHand fileEvents;
    int gitRuns = 0;
    std::vector<AppConfiguration> saved;
    std::unique_ptr<RepositoryScanner> scanner = UITestFixtureData::makeScanner(
        {.loop = simulation.loop,
         .queues = simulation.queues,
         .log = log,
         .collator = collator,
         .git = [this](const GitInvocation&) -> std::optional<std::string> {
             ++gitRuns;
             return "";
         },
         .home = home.path(),
         .fileEvents = &fileEvents},
        [this](const AppConfiguration& configuration) { saved.push_back(configuration); });
};

TEST_F(FixtureScanner, ShowsTheRepositoriesAtOnce) {
    EXPECT_EQ(scanner->repositories(), UITestFixtureData::repositories());
}

TEST_F(FixtureScanner, IsConfiguredForThemInAWindow) {
    EXPECT_THAT(
        scanner->configuration().repoPaths,
        ElementsAre("/fixtures/repo-clean", "/fixtures/repo-dirty", "/fixtures/alpha-service"));
    EXPECT_EQ(scanner->configuration().appMode, AppConfiguration::AppMode::regular);
}

TEST_F(FixtureScanner, FindsTheSameAtARefreshWithEverything) {
    scanner->requestRefresh(RepositoryRefreshRequest::byHand());
    simulation.runUntilIdle();
    EXPECT_THAT(names(), ElementsAre("alpha-service", "repo-clean", "repo-dirty"));
    EXPECT_EQ(*scanner->repositories().at(2), fixture(1));
}

TEST_F(FixtureScanner, RunsNoGitAndWatchesNothing) {
    scanner->requestRefresh(RepositoryRefreshRequest::byHand());
    scanner->refreshGitForRepo("/fixtures/repo-dirty");
    scanner->syncRepo("/fixtures/repo-clean");
    simulation.runUntilIdle();
    EXPECT_EQ(gitRuns, 0);
    EXPECT_THAT(fileEvents.opened, IsEmpty());
}

TEST_F(FixtureScanner, SetsNoTimer) {
    EXPECT_EQ(simulation.loop.pendingTimers(), 0);
}

TEST_F(FixtureScanner, HandsAConfigurationThatIsToBeKeptToItsMaker) {
    scanner->saveConfiguration();
    EXPECT_THAT(saved, ElementsAre(scanner->configuration()));
}

TEST_F(FixtureScanner, KeepsTheRepositoriesAtARefreshOfOne) {
    scanner->refreshGitForRepo("/fixtures/repo-dirty");
    scanner->refreshIssuesForRepo("/fixtures/repo-dirty");
    simulation.runUntilIdle();
    EXPECT_EQ(*scanner->repositories().at(1), fixture(1));
}

}  // namespace
}  // namespace tarnbeck
