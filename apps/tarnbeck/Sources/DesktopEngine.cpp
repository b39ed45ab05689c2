#include "DesktopEngine.h"

#include <algorithm>
#include <utility>

#include "SystemFileEvents.h"
#include "UITestFixtureData.h"

namespace tarnbeck {

DesktopEngine::DesktopEngine(ConfigurationPlace place, Tools tools)
    : place_(std::move(place)),
      tools_(tools),
      log_({.home = place_.home}, tools_.loop, tools_.queues),
      git_({.home = place_.home}, launcher_, log_),
      gitHub_({.home = place_.home},
              {.launcher = launcher_,
               .git = [this](const GitInvocation& invocation) { return git_.run(invocation); },
               .log = log_,
               .clock = tools_.loop,
               .queues = tools_.queues}),
      dependencyTools_(DependencyTools::ordinary(place_.home, launcher_)),
      dependencyCache_(DependencyCache::ordinaryFile(place_.home),
                       {.loop = tools_.loop, .queues = tools_.queues}),
      fileEvents_(makeFileEvents()),
      discardService_({.home = place_.home}, launcher_,
                      [this](std::string_view line) { log_.write(std::string(line)); }) {}

RepositoryScanner::Services DesktopEngine::services() {
    return {.loop = tools_.loop,
            .queues = tools_.queues,
            .log = log_,
            .collator = collator_,
            .git = [this](const GitInvocation& invocation) { return git_.run(invocation); },
            .home = place_.home,
            .fileEvents = fileEvents_.get()};
}

std::unique_ptr<RepositoryScanner> DesktopEngine::makeScanner() {
    const RepositoryScanner::Services parts = services();
    return std::make_unique<RepositoryScanner>(
        parts, RepositoryScanner::ordinaryOptions(
                   parts,
                   {.gitHub = gitHub_,
                    .dependencyTools = dependencyTools_,
                    .dependencyMemory = {.cache = dependencyCache_, .clock = tools_.loop}},
                   place_, RepositoryScanner::loadInitialConfiguration(place_)));
}

std::unique_ptr<RepositoryScanner> DesktopEngine::makeFixtureScanner() {
    const auto savingQueue = tools_.queues.serial("com.tarnbeck.configuration");
    return UITestFixtureData::makeScanner(
        services(), [savingQueue, place = place_](const AppConfiguration& changed) {
            savingQueue->post([place, changed] { changed.save(place); });
        });
}

RepositorySections::Discard DesktopEngine::discard(bool showsFixtures) {
    if (showsFixtures) {
        return [](const DiscardRequest&) { return std::optional<std::string>("Fixtures stay."); };
    }
    return [this](const DiscardRequest& request) {
        return discardService_.discardFileChange(request);
    };
}

MainView::Services DesktopEngine::viewServices(ViewInput input) {
    return {.scanner = input.scanner,
            .caffeinateController = input.caffeinateController,
            .collator = collator_,
            .sections = {.loop = tools_.loop,
                         .queues = tools_.queues,
                         .expansionStore = {.userDefaults = tools_.userDefaults},
                         .clipboard = tools_.clipboard,
                         .opener = tools_.opener,
                         .discard = discard(input.showsFixtures)},
            .onOpenSettings = std::move(input.onOpenSettings)};
}

void DesktopEngine::endChildren() {
    dependencyCache_.close();
    launcher_.endAllSessions();
}

// All that writes does so on these queues.
bool DesktopEngine::finish(SteadyTime deadline) {
    const auto left = deadline - tools_.loop.steadyNow();
    return tools_.queues.waitUntilIdle(std::max(left, SteadyTime::duration::zero()));
}

}  // namespace tarnbeck
