// The front door: what is asked of the managers, and what is answered from memory.
#include <algorithm>
#include <chrono>
#include <filesystem>

#include <fmt/format.h>

#include "DependencyCacheFixture.h"
#include "DependencyScanner+Discovery.h"
#include "DependencyScanner+Fingerprints.h"
#include "DependencyScanner.h"
#include "RecordedCommands.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
namespace fs = std::filesystem;

using Health = DependencyHealth;

constexpr auto leftPadIsBehind =
    R"({"left-pad":{"current":"1.0.0","wanted":"1.0.0","latest":"1.1.0"}})";

class DependencyScan : public ::testing::Test {
  protected:
    DependencyScan() {
        tools.runCommand = commands.runner();
        npmPrints("{}");
    }

    void npmPrints(const std::string& report) {
        commands.answer("npm outdated", printed(report, report == "{}" ? 0 : 1));
    }
    void npmFails() { commands.answer("npm outdated", failed(1, "npm error ENOTFOUND")); }

    DependencySummary scan(bool forceRefresh = false) {
        return DependencyScanner::scan(tools, memory(),
                                       {.at = repo.path(), .forceRefresh = forceRefresh});
    }
    DependencySummary initial() { return DependencyScanner::initialSummary(memory(), repo.path()); }
    DependencyScanner::Memory memory() { return {.cache = *cache, .clock = cache.simulation.loop}; }
    std::string fingerprint() {
        return DependencyScanner::buildFingerprint(repo.path(),
                                                   DependencyScanner::discoverMarkers(repo.path()));
    }
    std::size_t checks() const { return commands.commands().size(); }

    TemporaryFolder repo;
    DependencyCacheFixture cache;
    RecordedCommands commands;
    DependencyTools tools;
};

TEST_F(DependencyScan, OfARepositoryWithoutProjectsDoesNotApplyAndStoresNothing) {
    EXPECT_EQ(scan(), DependencySummary::notApplicable);
    EXPECT_EQ(cache->lastKnownSummary(repo.path(), true), std::nullopt);
    EXPECT_THAT(commands.commands(), IsEmpty());
    cache.simulation.advance(1min);
    EXPECT_FALSE(fs::exists(cache.file()));
}

TEST_F(DependencyScan, HasNodeBeforePythonAndEachByPath) {
    repo.write("b/package.json", "{}");
    repo.write("a/package.json", "{}");
    repo.write("a/requirements.txt", "");
    std::vector<std::string> results;
    const DependencySummary summary = scan();
    for (const auto& result : summary.ecosystems) {
        results.push_back(fmt::format("{} {}", rawValue(result.ecosystem), *result.project));
    }
    EXPECT_THAT(results, ElementsAre("Node a", "Node b", "Python a"));
}

TEST_F(DependencyScan, IsStampedWithTheTimeItEnded) {
    repo.write("package.json", "{}");
    tools.runCommand = [this](const Command&) {
        cache.simulation.advance(7s);
        return printed("{}");
    };
    const auto summary = scan();
    EXPECT_EQ(summary.checkedAt, cache.simulation.loop.wallNow());
}

TEST_F(DependencyScan, OfAnUnchangedRepositoryRunsNothing) {
    repo.write("package.json", "{}");
    npmPrints(leftPadIsBehind);
    const auto first = scan();
    cache.simulation.advance(3599s);
    EXPECT_EQ(scan(), first);
    EXPECT_EQ(checks(), 1);
}

TEST_F(DependencyScan, TouchedLockfileMakesItCheckAgain) {
    repo.write("package.json", "{}");
    repo.write("package-lock.json", "{}");
    scan();
    fs::last_write_time(repo / "package-lock.json",
                        fs::last_write_time(repo / "package-lock.json") + 1s);
    scan();
    EXPECT_EQ(checks(), 2);
}

TEST_F(DependencyScan, EntryOfAnHourIsCheckedAgainThoughNothingChanged) {
    repo.write("package.json", "{}");
    scan();
    cache.simulation.advance(3600s);
    scan();
    EXPECT_EQ(checks(), 2);
}

TEST_F(DependencyScan, WithForceIgnoresAFreshSummary) {
    repo.write("package.json", "{}");
    scan();
    scan(true);
    EXPECT_EQ(checks(), 2);
}

TEST_F(DependencyScan, WithForceFindsProjectsAnew) {
    repo.write("package.json", "{}");
    repo.makeFolder("deep/er");
    EXPECT_THAT(scan().ecosystems, SizeIs(1));
    repo.write("deep/er/package.json", "{}");  // the first level does not show it
    EXPECT_THAT(scan().ecosystems, SizeIs(1));
    EXPECT_THAT(scan(true).ecosystems, SizeIs(2));
}

TEST_F(DependencyScan, FindsANewProjectDeepInTheTreeWhenItsListHasExpired) {
    repo.write("package.json", "{}");
    repo.makeFolder("deep/er");
    scan();
    repo.write("deep/er/package.json", "{}");
    cache.simulation.advance(300s);
    EXPECT_THAT(scan().ecosystems, SizeIs(2));
}

TEST_F(DependencyScan, FindsANewProjectOnTheFirstLevelAtOnce) {
    repo.write("package.json", "{}");
    scan();
    repo.write("web/package.json", "{}");
    EXPECT_THAT(scan().ecosystems, SizeIs(2));
}

