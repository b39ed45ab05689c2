#include <chrono>
#include <cstdlib>
#include <ctime>
#include <optional>

#include "ChangeFeed.h"
#include "RepositoryJson.h"
#include "Snapshots.h"
#include "Verdicts.h"

namespace tarnbeck::cli {
namespace {

using namespace tarnbeck::testing;

const ChangeFeed json(ChangeFeed::Form::json, {});
const ChangeFeed people(ChangeFeed::Form::forPeople, {});

// The user's time zone, for as long as this lives.
class TimeZone {
  public:
    explicit TimeZone(const char* name) {
        if (const char* present = std::getenv("TZ")) before_ = present;
        setenv("TZ", name, 1);
        tzset();
    }
    ~TimeZone() {
        if (before_) {
            setenv("TZ", before_->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

  private:
    std::optional<std::string> before_;
};

TEST(ChangeFeed_Changes, OfEqualListsAreNone) {
    const auto changes =
        changesBetween({snapshot(cleanRepository("/r/a"))}, {snapshot(cleanRepository("/r/a"))});
    EXPECT_TRUE(changes.changed.empty());
    EXPECT_TRUE(changes.removed.empty());
}

TEST(ChangeFeed_Changes, HoldANewRepository) {
    const auto added = snapshot(cleanRepository("/r/b"));
    const auto a = snapshot(cleanRepository("/r/a"));
    EXPECT_THAT(changesBetween({a}, {a, added}).changed, ::testing::ElementsAre(added));
}

TEST(ChangeFeed_Changes, HoldARepositoryWithAnotherValue) {
    const auto after = snapshot(withChanges(cleanRepository("/r/a"), 1));
    const auto changes = changesBetween({snapshot(cleanRepository("/r/a"))}, {after});
    EXPECT_THAT(changes.changed, ::testing::ElementsAre(after));
    EXPECT_TRUE(changes.removed.empty());
}

TEST(ChangeFeed_Changes, HoldARemovedRepositoryAsItWas) {
    const auto before = snapshot(cleanRepository("/r/a"));
    const auto changes = changesBetween({before}, {});
    EXPECT_TRUE(changes.changed.empty());
    EXPECT_THAT(changes.removed, ::testing::ElementsAre(before));
}

TEST(ChangeFeed_Changes, AnotherOrderIsNoChange) {
    const auto a = snapshot(cleanRepository("/r/a"));
    const auto b = snapshot(cleanRepository("/r/b"));
    const auto changes = changesBetween({a, b}, {b, a});
    EXPECT_TRUE(changes.changed.empty());
    EXPECT_TRUE(changes.removed.empty());
}

GitRepository withIssue(GitRepository repository) {
    repository.issues = {{.id = 7, .number = 7, .title = "Rain", .url = "u"}};
    return repository;
}

TEST(ChangeFeed_Changes, OtherIssuesAreToldApartFromOtherChanges) {
    const auto after = snapshot(withIssue(cleanRepository("/r/a")));
    const auto changes = changesBetween({snapshot(cleanRepository("/r/a"))}, {after});
    EXPECT_THAT(changes.issues, ::testing::ElementsAre(after));
    EXPECT_TRUE(changes.changed.empty());
}

TEST(ChangeFeed_Changes, RepositoryMayHaveBothKinds) {
    const auto after = snapshot(withChanges(withIssue(cleanRepository("/r/a")), 1));
    const auto changes = changesBetween({snapshot(cleanRepository("/r/a"))}, {after});
    EXPECT_THAT(changes.issues, ::testing::ElementsAre(after));
    EXPECT_THAT(changes.changed, ::testing::ElementsAre(after));
}

TEST(ChangeFeed_Changes, NewRepositoryIsToldOnceWithItsIssues) {
    const auto added = snapshot(withIssue(cleanRepository("/r/a")));
    const auto changes = changesBetween({}, {added});
    EXPECT_THAT(changes.changed, ::testing::ElementsAre(added));
    EXPECT_TRUE(changes.issues.empty());
}

TEST(ChangeFeed_Json, IssuesHaveTheWholeLists) {
    EXPECT_EQ(json.issues(noon, withIssue(cleanRepository("/r/a"))),
              R"({"event":"issues","at":"2026-03-01T12:00:00Z","path":"/r/a","name":"a",)"
              R"("issues":[{"id":7,"number":7,"title":"Rain","state":"OPEN","labels":[],)"
              R"("author":"","createdAt":"","updatedAt":null,"url":"u"}],"pullRequests":[]})"
              "\n");
}

TEST(ChangeFeed_People, IssuesAreCounted) {
    const TimeZone zone("UTC0");
    EXPECT_EQ(people.issues(noon, withIssue(cleanRepository("/r/a"))), "12:00:00 # a  1 issue\n");
}

GitRepository withVerdict(GitRepository repository, DependencyEcosystemResult result,
                          std::optional<Date> checkedAt = noon) {
    repository.dependencySummary = {.ecosystems = {std::move(result)}, .checkedAt = checkedAt};
    return repository;
}

TEST(ChangeFeed_Changes, OtherDependenciesAreToldApartFromOtherChanges) {
    const auto after = snapshot(withVerdict(cleanRepository("/r/a"), nodeResult(".")));
    const auto changes = changesBetween({snapshot(cleanRepository("/r/a"))}, {after});
    EXPECT_THAT(changes.dependencies, ::testing::ElementsAre(after));
    EXPECT_TRUE(changes.changed.empty());
    EXPECT_TRUE(changes.issues.empty());
}

TEST(ChangeFeed_Changes, RepositoryMayHaveAllKinds) {
    const auto after =
        snapshot(withVerdict(withChanges(withIssue(cleanRepository("/r/a")), 1), nodeResult(".")));
    const auto changes = changesBetween({snapshot(cleanRepository("/r/a"))}, {after});
    EXPECT_THAT(changes.dependencies, ::testing::ElementsAre(after));
    EXPECT_THAT(changes.issues, ::testing::ElementsAre(after));
    EXPECT_THAT(changes.changed, ::testing::ElementsAre(after));
}

TEST(ChangeFeed_Changes, NewCheckWithTheSameVerdictIsNone) {
    const auto before = snapshot(withVerdict(cleanRepository("/r/a"), nodeResult(".")));
    const auto after = snapshot(
        withVerdict(cleanRepository("/r/a"), nodeResult("."), noon + std::chrono::hours(1)));
    const auto changes = changesBetween({before}, {after});
    EXPECT_TRUE(changes.dependencies.empty());
    EXPECT_TRUE(changes.changed.empty());
}

TEST(ChangeFeed_Changes, NewRepositoryIsToldOnceWithItsDependencies) {
    const auto added = snapshot(withVerdict(cleanRepository("/r/a"), nodeResult(".")));
    const auto changes = changesBetween({}, {added});
    EXPECT_THAT(changes.changed, ::testing::ElementsAre(added));
    EXPECT_TRUE(changes.dependencies.empty());
}

TEST(ChangeFeed_Json, DependenciesHaveTheWholeSummary) {
    EXPECT_EQ(json.dependencies(noon, withVerdict(cleanRepository("/r/a"), nodeResult("."))),
              R"({"event":"dependencies","at":"2026-03-01T12:00:00Z","path":"/r/a",)"
              R"("status":"upToDate","inlineSummary":"dependencies up to date",)"
              R"("summary":{"ecosystems":[{"ecosystem":"Node","project":".","manager":"npm",)"
              R"("status":"upToDate","updates":[],"message":null}],)"
              R"("checkedAt":"2026-03-01T12:00:00Z"}})"
              "\n");
}

TEST(ChangeFeed_Json, DependenciesAreToldWhileTheyAreChecked) {
    EXPECT_THAT(json.dependencies(noon, withVerdict(cleanRepository("/r/a"),
                                                    nodeResult(".", DependencyHealth::checking))),
                ::testing::HasSubstr(R"("status":"checking")"));
}

TEST(ChangeFeed_People, DependenciesAreSummedUp) {
    const TimeZone zone("UTC0");
    EXPECT_EQ(
        people.dependencies(noon, withVerdict(cleanRepository("/r/a\033b"),
                                              nodeResult(".", DependencyHealth::updatesAvailable,
                                                         {updateOf("react")}))),
        "12:00:00 ▣ a\uFFFDb  1 updateable (1 major)\n");
}

TEST(ChangeFeed_People, DependenciesThatAreBeingCheckedAreNotTold) {
    EXPECT_EQ(people.dependencies(noon, withVerdict(cleanRepository("/r/a"),
                                                    nodeResult(".", DependencyHealth::checking))),
              "");
}

TEST(ChangeFeed_People, LastProjectThatWentIsTold) {
    const TimeZone zone("UTC0");
    EXPECT_EQ(people.dependencies(noon, cleanRepository("/r/a")),
              "12:00:00 ▣ a  no dependencies\n");
}

TEST(ChangeFeed_Json, ScanStartedHasEventAndTime) {
    EXPECT_EQ(json.scanStarted(noon),
              "{\"event\":\"scanStarted\",\"at\":\"2026-03-01T12:00:00Z\"}\n");
}

TEST(ChangeFeed_Json, ScanFinishedHasTheCounts) {
    EXPECT_EQ(json.scanFinished(noon, {snapshot(cleanRepository("/r/a")),
                                       snapshot(withChanges(cleanRepository("/r/b"), 1))}),
              "{\"event\":\"scanFinished\",\"at\":\"2026-03-01T12:00:00Z\","
              "\"repositories\":2,\"dirty\":1}\n");
}

TEST(ChangeFeed_Json, RepositoryHasTheWholeRecord) {
    const GitRepository repository = withChanges(cleanRepository("/r/a"), 1);
    EXPECT_EQ(json.repository(noon, repository),
              "{\"event\":\"repository\",\"at\":\"2026-03-01T12:00:00Z\",\"repository\":" +
                  jsonText(repositoryJson(repository)) + "}\n");
}

TEST(ChangeFeed_Json, RemovedHasPathAndName) {
    EXPECT_EQ(json.removed(noon, cleanRepository("/r/a")),
              "{\"event\":\"removed\",\"at\":\"2026-03-01T12:00:00Z\",\"path\":\"/r/a\","
              "\"name\":\"a\"}\n");
}

TEST(ChangeFeed_Json, LineFeedInANameDoesNotBreakTheLine) {
    const std::string line = json.removed(noon, cleanRepository("/r/a\nb"));
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
}

TEST(ChangeFeed_People, ScansAreNotTold) {
    EXPECT_EQ(people.scanStarted(noon), "");
    EXPECT_EQ(people.scanFinished(noon, {}), "");
}

TEST(ChangeFeed_People, RepositoryIsOneTableLineBehindTheTime) {
    const TimeZone zone("UTC0");
    EXPECT_EQ(people.repository(noon, withChanges(cleanRepository("/r/a"), 1)),
              "12:00:00 ✎ a  main  No upstream  1 change\n");
}

TEST(ChangeFeed_People, TimeIsThatOfTheUsersZone) {
    const TimeZone zone("HERE-5:30");
    EXPECT_THAT(people.repository(noon, cleanRepository("/r/a")),
                ::testing::StartsWith("17:30:00 "));
}

TEST(ChangeFeed_People, RemovedNamesTheRepositoryWithoutControlCharacters) {
    const TimeZone zone("UTC0");
    EXPECT_EQ(people.removed(noon, cleanRepository("/r/a\033b")), "12:00:00 - a\uFFFDb  removed\n");
}

}  // namespace
}  // namespace tarnbeck::cli
