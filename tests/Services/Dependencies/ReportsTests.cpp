#include "DependencyScanner+Reports.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;

constexpr std::array<std::string_view, 2> versionKeys = {"current", "version"};

std::optional<std::string> versionIn(std::string_view json) {
    return firstField(parsedJson(json)->get_object(), versionKeys);
}

TEST(ReportFields, FirstKeyWithATextWins) {
    EXPECT_EQ(versionIn(R"({"version":"2","current":"1"})"), "1");
}

TEST(ReportFields, EmptyTextAndOtherValuesAreLeftToTheNextKey) {
    EXPECT_EQ(versionIn(R"({"current":"","version":"2"})"), "2");
    for (const auto* other : {"null", "true", "[]", "{}"}) {
        EXPECT_EQ(versionIn(std::string(R"({"current":)") + other + R"(,"version":"2"})"), "2")
            << other;
    }
    EXPECT_EQ(versionIn(R"({"current":""})"), std::nullopt);
}

TEST(ReportFields, NumberIsTakenAsItsDecimalText) {
    EXPECT_EQ(versionIn(R"({"current":1.0})"), "1");
    EXPECT_EQ(versionIn(R"({"current":1.10})"), "1.1");
    EXPECT_EQ(versionIn(R"({"current":1e3})"), "1000");
    EXPECT_EQ(versionIn(R"({"current":-7})"), "-7");
    EXPECT_EQ(versionIn(R"({"current":18446744073709551615})"), "18446744073709551615");
    EXPECT_EQ(versionIn(R"({"current":1e21})"), "1000000000000000000000");
    EXPECT_EQ(versionIn(R"({"current":0.00001})"), "0.00001");
}

TEST(ReportReasons, UpToTwoAreTold) {
    EXPECT_EQ(reasonsMessage({}, " held: "), std::nullopt);
    EXPECT_EQ(reasonsMessage({"a"}, " held: "), "1 held: a");
    EXPECT_EQ(reasonsMessage({"a", "b"}, " held: "), "2 held: a | b");
}

TEST(ReportReasons, OfMoreTheFirstTwoAreToldAndTheRestCounted) {
    EXPECT_EQ(reasonsMessage({"a", "b", "c"}, " held: "), "3 held: a | b | +1 more");
    EXPECT_EQ(reasonsMessage({"a", "b", "c", "d"}, " held: "), "4 held: a | b | +2 more");
}

TEST(ReportMessages, AbsentAndEmptyOnesAreLeftOut) {
    EXPECT_EQ(joinDependencyMessages({"a", std::nullopt, "", "b"}), "a • b");
    EXPECT_EQ(joinDependencyMessages({std::nullopt, ""}), std::nullopt);
}

TEST(ReportTexts, AreMadeUniqueAndSortedByBytesWithTheirCase) {
    EXPECT_THAT(sortedUnique({"b", "a", "B", "b"}), ElementsAre("B", "a", "b"));
}

TEST(ReportPaths, AreStandardizedAndSorted) {
    EXPECT_THAT(standardizedSorted({"/r/b/", "/r/a/../a", "/r/./B"}),
                ElementsAre("/r/B", "/r/a", "/r/b"));
}

TEST(ReportFiles, OnlyAJsonObjectIsRead) {
    const TemporaryFolder folder;
    EXPECT_TRUE(jsonObjectInFile(folder.write("good", R"({"a":1})")));
    EXPECT_TRUE(jsonObjectInFile(folder.write("marked", "\xEF\xBB\xBF{}")));
    EXPECT_FALSE(jsonObjectInFile(folder.write("list", "[]")));
    EXPECT_FALSE(jsonObjectInFile(folder.write("empty", "")));
    EXPECT_FALSE(jsonObjectInFile(folder.write("bytes", "{\"a\":\"\xff\"}")));
    EXPECT_FALSE(jsonObjectInFile(folder.makeFolder("folder")));
    EXPECT_FALSE(jsonObjectInFile(folder / "gone"));
}

}  // namespace
}  // namespace tarnbeck::testing
