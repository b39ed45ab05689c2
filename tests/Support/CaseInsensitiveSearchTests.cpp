#include "CaseInsensitiveSearch.h"

namespace tarnbeck {
namespace {

bool isIn(std::string_view query, std::string_view text) {
    return CaseInsensitiveSearch(query).isIn(text);
}

TEST(CaseInsensitiveSearch, UpperAndLowerCaseAreAlike) {
    EXPECT_TRUE(isIn("readme", "docs/README.md"));
    EXPECT_TRUE(isIn("README", "docs/readme.md"));
    EXPECT_FALSE(isIn("readme", "docs/license.md"));
}

TEST(CaseInsensitiveSearch, FindsAtTheBeginningInTheMiddleAndAtTheEnd) {
    for (const char* query : {"al", "ph", "HA", "alpha"})
        EXPECT_TRUE(isIn(query, "Alpha")) << query;
    EXPECT_FALSE(isIn("alphas", "Alpha"));
}

TEST(CaseInsensitiveSearch, SignsBesideTheLettersAreNotTakenForEachOther) {
    EXPECT_FALSE(isIn("@", "`"));
    EXPECT_FALSE(isIn("[", "{"));
    EXPECT_FALSE(isIn("^", "~"));
    EXPECT_TRUE(isIn("a_[1]", "A_[1]"));
}

TEST(CaseInsensitiveSearch, EmptyQueryFindsNothing) {
    EXPECT_FALSE(isIn("", "text"));
    EXPECT_FALSE(isIn("", ""));
    EXPECT_FALSE(isIn("a", ""));
}

TEST(CaseInsensitiveSearch, BlanksAreSearchedAsTheyStand) {
    EXPECT_TRUE(isIn("  ", "two  blanks"));
    EXPECT_FALSE(isIn("  ", "one blank"));
}

TEST(CaseInsensitiveSearch, LettersOfAllScriptsHaveNoCase) {
    EXPECT_TRUE(isIn("ÜBER", "darüber"));
    EXPECT_TRUE(isIn("привет", "ПРИВЕТ, мир"));
    EXPECT_TRUE(isIn("ΣΊΣΥΦΟΣ", "σίσυφος"));
}

TEST(CaseInsensitiveSearch, SharpSIsTwoLetters) {
    EXPECT_TRUE(isIn("strasse", "Große Straße"));
    EXPECT_TRUE(isIn("straße", "STRASSE"));
}

TEST(CaseInsensitiveSearch, AccentsCount) {
    EXPECT_FALSE(isIn("resume", "résumé"));
    EXPECT_FALSE(isIn("é", "resume"));
}

TEST(CaseInsensitiveSearch, AccentIsTheSameComposedOrNot) {
    EXPECT_TRUE(isIn("R\u00C9S", "re\u0301sume\u0301"));
    EXPECT_TRUE(isIn("re\u0301s", "R\u00C9SUM\u00C9"));
}

TEST(CaseInsensitiveSearch, LetterIsNotFoundInOneThatHasAnAccentOfItsOwn) {
    EXPECT_FALSE(isIn("x", "x\u0302"));
    EXPECT_TRUE(isIn("x", "x\u0302x"));
    EXPECT_TRUE(isIn("x\u0302", "X\u0302"));
}

TEST(CaseInsensitiveSearch, LettersOutsideOfAsciiMayFoldIntoIt) {
    EXPECT_TRUE(isIn("kelvin", "\u212Aelvin"));
    EXPECT_TRUE(isIn("\u212A", "kelvin"));
}

TEST(CaseInsensitiveSearch, LongTextsAreSearchedToTheirEnd) {
    for (const std::size_t length : {255, 256, 257, 5000}) {
        const std::string text = std::string(length - 6, '.') + "Needle";
        EXPECT_TRUE(isIn("needle", text)) << length;
        EXPECT_FALSE(isIn("needles", text)) << length;
    }
}

TEST(CaseInsensitiveSearch, BytesThatAreNotUtf8DoNoHarm) {
    EXPECT_TRUE(isIn("name", "bad\xFFName"));
    EXPECT_TRUE(isIn("name", "Name\xC3"));
    EXPECT_FALSE(isIn("\xFF", "name"));
}

TEST(CaseInsensitiveSearch, PreparedTextIsSearchedTheSameWay) {
    std::string text;
    for (const char* piece : {"README", "\xFF", "Stra\u00DFe"}) {
        CaseInsensitiveSearch::appendFolded(piece, text);
    }
    EXPECT_TRUE(CaseInsensitiveSearch("ReadMe").isInFolded(text));
    EXPECT_TRUE(CaseInsensitiveSearch("STRASSE").isInFolded(text));
    EXPECT_FALSE(CaseInsensitiveSearch("mestr").isInFolded(text));
    EXPECT_FALSE(CaseInsensitiveSearch("").isInFolded(text));
}

TEST(CaseInsensitiveSearch, WholeTextIsComparedFromEndToEnd) {
    const CaseInsensitiveSearch search("Dependency Dashboard");
    EXPECT_TRUE(search.isAllOf("dependency DASHBOARD"));
    EXPECT_FALSE(search.isAllOf("dependency dashboard of may"));
    EXPECT_FALSE(search.isAllOf("dependency"));
    EXPECT_TRUE(CaseInsensitiveSearch("straße").isAllOf("STRASSE"));
    EXPECT_TRUE(CaseInsensitiveSearch("straße").isAllOf("Straße"));
    EXPECT_TRUE(CaseInsensitiveSearch("").isAllOf(""));
}

}  // namespace
}  // namespace tarnbeck
