#include "RepositoryRefreshSupport.h"
#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using namespace RepositoryRefreshSupport;
using testing::repositoryAt;
using testing::Simulation;
using testing::TemporaryFolder;
using Paths = std::vector<std::string>;
using Snapshots = std::vector<RepositorySnapshot>;

RepositorySnapshot snapshotAt(const std::string& path) {
    return std::make_shared<const GitRepository>(repositoryAt(path));
}

RepositorySnapshot changed(GitRepository repository, auto change) {
    change(repository);
    return std::make_shared<const GitRepository>(std::move(repository));
}

FailureCounts counted(const FailureCounts& previous, const Paths& configured,
                      const Paths& scanned) {
    Snapshots snapshots;
    for (const auto& path : scanned) snapshots.push_back(snapshotAt(path));
    return updatedConsecutiveScanFailures(
        {.previousFailureCounts = previous, .configuredPaths = configured, .scanned = snapshots});
}

TEST(ConsecutiveScanFailures, ScannedPathCountsZeroAndFailedOneGoesUpFromWhereItWas) {
    EXPECT_EQ(counted({{"/a", 3}, {"/b", 3}}, {"/a", "/b", "/c"}, {"/a"}),
              (FailureCounts{{"/a", 0}, {"/b", 4}, {"/c", 1}}));
}

TEST(ConsecutiveScanFailures, PathThatIsNotConfiguredLosesItsCount) {
    EXPECT_EQ(counted({{"/gone", 5}}, {"/a"}, {"/a"}), (FailureCounts{{"/a", 0}}));
}

// A log whose messages are kept, and a folder to look at.
class Retention : public ::testing::Test {
  protected:
    Retention() {
        observation =
            log.observe([this](std::string_view message) { messages.emplace_back(message); });
    }

    DropDecision decide(const std::string& path, int failures) {
        return shouldDropSnapshotAfterRepeatedFailures(
            {.at = path, .failureCount = failures, .firstFailureBeyondThreshold = 2}, log);
    }

    Snapshots merge(const Snapshots& scanned, const Paths& configured, const Snapshots& previous,
                    const FailureCounts& failures) {
        return mergeScanResults({.scanned = scanned,
                                 .configuredPaths = configured,
                                 .previousReposByPath = keyedByPath(previous),
                                 .consecutiveScanFailuresByPath = failures},
                                collator, log);
    }

    TemporaryFolder folder;
    Simulation simulation;
    ScanLog log{{.home = folder.path()}, simulation.loop, simulation.queues};
    NameCollator collator{"en_US"};
    Paths messages;
    ScanLog::Observers::Token observation;
};

TEST_F(Retention, PathThatDoesNotExistIsDropped) {
    EXPECT_EQ(decide(folder / "nowhere", 2), (DropDecision{true, "path does not exist"}));
}

TEST_F(Retention, PathThatIsNoDirectoryIsDropped) {
    EXPECT_EQ(decide(folder.write("file", ""), 2), (DropDecision{true, "path does not exist"}));
}

TEST_F(Retention, PathWithoutGitIsDropped) {
    EXPECT_EQ(decide(folder.makeFolder("plain"), 2), (DropDecision{true, ".git is missing"}));
}

TEST_F(Retention, TenthFailureDropsWhatStillExists) {
    folder.makeFolder("r/.git");
    EXPECT_EQ(decide(folder / "r", 9), (DropDecision{false, "repository path still exists"}));
    EXPECT_EQ(decide(folder / "r", 10),
              (DropDecision{true, "repository scan failed 10x while path still exists"}));
    EXPECT_EQ(decide(folder / "r", 11).reason,
              "repository scan failed 11x while path still exists");
}

TEST_F(Retention, MissingGitIsSaidBeforeTheTenthFailure) {
    EXPECT_EQ(decide(folder.makeFolder("plain"), 10).reason, ".git is missing");
}

TEST_F(Retention, KeepingIsLoggedOnceAtTheSecondFailure) {
    folder.makeFolder("r/.git");
    for (int failures = 2; failures < 10; ++failures) decide(folder / "r", failures);
    EXPECT_EQ(messages, (Paths{"KEEPING SNAPSHOT at " + folder / "r" +
                               ": repeated scan failures but repository path still exists"}));
}

