// What becomes, from scan to scan, of repositories that can't be scanned.
#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using testing::repositoryAt;
using testing::ScannerHarness;
using Names = std::vector<std::string>;

std::optional<GitRepository> failure(const std::string& /*path*/) {
    return std::nullopt;
}

TEST(FullScan_Failures, FailedRepositoryKeepsItsSnapshot) {
    ScannerHarness harness({"/r/a", "/r/b"});
    harness.make();
    harness.refresh();
    harness.answer = [](const std::string& path) {
        return path == "/r/a" ? std::nullopt : std::optional(repositoryAt(path));
    };
    harness.refresh();
    EXPECT_EQ(harness.names(), (Names{"a", "b"}));
}

TEST(FullScan_Failures, DeletedFolderGoesAtTheSecondFailedScanThoughItStaysConfigured) {
    ScannerHarness harness({"/r/nowhere"});
    harness.make();
    harness.refresh();
    harness.answer = failure;
    harness.refresh();
    EXPECT_EQ(harness.names(), (Names{"nowhere"}));
    harness.refresh();
    EXPECT_TRUE(harness.names().empty());
}

TEST(FullScan_Failures, RepositoryThatIsStillThereGoesAtTheTenthFailedScanInARow) {
    ScannerHarness harness;
    harness.folder.makeFolder("a/.git");
    harness.options.configuration.repoPaths = {"~/a"};
    harness.answer = [&](const std::string&) { return repositoryAt(harness.folder / "a"); };
    harness.make();
    harness.refresh();
    std::vector<std::string> lines;
    const auto observation =
        harness.log.observe([&](std::string_view line) { lines.emplace_back(line); });
    harness.answer = failure;
    for (int failures = 1; failures <= 9; ++failures) harness.refresh();
    EXPECT_EQ(harness.names(), (Names{"a"}));
    harness.refresh();
    EXPECT_TRUE(harness.names().empty());
    EXPECT_EQ(lines, (Names{"KEEPING SNAPSHOT at " + harness.folder / "a" +
                                ": repeated scan failures but repository path still exists",
                            "DROPPING STALE SNAPSHOT a: 10 consecutive scan failures at " +
                                harness.folder / "a" +
                                " — repository scan failed 10x while path still exists"}));
}

TEST(FullScan_Failures, SuccessBetweenFailuresBeginsTheCountAnew) {
    ScannerHarness harness({"/r/nowhere"});
    harness.make();
    for (int round = 0; round < 3; ++round) {
        harness.answer = repositoryAt;
        harness.refresh();
        harness.answer = failure;
        harness.refresh();
    }
    EXPECT_EQ(harness.names(), (Names{"nowhere"}));
}

TEST(FullScan_Failures, SnapshotThatIsKeptIsTheSameOneWithItsIssuesAndItsVerdict) {
    ScannerHarness harness({"/r/a"});
    harness.answer = [](const std::string& path) {
        GitRepository repository = repositoryAt(path);
        repository.issues = {{.id = 1, .number = 1}};
        repository.dependencySummary = {
            .ecosystems = {{.manager = "npm", .status = DependencyHealth::error}}};
        return repository;
    };
    harness.make();
    harness.refresh();
    const RepositorySnapshot before = harness.scanner->repositories()[0];
    harness.answer = failure;
    harness.refresh();
    EXPECT_EQ(harness.scanner->repositories(), (std::vector{before}));
}

TEST(FullScan_Failures, PathRemovedFromTheConfigurationLosesItsFailureCount) {
    ScannerHarness harness({"/r/nowhere"});
    harness.make();
    harness.refresh();
    const auto snapshots = harness.scanner->repositories();
    harness.answer = failure;
    harness.refresh();  // one failure
    const auto configuration = harness.scanner->configuration();
    harness.scanner->setConfiguration({});
    harness.refresh();
    harness.scanner->setConfiguration(configuration);
    harness.scanner->setRepositories(snapshots);
    harness.refresh();  // one failure again, not the second
    EXPECT_EQ(harness.names(), (Names{"nowhere"}));
}

}  // namespace
}  // namespace tarnbeck
