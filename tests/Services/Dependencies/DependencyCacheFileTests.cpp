#include <chrono>
#include <filesystem>

#include <sys/stat.h>

#include "Dates.h"
#include "DependencyCacheFixture.h"
#include "FileSystem.h"
#include "Json.h"
#include "MachineRights.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Not;
namespace fs = std::filesystem;

constexpr auto fine = DependencyHealth::upToDate;

class DependencyCacheFile : public ::testing::Test {
  protected:
    void store(const std::string& path, const std::string& fingerprint = "v17|x") {
        cache->store(summaryOf(fine), path, fingerprint);
    }
    void storeAndWrite(const std::string& path) {
        store(path);
        cache.simulation.advance(2s);
    }
    bool has(const std::string& path) { return cache->lastKnownSummary(path, true).has_value(); }
    std::string writeFile(const std::string& content) {
        return cache.folder.write(".config/tarnbeck/dependency-cache.json", content);
    }

    DependencyCacheFixture cache;
};

TEST_F(DependencyCacheFile, IsAnObjectFromPathToFingerprintDateAndSummary) {
    cache->store({.ecosystems = {{.ecosystem = DependencyEcosystem::python,
                                  .project = "api",
                                  .manager = "pip",
                                  .status = fine,
                                  .message = "a word"}}},
                 "/r/a", "v17|x");
    const Date stored = cache.simulation.loop.wallNow();
    cache.simulation.advance(2s);
    const auto json = parsedJson(contentOf(cache.file()));
    const JsonObject& entry = json->at("/r/a").as_object();
    EXPECT_EQ(entry.size(), 3);
    EXPECT_EQ(entry.at("fingerprint"), "v17|x");
    EXPECT_EQ(dateFromSecondsSince2001(entry.at("checkedAt").to_number<double>()), stored);
    EXPECT_EQ(jsonText(entry.at("summary")),
              R"({"ecosystems":[{"ecosystem":"Python","project":"api","manager":"pip",)"
              R"("status":"upToDate","updates":[],"message":"a word"}]})");
}

TEST_F(DependencyCacheFile, DatesAreSecondsSince2001WithAFraction) {
    writeFile(R"({"/r/a":{"fingerprint":"v17|x","checkedAt":0.5,)"
              R"("summary":{"ecosystems":[],"checkedAt":86400.25}}})");
    const auto summary = cache->lastKnownSummary("/r/a", true);
    ASSERT_TRUE(summary);
    EXPECT_EQ(summary->checkedAt, dateFromSecondsSince2001(86400.25));
}

TEST_F(DependencyCacheFile, SurvivesARestart) {
    storeAndWrite("/r/a");
    cache.restart();
    EXPECT_EQ(cache->cachedSummary("/r/a", "v17|x"), summaryOf(fine));
}

TEST_F(DependencyCacheFile, IsNotReadBeforeItIsNeeded) {
    writeFile("first");
    cache.restart();
    writeFile(R"({"/r/a":{"fingerprint":"v17","checkedAt":0,"summary":{"ecosystems":[]}}})");
    EXPECT_TRUE(has("/r/a"));
}

TEST_F(DependencyCacheFile, IsReadOnceEvenWhenThatFails) {
    writeFile("broken");
    EXPECT_FALSE(has("/r/a"));
    writeFile(R"({"/r/a":{"fingerprint":"v17","checkedAt":0,"summary":{"ecosystems":[]}}})");
    EXPECT_FALSE(has("/r/a"));
}

TEST_F(DependencyCacheFile, OneMalformedEntryLosesAll) {
    for (const auto* entry :
         {R"({"checkedAt":0,"summary":{"ecosystems":[]}})",
          R"({"fingerprint":"v17","summary":{"ecosystems":[]}})",
          R"({"fingerprint":"v17","checkedAt":"now","summary":{"ecosystems":[]}})",
          R"({"fingerprint":"v17","checkedAt":0})",
          R"({"fingerprint":"v17","checkedAt":0,)"
          R"("summary":{"ecosystems":[{"ecosystem":"Ruby","manager":"gem","status":"error",)"
          R"("updates":[]}]}})",
          "null"}) {
        writeFile(
            R"({"/r/a":{"fingerprint":"v17","checkedAt":0,"summary":{"ecosystems":[]}},"/r/b":)" +
            std::string(entry) + "}");
        cache.restart();
        EXPECT_FALSE(has("/r/a")) << entry;
    }
}

