// Text written straight away is the text that a built value gives.
#include <array>
#include <limits>

#include <boost/json/serialize.hpp>

#include "ImmutableList.h"
#include "JsonText.h"

namespace tarnbeck {
namespace {

enum class Size { small, large };

constexpr auto rawValues(Size /*tag*/) {
    return std::to_array<std::pair<Size, std::string_view>>(
        {{Size::small, "small"}, {Size::large, "large"}});
}

// Writes itself in its own way, and as null when it is empty.
struct Special {
    std::string text;
    bool operator==(const Special&) const = default;
    JsonValue encodedJson(const JsonStyle& /*style*/) const {
        return text.empty() ? JsonValue(nullptr) : JsonValue{text, text};
    }
};

struct Part {
    std::optional<std::string> maybe;
    std::string text;
    static constexpr auto fields() {
        return std::tuple{field("maybe", &Part::maybe), field("text", &Part::text)};
    }
};

struct Whole {
    std::optional<Part> first;
    std::int64_t count = 0;
    std::uint64_t large = 0;
    double share = 0;
    bool flag = false;
    Size size = Size::small;
    Special special;
    ImmutableList<Part> list;
    std::vector<std::optional<std::int64_t>> numbers;
    std::optional<Date> date;
    static constexpr auto fields() {
        return std::tuple{field("first", &Whole::first),     field("count", &Whole::count),
                          field("large", &Whole::large),     field("share", &Whole::share),
                          field("flag", &Whole::flag),       field("size", &Whole::size),
                          field("special", &Whole::special), field("list", &Whole::list),
                          field("numbers", &Whole::numbers), field("date", &Whole::date)};
    }
};

constexpr auto asNull = JsonStyle::Absent::asNull;
constexpr auto iso = JsonStyle::Dates::iso8601;

template <class Type>
void expectTheSameText(const Type& value) {
    for (const JsonStyle& style :
         {JsonStyle{}, JsonStyle{.absent = asNull}, JsonStyle{.absent = asNull, .dates = iso}}) {
        EXPECT_EQ(encodedJsonText(value, style), jsonText(encodedJson(value, style)));
    }
}

const Whole whole{.first = Part{.maybe = "m", .text = "\"\\/\b\f\n\r\t\x01\x7F é 漢 😀"},
                  .count = std::numeric_limits<std::int64_t>::min(),
                  .large = std::numeric_limits<std::uint64_t>::max(),
                  .share = 0.1,
                  .flag = true,
                  .size = Size::large,
                  .special = {"own"},
                  .list = {{.text = "a"}, {.maybe = "", .text = ""}},
                  .numbers = {1, std::nullopt, -3},
                  .date = dateFromSecondsSince2001(794059200.25)};

TEST(JsonText_Records, FullOneHasTheSameText) {
    expectTheSameText(whole);
}

TEST(JsonText_Records, EmptyOneHasTheSameText) {
    expectTheSameText(Whole{});
}

TEST(JsonText_Records, FieldThatIsLeftOutTakesItsCommaWithIt) {
    EXPECT_EQ(encodedJsonText(Part{.text = "t"}), R"({"text":"t"})");
    EXPECT_EQ(encodedJsonText(Part{.text = "t"}, {.absent = asNull}),
              R"({"maybe":null,"text":"t"})");
}

TEST(JsonText_Numbers, HaveTheSameText) {
    using Limits = std::numeric_limits<double>;
    for (const double number :
         {0.0, -0.0, 1.0, 0.1, -2.5, 1e21, 1e300, 5e-324, Limits::max(), Limits::infinity(),
          -Limits::infinity(), Limits::quiet_NaN(), 794059200.123456}) {
        expectTheSameText(number);
    }
    expectTheSameText(7);
    expectTheSameText(std::int64_t{-7});
    expectTheSameText(std::uint64_t{7});
}

TEST(JsonText_Texts, EveryAsciiCharacterIsWrittenAsTheLibraryDoes) {
    for (int character = 0; character < 128; ++character) {
        const std::string text = "a" + std::string(1, static_cast<char>(character)) + "b";
        EXPECT_EQ(encodedJsonText(text), boost::json::serialize(boost::json::string_view(text)))
            << character;
    }
}

TEST(JsonText_Texts, SpecialCharacterIsFoundAtEveryPlace) {
    for (std::size_t length = 1; length < 80; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::string text(length, 'x');
            text[place] = '"';
            EXPECT_EQ(encodedJsonText(text).size(), length + 3);
        }
    }
}

TEST(JsonText_Texts, BytesThatAreNotUtf8AreReplaced) {
    EXPECT_EQ(encodedJsonText(std::string("a\xFFz")), "\"a\xEF\xBF\xBDz\"");
}

TEST(JsonText_Appending, KeepsWhatWasThere) {
    std::string json = "[";
    EXPECT_TRUE(appendJson(json, std::string("a")));
    EXPECT_EQ(json, "[\"a\"");
}

TEST(JsonText_Appending, TellsTheNullOfWhatIsAbsent) {
    std::string json;
    EXPECT_FALSE(appendJson(json, std::optional<std::string>()));
    EXPECT_EQ(json, "null");
    EXPECT_TRUE(appendJson(json, std::optional<std::string>("a")));
}

}  // namespace
}  // namespace tarnbeck
