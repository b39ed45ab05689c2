#include "DependencyScanner+PythonReports.h"
#include "PythonUpdates.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

auto parsed(std::string_view text) {
    return parseOutdatedJSON(text, DependencyEcosystem::python);
}

TEST(PythonReports_Array, IsWhatPipPrints) {
    EXPECT_THAT(parsed(R"([{"name": "Foo", "version": "1.0", "latest_version": "1.1",
                            "latest_filetype": "wheel"}])"),
                Optional(ElementsAre(pythonUpdate("Foo", "1.0", "1.1"))));
}

TEST(PythonReports_Array, KeepsItsOrder) {
    EXPECT_THAT(parsed(R"([{"name": "b", "version": "1", "latest": "2"},
                           {"name": "a", "version": "1", "latest": "2"}])"),
                Optional(ElementsAre(pythonUpdate("b", "1", "2"), pythonUpdate("a", "1", "2"))));
}

TEST(PythonReports_Array, OriginIsUnknownAndEcosystemTheGivenOne) {
    const auto updates = parseOutdatedJSON(R"([{"name": "a", "version": "1", "latest": "2"}])",
                                           DependencyEcosystem::node);
    ASSERT_TRUE(updates);
    EXPECT_EQ(updates->front().origin, DependencyUpdateOrigin::unknown);
    EXPECT_EQ(updates->front().ecosystem, DependencyEcosystem::node);
}

TEST(PythonReports_Array, WithAnythingButObjectsIsNotParsable) {
    EXPECT_FALSE(parsed(R"([{"name": "a", "version": "1", "latest": "2"}, 7])"));
}

TEST(PythonReports_Array, ElementWithoutNameOrVersionsIsLeftOut) {
    EXPECT_THAT(parsed(R"([{"version": "1", "latest": "2"}, {"name": "a", "latest": "2"},
                           {"name": "b", "version": "1"}, {"name": "", "version": "1", "latest": "2"},
                           {"name": null, "version": true, "latest": []}])"),
                Optional(IsEmpty()));
}

TEST(PythonReports_Array, EqualVersionsAreNoUpdate) {
    EXPECT_THAT(parsed(R"([{"name": "a", "version": "1", "latest": "1"}])"), Optional(IsEmpty()));
}

TEST(PythonReports_Array, LowerLatestSurvivesUntilUpdatesAreNormalized) {
    const auto updates = parsed(R"([{"name": "a", "version": "2", "latest": "1"}])");
    EXPECT_THAT(updates, Optional(ElementsAre(pythonUpdate("a", "2", "1"))));
    EXPECT_THAT(normalizedPythonUpdates(*updates), IsEmpty());
}

TEST(PythonReports_Object, IsReadByAscendingName) {
    EXPECT_THAT(
        parsed(R"({"b": {"current": "1", "latest": "2"},
                           "a": {"current": "1.0", "latest": "1.0.1"}})"),
        Optional(ElementsAre(pythonUpdate("a", "1.0", "1.0.1"), pythonUpdate("b", "1", "2"))));
}

TEST(PythonReports_Object, EntryWithALowerLatestIsLeftOut) {
    EXPECT_THAT(parsed(R"({"a": {"current": "2", "latest": "1"}})"), Optional(IsEmpty()));
}

TEST(PythonReports_Object, EntryThatIsNoObjectOrLacksAVersionIsLeftOut) {
    EXPECT_THAT(parsed(R"({"a": 1, "b": {"current": "1"}, "c": {"latest": "1"}})"),
                Optional(IsEmpty()));
}

TEST(PythonReports_Object, VersionsThatCanNotBeComparedStay) {
    EXPECT_THAT(parsed(R"({"a": {"current": "head", "latest": "1"}})"),
                Optional(ElementsAre(pythonUpdate("a", "head", "1"))));
}

TEST(PythonReports_Fields, NameHasThreeKeysInTheirOrder) {
    EXPECT_THAT(parsed(R"([{"depName": "c", "package": "b", "name": "a", "from": 1, "to": 2},
                           {"depName": "c", "package": "b", "from": 1, "to": 2},
                           {"depName": "c", "from": 1, "to": 2}])"),
                Optional(ElementsAre(pythonUpdate("a", "1", "2"), pythonUpdate("b", "1", "2"),
                                     pythonUpdate("c", "1", "2"))));
}

// Takes the keys away one by one, and expects the value of the next one each time.
void expectOrder(const std::vector<std::string>& keys, bool isCurrent) {
    for (std::size_t first = 0; first < keys.size(); ++first) {
        std::string entry = isCurrent ? R"("latest": "99")" : R"("current": "0")";
        for (std::size_t index = keys.size(); index-- > first;) {
            entry += ", \"" + keys[index] + "\": \"" + std::to_string(index + 1) + "\"";
        }
        const auto updates = parsed("{\"a\": {" + entry + "}}");
        ASSERT_THAT(updates, Optional(::testing::SizeIs(1))) << entry;
        EXPECT_EQ(isCurrent ? updates->front().currentVersion : updates->front().latestVersion,
                  std::to_string(first + 1));
    }
}

TEST(PythonReports_Fields, CurrentHasFiveKeysInTheirOrder) {
    expectOrder({"current", "version", "currentVersion", "installed", "from"}, true);
}

TEST(PythonReports_Fields, LatestHasFiveKeysInTheirOrder) {
    expectOrder({"latest", "latestVersion", "latest_version", "wanted", "to"}, false);
}

TEST(PythonReports_Fields, NumberIsItsDecimalText) {
    EXPECT_THAT(parsed(R"([{"name": "a", "version": 1.10, "latest": 2}])"),
                Optional(ElementsAre(pythonUpdate("a", "1.1", "2"))));
}

TEST(PythonReports_Fields, EmptyTextGivesWayToTheNextKey) {
    EXPECT_THAT(parsed(R"([{"name": "a", "current": "", "version": "1", "latest": "2"}])"),
                Optional(ElementsAre(pythonUpdate("a", "1", "2"))));
}

TEST(PythonReports_Text, WhatIsNoArrayAndNoObjectIsNotParsable) {
    for (const char* text : {"", "7", "\"text\"", "null", "[", "{]", "Package Version\n----\n",
                             "WARNING: something\n[]", "[] []"}) {
        EXPECT_FALSE(parsed(text)) << text;
    }
}

TEST(PythonReports_Text, EmptyFormsAreNoUpdates) {
    EXPECT_THAT(parsed("[]"), Optional(IsEmpty()));
    EXPECT_THAT(parsed("{}"), Optional(IsEmpty()));
}

TEST(PythonReports_Normalization, KeepsOrderDuplicatesAndWhatCanNotBeCompared) {
    const std::vector<DependencyUpdate> updates = {
        pythonUpdate("b", "1", "2"), pythonUpdate("a", "head", "2"), pythonUpdate("b", "1", "2"),
        pythonUpdate("c", "1.0", "1.0.0")};
    EXPECT_EQ(normalizedPythonUpdates(updates), updates);
}

TEST(PythonReports_Normalization, DropsStandstillAndSteppingBack) {
    EXPECT_THAT(normalizedPythonUpdates({pythonUpdate("a", "2", "2"), pythonUpdate("b", "2", "1")}),
                IsEmpty());
}

TEST(PythonReports_Normalization, DropsABlockedStepBackToo) {
    DependencyUpdate update = pythonUpdate("a", "2", "1");
    update.updateType = DependencyUpdateType::blocked;
    EXPECT_THAT(normalizedPythonUpdates({update}), IsEmpty());
}

}  // namespace
}  // namespace tarnbeck::testing
