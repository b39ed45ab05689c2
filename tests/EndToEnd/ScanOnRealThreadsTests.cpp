// The scan with everything as it is in the running program: threads, main loop and git.
#include <chrono>

#include "GitCommand.h"
#include "GitFixture.h"
#include "PosixMainLoop.h"
#include "PosixProcessLauncher.h"
#include "RepositoryScanner.h"
#include "TemporaryFolder.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::contentOf;
using testing::git;
using ::testing::HasSubstr;
using testing::makeRepository;
using testing::TemporaryFolder;

struct RunningProgram {
    // Scans all at once and waits for all results, which come in the order of `paths`.
    std::vector<std::optional<GitRepository>> scan(const std::vector<std::string>& paths) {
        std::vector<std::optional<GitRepository>> results(paths.size());
        std::size_t missing = paths.size();
        for (std::size_t index = 0; index < paths.size(); ++index) {
            const auto deliver = [&, index](std::optional<GitRepository> repository) {
                loop.post([&, index, repository = std::move(repository)] {
                    results[index] = repository;
                    if (--missing == 0) loop.stop();
                });
            };
            RepositoryScanner::scanRepositoryImpl(
                {.loop = loop,
                 .queues = queues,
                 .log = log,
                 .git = [this](const GitInvocation& invocation) { return command.run(invocation); },
                 .home = folder / "home"},
                {.at = paths[index]}, deliver);
        }
        loop.run();
        return results;
    }

    TemporaryFolder folder;
    PosixMainLoop loop;
    PosixProcessLauncher launcher;
    ThreadedWorkQueues queues;
    ScanLog log{{.home = folder.path()}, loop, queues};
    const GitCommand command{{.home = folder / "home"}, launcher, log};
};

TEST(ScanOnRealThreads, ManyRepositoriesAtOnceDoNotMeet) {
    RunningProgram program;
    std::vector<std::string> paths;
    for (int number = 0; number < 12; ++number) {
        const std::string name = "project " + std::to_string(number);
        paths.push_back(makeRepository(program.folder / name));
        program.folder.write(name + "/only in " + std::to_string(number), "");
    }
    const auto results = program.scan(paths);
    for (std::size_t index = 0; index < paths.size(); ++index) {
        ASSERT_TRUE(results[index]);
        EXPECT_EQ(results[index]->path, paths[index]);
        EXPECT_THAT(
            results[index]->uncommittedChanges,
            ::testing::ElementsAre(FileChange{"??", "\"only in " + std::to_string(index) + "\""}));
    }
}

TEST(ScanOnRealThreads, RetryComesAfterItsPauseThroughTheMainLoop) {
    RunningProgram program;
    const std::string path = program.folder / "unborn";
    git("/", {"init", "-q", path});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(program.scan({path}).front(), std::nullopt);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 250ms);
    program.log.drain();
    EXPECT_THAT(
        contentOf(program.log.location()),
        HasSubstr("] RETRY unborn: HEAD resolution failed — retrying in 250ms (attempt 1)"));
}

}  // namespace
}  // namespace tarnbeck