TEST_F(Retention, DroppingIsLoggedWithNameCountPathAndReason) {
    const std::string path = folder / "gone";
    EXPECT_TRUE(merge({}, {path}, {snapshotAt(path)}, {{path, 2}}).empty());
    EXPECT_EQ(messages, (Paths{"DROPPING STALE SNAPSHOT gone: 2 consecutive scan failures at " +
                               path + " — path does not exist"}));
}

TEST_F(Retention, FirstFailureKeepsEvenWhatHasGone) {
    const std::string path = folder / "gone";
    EXPECT_EQ(merge({}, {path}, {snapshotAt(path)}, {{path, 1}}).size(), 1);
    EXPECT_TRUE(messages.empty());
}

TEST_F(Retention, SnapshotWithoutAFailureCountIsKept) {
    const std::string path = folder / "gone";
    EXPECT_EQ(merge({}, {path}, {snapshotAt(path)}, {}).size(), 1);
}

TEST_F(Retention, StaleSnapshotIsThePreviousOneUnchanged) {
    folder.makeFolder("r/.git");
    const auto previous = changed(repositoryAt(folder / "r"), [](GitRepository& repository) {
        repository.issues = {{.id = 1, .number = 1}};
    });
    const auto merged = merge({}, {folder / "r"}, {previous}, {{folder / "r", 5}});
    ASSERT_EQ(merged.size(), 1);
    EXPECT_EQ(merged[0], previous);
}

TEST_F(Retention, PathWithNoRecordAnywhereStaysOutWithoutAWord) {
    EXPECT_TRUE(merge({}, {"/never/seen"}, {}, {{"/never/seen", 9}}).empty());
    EXPECT_TRUE(messages.empty());
}

TEST_F(Retention, PreviousSnapshotThatIsNotConfiguredGoes) {
    EXPECT_TRUE(merge({}, {}, {snapshotAt("/r/a")}, {}).empty());
}

TEST_F(Retention, FreshRecordReplacesThePreviousOne) {
    const auto fresh = snapshotAt("/r/a");
    EXPECT_EQ(merge({fresh}, {"/r/a"}, {snapshotAt("/r/a")}, {{"/r/a", 0}}), (Snapshots{fresh}));
}

TEST_F(Retention, MergedListIsSortedByNameWithoutRegardToCase) {
    const Snapshots scanned = {snapshotAt("/r/beta"), snapshotAt("/r/Alpha"),
                               snapshotAt("/r/alpine"), snapshotAt("/r/Über")};
    Paths names;
    for (const auto& repository :
         merge(scanned, {"/r/beta", "/r/Alpha", "/r/alpine", "/r/Über"}, {}, {})) {
        names.push_back(repository->name);
    }
    EXPECT_EQ(names, (Paths{"Alpha", "alpine", "beta", "Über"}));
}

TEST_F(Retention, EqualNamesKeepTheConfiguredOrder) {
    const Paths configured = {"/z/same", "/a/Same", "/m/same"};
    const auto merged = merge({snapshotAt("/m/same"), snapshotAt("/z/same")}, configured,
                              {snapshotAt("/a/Same")}, {});
    Paths paths;
    for (const auto& repository : merged) paths.push_back(repository->path);
    EXPECT_EQ(paths, configured);
}

// What is carried over from a previous snapshot and from the cache to a fresh one.
class CarryOver : public ::testing::Test {
  protected:
    GitRepository preserved(const RepositorySnapshot& fresh, const Snapshots& previous) {
        return *preserveAsyncData({fresh}, {.previousReposByPath = keyedByPath(previous),
                                            .cachedGitHubDataByPath = cache})[0];
    }

    static GitRepository withIssue(std::int64_t number) {
        GitRepository repository = repositoryAt("/r/a");
        repository.issues = {{.id = number, .number = number}};
        repository.pullRequests = {{.id = number, .number = number}};
        return repository;
    }

    static DependencySummary summary(std::optional<DependencyHealth> status) {
        if (!status) return DependencySummary::notApplicable;
        return {.ecosystems = {{.manager = "npm", .status = *status}}};
    }

