#include "Text.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;

TEST(Text_Decoding, OneBadByteMakesTheWholeTextEmpty) {
    EXPECT_EQ(decodedUtf8("good \xC3\x28 bad"), "");
}

TEST(Text_Decoding, LeadingByteOrderMarkIsDropped) {
    EXPECT_EQ(decodedUtf8("\xEF\xBB\xBFtext"), "text");
}

TEST(Text_Decoding, OnlyTheFirstByteOrderMarkIsDropped) {
    EXPECT_EQ(decodedUtf8("\xEF\xBB\xBF\xEF\xBB\xBFtext"), "\xEF\xBB\xBFtext");
    EXPECT_EQ(decodedUtf8("a\xEF\xBB\xBF"), "a\xEF\xBB\xBF");
}

TEST(Text_Decoding, NullBytesStay) {
    EXPECT_EQ(decodedUtf8(std::string_view("a\0b", 3)), std::string_view("a\0b", 3));
}

TEST(Text_Validation, AcceptsTheFirstAndTheLastCharacterOfEachLength) {
    for (const char* text : {"", "\x01", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80",
                             "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(isValidUtf8(text)) << text;
    }
    EXPECT_TRUE(isValidUtf8(std::string_view("\0", 1)));
}

TEST(Text_Validation, RefusesOverlongForms) {
    for (const char* text : {"\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE0\x9F\xBF",
                             "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF"}) {
        EXPECT_FALSE(isValidUtf8(text));
    }
}

TEST(Text_Validation, RefusesSurrogates) {
    for (const char* text : {"\xED\xA0\x80", "\xED\xAF\xBF", "\xED\xB0\x80", "\xED\xBF\xBF",
                             "\xED\xA0\x80\xED\xB0\x80"}) {
        EXPECT_FALSE(isValidUtf8(text));
    }
    EXPECT_TRUE(isValidUtf8("\xED\x9F\xBF\xEE\x80\x80"));
}

TEST(Text_Validation, RefusesWhatLiesBeyondUnicode) {
    for (const char* text :
         {"\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF", "\xFE"}) {
        EXPECT_FALSE(isValidUtf8(text));
    }
}

TEST(Text_Validation, RefusesTruncatedCharacters) {
    for (const char* text : {"\xC3", "\xE2\x82", "\xE2", "\xF0\x9F\x98", "\xF0\x9F", "\xF0"}) {
        EXPECT_FALSE(isValidUtf8(text));
        EXPECT_FALSE(isValidUtf8(std::string(text) + "a"));
    }
}

TEST(Text_Validation, RefusesStrayContinuations) {
    EXPECT_FALSE(isValidUtf8("\x80"));
    EXPECT_FALSE(isValidUtf8("a\xBF"));
    EXPECT_FALSE(isValidUtf8("\xC3\xA9\xA9"));
}

TEST(Text_Validation, FindsABadByteAtEveryPlace) {
    for (std::size_t place = 0; place < 40; ++place) {
        std::string text(40, 'a');
        EXPECT_TRUE(isValidUtf8(text));
        text[place] = '\xFF';
        EXPECT_FALSE(isValidUtf8(text)) << place;
    }
}

TEST(Text_Validation, CharactersMayStandAcrossEveryBoundary) {
    for (std::size_t offset = 0; offset < 20; ++offset) {
        EXPECT_TRUE(isValidUtf8(std::string(offset, 'a') + "😀é€" + std::string(offset, 'b')));
    }
}

TEST(Text_Replacing, GoodTextStaysAsItIs) {
    EXPECT_EQ(replacingInvalidUtf8("a é € 😀"), "a é € 😀");
    EXPECT_EQ(replacingInvalidUtf8(""), "");
}

TEST(Text_Replacing, BadSequencesBecomeReplacementCharacters) {
    EXPECT_EQ(replacingInvalidUtf8("a\xFF"
                                   "b\xC3(c"),
              "a\uFFFDb\uFFFD(c");
    EXPECT_EQ(replacingInvalidUtf8("caf\xE9"), "caf\uFFFD");
}

TEST(Text_Replacing, TruncatedCharacterAtTheEndIsReplaced) {
    EXPECT_EQ(replacingInvalidUtf8("a\xE2\x82"), "a\uFFFD");
}

TEST(Text_Replacing, ResultIsAlwaysValid) {
    std::string text;
    for (int byte = 255; byte >= 0; --byte) text += static_cast<char>(byte);
    EXPECT_FALSE(isValidUtf8(text));
    EXPECT_TRUE(isValidUtf8(replacingInvalidUtf8(text)));
}

const std::vector<std::string> newlines = {"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"};
const std::vector<std::string> blanks = {"\t",     " ",      "\u00A0", "\u1680", "\u2000",
                                         "\u2001", "\u2002", "\u2003", "\u2004", "\u2005",
                                         "\u2006", "\u2007", "\u2008", "\u2009", "\u200A",
                                         "\u200B", "\u202F", "\u205F", "\u3000"};

TEST(Text_TrimmingNewlines, EachNewlineGoesAtBothEnds) {
    for (const std::string& newline : newlines) {
        EXPECT_EQ(trimmingNewlines(newline + newline + "a" + newline), "a");
    }
}

TEST(Text_TrimmingNewlines, BlanksStay) {
    for (const std::string& blank : blanks) {
        EXPECT_EQ(trimmingNewlines(blank + "a" + blank), blank + "a" + blank);
    }
}

TEST(Text_TrimmingNewlines, NewlinesInsideStay) {
    EXPECT_EQ(trimmingNewlines("\n M a\n M b\n"), " M a\n M b");
}

TEST(Text_TrimmingNewlines, NothingIsLeftOfNewlinesAlone) {
    EXPECT_EQ(trimmingNewlines("\r\n\u2028\n"), "");
    EXPECT_EQ(trimmingNewlines(""), "");
}

TEST(Text_TrimmingWhitespace, EachBlankAndNewlineGoesAtBothEnds) {
    for (const auto& set : {newlines, blanks}) {
        for (const std::string& trimmed : set) {
            EXPECT_EQ(trimmingWhitespaceAndNewlines(trimmed + "a" + trimmed + trimmed), "a");
        }
    }
}

TEST(Text_TrimmingWhitespace, NeighboursOfTheSetStay) {
    for (const std::string kept : {"\b", "\x0E", "\x1F", "!", "\u0084", "\u0086", "\u180E",
                                   "\u200C", "\u2027", "\u202A", "\u2030", "\u2060", "\uFEFF"}) {
        EXPECT_EQ(trimmingWhitespaceAndNewlines(kept + "a" + kept), kept + "a" + kept);
    }
}

TEST(Text_TrimmingWhitespace, BlanksInsideStay) {
    EXPECT_EQ(trimmingWhitespaceAndNewlines(" a b "), "a b");
}

TEST(Text_TrimmingWhitespace, StopsAtBytesThatAreNoText) {
    EXPECT_EQ(trimmingWhitespaceAndNewlines(" \xFF a \x80 "), "\xFF a \x80");
}

TEST(Text_TrimmingACharacter, GoesAtBothEndsOnly) {
    EXPECT_EQ(trimming("//a/b//", '/'), "a/b");
    EXPECT_EQ(trimming("////", '/'), "");
    EXPECT_EQ(trimming(" a", '/'), " a");
}

TEST(Text_Lowercasing, KnowsAllScripts) {
    EXPECT_EQ(lowercased("ABC ÄÖÜ ΔΩ ЖЯ"), "abc äöü δω жя");
}

TEST(Text_Lowercasing, FollowsTheRootLocale) {
    EXPECT_EQ(lowercased("TITLE I"), "title i");
}

TEST(Text_Lowercasing, WhatHasNoCaseStays) {
    EXPECT_EQ(lowercased("a-1_/資"), "a-1_/資");
}

TEST(Text_Joining, PutsTheSeparatorBetween) {
    EXPECT_EQ(joined({"a", "", "b"}, " · "), "a ·  · b");
    EXPECT_EQ(joined({"a"}, ", "), "a");
    EXPECT_EQ(joined({}, ", "), "");
}

std::vector<std::string> piecesOf(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    forEachPiece(text, separator, [&](std::string_view piece) { pieces.emplace_back(piece); });
    return pieces;
}

TEST(Text_Splitting, EmptyPiecesAreLeftOut) {
    EXPECT_THAT(piecesOf("//a//b/", '/'), ElementsAre("a", "b"));
    EXPECT_THAT(piecesOf("", '/'), ElementsAre());
    EXPECT_THAT(piecesOf("a", '/'), ElementsAre("a"));
}

TEST(Text_Splitting, LinesEndAtLineFeedsOnly) {
    std::vector<std::string> lines;
    forEachLine("a\r\n\nb\u2028c\vd", [&](std::string_view line) { lines.emplace_back(line); });
    EXPECT_THAT(lines, ElementsAre("a\r", "b\u2028c\vd"));
}

TEST(Text_DisplayWidth, LatinTakesOneColumnACharacter) {
    EXPECT_EQ(displayWidth("abc é"), 5U);
}

TEST(Text_DisplayWidth, WideCharactersTakeTwoColumns) {
    EXPECT_EQ(displayWidth("資料"), 4U);
    EXPECT_EQ(displayWidth("Ａ"), 2U);
    EXPECT_EQ(displayWidth("😀"), 2U);
}

TEST(Text_DisplayWidth, CombiningMarksTakeNone) {
    EXPECT_EQ(displayWidth("e\u0301"), 1U);
    EXPECT_EQ(displayWidth("a\u200Db"), 2U);
}

TEST(Text_DisplayWidth, BadBytesTakeOneColumnEach) {
    EXPECT_EQ(displayWidth("a\xFF\xFE"), 3U);
}

TEST(Text_Eliding, WhatFitsStaysWhole) {
    EXPECT_EQ(elidedAtEnd("abcde", 5), "abcde");
    EXPECT_EQ(elidedAtEnd("資料", 4), "資料");
    EXPECT_EQ(elidedAtEnd("", 0), "");
}

TEST(Text_Eliding, WhatDoesNotFitEndsInAnEllipsis) {
    EXPECT_EQ(elidedAtEnd("abcdef", 5), "abcd…");
    EXPECT_EQ(elidedAtEnd("abcdef", 1), "…");
}

TEST(Text_Eliding, NothingFitsIntoNoColumns) {
    EXPECT_EQ(elidedAtEnd("abc", 0), "");
}

TEST(Text_Eliding, WideCharacterThatWouldOnlyHalfFitIsLeftOut) {
    EXPECT_EQ(elidedAtEnd("資料庫", 4), "資…");
    EXPECT_EQ(elidedAtEnd("資料庫", 5), "資料…");
}

TEST(Text_Eliding, CutsBetweenUserPerceivedCharacters) {
    EXPECT_EQ(elidedAtEnd("e\u0301e\u0301e\u0301", 2), "e\u0301…");
    EXPECT_EQ(elidedAtEnd("👩‍💻abcdef", 4), "…");
}

TEST(Text_Eliding, NeverTakesMoreThanTheColumns) {
    for (std::size_t columns = 1; columns < 12; ++columns) {
        EXPECT_LE(displayWidth(elidedAtEnd("a資e\u0301😀\xFFz and more", columns)), columns);
    }
}

TEST(Text_Printable, ControlCharactersAndBadBytesAreReplaced) {
    EXPECT_EQ(printable("a\x1B[31m\n\x7F\xFF\u009B"), "a\uFFFD[31m\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(Text_Printable, GoodTextStays) {
    EXPECT_EQ(printable("é 資 😀"), "é 資 😀");
}

TEST(Text_Trimming, BlanksAndTabsLeaveOtherBlanksAlone) {
    EXPECT_EQ(trimmingBlanksAndTabs(" \t a b\t "), "a b");
    EXPECT_EQ(trimmingBlanksAndTabs("\u00A0a\n"), "\u00A0a\n");
    EXPECT_EQ(trimmingBlanksAndTabs(" \t"), "");
}

TEST(Text_Trimming, AnyOfSeveralCharactersGoAtBothEnds) {
    EXPECT_EQ(trimmingAnyOf("'\" a'b \"'", " '\""), "a'b");
    EXPECT_EQ(trimmingAnyOf("", "x"), "");
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) lines.push_back(takingLineAtNewline(text));
    return lines;
}

TEST(Text_Lines, EndAtEveryNewlineCharacter) {
    EXPECT_THAT(linesOf("a\nb\u2028c\u0085d\x0C"
                        "e"),
                ::testing::ElementsAre("a", "b", "c", "d", "e"));
}

TEST(Text_Lines, EmptyOnesAreKept) {
    EXPECT_THAT(linesOf("\na\r\nb\n"), ::testing::ElementsAre("", "a", "", "b"));
}

TEST(Text_FirstCharacters, AreCountedAsAPersonSeesThem) {
    EXPECT_EQ(firstCharacters("abcdef", 3), "abc");
    EXPECT_EQ(firstCharacters("e\u0301e\u0301e\u0301", 2), "e\u0301e\u0301");
    EXPECT_EQ(firstCharacters("👩‍💻👩‍💻x", 1), "👩‍💻");
}

TEST(Text_FirstCharacters, OfAShorterTextAreAllOfIt) {
    EXPECT_EQ(firstCharacters("abc", 200), "abc");
    EXPECT_EQ(firstCharacters("", 200), "");
    EXPECT_EQ(firstCharacters("abc", 0), "");
}

TEST(Text_DecimalDigits, AreTakenRunByRun) {
    std::string_view text = "v1.23-x";
    EXPECT_EQ(takingDecimalDigits(text), "1");
    EXPECT_EQ(text, ".23-x");
    EXPECT_EQ(takingDecimalDigits(text), "23");
    EXPECT_EQ(takingDecimalDigits(text), "");
    EXPECT_EQ(text, "");
}

}  // namespace
}  // namespace tarnbeck
