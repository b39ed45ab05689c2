#include <algorithm>
#include <sstream>

#include "DependencyReport.h"
#include "Json.h"
#include "Snapshots.h"
#include "Text.h"
#include "Verdicts.h"

namespace tarnbeck::cli {
namespace {

using namespace tarnbeck::testing;
using enum DependencyHealth;
using ::testing::HasSubstr;
using ::testing::Not;
using Type = DependencyUpdateType;
using Origin = DependencyUpdateOrigin;

DependencyAnswer answer(std::vector<DependencyEcosystemResult> results) {
    return {.path = "/home/you/weather",
            .name = "weather",
            .summary = {.ecosystems = std::move(results), .checkedAt = noon}};
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

TEST(DependencyReport_List, HasAHeadingAndForEachProjectALineItsUpdatesAndItsMessage) {
    DependencyUpdate lodash = updateOf("lodash", Type::patch, Origin::manifestTransitive);
    lodash.currentVersion = "4.17.20";
    lodash.latestVersion = "4.17.21";
    const auto web = nodeResult("web", updatesAvailable,
                                {updateOf("@types/react", Type::major), lodash}, "Say so.");
    const auto api = pythonResult("services/api", upToDate);
    EXPECT_EQ(dependencyList(answer({web, api}), {}),
              "weather  2 updateable (1 major)\n"
              "  Node    web           npm  updates available\n"
              "    @types/react  18.2.0   → 19.0.0   major\n"
              "    lodash        4.17.20  → 4.17.21  patch  transitive\n"
              "    Say so.\n"
              "  Python  services/api  pip  up to date\n");
}

TEST(DependencyReport_List, OfARepositoryWithoutProjectsIsEmpty) {
    EXPECT_EQ(dependencyList(answer({}), {}), "");
}

TEST(DependencyReport_List, ProjectOfTheRepositoryItselfIsADot) {
    EXPECT_EQ(dependencyList(answer({nodeResult(".")}), {}),
              "weather  dependencies up to date\n  Node  .  npm  up to date\n");
    EXPECT_EQ(dependencyList(answer({nodeResult(std::nullopt)}), {}),
              dependencyList(answer({nodeResult(".")}), {}));
    EXPECT_EQ(dependencyList(answer({nodeResult("")}), {}),
              dependencyList(answer({nodeResult(".")}), {}));
}

TEST(DependencyReport_List, OlderVerdictThanWasAskedForHasItsTime) {
    DependencyAnswer old = answer({nodeResult(".")});
    old.asOf = noon;
    EXPECT_THAT(dependencyList(old, {}),
                HasSubstr("weather  dependencies up to date, as of 2026-03-01T12:00:00Z\n"));
}

TEST(DependencyReport_List, ReasonOfAFailedCheckIsNotInIt) {
    EXPECT_EQ(dependencyList(answer({nodeResult(".", error, {}, "no network")}), {}),
              "weather  dependency check failed\n  Node  .  npm  check failed\n");
}

struct StatusWords {
    DependencyHealth status;
    std::string words;
};
class DependencyReport_EachStatus : public ::testing::TestWithParam<StatusWords> {};

TEST_P(DependencyReport_EachStatus, HasItsWords) {
    const auto lines = linesOf(dependencyList(answer({nodeResult(".", GetParam().status)}), {}));
    EXPECT_EQ(lines.back(), "  Node  .  npm  " + GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    All, DependencyReport_EachStatus,
    ::testing::Values(StatusWords{checking, "not checked yet"}, StatusWords{upToDate, "up to date"},
                      StatusWords{syncNeeded, "sync needed"}, StatusWords{constraints, "held back"},
                      StatusWords{updatesAvailable, "updates available"},
                      StatusWords{notApplicable, "not applicable"}, StatusWords{unknown, "unknown"},
                      StatusWords{error, "check failed"}));

struct TypeWords {
    Type type;
    std::string words;
};
class DependencyReport_EachType : public ::testing::TestWithParam<TypeWords> {};

TEST_P(DependencyReport_EachType, HasItsWord) {
    const auto result = nodeResult(".", updatesAvailable, {updateOf("a", GetParam().type)});
    EXPECT_EQ(linesOf(dependencyList(answer({result}), {})).back(),
              "    a  18.2.0  → 19.0.0  " + GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    All, DependencyReport_EachType,
    ::testing::Values(TypeWords{Type::major, "major"}, TypeWords{Type::minor, "minor"},
                      TypeWords{Type::patch, "patch"}, TypeWords{Type::constrained, "limited"},
                      TypeWords{Type::blocked, "blocked"}, TypeWords{Type::unknown, "other"}));

struct OriginWords {
    Origin origin;
    std::string words;
};
class DependencyReport_EachOrigin : public ::testing::TestWithParam<OriginWords> {};

TEST_P(DependencyReport_EachOrigin, HasItsWords) {
    const auto result =
        pythonResult(".", updatesAvailable, {updateOf("a", Type::minor, GetParam().origin)});
    EXPECT_EQ(linesOf(dependencyList(answer({result}), {})).back(),
              "    a  18.2.0  → 19.0.0  minor" + GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(All, DependencyReport_EachOrigin,
                         ::testing::Values(OriginWords{Origin::unknown, ""},
                                           OriginWords{Origin::manifestDirect, "  direct"},
                                           OriginWords{Origin::manifestTransitive, "  transitive"},
                                           OriginWords{Origin::venvOnly, "  venv only"}));

TEST(DependencyReport_Columns, AreAlignedByWhatATerminalShows) {
    const auto result =
        nodeResult(".", updatesAvailable, {updateOf("日本"), updateOf("e\u0301"), updateOf("ab")});
    const auto lines = linesOf(dependencyList(answer({result}), {}));
    EXPECT_EQ(lines.at(2), "    日本  18.2.0  → 19.0.0  major");
    EXPECT_EQ(lines.at(3), "    e\u0301     18.2.0  → 19.0.0  major");
    EXPECT_EQ(lines.at(4), "    ab    18.2.0  → 19.0.0  major");
}

TEST(DependencyReport_Columns, AreTheSameForAllProjectsOfARepository) {
    const auto web = nodeResult("web", updatesAvailable, {updateOf("a")});
    const auto api = pythonResult("api", updatesAvailable, {updateOf("longer")});
    const auto lines = linesOf(dependencyList(answer({web, api}), {}));
    EXPECT_EQ(lines.at(2), "    a       18.2.0  → 19.0.0  major");
    EXPECT_EQ(lines.at(4), "    longer  18.2.0  → 19.0.0  major");
}

class DependencyReport_Narrow : public ::testing::TestWithParam<std::size_t> {};

TEST_P(DependencyReport_Narrow, NoLineIsWiderThanTheTerminal) {
    DependencyUpdate update = updateOf(std::string(90, 'p'), Type::constrained, Origin::venvOnly);
    update.currentVersion = std::string(80, '1');
    update.latestVersion = std::string(80, '2');
    const auto result = pythonResult(std::string(90, 'f'), constraints, {update},
                                     "One message of many words, which are not long, but many.");
    for (const std::string& line :
         linesOf(dependencyList(answer({result}), {.columns = GetParam()}))) {
        EXPECT_LE(displayWidth(line), GetParam()) << line;
    }
}

INSTANTIATE_TEST_SUITE_P(Widths, DependencyReport_Narrow,
                         ::testing::Values(std::size_t{40}, std::size_t{50}, std::size_t{60},
                                           std::size_t{80}, std::size_t{132}));

TEST(DependencyReport_Columns, WhatIsTooLongIsCutAndTheTypeStays) {
    const auto result = nodeResult(".", updatesAvailable, {updateOf(std::string(90, 'p'))});
    const auto line = linesOf(dependencyList(answer({result}), {.columns = 50})).back();
    EXPECT_THAT(line, HasSubstr("ppp…  18.2.0  → 19.0.0  major"));
}

TEST(DependencyReport_Columns, OriginGoesFirstWhereThereIsNoRoom) {
    const auto result = pythonResult(
        ".", updatesAvailable,
        {updateOf("a-package-of-some-length", Type::minor, Origin::manifestTransitive)});
    EXPECT_THAT(dependencyList(answer({result}), {.columns = 44}), Not(HasSubstr("transitive")));
    EXPECT_THAT(dependencyList(answer({result}), {.columns = 60}), HasSubstr("transitive"));
}

TEST(DependencyReport_Message, IsBrokenBetweenWordsOnATerminal) {
    const auto result = nodeResult(".", syncNeeded, {}, "one two three four five");
    const auto lines = linesOf(dependencyList(answer({result}), {.columns = 20}));
    EXPECT_EQ(lines.at(2), "    one two three");
    EXPECT_EQ(lines.at(3), "    four five");
}

TEST(DependencyReport_Message, IsOneLineElsewhere) {
    const std::string words(300, 'w');
    const auto result = nodeResult(".", syncNeeded, {}, words + " " + words);
    EXPECT_EQ(linesOf(dependencyList(answer({result}), {})).back(), "    " + words + " " + words);
}

TEST(DependencyReport_Message, KeepsItsOwnLines) {
    const auto result = nodeResult(".", unknown, {}, "one\n\n  two\r\nthree");
    EXPECT_THAT(dependencyList(answer({result}), {}),
                ::testing::EndsWith("\n    one\n    two\n    three\n"));
}

TEST(DependencyReport_Foreign, ControlCharactersAreMadeHarmless) {
    DependencyUpdate update = updateOf("a\033[2Jb\nc");
    update.currentVersion = "\a1";
    update.latestVersion = "\x9b";
    auto result = nodeResult("we\tb\n", unknown, {update}, "mes\033sage");
    result.manager = "n\bpm";
    const std::string text = dependencyList(answer({result}), {});
    for (const char* character : {"\033", "\a", "\b", "\t", "\x9b"}) {
        EXPECT_THAT(text, Not(HasSubstr(character)));
    }
    EXPECT_EQ(linesOf(text).size(), 4U);
}

TEST(DependencyReport_Color, OfAnUpdateGoesByItsType) {
    const auto result = nodeResult(
        ".", updatesAvailable,
        {updateOf("a", Type::major), updateOf("b", Type::patch), updateOf("c", Type::constrained)});
    const std::string text = dependencyList(answer({result}), {.color = true});
    EXPECT_THAT(text, HasSubstr("→ 19.0.0  \033[31mmajor\033[0m\n"));
    EXPECT_THAT(text, HasSubstr("→ 19.0.0  \033[32mpatch\033[0m\n"));
    EXPECT_THAT(text, HasSubstr("→ 19.0.0  \033[33mlimited\033[0m\n"));
}

TEST(DependencyReport_Color, OfHeadingAndProjectGoesByTheirStatus) {
    const std::string text =
        dependencyList(answer({nodeResult("."), nodeResult("web", error)}), {.color = true});
    EXPECT_THAT(text, HasSubstr("weather  \033[31mdependency check failed\033[0m\n"));
    EXPECT_THAT(text, HasSubstr("npm  \033[32mup to date\033[0m\n"));
    EXPECT_THAT(text, HasSubstr("npm  \033[31mcheck failed\033[0m\n"));
}

TEST(DependencyReport_Color, IsNotThereWithoutRequest) {
    const auto result = nodeResult(".", updatesAvailable, {updateOf("a")});
    EXPECT_THAT(dependencyList(answer({result}), {}), Not(HasSubstr("\033")));
}

TEST(DependencyReport_Totals, AddUpAndNameWhatIsMissing) {
    const auto web = nodeResult("web", updatesAvailable,
                                {updateOf("a"), updateOf("b", Type::minor),
                                 updateOf("c", Type::blocked), updateOf("d", Type::constrained)});
    const auto api = pythonResult("api", syncNeeded);
    EXPECT_EQ(dependencyTotals({answer({web, api}), answer({nodeResult(".", error)}),
                                answer({nodeResult(".", unknown)}), answer({})}),
              "4 repositories · 4 projects · 2 updateable (1 major) · 1 blocked · 1 limited · "
              "1 sync needed · 1 unknown · 1 check failed · 1 without projects");
}

TEST(DependencyReport_Totals, SayThatAllIsUpToDate) {
    EXPECT_EQ(dependencyTotals({answer({nodeResult(".")})}),
              "1 repository · 1 project · all up to date");
}

TEST(DependencyReport_Totals, SayNothingOfUpdatesWhereThereIsNoProject) {
    EXPECT_EQ(dependencyTotals({answer({})}), "1 repository · 1 without projects");
}

TEST(DependencyReport_Totals, LeaveMajorsOutWhereThereAreNone) {
    EXPECT_EQ(dependencyTotals(
                  {answer({nodeResult(".", updatesAvailable, {updateOf("a", Type::patch)})})}),
              "1 repository · 1 project · 1 updateable");
}

TEST(DependencyReport_Totals, CountTheRepositoriesThatNeedASyncByMessageToo) {
    const auto both = nodeResult(".", updatesAvailable, {updateOf("a", Type::patch)},
                                 "x lags behind. Run install to sync.");
    EXPECT_EQ(dependencyTotals({answer({both}), answer({pythonResult(".", syncNeeded)})}),
              "2 repositories · 2 projects · 1 updateable · 2 syncs needed");
}

TEST(DependencyReport_Failures, NameRepositoryProjectAndReason) {
    const DependencySummary summary{
        .ecosystems = {nodeResult("web", error, {}, "no network\nat all"), nodeResult("."),
                       pythonResult(std::nullopt, error)}};
    EXPECT_THAT(dependencyFailures("/home/you/weather", summary),
                ::testing::ElementsAre("/home/you/weather (web): no network\nat all",
                                       "/home/you/weather (.): the check failed"));
}

TEST(DependencyReport_Age, OfAFreshVerdictIsNotShown) {
    EXPECT_EQ(dateIfOlder({.checkedAt = noon}, noon), std::nullopt);
    EXPECT_EQ(dateIfOlder({}, noon), std::nullopt);
}

TEST(DependencyReport_Age, OfAnOlderOneIsItsDate) {
    EXPECT_EQ(dateIfOlder({.checkedAt = noon}, noon + std::chrono::seconds(1)), noon);
}

TEST(DependencyReport_Json, HasTheVerdictUnderItsNames) {
    const auto result = nodeResult("web", updatesAvailable, {updateOf("a", Type::constrained)});
    EXPECT_EQ(
        jsonText(dependencyJson("/home/you/weather", {.ecosystems = {result}, .checkedAt = noon})),
        R"({"path":"/home/you/weather","status":"constraints","inlineSummary":"1 limited",)"
        R"("summary":{"ecosystems":[{"ecosystem":"Node","project":"web","manager":"npm",)"
        R"("status":"updatesAvailable","updates":[{"ecosystem":"Node","package":"a",)"
        R"("currentVersion":"18.2.0","latestVersion":"19.0.0","updateType":"constrained",)"
        R"("origin":"unknown"}],"message":null}],"checkedAt":"2026-03-01T12:00:00Z"}})");
}

TEST(DependencyReport_Json, HasNullForWhatIsAbsent) {
    EXPECT_EQ(jsonText(dependencyJson("/home/you/thesis", {})),
              R"({"path":"/home/you/thesis","status":"notApplicable","inlineSummary":null,)"
              R"("summary":{"ecosystems":[],"checkedAt":null}})");
}

}  // namespace
}  // namespace tarnbeck::cli
