// What the scan says of repositories that git can't read, or that go away under it.
#include <filesystem>
#include <functional>

#include "RealScan.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

using RealScan_Failure = RealScanTest;

std::string failOf(const std::string& command, const std::string& path) {
    return "FAIL(128) git " + command + " at " + path + " — ";
}

TEST_F(RealScan_Failure, RepositoryWithoutACommitIsAbsentAfterOneRetry) {
    const std::string path = real_.folder / "unborn";
    git("/", {"init", "-q", path});
    EXPECT_EQ(real_.scan(path), std::nullopt);
    EXPECT_THAT(real_.lines(),
                ElementsAre(StartsWith(failOf("rev-parse --abbrev-ref HEAD", path)),
                            "RETRY unborn: HEAD resolution failed — retrying in 250ms (attempt 1)",
                            StartsWith(failOf("rev-parse --abbrev-ref HEAD", path))));
}

TEST_F(RealScan_Failure, OrphanBranchWithoutACommitBesideOthersIsAbsentToo) {
    inGit({"checkout", "-q", "--orphan", "unborn"});
    EXPECT_EQ(real_.scan(path_), std::nullopt);
    EXPECT_EQ(real_.lines().size(), 3U);
}

TEST_F(RealScan_Failure, CorruptHeadIsAbsentAfterOneRetry) {
    write(".git/HEAD", "nonsense\n");
    EXPECT_EQ(real_.scan(path_), std::nullopt);
    EXPECT_THAT(real_.lines(),
                ::testing::Contains("RETRY project: HEAD resolution failed — retrying in 250ms "
                                    "(attempt 1)")
                    .Times(1));
}

TEST_F(RealScan_Failure, CorruptIndexFailsAtTheWorkingTreeStatus) {
    write(".git/index", "nonsense");
    EXPECT_EQ(real_.scan(path_), std::nullopt);
    EXPECT_THAT(real_.lines(),
                ::testing::Contains("RETRY project: working tree status failed — retrying in 250ms "
                                    "(attempt 1)")
                    .Times(1));
}

TEST_F(RealScan_Failure, EmptyGitFolderIsAbsentAfterOneRetry) {
    real_.folder.makeFolder("hollow/.git");
    EXPECT_EQ(real_.scan(real_.folder / "hollow"), std::nullopt);
    EXPECT_THAT(real_.lines(),
                ::testing::Contains("RETRY hollow: HEAD resolution failed — retrying in 250ms "
                                    "(attempt 1)")
                    .Times(1));
}

TEST_F(RealScan_Failure, GitFileThatLeadsNowhereIsAbsentAfterOneRetry) {
    real_.folder.write("lost/.git", "gitdir: /nonexistent\n");
    EXPECT_EQ(real_.scan(real_.folder / "lost"), std::nullopt);
    EXPECT_THAT(real_.lines(), ::testing::Contains(StartsWith("RETRY lost: ")).Times(1));
}

// Runs `meanwhile` right before the command with the given first arguments.
std::optional<GitRepository> scanWith(RealScan& real, const std::string& path,
                                      const std::vector<std::string>& command,
                                      const std::function<void()>& meanwhile) {
    std::optional<GitRepository> repository;
    const auto run = [&](const GitInvocation& invocation) {
        if (invocation.logicalArgs == command) meanwhile();
        return real.command.run(invocation);
    };
    RepositoryScanner::scanRepositoryImpl(
        {.loop = real.simulation.loop,
         .queues = real.simulation.queues,
         .log = real.observed.log,
         .git = run,
         .home = "/"},
        {.at = path}, [&](std::optional<GitRepository> result) { repository = std::move(result); });
    real.simulation.advance(std::chrono::seconds(2));
    return repository;
}

TEST_F(RealScan_Failure, RepositoryThatVanishesDuringTheScanIsAbsentAndNotRetriedOnceItHasGone) {
    const auto repository =
        scanWith(real_, path_, {"remote", "-v"}, [&] { fs::remove_all(path_); });
    EXPECT_EQ(repository, std::nullopt);
    EXPECT_THAT(real_.lines().back(),
                "RETRY project: working tree status failed — retrying in 250ms (attempt 1)");
}

TEST_F(RealScan_Failure, FailureThatIsOverAfterThePauseIsNotSeen) {
    const std::string head = contentOf(path_ + "/.git/HEAD");
    write(".git/HEAD", "half wri");
    const Timer repair = real_.simulation.loop.after(std::chrono::milliseconds(100),
                                                     [&] { write(".git/HEAD", head); });
    const GitRepository repository = scanned();
    EXPECT_EQ(repository.currentBranch, "main");
}

TEST_F(RealScan_Failure, LogOnDiskHoldsTheSameLinesWithTheirTime) {
    real_.folder.write("lost/.git", "gitdir: /nonexistent\n");
    real_.scan(real_.folder / "lost");
    real_.observed.log.drain();
    EXPECT_THAT(contentOf(real_.observed.log.location()),
                AllOf(StartsWith("[2026-03-01T12:00:00Z] FAIL(128) git rev-parse "),
                      HasSubstr("[2026-03-01T12:00:00Z] RETRY lost: HEAD resolution failed")));
}

}  // namespace
}  // namespace tarnbeck
