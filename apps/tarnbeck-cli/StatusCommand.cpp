#include <algorithm>
#include <iterator>
#include <utility>

#include "Commands.h"
#include "ExitStatus.h"
#include "Output.h"
#include "RepositoryJson.h"
#include "RepositorySelection.h"
#include "ScanFollower.h"
#include "StatusTable.h"

namespace tarnbeck::cli {
namespace {

// Scans a list of repositories once and shows how far it is.
class StatusScan {
  public:
    StatusScan(Companion& companion, AppConfiguration configuration)
        : companion_(companion),
          follower_(companion),
          scanner_(companion.services(), follower_.optionsFor(std::move(configuration))) {}

    void run(bool fetch) {
        const auto observation = scanner_.observe([this](RepositoryScanner::Property property) {
            const bool ended =
                property == RepositoryScanner::Property::isScanning && !scanner_.isScanning();
            if (ended) companion_.loop().stop();
        });
        companion_.runLoop([&] {
            follower_.scanBegins(scanner_.configuration().repoPaths.size());
            scanner_.requestRefresh(
                {.trigger = RepositoryRefreshTrigger::manual, .refreshRemotes = fetch});
        });
        follower_.scanEnded();
    }

    const std::vector<RepositorySnapshot>& repositories() const { return scanner_.repositories(); }
    std::vector<SelectionProblem> problems() const { return follower_.problems(scanner_); }

  private:
    Companion& companion_;
    ScanFollower follower_;
    RepositoryScanner scanner_;
};

struct Subject {
    AppConfiguration configuration;  // its `repoPaths` are what is to be scanned
    std::vector<SelectionProblem> problems;
};

Subject subjectOf(Companion& companion, const StatusArguments& arguments) {
    ProgressLine progress;
    progress.show("Looking for repositories");
    if (arguments.paths.empty()) {
        return {RepositoryScanner::loadInitialConfiguration(companion.place()), {}};
    }
    Subject subject{AppConfiguration::load(companion.place()), {}};
    auto selection = selectedRepositories(arguments.paths, subject.configuration, companion.home());
    subject.configuration.repoPaths = std::move(selection.paths);
    subject.problems = std::move(selection.problems);
    return subject;
}

// The complaints stand between the table and the counts, where they are seen.
std::size_t printForPeople(const std::vector<RepositorySnapshot>& repositories,
                           const std::vector<SelectionProblem>& problems,
                           const StatusArguments& arguments) {
    print(statusTable(repositories,
                      {.color = usesColor(arguments.color), .columns = terminalColumns()}));
    const std::size_t failed = complainAbout(problems);
    if (!repositories.empty() || failed > 0) print(statusCounts(repositories, failed) + "\n");
    return failed;
}

void printJson(const std::vector<RepositorySnapshot>& repositories) {
    std::vector<JsonValue> elements;
    elements.reserve(repositories.size());
    for (const auto& repository : repositories) elements.push_back(repositoryJson(*repository));
    print(jsonArrayText(elements));
}

}  // namespace

int runStatus(Companion& companion, const StatusArguments& arguments) {
    Subject subject = subjectOf(companion, arguments);
    const std::vector<std::string> searched = subject.configuration.scanDirectories;
    StatusScan scan(companion, std::move(subject.configuration));
    scan.run(arguments.fetch);
    std::vector<SelectionProblem> problems = std::move(subject.problems);
    std::ranges::move(scan.problems(), std::back_inserter(problems));
    if (arguments.json) {
        printJson(scan.repositories());
        return complainAbout(problems) > 0 ? exitFailure : exitSuccess;
    }
    const std::size_t failed = printForPeople(scan.repositories(), problems, arguments);
    if (scan.repositories().empty() && problems.empty()) print(nothingFoundText(searched));
    return failed > 0 ? exitFailure : exitSuccess;
}

}  // namespace tarnbeck::cli