TEST_F(DependencyScan, FailedCheckIsRepeatedByTheNextScan) {
    repo.write("package.json", "{}");
    npmFails();
    EXPECT_EQ(scan().status(), Health::error);
    scan();
    EXPECT_EQ(checks(), 2);
}

TEST_F(DependencyScan, WhereEveryProjectFailsTheLastGoodSummaryIsGivenWithItsOwnDate) {
    repo.write("package.json", "{}");
    npmPrints(leftPadIsBehind);
    const auto good = scan();
    cache.simulation.advance(3600s);
    npmFails();
    EXPECT_EQ(scan(), good);
    EXPECT_EQ(checks(), 2);
}

TEST_F(DependencyScan, LastGoodSummaryIsStoredAnewAndServedForAnotherHour) {
    repo.write("package.json", "{}");
    const auto good = scan();
    npmFails();
    repo.write("pnpm-workspace.yaml", "");
    repo.write("package-lock.json", "{}");  // another fingerprint
    EXPECT_EQ(scan(), good);
    EXPECT_EQ(cache->cachedSummary(repo.path(), fingerprint()), good);
    cache.simulation.advance(3599s);
    EXPECT_EQ(scan(), good);
    EXPECT_EQ(checks(), 2);
    cache.simulation.advance(1s);
    scan();
    EXPECT_EQ(checks(), 3);
}

TEST_F(DependencyScan, WhereEveryProjectFailsAndTheOlderSummaryFailedTooTheNewOneIsStored) {
    repo.write("package.json", "{}");
    npmFails();
    scan();
    commands.answer("npm outdated", failed(1, "another reason"));
    const auto second = scan();
    EXPECT_EQ(second.ecosystems[0].message, "another reason");
    EXPECT_EQ(cache->lastKnownSummary(repo.path(), true), second);
}

TEST_F(DependencyScan, WhereEveryProjectFailsAnOlderSummaryWithoutProjectsIsNoGoodOne) {
    repo.write("package.json", "{}");
    cache->store(DependencySummary::notApplicable, repo.path(), "v17|older");
    npmFails();
    EXPECT_EQ(scan().status(), Health::error);
}

TEST_F(DependencyScan, WhereSomeFailTheNewSummaryIsGivenAndStored) {
    repo.write("package.json", "{}");
    repo.write("web/package.json", "{}");
    scan();
    cache.simulation.advance(3600s);
    tools.runCommand = [this](const Command& command) {
        return command.cwd == repo.path() ? failed(1, "no network") : printed(leftPadIsBehind, 1);
    };
    const auto mixed = scan();
    EXPECT_EQ(mixed.ecosystems[0].status, Health::error);
    EXPECT_EQ(mixed.ecosystems[1].status, Health::constraints);
    EXPECT_EQ(cache->lastKnownSummary(repo.path(), true), mixed);
    EXPECT_EQ(cache->cachedSummary(repo.path(), fingerprint()), std::nullopt);
}

TEST_F(DependencyScan, ThreeHundredProjectsAreCheckedOneAfterTheOther) {
    for (int number = 0; number < 300; ++number) {
        repo.write(fmt::format("p{}/package.json", number), "{}");
    }
    EXPECT_THAT(scan().ecosystems, SizeIs(300));
    std::vector<std::string> folders;
    for (const Command& command : commands.commands()) folders.push_back(command.cwd);
    EXPECT_EQ(folders.size(), 300);
    EXPECT_TRUE(std::ranges::is_sorted(folders));
    scan();
    EXPECT_EQ(checks(), 300);
}

using InitialSummary = DependencyScan;

TEST_F(InitialSummary, IsTheLastGoodOneHoweverOld) {
    repo.write("package.json", "{}");
    npmPrints(leftPadIsBehind);
    const auto good = scan();
    cache.simulation.advance(24h);
    repo.write("package-lock.json", "{}");
    EXPECT_EQ(initial(), good);
    EXPECT_EQ(checks(), 1);
}

TEST_F(InitialSummary, WithoutProjectsDoesNotApply) {
    EXPECT_EQ(initial(), DependencySummary::notApplicable);
}

TEST_F(InitialSummary, OfUncheckedProjectsSaysThatTheyAreBeingChecked) {
    repo.write("package.json", R"({"packageManager":"pnpm@9.0.0"})");
    repo.write("api/requirements.txt", "");
    const auto summary = initial();
    EXPECT_EQ(summary.status(), Health::checking);
    EXPECT_EQ(summary.checkedAt, std::nullopt);
    EXPECT_THAT(summary.ecosystems,
                ElementsAre(DependencyEcosystemResult{.ecosystem = DependencyEcosystem::node,
                                                      .project = ".",
                                                      .manager = "pnpm",
                                                      .status = Health::checking},
                            DependencyEcosystemResult{.ecosystem = DependencyEcosystem::python,
                                                      .project = "api",
                                                      .manager = "pip",
                                                      .status = Health::checking}));
    EXPECT_EQ(checks(), 0);
}

TEST_F(InitialSummary, AfterNothingButFailuresSaysThatProjectsAreBeingChecked) {
    repo.write("package.json", "{}");
    npmFails();
    scan();
    EXPECT_EQ(initial().status(), Health::checking);
}

}  // namespace
}  // namespace tarnbeck::testing
