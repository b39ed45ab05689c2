// Virtual environments of the machine's own Python, with a package index of our own.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "DependencyCommandRunner.h"
#include "DependencyScanner+Python.h"
#include "LoopbackServer.h"
#include "PosixProcessLauncher.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

class RealPythonFixture : public ::testing::Test {
  protected:
    // Skips the test where the machine lacks a program that it takes.
    void SetUp() override;

    // Serves these packages (as `package-index.py` takes them) over TLS, and makes that the index
    // of pip in the home. `settings` are further lines of its configuration.
    void serve(const std::string& packages, const std::string& settings = "");
    // What the index was asked for so far, one line a request.
    std::string requests() const { return contentOf(folder_ / "requests.txt"); }
    void stopServer() { server_.stop(); }

    // A virtual environment as Python makes it, with pip in it or without; its interpreter.
    std::string makeEnvironment(const std::string& name = "repo/.venv");
    std::string makeEnvironmentWithoutPip(const std::string& name = "repo/.venv");
    // Lets pip install from the index.
    void install(const std::string& python, const std::vector<std::string>& requirements);

    CommandResult run(const std::string& executable, std::vector<std::string> args);
    // Runs a program in the project as a check does; what it prints, which must be JSON.
    CommandResult runProgram(const std::string& python, std::string_view program,
                             std::vector<std::string> args);

    DependencyEcosystemResult scanned(const std::string& project = "repo") {
        return DependencyScanner::scanPythonProject(
            tools_, {.projectPath = folder_ / project, .repoPath = project_});
    }

    TemporaryFolder folder_;
    const std::string home_ = folder_.makeFolder("home");
    const std::string project_ = folder_.makeFolder("repo");
    PosixProcessLauncher launcher_;
    const DependencyCommandRunner runner_{home_, launcher_};
    // With time enough for a machine that does much else.
    static constexpr std::chrono::seconds longest{120};
    DependencyTools tools_{
        .runCommand = [this](const Command& command) { return runner_.runCommand(command); },
        .timeouts = {.pythonOutdated = longest,
                     .pythonList = longest,
                     .pythonMatchScore = longest,
                     .pythonBlocked = longest,
                     .pythonOrigins = longest}};

  private:
    LoopbackServer server_;
};

}  // namespace tarnbeck::testing
