// The machine's own npm and pnpm, with a registry of our own on loopback that the home's
// configuration leads them to.
#pragma once

#include <string>
#include <vector>

#include "DependencyInstaller.h"
#include "DependencyScanner+Node.h"
#include "LoopbackServer.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

class RealNodeFixture : public ::testing::Test {
  protected:
    explicit RealNodeFixture(std::string manager) : manager_(std::move(manager)) {}

    // Starts the registry; skips the test where the machine lacks a program that it takes.
    void SetUp() override;

    // What `npm-registry.py` reads, as JSON, from now on.
    void registryHas(const std::string& packages) { registry_.write("packages.json", packages); }
    void registryFails(const std::string& faults) { registry_.write("faults.json", faults); }
    // From now on nobody answers at its port.
    void stopRegistry() { server_.stop(); }
    void forgetWhatManagersKeep();

    void manifest(const std::string& content, const std::string& project = ".") const {
        repo.write(project + "/package.json", content);
    }
    // `manager install`, which succeeds.
    void install(const std::string& project = ".");

    ProjectPlace place(const std::string& project = ".") const {
        return {.projectPath = DependencyInstaller::absoluteProjectPath(project, repo.path()),
                .repoPath = repo.path()};
    }
    DependencyEcosystemResult scan(const std::string& project = ".") {
        return DependencyScanner::scanNodeProject(tools, place(project));
    }
    // Makes a plan for the result and runs it.
    CommandResult update(const DependencyEcosystemResult& result);

    TemporaryFolder repo;
    DependencyTools tools{
        .runCommand = [this](const Command& command) { return runner_.runCommand(command); }};

  private:
    const std::string manager_;
    TemporaryFolder home_;
    TemporaryFolder registry_;
    PosixProcessLauncher launcher_;
    DependencyCommandRunner runner_{home_.path(), launcher_};
    LoopbackServer server_;
};

// "left 1.1.0 > 2.0.0 constrained", one for each update.
std::vector<std::string> updatesInWords(const DependencyEcosystemResult& result);

}  // namespace tarnbeck::testing
