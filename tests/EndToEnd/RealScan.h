// The scan of real repositories with the machine's git, without threads and with virtual pauses.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "GitCommand.h"
#include "GitFixture.h"
#include "ObservedLog.h"
#include "PosixProcessLauncher.h"
#include "RepositoryScanner.h"
#include "Simulation.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

class RealScan {
  public:
    // A whole scan, with its retry where there is one.
    std::optional<GitRepository> scan(const std::string& path) {
        std::optional<GitRepository> repository;
        RepositoryScanner::scanRepositoryImpl(
            {.loop = simulation.loop,
             .queues = simulation.queues,
             .log = observed.log,
             .git = [this](const GitInvocation& invocation) { return command.run(invocation); },
             .home = folder.path()},
            {.at = path},
            [&](std::optional<GitRepository> result) { repository = std::move(result); });
        simulation.advance(std::chrono::seconds(2));
        return repository;
    }
    const std::vector<std::string>& lines() const { return observed.lines; }

    TemporaryFolder folder;
    Simulation simulation;
    ObservedLog observed{simulation};
    PosixProcessLauncher launcher;
    const GitCommand command{{.home = folder / "home"}, launcher, observed.log};
};

// A test with one repository on branch main, clean, with one commit of "file.txt".
class RealScanTest : public ::testing::Test {
  protected:
    std::string inGit(const std::vector<std::string>& arguments, bool mayFail = false) const {
        return git(path_, arguments, mayFail);
    }
    // The snapshot of the repository, or an empty one and a failure.
    GitRepository scanned() { return scanned(path_); }
    GitRepository scanned(const std::string& path) {
        auto repository = real_.scan(path);
        EXPECT_TRUE(repository) << path;
        return std::move(repository).value_or(GitRepository{});
    }
    // Makes a bare repository "origin.git" and pushes main there, with it as upstream.
    std::string makeOrigin() {
        git("/", {"init", "-q", "--bare", real_.folder / "origin.git"});
        inGit({"remote", "add", "origin", real_.folder / "origin.git"});
        inGit({"push", "-q", "-u", "origin", "main"});
        return real_.folder / "origin.git";
    }
    void write(const std::string& name, const std::string& content) const {
        real_.folder.write("project/" + name, content);
    }

    RealScan real_;
    const std::string path_ = makeRepository(real_.folder / "project");
};

}  // namespace tarnbeck::testing
