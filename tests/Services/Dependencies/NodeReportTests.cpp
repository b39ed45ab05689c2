#include "DependencyScanner+NodeReport.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Optional;

using NodeEntry = NodeOutdatedPackage;
using NodeEntries = std::optional<std::vector<NodeEntry>>;

NodeEntry onlyNodeEntry(std::string_view report) {
    const NodeEntries packages = parseNodeOutdatedPackages(report);
    EXPECT_TRUE(packages && packages->size() == 1) << report;
    return packages && packages->size() == 1 ? packages->front() : NodeEntry{};
}

TEST(ExtractLeadingJSON, TextThatIsJsonStaysWhole) {
    EXPECT_EQ(extractLeadingJSON("{\n}\n"), "{\n}\n");
}

TEST(ExtractLeadingJSON, WarningLinesBeforeItAreSkipped) {
    EXPECT_EQ(extractLeadingJSON("npm warn old lockfile\n\n[\n1]"), "[\n1]");
}

TEST(ExtractLeadingJSON, IndentBeforeTheBraceIsRecognisedAndStays) {
    EXPECT_EQ(extractLeadingJSON("warning\n \t {\n}"), " \t {\n}");
}

TEST(ExtractLeadingJSON, TextBehindItStays) {
    EXPECT_EQ(extractLeadingJSON("{}\nDone in 3 s"), "{}\nDone in 3 s");
}

TEST(ExtractLeadingJSON, BraceWithinAWarningIsNoBeginning) {
    EXPECT_EQ(extractLeadingJSON("using {registry}\n{}"), "{}");
}

TEST(ExtractLeadingJSON, WarningInBracketsIsTakenForIt) {
    EXPECT_EQ(extractLeadingJSON("[WARN] old\n{}"), "[WARN] old\n{}");
}

TEST(ExtractLeadingJSON, LinesEndAtLineFeedsOnly) {
    EXPECT_EQ(extractLeadingJSON("warning\r{}"), std::nullopt);
    EXPECT_EQ(extractLeadingJSON("warning\u2028{}"), std::nullopt);
    EXPECT_EQ(extractLeadingJSON("warning\r\n{\r\n}"), "{\r\n}");
}

TEST(ExtractLeadingJSON, OtherBlanksBeforeTheBraceHideIt) {
    EXPECT_EQ(extractLeadingJSON("\u00A0{}"), std::nullopt);
}

TEST(ExtractLeadingJSON, NoLineOfThatKindIsAbsent) {
    EXPECT_EQ(extractLeadingJSON(""), std::nullopt);
    EXPECT_EQ(extractLeadingJSON("\n\n"), std::nullopt);
    EXPECT_EQ(extractLeadingJSON("null"), std::nullopt);
}

TEST(ParseNodeOutdatedPackages, ObjectHasAPackageForEachKey) {
    EXPECT_EQ(
        onlyNodeEntry(R"({"left": {"current": "1.0.0", "wanted": "1.2.0", "latest": "2.0.0"}})"),
        (NodeEntry{.package = "left",
                   .currentVersion = "1.0.0",
                   .wantedVersion = "1.2.0",
                   .latestVersion = "2.0.0"}));
}

TEST(ParseNodeOutdatedPackages, KeysOfAnObjectAreReadInAscendingOrderOfTheirBytes) {
    const NodeEntries packages = parseNodeOutdatedPackages(
        R"({"b": {"current": "1"}, "é": {"current": "1"}, "a": {"current": "1"},
            "@s/p": {"current": "1"}, "B": {"current": "1"}})");
    EXPECT_THAT(packages, Optional(ElementsAre(
                              Field(&NodeEntry::package, "@s/p"), Field(&NodeEntry::package, "B"),
                              Field(&NodeEntry::package, "a"), Field(&NodeEntry::package, "b"),
                              Field(&NodeEntry::package, "é"))));
}

TEST(ParseNodeOutdatedPackages, EntryOfAnObjectThatIsNoObjectIsPassedOver) {
    EXPECT_EQ(onlyNodeEntry(R"({"list": [{"current": "1"}], "text": "1", "nothing": null,
                              "good": {"current": "1"}})")
                  .package,
              "good");
}

TEST(ParseNodeOutdatedPackages, EntryOfAnObjectWithoutAnInstalledVersionIsPassedOver) {
    EXPECT_EQ(parseNodeOutdatedPackages(R"({"a": {"wanted": "1.0.0", "latest": "1.0.0"},
                                            "b": {"current": "", "latest": "1.0.0"}})"),
              NodeEntries(std::vector<NodeEntry>{}));
}

TEST(ParseNodeOutdatedPackages, ListHasAPackageForEachObjectInItsOrder) {
    EXPECT_EQ(parseNodeOutdatedPackages(R"([{"name": "b", "current": "1", "latest": "2"},
                                            {"name": "a", "current": "3", "wanted": "4"}])"),
              NodeEntries(std::vector<NodeEntry>{
                  {.package = "b", .currentVersion = "1", .latestVersion = "2"},
                  {.package = "a", .currentVersion = "3", .wantedVersion = "4"}}));
}

TEST(ParseNodeOutdatedPackages, ListElementWithoutNameOrInstalledVersionIsPassedOver) {
    EXPECT_EQ(parseNodeOutdatedPackages(R"([{"current": "1"}, {"name": "a"}, {},
                                            {"name": "b", "current": "1"}])"),
              NodeEntries(std::vector<NodeEntry>{{.package = "b", .currentVersion = "1"}}));
}

