#include "ImmutableList.h"
#include "JsonCoding.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;

enum class Color { red, green };

constexpr auto rawValues(Color /*tag*/) {
    return std::to_array<std::pair<Color, std::string_view>>(
        {{Color::red, "red"}, {Color::green, "green"}});
}

struct Inner {
    std::string text;
    bool operator==(const Inner&) const = default;
    static constexpr auto fields() { return std::tuple{field("text", &Inner::text)}; }
};

struct Outer {
    std::int64_t count = 0;
    double share = 0;
    bool flag = false;
    Color color = Color::red;
    std::optional<Inner> maybe;
    ImmutableList<Inner> list;
    std::optional<Date> date;
    bool operator==(const Outer&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("count", &Outer::count), field("share", &Outer::share),
                          field("flag", &Outer::flag),   field("color", &Outer::color),
                          field("maybe", &Outer::maybe), field("list", &Outer::list),
                          field("date", &Outer::date)};
    }
};

const Outer full{.count = -3,
                 .share = 0.25,
                 .flag = true,
                 .color = Color::green,
                 .maybe = Inner{"m"},
                 .list = {{"a"}, {"b"}},
                 .date = dateFromSecondsSince2001(5.5)};

template <class Type>
std::string errorOf(std::string_view text) {
    const auto decoded = decodedJson<Type>(text);
    return decoded ? "decoded" : decoded.error();
}

TEST(JsonCoding_Integers, WholeNumberInAnyFormIsOne) {
    EXPECT_EQ(*decodedJson<std::int64_t>("30"), 30);
    EXPECT_EQ(*decodedJson<std::int64_t>("30.0"), 30);
    EXPECT_EQ(*decodedJson<std::int64_t>("3e1"), 30);
    EXPECT_EQ(*decodedJson<std::int64_t>("-0.0"), 0);
}

