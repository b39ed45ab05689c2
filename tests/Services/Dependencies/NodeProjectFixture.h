// A repository with Node projects whose managers' answers are recorded.
#pragma once

#include <string>

#include "DependencyScanner+Node.h"
#include "RecordedCommands.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

class NodeProjectFixture : public ::testing::Test {
  protected:
    // The verdict on a project ("." for the root), whose folder is made where it is missing.
    DependencyEcosystemResult scanProject(const std::string& project = ".") {
        const std::string path = project == "." ? repo.path() : repo.makeFolder(project);
        return DependencyScanner::scanNodeProject(tools(),
                                                  {.projectPath = path, .repoPath = repo.path()});
    }
    // The verdict on the root when npm answers this.
    DependencyEcosystemResult scanWhenNpmAnswers(CommandResult answer) {
        commands.answer("npm outdated", std::move(answer));
        return scanProject();
    }
    DependencyTools tools() { return {.runCommand = commands.runner()}; }

    TemporaryFolder repo;
    RecordedCommands commands;
};

// A report of npm or pnpm.
class NodeReport {
  public:
    struct Versions {
        std::string current;
        std::string wanted;
        std::string latest;
    };
    NodeReport& with(const std::string& package, const Versions& versions) {
        if (!entries_.empty()) entries_ += ",";
        entries_ += R"(")" + package + R"(": {"current": ")" + versions.current +
                    R"(", "wanted": ")" + versions.wanted + R"(", "latest": ")" + versions.latest +
                    R"("})";
        return *this;
    }
    std::string text() const { return "{" + entries_ + "}"; }

  private:
    std::string entries_;
};

}  // namespace tarnbeck::testing
