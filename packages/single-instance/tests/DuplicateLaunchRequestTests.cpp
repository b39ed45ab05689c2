#include <optional>

#include "DuplicateLaunchRequest.h"
#include "PlayedSurroundings.h"

namespace single_instance {
namespace {

using namespace std::chrono_literals;
using single_instance::testing::noon;

std::optional<WallTime> timeOf(const std::string& date) {
    const auto request = decoded(R"({"arguments":[],"fileURLs":[],"createdAt":")" + date + "\"}");
    return request ? std::optional(request->createdAt) : std::nullopt;
}

TEST(DuplicateLaunchRequest_Encoding, HasTheThreeKeys) {
    const DuplicateLaunchRequest request{{"--new", "a b"}, {"file:///a%20b"}, noon + 300ms};
    EXPECT_EQ(encoded(request), R"({"arguments":["--new","a b"],"fileURLs":["file:///a%20b"],)"
                                R"("createdAt":"2026-03-01T12:00:00Z"})");
}

TEST(DuplicateLaunchRequest_Encoding, ReadsBackTheSame) {
    const DuplicateLaunchRequest request{{"\"quoted\"\n", "ü", ""}, {"file:///"}, noon};
    EXPECT_EQ(decoded(encoded(request)), request);
}

TEST(DuplicateLaunchRequest_Encoding, ReplacesWhatIsNotUtf8) {
    const DuplicateLaunchRequest request{{"a\xff"}, {}, noon};
    const auto again = decoded(encoded(request));
    ASSERT_TRUE(again);
    EXPECT_EQ(again->arguments.at(0), "a\uFFFD");
}

TEST(DuplicateLaunchRequest_Decoding, PassesOverOtherKeys) {
    EXPECT_TRUE(
        decoded(R"({"more":1,"arguments":[],"fileURLs":[],"createdAt":"2026-03-01T12:00:00Z"})"));
}

TEST(DuplicateLaunchRequest_Decoding, TakesAnOffset) {
    EXPECT_EQ(timeOf("2026-03-01T13:30:00+01:30"), noon);
    EXPECT_EQ(timeOf("2026-03-01T04:00:00-08:00"), noon);
}

TEST(DuplicateLaunchRequest_Decoding, KnowsLeapDays) {
    EXPECT_TRUE(timeOf("2028-02-29T00:00:00Z"));
    EXPECT_FALSE(timeOf("2026-02-29T00:00:00Z"));
}

TEST(DuplicateLaunchRequest_Encoding, ReadsBackTheFirstAndTheLastSecond) {
    for (const char* date : {"0000-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
        const auto time = timeOf(date);
        ASSERT_TRUE(time);
        EXPECT_EQ(decoded(encoded({{}, {}, *time})), (DuplicateLaunchRequest{{}, {}, *time}));
    }
}

class DuplicateLaunchRequest_Foreign : public ::testing::TestWithParam<const char*> {};

TEST_P(DuplicateLaunchRequest_Foreign, DoesNotDecode) {
    EXPECT_EQ(decoded(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Json, DuplicateLaunchRequest_Foreign,
    ::testing::Values("", "{", "[]", "null", "{}",
                      R"({"fileURLs":[],"createdAt":"2026-03-01T12:00:00Z"})",
                      R"({"arguments":[],"createdAt":"2026-03-01T12:00:00Z"})",
                      R"({"arguments":[],"fileURLs":[]})",
                      R"({"arguments":null,"fileURLs":[],"createdAt":"2026-03-01T12:00:00Z"})",
                      R"({"arguments":[1],"fileURLs":[],"createdAt":"2026-03-01T12:00:00Z"})",
                      R"({"arguments":"a","fileURLs":[],"createdAt":"2026-03-01T12:00:00Z"})",
                      R"({"arguments":[],"fileURLs":[],"createdAt":794145600})"));

class DuplicateLaunchRequest_ForeignDate : public ::testing::TestWithParam<const char*> {};

TEST_P(DuplicateLaunchRequest_ForeignDate, DoesNotDecode) {
    EXPECT_EQ(timeOf(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Date, DuplicateLaunchRequest_ForeignDate,
    ::testing::Values("", "2026-03-01", "2026-03-01T12:00:00", "2026-03-01 12:00:00Z",
                      "2026-03-01T12:00Z", "2026-03-01T12:00:00.5Z", "2026-03-01T12:00:00z",
                      "2026-13-01T12:00:00Z", "2026-03-01T24:00:00Z", "2026-03-01T12:60:00Z",
                      "2026-03-01T12:00:60Z", "2026-03-01T12:00:00+01", "2026-03-01T12:00:00+0100",
                      "2026-03-01T12:00:00Z ", "26-03-01T12:00:00Z", "-026-03-01T12:00:00Z",
                      "2026-3-1T12:00:00Z", "0000-01-01T00:00:00+23:59",
                      "9999-12-31T23:59:59-00:01"));

}  // namespace
}  // namespace single_instance
