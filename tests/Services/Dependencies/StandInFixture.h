// Children that stand in for package managers: scripts on a search path of the test's own.
#pragma once

#include <filesystem>
#include <string>

#include "DependencyCommandRunner.h"
#include "DependencyTools.h"
#include "PosixProcessLauncher.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

class StandInFixture : public ::testing::Test {
  protected:
    // From now on `name` runs these lines of a shell, which finds no other program.
    void standIn(const std::string& name, const std::string& lines) const {
        namespace fs = std::filesystem;
        const std::string path = programs_.write(name, "#!/bin/sh\n" + lines + "\n");
        fs::permissions(path, fs::perms::owner_all);
    }

    TemporaryFolder project;
    DependencyTools tools{
        .runCommand = [this](const Command& command) { return runner_.runCommand(command); }};

  private:
    TemporaryFolder programs_;
    PosixProcessLauncher launcher_;
    DependencyCommandRunner runner_ = DependencyCommandRunner::withEnvironment(
        {"HOME=" + programs_.path(), "PATH=" + programs_.path(), "LC_ALL=C"}, launcher_);
};

}  // namespace tarnbeck::testing
