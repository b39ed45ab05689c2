#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using testing::ScannerHarness;

class AddRepo : public ::testing::Test {
  protected:
    void make(std::vector<std::string> configured) {
        harness.options.configuration.repoPaths = std::move(configured);
        harness.answersAtOnce = true;
        harness.make();
    }
    void add(const std::string& path) {
        harness.scanner->addRepo(path);
        harness.simulation.runUntilIdle();
    }
    std::string inHome(const std::string& name) { return harness.folder / name; }

    ScannerHarness harness;
};

TEST_F(AddRepo, ExpandedPathIsConfiguredAndSaved) {
    make({"/r/a"});
    add("~/b/");
    const std::vector<std::string> expected = {"/r/a", inHome("b")};
    EXPECT_EQ(harness.scanner->configuration().repoPaths, expected);
    ASSERT_EQ(harness.savedConfigurations.size(), 1);
    EXPECT_EQ(harness.savedConfigurations[0].repoPaths, expected);
}

TEST_F(AddRepo, FullScanWithEverythingFollows) {
    harness.folder.makeFolder("b/.git");
    make({});
    add("~/b");
    EXPECT_EQ(harness.names(), std::vector<std::string>{"b"});
    ASSERT_EQ(harness.gitInvocations.size(), 1);
    EXPECT_THAT(harness.gitInvocations[0].logicalArgs, ElementsAre("fetch", "--prune", "--quiet"));
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 1);
    EXPECT_THAT(harness.issueScans,
                ElementsAre(Pair(inHome("b"), GitHubIssueRefreshPolicy::forceRefresh)));
}

TEST_F(AddRepo, PathWhoseExpandedFormIsStoredAlreadyDoesNothing) {
    make({inHome("b")});
    add("~/b");
    EXPECT_EQ(harness.scanner->configuration().repoPaths, std::vector{inHome("b")});
    EXPECT_THAT(harness.savedConfigurations, IsEmpty());
    EXPECT_THAT(harness.scannedPaths, IsEmpty());
}

TEST_F(AddRepo, PathThatIsStoredWithItsTildeDoesNothing) {
    make({"~/b"});
    add(inHome("b"));
    EXPECT_EQ(harness.scanner->configuration().repoPaths, std::vector<std::string>{"~/b"});
    EXPECT_THAT(harness.savedConfigurations, IsEmpty());
}

TEST_F(AddRepo, NewFolderIsWatched) {
    harness.folder.makeFolder("b");
    harness.options.autoStart = true;
    make({});
    harness.simulation.runUntilIdle();
    add("~/b");
    ASSERT_FALSE(harness.fileEvents.opened.empty());
    EXPECT_EQ(harness.fileEvents.opened.back().roots, std::vector{inHome("b")});
}

TEST_F(AddRepo, StreamIsOpenedAnewEvenWhereTheFolderIsMissing) {
    harness.folder.makeFolder("a");
    harness.options.autoStart = true;
    make({inHome("a")});
    harness.simulation.runUntilIdle();
    const std::size_t before = harness.fileEvents.opened.size();
    add("~/missing");
    EXPECT_EQ(harness.fileEvents.opened.size(), before + 1);
    EXPECT_EQ(harness.fileEvents.opened.back().roots, std::vector{inHome("a")});
}

TEST_F(AddRepo, IsSavedBeforeTheScanBegins) {
    bool scanningWhenSaved = true;
    harness.options.saveConfiguration = [&](const AppConfiguration&) {
        scanningWhenSaved = harness.scanner->isScanning();
    };
    make({});
    harness.scanner->addRepo("~/b");
    EXPECT_FALSE(scanningWhenSaved);
    EXPECT_TRUE(harness.scanner->isScanning());
}

TEST(RepositoryRefreshRequest_ByHand, AsksForEverythingFresh) {
    EXPECT_EQ(RepositoryRefreshRequest::byHand(),
              (RepositoryRefreshRequest{.trigger = RepositoryRefreshTrigger::manual,
                                        .refreshDependencies = true,
                                        .refreshIssues = true,
                                        .forceIssueRefresh = true,
                                        .refreshRemotes = true}));
}

}  // namespace
}  // namespace tarnbeck