TEST(JsonCoding_Integers, BoundsOf64BitsAreIn) {
    EXPECT_EQ(*decodedJson<std::int64_t>("9223372036854775807"),
              std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(*decodedJson<std::int64_t>("-9223372036854775808"),
              std::numeric_limits<std::int64_t>::min());
}

TEST(JsonCoding_Integers, WhatLiesBeyond64BitsFails) {
    for (const char* text : {"9223372036854775808", "18446744073709551615", "9223372036854775808.0",
                             "-9223372036854777856", "1e30"}) {
        EXPECT_EQ(errorOf<std::int64_t>(text), "expected an integer") << text;
    }
}

TEST(JsonCoding_Integers, FractionsBooleansAndTextsFail) {
    for (const char* text : {"30.5", "true", "\"30\"", "[30]", "{}"}) {
        EXPECT_EQ(errorOf<std::int64_t>(text), "expected an integer") << text;
    }
}

TEST(JsonCoding_Numbers, IntegerServesAsOne) {
    EXPECT_EQ(*decodedJson<double>("1"), 1.0);
    EXPECT_EQ(*decodedJson<double>("-1"), -1.0);
    EXPECT_EQ(*decodedJson<double>("18446744073709551615"), 18446744073709551615.0);
}

TEST(JsonCoding_Numbers, BooleansTextsAndNullFail) {
    for (const char* text : {"true", "\"1\"", "null"}) {
        EXPECT_EQ(errorOf<double>(text), "expected a number") << text;
    }
}

TEST(JsonCoding_Booleans, NumbersAndTextsFail) {
    EXPECT_EQ(*decodedJson<bool>("true"), true);
    for (const char* text : {"1", "0", "\"true\"", "null"}) {
        EXPECT_EQ(errorOf<bool>(text), "expected true or false") << text;
    }
}

TEST(JsonCoding_Texts, NumbersAndBooleansFail) {
    for (const char* text : {"1", "true", "null", "[]"}) {
        EXPECT_EQ(errorOf<std::string>(text), "expected a text") << text;
    }
}

TEST(JsonCoding_Texts, NullCharacterStays) {
    EXPECT_EQ(*decodedJson<std::string>(R"("a\u0000b")"), std::string("a\0b", 3));
}

TEST(JsonCoding_Words, OnlyKnownOnesAreRead) {
    EXPECT_EQ(*decodedJson<Color>("\"green\""), Color::green);
    for (const char* text : {"\"blue\"", "\"Green\"", "\"\"", "1", "null"}) {
        EXPECT_EQ(errorOf<Color>(text), "expected one of the known words") << text;
    }
}

TEST(JsonCoding_Lists, KeepTheirOrder) {
    EXPECT_THAT(*decodedJson<std::vector<std::string>>(R"(["b","a","b"])"),
                ElementsAre("b", "a", "b"));
}

TEST(JsonCoding_Lists, MayHoldAbsentValues) {
    EXPECT_THAT(*decodedJson<std::vector<std::optional<bool>>>("[true,null]"),
                ElementsAre(true, std::nullopt));
}

TEST(JsonCoding_Lists, ObjectsAndNullFail) {
    EXPECT_EQ(errorOf<std::vector<std::string>>("{}"), "expected an array");
    EXPECT_EQ(errorOf<std::vector<std::string>>("null"), "expected an array");
}

TEST(JsonCoding_Records, AreWrittenInTheOrderOfTheirFields) {
    EXPECT_EQ(jsonText(encodedJson(full)),
              R"({"count":-3,"share":0.25,"flag":true,"color":"green","maybe":{"text":"m"},)"
              R"("list":[{"text":"a"},{"text":"b"}],"date":5.5})");
}

TEST(JsonCoding_Records, ReadBackTheSame) {
    EXPECT_EQ(*decodedJson<Outer>(jsonText(encodedJson(full))), full);
    EXPECT_EQ(*decodedJson<Outer>(jsonText(encodedJson(Outer{}))), Outer{});
}

TEST(JsonCoding_Records, KeysMayComeInAnyOrder) {
    EXPECT_EQ(*decodedJson<Outer>(jsonText(encodedJson(full), JsonLayout::prettySortedKeys)), full);
}

TEST(JsonCoding_Records, AbsentValuesAreLeftOut) {
    EXPECT_EQ(jsonText(encodedJson(Outer{})),
              R"({"count":0,"share":0,"flag":false,"color":"red","list":[]})");
}

TEST(JsonCoding_Records, AbsentValuesAreNullWhereAskedFor) {
    EXPECT_EQ(jsonText(encodedJson(Outer{}, {.absent = JsonStyle::Absent::asNull})),
              R"({"count":0,"share":0,"flag":false,"color":"red","maybe":null,"list":[],)"
              R"("date":null})");
}

TEST(JsonCoding_Records, ErrorsNameThePlace) {
    const std::string start = R"({"count":1,"share":1,"flag":true,"color":"red",)";
    EXPECT_EQ(errorOf<Outer>("{}"), "count: is missing");
    EXPECT_EQ(errorOf<Outer>(R"({"count":null})"), "count: is null");
    EXPECT_EQ(errorOf<Outer>(start + R"("maybe":{},"list":[]})"), "maybe.text: is missing");
    EXPECT_EQ(errorOf<Outer>(start + R"("maybe":3,"list":[]})"), "maybe: expected an object");
    EXPECT_EQ(errorOf<Outer>(start + R"("list":[{"text":"a"},{"text":1}]})"),
              "list[1].text: expected a text");
    EXPECT_EQ(errorOf<Outer>(start + R"("list":[1]})"), "list[0]: expected an object");
}

TEST(JsonCoding_Records, LastOfEqualKeysIsTheOneThatCounts) {
    EXPECT_EQ(decodedJson<Inner>(R"({"text":1,"text":"a"})")->text, "a");
    EXPECT_EQ(errorOf<Inner>(R"({"text":"a","text":1})"), "text: expected a text");
}

TEST(JsonCoding_Dates, AreIso8601WhereAskedFor) {
    EXPECT_EQ(jsonText(encodedJson(*full.date, {.dates = JsonStyle::Dates::iso8601})),
              "\"2001-01-01T00:00:05Z\"");
}

TEST(JsonCoding_Dates, StyleReachesIntoRecords) {
    const auto json = encodedJson(full, {.dates = JsonStyle::Dates::iso8601});
    EXPECT_EQ(json.at("date").as_string(), "2001-01-01T00:00:05Z");
}

TEST(JsonCoding_Failures, MalformedJsonSaysWhere) {
    EXPECT_THAT(errorOf<Inner>("{\n"), ::testing::StartsWith("line 2: "));
}

TEST(JsonCoding_Tolerant, AbsentAndNullKeysLeaveTheFieldsAsTheyAre) {
    Outer record = full;
    const auto json = *parsedJson(R"({"count":null,"share":0.5})");
    JsonDecoding::fields(json, record, JsonDecoding::Keys::optional);
    Outer expected = full;
    expected.share = 0.5;
    EXPECT_EQ(record, expected);
}

TEST(JsonCoding_Tolerant, WrongTypeFailsAllTheSame) {
    Outer record;
    const auto json = *parsedJson(R"({"flag":1})");
    EXPECT_THROW(JsonDecoding::fields(json, record, JsonDecoding::Keys::optional),
                 JsonDecodingError);
}

}  // namespace
}  // namespace tarnbeck