TEST(ParseNodeOutdatedPackages, ListThatHoldsAnythingButObjectsIsNotParsable) {
    EXPECT_EQ(parseNodeOutdatedPackages(R"([{"name": "a", "current": "1"}, "b"])"), std::nullopt);
    EXPECT_EQ(parseNodeOutdatedPackages("[[]]"), std::nullopt);
    EXPECT_EQ(parseNodeOutdatedPackages("[null]"), std::nullopt);
}

TEST(ParseNodeOutdatedPackages, EmptyObjectAndEmptyListAreNoPackagesAndNoFailure) {
    EXPECT_EQ(parseNodeOutdatedPackages("{}"), NodeEntries(std::vector<NodeEntry>{}));
    EXPECT_EQ(parseNodeOutdatedPackages("[]"), NodeEntries(std::vector<NodeEntry>{}));
}

TEST(ParseNodeOutdatedPackages, AnythingElseIsNotParsable) {
    for (const auto* text : {"", "null", "3", "\"{}\"", "{", "{} {}", "{}\nDone", "{'a': 1}"}) {
        EXPECT_EQ(parseNodeOutdatedPackages(text), std::nullopt) << text;
    }
}

TEST(ParseNodeOutdatedPackages, WarningsBeforeTheReportAreSkipped) {
    EXPECT_EQ(onlyNodeEntry("warning: old\n  {\"a\": {\"current\": \"1\"}}").package, "a");
}

TEST(ParseNodeOutdatedPackages, LaterOfTwoEqualKeysWins) {
    EXPECT_EQ(onlyNodeEntry(R"({"a": {"current": "1"}, "a": {"current": "2"}})").currentVersion,
              "2");
}

TEST(ParseNodeOutdatedPackages, NestingThatIsTooDeepIsNotParsable) {
    const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
    EXPECT_EQ(parseNodeOutdatedPackages(deep), std::nullopt);
}

TEST(ParseNodeOutdatedPackages, ErrorObjectOfNpmCountsAsAReportWithoutPackages) {
    EXPECT_EQ(parseNodeOutdatedPackages(
                  R"({"error": {"code": "ECONNREFUSED", "summary": "no way", "detail": ""}})"),
              NodeEntries(std::vector<NodeEntry>{}));
}

TEST(NodeReportFields, NameIsTheFirstOfItsKeysThatIsThere) {
    EXPECT_EQ(
        onlyNodeEntry(R"([{"depName": "c", "package": "b", "name": "a", "current": "1"}])").package,
        "a");
    EXPECT_EQ(onlyNodeEntry(R"([{"depName": "c", "package": "b", "current": "1"}])").package, "b");
    EXPECT_EQ(onlyNodeEntry(R"([{"depName": "c", "current": "1"}])").package, "c");
}

// A report whose versions stand under all the keys, and then without one key after the other.
std::vector<std::string> valuesByLosingKeys(
    const std::vector<std::string>& keys,
    const std::function<std::string(const NodeEntry&)>& value) {
    std::vector<std::string> found;
    for (std::size_t first = 0; first < keys.size(); ++first) {
        std::string entry = R"({"name": "a")";
        for (std::size_t index = keys.size(); index-- > first;) {
            entry += R"(, ")" + keys[index] + R"(": "under )" + keys[index] + R"(")";
        }
        if (keys.front() != "current") entry += R"(, "current": "1")";
        found.push_back(value(onlyNodeEntry("[" + entry + "}]")));
    }
    return found;
}

TEST(NodeReportFields, InstalledVersionIsTheFirstOfItsKeysThatIsThere) {
    EXPECT_THAT(valuesByLosingKeys({"current", "version", "currentVersion", "installed", "from"},
                                   [](const NodeEntry& found) { return found.currentVersion; }),
                ElementsAre("under current", "under version", "under currentVersion",
                            "under installed", "under from"));
}

TEST(NodeReportFields, WantedVersionIsTheFirstOfItsKeysThatIsThere) {
    EXPECT_THAT(valuesByLosingKeys(
                    {"wanted", "wantedVersion"},
                    [](const NodeEntry& found) { return found.wantedVersion.value_or("absent"); }),
                ElementsAre("under wanted", "under wantedVersion"));
}

TEST(NodeReportFields, LatestVersionIsTheFirstOfItsKeysThatIsThere) {
    EXPECT_THAT(
        valuesByLosingKeys(
            {"latest", "latestVersion", "latest_version", "to"},
            [](const NodeEntry& found) { return found.latestVersion.value_or("absent"); }),
        ElementsAre("under latest", "under latestVersion", "under latest_version", "under to"));
}

TEST(NodeReportFields, NumberIsTakenAsItsDecimalText) {
    EXPECT_EQ(onlyNodeEntry(R"({"a": {"current": 1.10, "wanted": 2, "latest": 1e3}})"),
              (NodeEntry{.package = "a",
                         .currentVersion = "1.1",
                         .wantedVersion = "2",
                         .latestVersion = "1000"}));
}

TEST(NodeReportFields, EmptyTextsAndOtherValuesLeaveTheWordToTheNextKey) {
    EXPECT_EQ(onlyNodeEntry(R"({"a": {"current": "", "version": true, "currentVersion": null,
                                    "installed": ["1"], "from": "2", "wanted": {}, "latest": ""}})"),
              (NodeEntry{.package = "a", .currentVersion = "2"}));
}

}  // namespace
}  // namespace tarnbeck::testing
