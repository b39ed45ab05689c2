#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "ChangeFeed.h"
#include "Commands.h"
#include "ExitStatus.h"
#include "Output.h"
#include "ScanFollower.h"
#include "StatusTable.h"

namespace tarnbeck::cli {
namespace {

// Keeps a scanner alive and prints what its notifications change.
class Watch {
  public:
    Watch(Companion& companion, const WatchArguments& arguments)
        : companion_(companion),
          follower_(companion),
          forPeople_(!arguments.json),
          style_{.color = usesColor(arguments.color), .columns = terminalColumns()},
          feed_(arguments.json ? ChangeFeed::Form::json : ChangeFeed::Form::forPeople, style_) {}

    void run() {
        ProgressLine looking;
        looking.show("Looking for repositories");
        AppConfiguration configuration =
            RepositoryScanner::loadInitialConfiguration(companion_.place());
        looking.clear();
        companion_.runLoop([&] {
            scanner_ = std::make_unique<RepositoryScanner>(
                companion_.services(), follower_.optionsFor(std::move(configuration)));
            observation_ = scanner_->observe([this](auto property) { report(property); });
            scanner_->start();
        });
    }

  private:
    void report(RepositoryScanner::Property property) {
        if (property == RepositoryScanner::Property::isScanning) reportScan();
        if (property == RepositoryScanner::Property::repositories) reportChanges();
    }

    void reportScan() {
        const Date now = companion_.loop().wallNow();
        if (scanner_->isScanning()) {
            follower_.scanBegins(scanner_->configuration().repoPaths.size());
            print(feed_.scanStarted(now));
            return;
        }
        follower_.scanEnded();
        if (!tableShown()) {
            printFirstTable(scanner_->repositories());
        } else {
            complainAbout(newProblems());
        }
        print(feed_.scanFinished(now, scanner_->repositories()));
    }

    // What changes before the table is shown is in the table.
    void reportChanges() {
        if (!tableShown()) return;
        const auto& repositories = scanner_->repositories();
        printChanges(changesBetween(shown_, repositories));
        shown_ = repositories;
    }

    bool tableShown() const { return !forPeople_ || firstTableShown_; }

    void printFirstTable(const std::vector<RepositorySnapshot>& repositories) {
        firstTableShown_ = true;
        shown_ = repositories;
        print(statusTable(repositories, style_));
        const std::size_t failed = complainAbout(newProblems());
        print(statusCounts(repositories, failed) + "\n");
        if (repositories.empty()) {
            print(nothingFoundText(scanner_->configuration().scanDirectories));
        }
        if (style_.columns) print("Watching for changes; Ctrl-C ends it.\n");
    }

    // Those that were not told before: a repository that goes on failing is named once.
    std::vector<SelectionProblem> newProblems() {
        std::vector<SelectionProblem> present = follower_.problems(*scanner_);
        std::vector<SelectionProblem> fresh;
        std::ranges::copy_if(present, std::back_inserter(fresh), [this](const auto& problem) {
            return std::ranges::find(told_, problem) == told_.end();
        });
        told_ = std::move(present);
        return fresh;
    }

    void printChanges(const RepositoryChanges& changes) {
        const Date now = companion_.loop().wallNow();
        std::string lines;
        for (const auto& repository : changes.changed) lines += feed_.repository(now, *repository);
        for (const auto& repository : changes.issues) lines += feed_.issues(now, *repository);
        for (const auto& repository : changes.dependencies) {
            lines += feed_.dependencies(now, *repository);
        }
        for (const auto& repository : changes.removed) lines += feed_.removed(now, *repository);
        print(lines);
    }

    Companion& companion_;
    ScanFollower follower_;
    const bool forPeople_;
    const TableStyle style_;
    const ChangeFeed feed_;
    bool firstTableShown_ = false;
    std::vector<RepositorySnapshot> shown_;
    std::vector<SelectionProblem> told_;
    std::unique_ptr<RepositoryScanner> scanner_;
    RepositoryScanner::Observers::Token observation_;
};

}  // namespace

int runWatch(Companion& companion, const WatchArguments& arguments) {
    Watch(companion, arguments).run();
    return exitSuccess;
}

}  // namespace tarnbeck::cli
