#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "Commands.h"
#include "CommandsInWords.h"
#include "DependencyReport.h"
#include "ExitStatus.h"
#include "Output.h"
#include "RepositoryJson.h"
#include "RepositorySelection.h"
#include "ScanFollower.h"

namespace tarnbeck::cli {
namespace {

// Checks one repository after the other, in the background, and prints what comes.
class DependencyChecks {
  public:
    DependencyChecks(Companion& companion, const DepsArguments& arguments,
                     std::vector<std::string> paths)
        : companion_(companion),
          arguments_(arguments),
          style_{.color = usesColor(arguments.color), .columns = terminalColumns()},
          paths_(std::move(paths)),
          names_(distinctNames(paths_)) {}

    void run() {
        companion_.runInBackground([this] {
            for (std::size_t index = 0; index < paths_.size(); ++index) {
                companion_.loop().post([this, index] { showProgress(index, ""); });
                companion_.loop().post([this, answer = answerAbout(index)] { take(answer); });
            }
        });
    }

    const std::vector<DependencyAnswer>& answers() const { return answers_; }
    std::size_t failures() const { return failures_; }

  private:
    void showProgress(std::size_t index, const std::string& what) {
        progress_.show(fmt::format("Checking dependencies {}/{} {}{}{}", index + 1, paths_.size(),
                                   names_[index], what.empty() ? "" : ": ", what));
    }

    // Blocks while package managers run.
    DependencyAnswer answerAbout(std::size_t index) {
        const Date now = companion_.loop().wallNow();
        DependencyAnswer answer{.path = paths_[index], .name = names_[index]};
        const auto tools =
            tellingCommands(companion_.dependencyTools(), [this, index](const Command& command) {
                companion_.loop().post(
                    [this, index, what = commandInWords(command, paths_[index])] {
                        showProgress(index, what);
                    });
            });
        answer.summary =
            DependencyScanner::scan(tools, companion_.dependencyMemory(),
                                    {.at = paths_[index], .forceRefresh = arguments_.refresh});
        answer.asOf = dateIfOlder(
            answer.summary, arguments_.refresh ? now : now - DependencyCache::summaryLifetime);
        return answer;
    }

    void take(const DependencyAnswer& answer) {
        progress_.clear();
        if (!arguments_.json) print(dependencyList(answer, style_));
        const auto failures = dependencyFailures(answer.path, answer.summary);
        std::ranges::for_each(failures, complainLineByLine);
        failures_ += failures.size();
        answers_.push_back(answer);
    }

    Companion& companion_;
    const DepsArguments& arguments_;
    const TableStyle style_;
    const std::vector<std::string> paths_;
    const std::vector<std::string> names_;
    ProgressLine progress_;
    std::vector<DependencyAnswer> answers_;
    std::size_t failures_ = 0;
};

RepositorySelection repositoriesToCheck(Companion& companion, const DepsArguments& arguments) {
    ProgressLine progress;
    progress.show("Looking for repositories");
    return selectedOrConfigured(arguments.paths, companion.place(), companion.services().collator);
}

}  // namespace

int runDeps(Companion& companion, const DepsArguments& arguments) {
    const RepositorySelection selection = repositoriesToCheck(companion, arguments);
    DependencyChecks checks(companion, arguments, selection.paths);
    checks.run();
    const std::size_t failed = complainAbout(selection.problems) + checks.failures();
    if (arguments.json) {
        std::vector<JsonValue> elements;
        std::ranges::transform(
            checks.answers(), std::back_inserter(elements),
            [](const auto& answer) { return dependencyJson(answer.path, answer.summary); });
        print(jsonArrayText(elements));
    } else if (!checks.answers().empty()) {
        print(dependencyTotals(checks.answers()) + "\n");
    } else if (selection.problems.empty()) {
        print(nothingFoundText(AppConfiguration::load(companion.place()).scanDirectories));
    }
    return failed > 0 ? exitFailure : exitSuccess;
}

}  // namespace tarnbeck::cli