    GitRepository withSummaries(std::optional<DependencyHealth> fresh,
                                std::optional<DependencyHealth> previous) {
        const auto with = [](auto status) {
            return changed(repositoryAt("/r/a"), [&](GitRepository& repository) {
                repository.dependencySummary = summary(status);
            });
        };
        return preserved(with(fresh), {with(previous)});
    }

    std::function<std::optional<GitHubRepositoryData>(const std::string&)> cache =
        [](const std::string&) {
            return GitHubRepositoryData{.issues = {{.id = 99, .number = 99}},
                                        .pullRequests = {{.id = 99, .number = 99}}};
        };
};

TEST_F(CarryOver, EmptyListsTakeThePreviousOnes) {
    const auto result =
        preserved(snapshotAt("/r/a"), {std::make_shared<const GitRepository>(withIssue(5))});
    EXPECT_EQ(result.issues[0].number, 5);
    EXPECT_EQ(result.pullRequests[0].number, 5);
}

TEST_F(CarryOver, FreshListsStay) {
    const auto result = preserved(std::make_shared<const GitRepository>(withIssue(6)),
                                  {std::make_shared<const GitRepository>(withIssue(5))});
    EXPECT_EQ(result.issues[0].number, 6);
    EXPECT_EQ(result.pullRequests[0].number, 6);
}

TEST_F(CarryOver, PreviousSnapshotWithEmptyListsKeepsTheCacheOut) {
    const auto result = preserved(snapshotAt("/r/a"), {snapshotAt("/r/a")});
    EXPECT_TRUE(result.issues.empty());
    EXPECT_TRUE(result.pullRequests.empty());
}

TEST_F(CarryOver, WithoutAPreviousSnapshotTheCacheFills) {
    const auto result = preserved(snapshotAt("/r/a"), {});
    EXPECT_EQ(result.issues[0].number, 99);
    EXPECT_EQ(result.pullRequests[0].number, 99);
}

TEST_F(CarryOver, IssuesAndPullRequestsGoEachTheirOwnWay) {
    const auto without = [](auto GitRepository::*list) {
        return changed(withIssue(6), [&](GitRepository& repository) { repository.*list = {}; });
    };
    const auto previous = std::make_shared<const GitRepository>(withIssue(5));
    const auto withoutIssues = preserved(without(&GitRepository::issues), {previous});
    EXPECT_EQ(withoutIssues.issues[0].number, 5);
    EXPECT_EQ(withoutIssues.pullRequests[0].number, 6);
    const auto withoutRequests = preserved(without(&GitRepository::pullRequests), {});
    EXPECT_EQ(withoutRequests.issues[0].number, 6);
    EXPECT_EQ(withoutRequests.pullRequests[0].number, 99);
}

TEST_F(CarryOver, NothingAnywhereLeavesTheListsEmpty) {
    cache = [](const std::string&) { return std::nullopt; };
    EXPECT_TRUE(preserved(snapshotAt("/r/a"), {}).issues.empty());
    cache = [](const std::string&) { return GitHubRepositoryData{}; };
    EXPECT_TRUE(preserved(snapshotAt("/r/a"), {}).issues.empty());
}

TEST_F(CarryOver, PlaceholderTakesThePreviousVerdict) {
    using enum DependencyHealth;
    EXPECT_EQ(withSummaries(std::nullopt, updatesAvailable).dependencySummary,
              summary(updatesAvailable));
    EXPECT_EQ(withSummaries(checking, error).dependencySummary, summary(error));
}

TEST_F(CarryOver, VerdictOfTheFreshSnapshotStays) {
    using enum DependencyHealth;
    EXPECT_EQ(withSummaries(upToDate, error).dependencySummary, summary(upToDate));
}

TEST_F(CarryOver, PreviousPlaceholderReplacesNothing) {
    using enum DependencyHealth;
    EXPECT_EQ(withSummaries(std::nullopt, checking).dependencySummary, summary(std::nullopt));
    EXPECT_EQ(withSummaries(checking, std::nullopt).dependencySummary, summary(checking));
}

}  // namespace
}  // namespace tarnbeck
