// Repositories that do not exist, to run the whole interface on: nothing of the machine takes part,
// neither git nor a file.
#pragma once

#include <memory>
#include <vector>

#include "RepositoryScanner.h"

namespace tarnbeck::UITestFixtureData {

// A clean one, a dirty one with a dirty worktree, and another clean one. Their paths lie nowhere.
const std::vector<RepositorySnapshot>& repositories();

// A scanner that shows them and finds them again at each refresh. Of the services only the loop,
// the queues, the log, the collator and the home are used. Nothing is started, and a configuration
// that is to be kept goes to `saveConfiguration`. Main thread.
std::unique_ptr<RepositoryScanner> makeScanner(
    RepositoryScanner::Services services,
    std::function<void(const AppConfiguration&)> saveConfiguration);

}  // namespace tarnbeck::UITestFixtureData
