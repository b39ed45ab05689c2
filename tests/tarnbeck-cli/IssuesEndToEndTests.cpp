#include <chrono>

#include <fmt/format.h>

#include "Dates.h"
#include "GitFixture.h"
#include "Json.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;

// Nobody is logged in to GitHub in a fresh home: what is answered comes from the cache.
class IssuesEndToEnd : public ::testing::Test {
  protected:
    std::string onGitHub(const std::string& name) {
        const std::string path = makeRepository(folder / ("projects/" + name));
        git(path, {"remote", "add", "origin", "https://github.com/you/" + name + ".git"});
        return path;
    }
    void writeCache(const std::string& path, std::chrono::seconds age) {
        const double fetchedAt = secondsSince2001(std::chrono::system_clock::now() - age);
        folder.write(".config/tarnbeck/github-issues-cache.json",
                     fmt::format(R"({{"{}":{{"fetchedAt":{},"issues":[{{"id":7,"number":7,)"
                                 R"("title":"Rain is wet","state":"OPEN","labels":[],)"
                                 R"("author":"alice","createdAt":"2026-02-03T04:05:06Z",)"
                                 R"("url":"u"}}]}}}})",
                                 path, fetchedAt));
    }
    ProgramResult issues(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "issues");
        return run({.arguments = std::move(arguments), .home = folder.path()});
    }

    TemporaryFolder folder;
};

TEST_F(IssuesEndToEnd, YoungAnswerOfTheCacheIsShown) {
    const std::string path = onGitHub("weather");
    writeCache(path, 1min);
    const auto result = issues({path});
    EXPECT_EQ(result.output,
              "weather  you/weather  1 issue\n"
              "  ● #7     Rain is wet  alice  2026-02-03\n"
              "1 repository · 1 issue\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(IssuesEndToEnd, FailureSaysWhyAndShowsTheLastKnown) {
    const std::string path = onGitHub("weather");
    writeCache(path, 1h);
    const auto result = issues({path});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("weather  you/weather  1 issue, as of "));
    EXPECT_THAT(result.output, HasSubstr("Rain is wet"));
    EXPECT_THAT(result.output, HasSubstr("1 could not be asked about"));
    EXPECT_THAT(result.errors, HasSubstr("tarnbeck-cli: " + path + ": "));
    EXPECT_THAT(result.errors, HasSubstr("gh"));
}

TEST_F(IssuesEndToEnd, JsonOfAFailureIsPureAndKeepsTheLastKnown) {
    const std::string path = onGitHub("weather");
    writeCache(path, 1h);
    const auto result = issues({"--json", path});
    EXPECT_EQ(result.status, 1);
    const auto json = parsedJson(result.output);
    ASSERT_TRUE(json) << result.output;
    const JsonValue& answer = json->as_array().at(0);
    EXPECT_EQ(answer.at("result").as_string(), "failed");
    EXPECT_EQ(answer.at("ownerRepo").as_string(), "you/weather");
    EXPECT_EQ(answer.at("issues").as_array().size(), 1);
}

TEST_F(IssuesEndToEnd, RefreshPassesTheYoungAnswerByAndFallsBackToIt) {
    const std::string path = onGitHub("weather");
    writeCache(path, 1min);
    const auto result = issues({"--refresh", path});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(contentOf(folder / ".config/tarnbeck/scan.log"), HasSubstr("GITHUB "));
    EXPECT_THAT(result.output, HasSubstr("Rain is wet"));
}

TEST_F(IssuesEndToEnd, RepositoryElsewhereIsCountedOnly) {
    const auto result = issues({makeRepository(folder / "plain")});
    EXPECT_EQ(result.output, "1 repository · 1 not on GitHub\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(IssuesEndToEnd, WithoutPathTheConfiguredRepositoriesAreAskedAboutByName) {
    const std::string weather = onGitHub("weather");
    makeRepository(folder / "projects/alpha");
    writeCache(weather, 1min);
    const auto result = issues({"--json"});
    const auto json = parsedJson(result.output);
    ASSERT_TRUE(json) << result.output;
    ASSERT_EQ(json->as_array().size(), 2);
    EXPECT_EQ(json->as_array().at(0).at("result").as_string(), "skipped");
    EXPECT_EQ(json->as_array().at(1).at("result").as_string(), "success");
}

TEST_F(IssuesEndToEnd, PathThatDoesNotExistIsAFailure) {
    const auto result = issues({folder / "gone"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("does not exist"));
}

TEST_F(IssuesEndToEnd, CacheOfANewerVersionOrAnotherShapeIsNoObstacle) {
    const std::string path = onGitHub("weather");
    folder.write(".config/tarnbeck/github-issues-cache.json", R"({"version":2,"entries":[]})");
    const auto result = issues({path});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("weather  you/weather  not known\n"));
}

}  // namespace
}  // namespace tarnbeck::testing
