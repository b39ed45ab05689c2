#include <mutex>
#include <optional>
#include <utility>

#include "Commands.h"
#include "ExitStatus.h"
#include "Output.h"
#include "RepositorySelection.h"
#include "ScanFailures.h"
#include "ScanFollower.h"
#include "SyncOutcome.h"

namespace tarnbeck::cli {
namespace {

// Looks at one repository with a fetch, brings it up to date if that is possible, and ends.
class SyncRun {
  public:
    SyncRun(Companion& companion, const std::string& path)
        : companion_(companion),
          path_(path),
          follower_(companion),
          observationOfLog_(companion.log().observe([this](std::string_view line) { note(line); })),
          scanner_(companion.services(), options(follower_, path)) {}

    void run() {
        const auto observation =
            scanner_.observe([this](RepositoryScanner::Property property) { follow(property); });
        companion_.runLoop([this] {
            progress_.show("Fetching");
            scanner_.requestRefresh(
                {.trigger = RepositoryRefreshTrigger::manual, .refreshRemotes = true});
        });
        progress_.clear();
    }

    // Why the repository can't be scanned, if so.
    std::vector<SelectionProblem> problems() const {
        return before_ ? std::vector<SelectionProblem>{} : follower_.problems(scanner_);
    }

    SyncAttempt attempt() const {
        const std::lock_guard lock(mutex_);
        return {.before = before_, .after = scanner_.repositories().front(), .failure = failure_};
    }

  private:
    // Of this repository alone. What the pull means for its dependencies is left to `deps`: nobody
    // waits here for package managers.
    static RepositoryScanner::Options options(ScanFollower& follower, const std::string& path) {
        AppConfiguration configuration;
        configuration.repoPaths = {path};
        RepositoryScanner::Options options = follower.optionsFor(std::move(configuration));
        options.dependencyScanHandler = [](const std::string&, bool) {
            return DependencySummary::notApplicable;
        };
        return options;
    }

    void follow(RepositoryScanner::Property property) {
        using Property = RepositoryScanner::Property;
        if (property == Property::isScanning && !scanner_.isScanning()) begin();
        const bool ended = property == Property::gitScanInProgressForRepo &&
                           scanner_.state().gitScanInProgressForRepo.empty();
        if (ended) companion_.loop().stop();
    }

    void begin() {
        if (!scanner_.repositories().empty()) before_ = scanner_.repositories().front();
        if (!before_ || !before_->syncStatus.is<GitSyncStatus::Behind>()) {
            companion_.loop().stop();
            return;
        }
        progress_.show("Pulling");
        scanner_.syncRepo(path_);
    }

    void note(std::string_view line) {
        const bool concernsRemote = line.find("git fetch ") != std::string_view::npos ||
                                    line.find("git pull ") != std::string_view::npos;
        if (!concernsRemote) return;
        const std::lock_guard lock(mutex_);
        failure_ = failureInWords(line);
    }

    Companion& companion_;
    const std::string path_;
    ScanFollower follower_;
    mutable std::mutex mutex_;
    std::optional<std::string> failure_;  // guarded by `mutex_`
    RepositorySnapshot before_;
    ProgressLine progress_;
    ScanLog::Observers::Token observationOfLog_;
    RepositoryScanner scanner_;
};

}  // namespace

int runSync(Companion& companion, const SyncArguments& arguments) {
    const auto path = repositoryAround(arguments.path, companion.home());
    if (!path) {
        complain(arguments.path + ": " + path.error());
        return exitFailure;
    }
    SyncRun run(companion, *path);
    run.run();
    if (complainAbout(run.problems()) > 0) return exitFailure;
    const SyncOutcome outcome = syncOutcome(run.attempt());
    if (outcome.isFailure) {
        complain(*path + ": " + outcome.text);
        return exitFailure;
    }
    print(outcome.text + "\n");
    return exitSuccess;
}

}  // namespace tarnbeck::cli
