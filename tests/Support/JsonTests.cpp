#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "Json.h"

namespace tarnbeck {
namespace {

using ::testing::StartsWith;

// The text as it is written again, or the reason why it can't be read.
std::string rewritten(std::string_view text) {
    const auto json = parsedJson(text);
    return json ? jsonText(*json) : json.error();
}

std::string nested(std::size_t levels) {
    return std::string(levels, '[') + std::string(levels, ']');
}

TEST(Json_Parsing, EveryKindOfValueIsRead) {
    EXPECT_EQ(rewritten(R"( {"a" : [null, true, false, 1, -2.5, "x", {}, []]} )"),
              R"({"a":[null,true,false,1,-2.5,"x",{},[]]})");
}

TEST(Json_Parsing, AnyValueMayStandAtTheTop) {
    EXPECT_EQ(rewritten("3"), "3");
    EXPECT_EQ(rewritten("\"x\""), "\"x\"");
    EXPECT_EQ(rewritten("null"), "null");
}

TEST(Json_Parsing, LastOfEqualKeysWins) {
    EXPECT_EQ(rewritten(R"({"a":1,"a":2})"), R"({"a":2})");
}

TEST(Json_Parsing, LeadingByteOrderMarkIsPassedOver) {
    EXPECT_EQ(rewritten("\xEF\xBB\xBF{}"), "{}");
}

TEST(Json_Parsing, SecondByteOrderMarkIsNot) {
    EXPECT_FALSE(parsedJson("\xEF\xBB\xBF\xEF\xBB\xBF{}"));
}

TEST(Json_Parsing, NestingEndsAt64Levels) {
    EXPECT_TRUE(parsedJson(nested(64)));
    EXPECT_FALSE(parsedJson(nested(65)));
    EXPECT_FALSE(parsedJson(nested(1000000)));
    EXPECT_FALSE(parsedJson(std::string(1000000, '[')));
}

TEST(Json_Parsing, NestingOfObjectsEndsThereToo) {
    std::string text = "1";
    for (int level = 0; level < 64; ++level) text = "{\"a\":" + text + "}";
    EXPECT_TRUE(parsedJson(text));
    EXPECT_FALSE(parsedJson("{\"a\":" + text + "}"));
}

TEST(Json_Parsing, WhatIsNotStrictJsonFails) {
    for (const char* text :
         {"",        " ",         "{",        "[1,]", "{\"a\":1,}", "{a:1}",    "{'a':1}",
          "// x\n1", "/**/1",     "01",       "+1",   ".5",         "1.",       "1e",
          "0x1",     "NaN",       "Infinity", "nul",  "True",       "\"a",      "\"\t\"",
          "\"\\x\"", "\"\\u12\"", "1 2",      "{} x", "[1 2]",      "{\"a\" 1}"}) {
        EXPECT_FALSE(parsedJson(text)) << text;
    }
}

TEST(Json_Parsing, BytesThatAreNotUtf8Fail) {
    for (const char* text : {"\"\xFF\"", "\"\xC0\x80\"", "\"\xED\xA0\x80\"", "\"\xE2\x82\""}) {
        EXPECT_FALSE(parsedJson(text));
    }
}

TEST(Json_Parsing, HalfASurrogatePairFails) {
    EXPECT_FALSE(parsedJson(R"("\ud83d")"));
    EXPECT_EQ(rewritten(R"("\ud83d\ude00")"), "\"😀\"");
}

TEST(Json_Parsing, FailureNamesTheLine) {
    EXPECT_THAT(rewritten("{\n\"a\": 1,\n}"), StartsWith("line 3: "));
    EXPECT_THAT(rewritten("{} x"), StartsWith("line 1: "));
    EXPECT_THAT(rewritten("{\n\n"), StartsWith("line 3: "));
}

TEST(Json_Writing, StringsAreEscaped) {
    EXPECT_EQ(jsonText(JsonValue("a\"\\/\b\f\n\r\t\x01é😀")), R"("a\"\\/\b\f\n\r\t\u0001é😀")");
}

TEST(Json_Writing, BytesThatAreNotUtf8AreReplaced) {
    EXPECT_EQ(jsonText(JsonValue("caf\xE9")), "\"caf\uFFFD\"");
    EXPECT_EQ(jsonText(JsonObject{{"k\xFF", 1}}), "{\"k\uFFFD\":1}");
}

TEST(Json_Writing, CompactFormKeepsTheOrderOfTheKeys) {
    EXPECT_EQ(jsonText(JsonObject{{"b", 1}, {"a", JsonArray{1, 2}}}), R"({"b":1,"a":[1,2]})");
}

TEST(Json_Writing, PrettyFormSortsKeysByBytesAndIndentsByTwo) {
    const JsonObject object{
        {"b", JsonArray{1, JsonObject{}}}, {"a", JsonArray{}}, {"B", JsonObject{{"z", 1}}}};
    EXPECT_EQ(jsonText(object, JsonLayout::prettySortedKeys), R"({
  "B": {
    "z": 1
  },
  "a": [],
  "b": [
    1,
    {}
  ]
})");
}

TEST(Json_Writing, NumberIsTheShortestThatReadsBackTheSame) {
    EXPECT_EQ(jsonText(JsonValue(0.1)), "0.1");
    EXPECT_EQ(jsonText(JsonValue(0.78)), "0.78");
    EXPECT_EQ(jsonText(JsonValue(1.0)), "1");
    EXPECT_EQ(jsonText(JsonValue(793800000.5)), "793800000.5");
    EXPECT_EQ(jsonText(JsonValue(std::numeric_limits<std::int64_t>::min())),
              "-9223372036854775808");
    EXPECT_EQ(jsonText(JsonValue(std::numeric_limits<std::uint64_t>::max())),
              "18446744073709551615");
}

TEST(Json_Writing, WhatIsNoNumberIsNull) {
    EXPECT_EQ(jsonText(JsonValue(std::nan(""))), "null");
    EXPECT_EQ(jsonText(JsonValue(std::numeric_limits<double>::infinity())), "null");
}

TEST(Json_RoundTrip, NumbersOfOurTimesComeBackToTheLastBit) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> seconds(6e8, 1.2e9);
    for (int round = 0; round < 20000; ++round) {
        const double number = seconds(random);
        EXPECT_EQ(parsedJson(jsonText(JsonValue(number)))->to_number<double>(), number);
    }
}

TEST(Json_RoundTrip, AnyNumberComesBackToTheLastBit) {
    std::mt19937_64 random(2);
    for (int round = 0; round < 20000; ++round) {
        const double number = std::bit_cast<double>(random());
        if (!std::isfinite(number)) continue;
        EXPECT_EQ(parsedJson(jsonText(JsonValue(number)))->to_number<double>(), number);
    }
}

TEST(Json_RoundTrip, NumberTooLargeForAnyTypeDoesNotBecomeASmallOne) {
    const auto json = parsedJson("1e999");
    EXPECT_TRUE(!json || std::isinf(json->as_double()));
}

}  // namespace
}  // namespace tarnbeck
