// A dependency cache in virtual time.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "DependencyCache.h"
#include "Simulation.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

inline DependencySummary summaryOf(DependencyHealth status, std::string package = "left-pad") {
    return {.ecosystems = {{.project = ".",
                            .manager = "npm",
                            .status = status,
                            .updates = {{.package = std::move(package),
                                         .currentVersion = "1.0.0",
                                         .latestVersion = "1.0.1",
                                         .updateType = DependencyUpdateType::patch}}}},
            .checkedAt = Date{}};
}

class DependencyCacheFixture {
  public:
    DependencyCacheFixture() { restart(); }

    // A new run of the program, over the same file.
    void restart() {
        cache_.reset();
        cache_ = std::make_unique<DependencyCache>(
            file(), DependencyCache::Tools{.loop = simulation.loop, .queues = simulation.queues});
    }
    DependencyCache& operator*() { return *cache_; }
    DependencyCache* operator->() { return cache_.get(); }

    std::string file() const { return folder / ".config/tarnbeck/dependency-cache.json"; }

    TemporaryFolder folder;
    Simulation simulation;

  private:
    std::unique_ptr<DependencyCache> cache_;
};

}  // namespace tarnbeck::testing
