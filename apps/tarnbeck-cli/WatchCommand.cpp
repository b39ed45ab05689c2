#include <memory>

#include "ChangeFeed.h"
#include "Commands.h"
#include "ExitStatus.h"
#include "Output.h"
#include "StatusTable.h"

namespace tarnbeck::cli {
namespace {

// Keeps a scanner alive and prints what its notifications change.
class Watch {
  public:
    Watch(Companion& companion, const WatchArguments& arguments)
        : companion_(companion),
          forPeople_(!arguments.json),
          style_{.color = usesColor(arguments.color), .columns = terminalColumns()},
          feed_(arguments.json ? ChangeFeed::Form::json : ChangeFeed::Form::forPeople, style_) {}

    void run() {
        const auto services = companion_.services();
        AppConfiguration configuration =
            RepositoryScanner::loadInitialConfiguration(companion_.place());
        companion_.runLoop([&] {
            auto options = RepositoryScanner::ordinaryOptions(services, std::move(configuration));
            options.autoStart = false;  // so that the first notification is seen too
            scanner_ = std::make_unique<RepositoryScanner>(services, std::move(options));
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
        print(scanner_->isScanning() ? feed_.scanStarted(now)
                                     : feed_.scanFinished(now, scanner_->repositories()));
    }

    void reportChanges() {
        const auto& repositories = scanner_->repositories();
        if (forPeople_ && !firstTableShown_) {
            firstTableShown_ = true;
            print(statusTable(repositories, style_) + statusCounts(repositories, 0) + "\n");
        } else {
            printChanges(changesBetween(shown_, repositories));
        }
        shown_ = repositories;
    }

    void printChanges(const RepositoryChanges& changes) {
        const Date now = companion_.loop().wallNow();
        std::string lines;
        for (const auto& repository : changes.changed) lines += feed_.repository(now, *repository);
        for (const auto& repository : changes.removed) lines += feed_.removed(now, *repository);
        print(lines);
    }

    Companion& companion_;
    const bool forPeople_;
    const TableStyle style_;
    const ChangeFeed feed_;
    bool firstTableShown_ = false;
    std::vector<RepositorySnapshot> shown_;
    std::unique_ptr<RepositoryScanner> scanner_;
    RepositoryScanner::Observers::Token observation_;
};

}  // namespace

int runWatch(Companion& companion, const WatchArguments& arguments) {
    Watch(companion, arguments).run();
    return exitSuccess;
}

}  // namespace tarnbeck::cli
