#include <chrono>
#include <filesystem>

#include <fmt/format.h>

#include "DependencyCacheFixture.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::Optional;
namespace fs = std::filesystem;

constexpr auto good = DependencyHealth::updatesAvailable;
constexpr auto bad = DependencyHealth::error;

class SummaryCache : public ::testing::Test {
  protected:
    bool has(const std::string& path) { return cache->lastKnownSummary(path, true).has_value(); }

    DependencyCacheFixture cache;
};

TEST_F(SummaryCache, GivesASummaryOfTheSameFingerprint) {
    cache->store(summaryOf(good), "/r/a", "v17|x");
    EXPECT_THAT(cache->cachedSummary("/r/a", "v17|x"), Optional(summaryOf(good)));
}

TEST_F(SummaryCache, GivesNothingForAnotherFingerprintAndKeepsTheEntry) {
    cache->store(summaryOf(good), "/r/a", "v17|x");
    EXPECT_EQ(cache->cachedSummary("/r/a", "v17|y"), std::nullopt);
    EXPECT_THAT(cache->lastKnownSummary("/r/a", false), Optional(summaryOf(good)));
}

TEST_F(SummaryCache, GivesNothingForARepositoryThatItDoesNotKnow) {
    EXPECT_EQ(cache->cachedSummary("/r/a", "v17|x"), std::nullopt);
    EXPECT_EQ(cache->lastKnownSummary("/r/a", true), std::nullopt);
}

TEST_F(SummaryCache, EntryExpiresAnHourAfterItWasStored) {
    cache->store(summaryOf(good), "/r/a", "v17|x");
    cache.simulation.advance(3600s - 1ns);
    EXPECT_TRUE(cache->cachedSummary("/r/a", "v17|x"));
    cache.simulation.advance(1ns);
    EXPECT_FALSE(cache->cachedSummary("/r/a", "v17|x"));
    EXPECT_TRUE(cache->lastKnownSummary("/r/a", false));
}

TEST_F(SummaryCache, SummaryWithAnErrorIsNeverGivenAsAnAnswer) {
    cache->store(summaryOf(bad), "/r/a", "v17|x");
    EXPECT_EQ(cache->cachedSummary("/r/a", "v17|x"), std::nullopt);
    EXPECT_EQ(cache->lastKnownSummary("/r/a", false), std::nullopt);
    EXPECT_THAT(cache->lastKnownSummary("/r/a", true), Optional(summaryOf(bad)));
}

TEST_F(SummaryCache, HundredAndTwentyNinthRepositoryTakesThePlaceOfTheOldest) {
    for (int number = 0; number < 128; ++number) {
        cache->store(summaryOf(good), fmt::format("/r/{}", number), "v17|x");
        cache.simulation.advance(1ms);
    }
    cache->store(summaryOf(good), "/r/0", "v17|x");  // is the youngest now
    cache.simulation.advance(1ms);
    EXPECT_TRUE(has("/r/1"));
    cache->store(summaryOf(good), "/r/128", "v17|x");
    EXPECT_FALSE(has("/r/1"));
    EXPECT_TRUE(has("/r/0"));
    EXPECT_TRUE(has("/r/2"));
    EXPECT_TRUE(has("/r/128"));
}

TEST_F(SummaryCache, ForgetsARepositoryWhenToldTo) {
    cache->store(summaryOf(good), "/r/a", "v17|x");
    cache->storeMarkers({.nodeProjects = {"/r/a"}}, "/r/a", "root:1");
    cache.simulation.advance(2s);  // it is in the file
    cache->invalidateCache("/r/a");
    EXPECT_FALSE(has("/r/a"));
    EXPECT_EQ(cache->markers("/r/a", "root:1"), std::nullopt);
    cache.simulation.advance(2s);
    cache.restart();
    EXPECT_FALSE(has("/r/a"));
}

TEST_F(SummaryCache, StoreAndForgettingBeforeAnyReadLoseNothingOfTheFile) {
    cache->store(summaryOf(good), "/r/a", "v17|x");
    cache->store(summaryOf(good), "/r/b", "v17|x");
    cache.simulation.advance(2s);
    cache.restart();
    cache->store(summaryOf(good), "/r/c", "v17|x");
    cache.simulation.advance(2s);
    cache.restart();
    cache->invalidateCache("/r/b");
    cache.simulation.advance(2s);
    cache.restart();
    EXPECT_TRUE(has("/r/a"));
    EXPECT_FALSE(has("/r/b"));
    EXPECT_TRUE(has("/r/c"));
}

class MarkersCache : public SummaryCache {
  protected:
    void store(const std::string& path) {
        cache->storeMarkers({.nodeProjects = {path}}, path, "root:1");
        cache.simulation.advance(1ms);
    }
    bool hasMarkers(const std::string& path) { return cache->markers(path, "root:1").has_value(); }
};

TEST_F(MarkersCache, GivesTheProjectsOfTheSameStructure) {
    store("/r/a");
    EXPECT_THAT(cache->markers("/r/a", "root:1"),
                Optional(DependencyMarkers{.nodeProjects = {"/r/a"}}));
}

TEST_F(MarkersCache, AnotherStructureForgetsThem) {
    store("/r/a");
    EXPECT_EQ(cache->markers("/r/a", "root:2"), std::nullopt);
    EXPECT_FALSE(hasMarkers("/r/a"));
}

TEST_F(MarkersCache, ExpireFiveMinutesAfterTheyWereStoredHoweverOftenTheyAreUsed) {
    cache->storeMarkers({}, "/r/a", "root:1");
    cache.simulation.advance(300s - 1ns);
    EXPECT_TRUE(hasMarkers("/r/a"));
    cache.simulation.advance(1ns);
    EXPECT_FALSE(hasMarkers("/r/a"));
}

TEST_F(MarkersCache, SixtyFifthRepositoryTakesThePlaceOfTheLeastRecentlyUsed) {
    for (int number = 0; number < 64; ++number) store(fmt::format("/r/{}", number));
    EXPECT_TRUE(hasMarkers("/r/0"));  // used now
    store("/r/64");
    EXPECT_FALSE(hasMarkers("/r/1"));
    EXPECT_TRUE(hasMarkers("/r/0"));
    EXPECT_TRUE(hasMarkers("/r/64"));
}

TEST_F(MarkersCache, ForgettingThemLeavesTheSummaryAndTheFileAlone) {
    cache->store(summaryOf(good), "/r/a", "v17|x");
    cache.simulation.advance(2s);
    fs::remove(cache.file());
    store("/r/a");
    cache->invalidateMarkersCache("/r/a");
    cache.simulation.advance(1min);
    EXPECT_FALSE(hasMarkers("/r/a"));
    EXPECT_TRUE(has("/r/a"));
    EXPECT_FALSE(fs::exists(cache.file()));
}

TEST_F(MarkersCache, DoNotTouchTheFile) {
    store("/r/a");
    cache.simulation.advance(1min);
    EXPECT_FALSE(fs::exists(cache.file()));
}

}  // namespace
}  // namespace tarnbeck::testing
