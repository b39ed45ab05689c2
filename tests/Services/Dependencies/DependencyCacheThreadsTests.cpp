// The dependency cache among real threads: what a thread sanitizer is to see.
#include <thread>

#include <fmt/format.h>

#include "DependencyCacheFixture.h"
#include "PosixMainLoop.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck::testing {
namespace {

TEST(DependencyCacheThreads, ManyMayReadStoreAndForgetAtOnce) {
    const TemporaryFolder folder;
    PosixMainLoop loop;
    ThreadedWorkQueues queues;
    const DependencySummary summary = summaryOf(DependencyHealth::upToDate);
    {
        DependencyCache cache(folder / "cache.json", {.loop = loop, .queues = queues});
        std::vector<std::thread> threads;
        for (int number = 0; number < 4; ++number) {
            threads.emplace_back([&, number] {
                for (int round = 0; round < 100; ++round) {
                    const std::string path = fmt::format("/r/{}", (number + round) % 8);
                    cache.store(summary, path, "v17|x");
                    cache.cachedSummary(path, "v17|x");
                    cache.storeMarkers({.nodeProjects = {path}}, path, "root:1");
                    cache.markers(path, "root:1");
                    cache.lastKnownSummary(path, true);
                    if (round % 10 == 0) cache.invalidateCache(path);
                }
                cache.store(summary, fmt::format("/last/{}", number), "v17|x");
            });
        }
        for (int round = 0; round < 5; ++round) cache.drain();
        for (std::thread& thread : threads) thread.join();
        cache.drain();
    }
    DependencyCache again(folder / "cache.json", {.loop = loop, .queues = queues});
    for (int number = 0; number < 4; ++number) {
        EXPECT_EQ(again.lastKnownSummary(fmt::format("/last/{}", number), true), summary);
    }
}

}  // namespace
}  // namespace tarnbeck::testing