TEST_F(DependencyCacheFile, ThatIsNoObjectCountsAsAbsent) {
    for (const auto* content : {"", "[]", "{", "\xff"}) {
        writeFile(content);
        cache.restart();
        EXPECT_FALSE(has("/r/a"));
        storeAndWrite("/r/b");
        EXPECT_TRUE(has("/r/b"));
    }
}

TEST_F(DependencyCacheFile, EntriesOfAnOlderSchemeAreIgnoredAndRemovedByTheFirstStore) {
    writeFile(R"({"/r/old":{"fingerprint":"v16|x","checkedAt":0,"summary":{"ecosystems":[]}}})");
    EXPECT_FALSE(has("/r/old"));
    EXPECT_EQ(cache->cachedSummary("/r/old", "v16|x"), std::nullopt);
    storeAndWrite("/r/new");
    EXPECT_THAT(contentOf(cache.file()), Not(HasSubstr("/r/old")));
    EXPECT_THAT(contentOf(cache.file()), HasSubstr("/r/new"));
}

TEST_F(DependencyCacheFile, TwoStoresWithinTwoSecondsAreWrittenOnce) {
    store("/r/a");
    cache.simulation.advance(1900ms);
    EXPECT_FALSE(exists(cache.file()));
    store("/r/b");
    cache.simulation.advance(1999ms);
    EXPECT_FALSE(exists(cache.file()));
    cache.simulation.advance(1ms);
    EXPECT_THAT(contentOf(cache.file()), HasSubstr("/r/a"));
    EXPECT_THAT(contentOf(cache.file()), HasSubstr("/r/b"));
    fs::remove(cache.file());
    cache.simulation.advance(1min);
    EXPECT_FALSE(exists(cache.file()));
}

TEST_F(DependencyCacheFile, NothingIsWrittenWhenTheCacheGoesBeforeItsTime) {
    store("/r/a");
    cache.restart();
    cache.simulation.advance(1min);
    EXPECT_FALSE(exists(cache.file()));
}

TEST_F(DependencyCacheFile, DrainingWritesAtOnceAndOnlyWhatWaits) {
    cache->drain();
    EXPECT_FALSE(exists(cache.file()));
    store("/r/a");
    cache->drain();
    EXPECT_THAT(contentOf(cache.file()), HasSubstr("/r/a"));
    fs::remove(cache.file());
    cache->drain();
    cache.simulation.advance(1min);
    EXPECT_FALSE(exists(cache.file()));
}

TEST_F(DependencyCacheFile, ClosingWritesWhatWaits) {
    store("/r/a");
    cache->close();
    cache.simulation.runUntilIdle();
    EXPECT_THAT(contentOf(cache.file()), HasSubstr("/r/a"));
}

TEST_F(DependencyCacheFile, ClosedTakesNoMore) {
    store("/r/a");
    cache->close();
    store("/r/b");
    cache.simulation.advance(1min);
    EXPECT_THAT(contentOf(cache.file()), Not(HasSubstr("/r/b")));
}

TEST_F(DependencyCacheFile, IsForTheUsersEyesOnly) {
    storeAndWrite("/r/a");
    struct stat information {};
    ASSERT_EQ(stat(cache.file().c_str(), &information), 0);
    EXPECT_EQ(information.st_mode & 0777, 0600U);
    ASSERT_EQ(stat((cache.folder / ".config/tarnbeck").c_str(), &information), 0);
    EXPECT_EQ(information.st_mode & 0777, 0700U);
}

TEST_F(DependencyCacheFile, ThatCannotBeWrittenIsTriedAgainWithTheNextStore) {
    cache.folder.makeFolder(".config");
    chmod((cache.folder / ".config").c_str(), 0500);
    {
        const WithoutRootRights ordinaryUser;
        storeAndWrite("/r/a");
    }
    chmod((cache.folder / ".config").c_str(), 0700);
    EXPECT_FALSE(exists(cache.file()));
    EXPECT_TRUE(has("/r/a"));
    storeAndWrite("/r/b");
    EXPECT_THAT(contentOf(cache.file()), HasSubstr("/r/a"));
}

TEST_F(DependencyCacheFile, PathThatIsNotUtf8LosesNothingElse) {
    store("/r/caf\xe9");
    storeAndWrite("/r/a");
    cache.restart();
    EXPECT_TRUE(has("/r/a"));
}

}  // namespace
}  // namespace tarnbeck::testing
