#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>

#include "Commands.h"
#include "CommandsInWords.h"
#include "Confirmation.h"
#include "DependencyInstaller.h"
#include "DependencyReport.h"
#include "ExitStatus.h"
#include "InstallChoice.h"
#include "Output.h"
#include "Paths.h"
#include "RepositorySelection.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

using Results = std::vector<DependencyEcosystemResult>;

// What the steps print, as it comes, with each command before it.
class LiveOutput {
  public:
    void begins(const DependencyInstallStep& step) {
        endLine();
        pass("$ " + printable(step.displayCommand) + "\n");
    }
    void pass(std::string_view bytes) {
        if (bytes.empty()) return;
        passToStandardError(bytes);
        isInLine_ = bytes.back() != '\n';
    }
    void endLine() {
        if (isInLine_) pass("\n");
    }

  private:
    bool isInLine_ = false;
};

bool isAllowed() {
    switch (confirmation("Run this? [y/N] ")) {
        case Confirmation::yes:
            return true;
        case Confirmation::no:
            complain("nothing was installed");
            return false;
        case Confirmation::nobodyToAsk:
            break;
    }
    complain("standard input is no terminal to ask on: --yes installs without asking");
    return false;
}

// The installation of one project: checked, planned, asked for and done.
class Installation {
  public:
    Installation(Companion& companion, const InstallArguments& arguments, std::string repository)
        : companion_(companion), arguments_(arguments), repository_(std::move(repository)) {}

    int run() {
        const auto results =
            chosenProject({.summary = checked(),
                           .repoPath = repository_,
                           .folder = absolutePath(arguments_.path, companion_.home()),
                           .named = arguments_.project});
        if (!results) {
            complainLineByLine(printable(repository_) + ": " + results.error());
            return exitFailure;
        }
        place_ = fmt::format("{} ({})", printable(repository_),
                             printable(shownProject(results->front())));
        tellFailedChecks(*results);
        const std::vector<DependencyInstallPlan> plans = plansFor(*results);
        for (const DependencyInstallPlan& plan : plans) passToStandardError(planText(plan));
        if (plans.empty() || (!arguments_.yes && !isAllowed())) return exitFailure;
        companion_.dependencyCache().invalidateCache(repository_);
        const bool allDone =
            std::ranges::all_of(plans, [&](const auto& plan) { return did(plan); });
        return allDone && plans.size() == results->size() ? exitSuccess : exitFailure;
    }

  private:
    // The verdict on the whole repository, as it is remembered or anew.
    DependencySummary checked() {
        ProgressLine progress;
        const auto what =
            fmt::format("Checking the dependencies of {}", lastPathComponent(repository_));
        progress.show(what);
        const auto tools =
            tellingCommands(companion_.dependencyTools(), [&](const Command& command) {
                companion_.loop().post([&, words = commandInWords(command, repository_)] {
                    progress.show(fmt::format("{}: {}", what, words));
                });
            });
        DependencySummary summary;
        companion_.runInBackground([&] {
            summary =
                DependencyScanner::scan(tools, companion_.dependencyMemory(), {.at = repository_});
        });
        return summary;
    }

    // An installation may be what mends them.
    void tellFailedChecks(const Results& results) {
        std::ranges::for_each(dependencyFailures(repository_, {.ecosystems = results}),
                              complainLineByLine);
    }

    // Tells why there is no plan for a result, and leaves it out.
    std::vector<DependencyInstallPlan> plansFor(const Results& results) {
        std::vector<DependencyInstaller::Plan> all;
        companion_.runInBackground([&] {
            for (const DependencyEcosystemResult& result : results) all.push_back(planFor(result));
        });
        std::vector<DependencyInstallPlan> plans;
        for (const DependencyInstaller::Plan& plan : all) {
            if (const auto* error = std::get_if<DependencyInstaller::PlanError>(&plan)) {
                complain(place_ + ": " + error->errorDescription());
            } else {
                plans.push_back(std::get<DependencyInstallPlan>(plan));
            }
        }
        return plans;
    }

    DependencyInstaller::Plan planFor(const DependencyEcosystemResult& result) {
        const ProjectPlace place{
            .projectPath = DependencyInstaller::absoluteProjectPath(result.project, repository_),
            .repoPath = repository_};
        switch (result.ecosystem) {
            case DependencyEcosystem::node:
                return DependencyInstaller::nodePlan(result, place);
            case DependencyEcosystem::python:
                break;
        }
        return DependencyInstaller::pythonPlan(companion_.dependencyTools(), result, place);
    }

    // Runs the plan and tells how it went.
    bool did(const DependencyInstallPlan& plan) {
        StepOutcome outcome{.timeout = companion_.dependencyTools().timeouts.installStep};
        LiveOutput output;
        companion_.runInBackground([&] {
            outcome.result = DependencyInstaller::run(
                companion_.dependencyTools(),
                {.plan = plan,
                 .timeoutPerStep = outcome.timeout,
                 .observer = [&](std::string_view bytes) { output.pass(bytes); },
                 .begins =
                     [&](const DependencyInstallStep& step) {
                         output.begins(step);
                         outcome.step = step;
                     }});
        });
        output.endLine();
        if (const auto failure = stepFailureInWords(outcome)) {
            complain(place_ + ": " + *failure);
            return false;
        }
        print(fmt::format("{} in {}\n", doneInWords(plan.summary), printable(repository_)));
        return true;
    }

    Companion& companion_;
    const InstallArguments& arguments_;
    const std::string repository_;
    std::string place_;  // the repository and the project, for messages
};

}  // namespace

int runInstall(Companion& companion, const InstallArguments& arguments) {
    const auto repository = repositoryAround(arguments.path, companion.home());
    if (!repository) {
        complain(arguments.path + ": " + repository.error());
        return exitFailure;
    }
    return Installation(companion, arguments, *repository).run();
}

}  // namespace tarnbeck::cli
