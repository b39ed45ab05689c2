#include "Companion.h"

#include <csignal>
#include <cstdlib>
#include <utility>

#include "Output.h"
#include "SystemFileEvents.h"

namespace tarnbeck::cli {
namespace {

DependencyTools ordinaryDependencyTools(const std::string& home, ProcessLauncher& launcher) {
    return {.runCommand = [runner = DependencyCommandRunner(home, launcher)](
                              const Command& command) { return runner.runCommand(command); },
            .uvCandidates = DependencyTools::ordinaryUvCandidates(home)};
}

}  // namespace

Companion::Companion(std::string home)
    : home_(std::move(home)),
      place_{.home = home_, .report = complain},
      log_({.home = home_}, loop_, queues_),
      git_({.home = home_}, launcher_, log_),
      gitHub_({.home = home_},
              {.launcher = launcher_,
               .git = [this](const GitInvocation& invocation) { return git_.run(invocation); },
               .log = log_,
               .clock = loop_,
               .queues = queues_}),
      dependencyTools_(ordinaryDependencyTools(home_, launcher_)),
      dependencyCache_(DependencyCache::ordinaryFile(home_), {.loop = loop_, .queues = queues_}),
      fileEvents_(makeFileEvents()) {}

Companion::~Companion() {
    queues_.waitUntilIdle();
    dependencyCache_.drain();
}

RepositoryScanner::Services Companion::services() {
    return {.loop = loop_,
            .queues = queues_,
            .log = log_,
            .collator = collator_,
            .git = [this](const GitInvocation& invocation) { return git_.run(invocation); },
            .home = home_,
            .fileEvents = fileEvents_.get()};
}

void Companion::runLoop(const Task& begin) {
    const auto endings = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
    loop_.onSignals(endings, [this](int signal) { endBySignal(signal); });
    begin();
    loop_.run();
    for (const int signal : endings) std::signal(signal, SIG_DFL);
}

void Companion::runInBackground(Task work) {
    runLoop([&] {
        queues_.userInitiated([this, work = std::move(work)] {
            work();
            loop_.stop();
        });
    });
}

void Companion::endBySignal(int signal) {
    dependencyCache_.drain();  // before checks that are cut off can leave something in it
    launcher_.endAllSessions();
    gitHub_.drain();
    log_.drain();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(128 + signal);
}

}  // namespace tarnbeck::cli
