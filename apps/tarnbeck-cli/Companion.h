// All long-lived things that the program's commands work with, made once at the entry.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "AppConfiguration.h"
#include "DependencyCache.h"
#include "DependencyScanner.h"
#include "DependencyTools.h"
#include "FileEvents.h"
#include "GitCommand.h"
#include "GitHubScanner.h"
#include "NameCollator.h"
#include "PosixMainLoop.h"
#include "PosixProcessLauncher.h"
#include "RepositoryScanner.h"
#include "ScanLog.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck::cli {

class Companion {
  public:
    explicit Companion(std::string home);
    // Waits for the background work, for what the caches keep and for the last line of the log.
    ~Companion();
    Companion(const Companion&) = delete;
    Companion& operator=(const Companion&) = delete;

    const std::string& home() const { return home_; }
    const ConfigurationPlace& place() const { return place_; }
    ScanLog& log() { return log_; }
    PosixMainLoop& loop() { return loop_; }
    ProcessLauncher& launcher() { return launcher_; }
    WorkQueues& queues() { return queues_; }
    GitHubScanner& gitHub() { return gitHub_; }
    const DependencyTools& dependencyTools() const { return dependencyTools_; }
    DependencyCache& dependencyCache() { return dependencyCache_; }
    DependencyScanner::Memory dependencyMemory() {
        return {.cache = dependencyCache_, .clock = loop_};
    }
    RepositoryScanner::Services services();

    // Runs `begin` and then the main loop until it is stopped. A signal that asks the program to
    // end does so at once, with all children. Before and after, signals have their usual effect.
    void runLoop(const Task& begin);
    // The same until `work`, which runs in the background, and all that it posted have ended.
    void runInBackground(Task work);

  private:
    [[noreturn]] void endBySignal(int signal);

    const std::string home_;
    const ConfigurationPlace place_;
    PosixMainLoop loop_;
    PosixProcessLauncher launcher_;
    ThreadedWorkQueues queues_;
    ScanLog log_;
    GitCommand git_;
    GitHubScanner gitHub_;
    const DependencyTools dependencyTools_;
    DependencyCache dependencyCache_;
    std::unique_ptr<FileEvents> fileEvents_;
    NameCollator collator_;
};

}  // namespace tarnbeck::cli
