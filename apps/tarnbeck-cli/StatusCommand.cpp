#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "Commands.h"
#include "ExitStatus.h"
#include "Output.h"
#include "Paths.h"
#include "RepositoryJson.h"
#include "RepositorySelection.h"
#include "ScanFailures.h"
#include "StatusTable.h"

namespace tarnbeck::cli {
namespace {

// Scans a list of repositories once and shows how far it is.
class StatusScan {
  public:
    StatusScan(Companion& companion, AppConfiguration configuration)
        : companion_(companion),
          failures_(companion.log()),
          scanner_(companion.services(), options(std::move(configuration))) {}

    void run(bool fetch) {
        const auto observation = scanner_.observe([this](RepositoryScanner::Property property) {
            const bool ended =
                property == RepositoryScanner::Property::isScanning && !scanner_.isScanning();
            if (ended) companion_.loop().stop();
        });
        companion_.runLoop([&] {
            scanner_.requestRefresh({.trigger = RepositoryRefreshTrigger::manual,
                                     .refreshRemotes = fetch});
        });
        progress_.clear();
    }

    const std::vector<RepositorySnapshot>& repositories() const { return scanner_.repositories(); }

    // What could not be scanned, with the reason.
    std::vector<SelectionProblem> problems() const {
        std::unordered_set<std::string> scanned;
        for (const auto& repository : repositories()) scanned.insert(repository->path);
        std::vector<SelectionProblem> problems;
        for (const std::string& configured : scanner_.configuration().repoPaths) {
            const std::string path = expandingTilde(configured, companion_.home());
            if (!scanned.contains(path)) problems.push_back({path, failures_.reasonFor(path)});
        }
        return problems;
    }

  private:
    RepositoryScanner::Options options(AppConfiguration configuration) {
        total_ = configuration.repoPaths.size();
        auto options =
            RepositoryScanner::ordinaryOptions(companion_.services(), std::move(configuration));
        options.autoStart = false;
        options.scanRepositoryHandler = [this, scan = std::move(options.scanRepositoryHandler)](
                                            const std::string& path, ScanCompletion completion) {
            failures_.scanBegins(expandingTilde(path, companion_.home()));
            companion_.loop().post([this, path] { showProgress(path); });
            scan(path, std::move(completion));
        };
        return options;
    }

    void showProgress(const std::string& path) {
        progress_.show(fmt::format("Scanning {}/{} {}", ++begun_, total_, lastPathComponent(path)));
    }

    Companion& companion_;
    ScanFailures failures_;
    ProgressLine progress_;
    std::size_t begun_ = 0;
    std::size_t total_ = 0;
    RepositoryScanner scanner_;
};

struct Subject {
    AppConfiguration configuration;  // its `repoPaths` are what is to be scanned
    std::vector<SelectionProblem> problems;
};

Subject subjectOf(Companion& companion, const StatusArguments& arguments) {
    if (arguments.paths.empty()) {
        return {RepositoryScanner::loadInitialConfiguration(companion.place()), {}};
    }
    Subject subject{AppConfiguration::load(companion.place()), {}};
    auto selection =
        selectedRepositories(arguments.paths, subject.configuration, companion.home());
    subject.configuration.repoPaths = std::move(selection.paths);
    subject.problems = std::move(selection.problems);
    return subject;
}

void printForPeople(const std::vector<RepositorySnapshot>& repositories, std::size_t failed,
                    const StatusArguments& arguments) {
    print(statusTable(repositories,
                      {.color = usesColor(arguments.color), .columns = terminalColumns()}));
    if (repositories.empty() && failed == 0) {
        print("No repositories.\n");
    } else {
        print(statusCounts(repositories, failed) + "\n");
    }
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
    StatusScan scan(companion, std::move(subject.configuration));
    scan.run(arguments.fetch);
    std::vector<SelectionProblem> problems = std::move(subject.problems);
    std::ranges::move(scan.problems(), std::back_inserter(problems));
    for (const auto& problem : problems) complain(problem.path + ": " + problem.reason);
    const auto failed = std::ranges::count(problems, true, &SelectionProblem::isFailure);
    if (arguments.json) {
        printJson(scan.repositories());
    } else {
        printForPeople(scan.repositories(), static_cast<std::size_t>(failed), arguments);
    }
    return failed > 0 ? exitFailure : exitSuccess;
}

}  // namespace tarnbeck::cli
