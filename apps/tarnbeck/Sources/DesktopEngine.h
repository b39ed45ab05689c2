// All long-lived things that the application works with, made once at the entry. Main thread.
#pragma once

#include <memory>
#include <string>

#include "AppConfiguration.h"
#include "Clipboard.h"
#include "DependencyCache.h"
#include "DependencyTools.h"
#include "ExternalOpener.h"
#include "FileEvents.h"
#include "GitCommand.h"
#include "GitDiscardService.h"
#include "GitHubScanner.h"
#include "MainView.h"
#include "NameCollator.h"
#include "PosixProcessLauncher.h"
#include "RepositoryScanner.h"
#include "ScanLog.h"
#include "ThreadedWorkQueues.h"
#include "UserDefaults.h"

namespace tarnbeck {

class DesktopEngine {
  public:
    // All must outlive it.
    struct Tools {
        MainLoop& loop;
        ThreadedWorkQueues& queues;
        UserDefaults& userDefaults;
        Clipboard& clipboard;
        ExternalOpener& opener;
    };
    DesktopEngine(ConfigurationPlace place, Tools tools);
    DesktopEngine(const DesktopEngine&) = delete;
    DesktopEngine& operator=(const DesktopEngine&) = delete;

    const ConfigurationPlace& place() const { return place_; }
    WorkQueues& queues() { return tools_.queues; }

    // Loads the configuration, which on a first start looks for repositories, and begins to work.
    std::unique_ptr<RepositoryScanner> makeScanner();
    // Runs on repositories that do not exist.
    std::unique_ptr<RepositoryScanner> makeFixtureScanner();

    // What a new view of the scanner works with.
    struct ViewInput {
        RepositoryScanner& scanner;
        system_awake::CaffeinateController& caffeinateController;
        std::function<void()> onOpenSettings;
        bool showsFixtures = false;  // nothing of theirs can be discarded
    };
    MainView::Services viewServices(ViewInput input);

    // Ends all children, within a tenth of a second, and lets no more be started. What they leave
    // unfinished is not kept. The beginning of the end.
    void endChildren();
    // Waits until all that is to be kept has been written and no work goes on, but no longer than
    // until `deadline`; the scanner and the views have gone. False where something still goes on:
    // then this and the queues must not be destroyed, because that would wait for it.
    bool finish(SteadyTime deadline);

  private:
    RepositoryScanner::Services services();
    RepositorySections::Discard discard(bool showsFixtures);

    const ConfigurationPlace place_;
    const Tools tools_;
    PosixProcessLauncher launcher_;
    ScanLog log_;
    GitCommand git_;
    GitHubScanner gitHub_;
    const DependencyTools dependencyTools_;
    DependencyCache dependencyCache_;
    const std::unique_ptr<FileEvents> fileEvents_;
    const GitDiscardService discardService_;
    const NameCollator collator_;
};

}  // namespace tarnbeck
