#include <chrono>
#include <random>

#include "Dates.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;

Date day(int year, unsigned month, unsigned dayOfMonth) {
    return std::chrono::sys_days{std::chrono::year{year} / static_cast<int>(month) /
                                 static_cast<int>(dayOfMonth)};
}

TEST(Dates_Iso8601, IsInUtcWithATrailingZ) {
    EXPECT_EQ(iso8601(day(2026, 3, 1) + 12h + 5min + 9s), "2026-03-01T12:05:09Z");
}

TEST(Dates_Iso8601, IsCutToWholeSeconds) {
    EXPECT_EQ(iso8601(day(2026, 3, 1) + 1s + 999ms), "2026-03-01T00:00:01Z");
}

TEST(Dates_Iso8601, FirstMomentOf1970) {
    EXPECT_EQ(iso8601(Date{}), "1970-01-01T00:00:00Z");
}

TEST(Dates_Iso8601, DatesBefore1970AreCutDownwards) {
    EXPECT_EQ(iso8601(Date{} - 1ms), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601(day(1900, 2, 28) + 1h), "1900-02-28T01:00:00Z");
}

TEST(Dates_Iso8601, KnowsLeapDays) {
    EXPECT_EQ(iso8601(day(2024, 2, 29) + 23h + 59min + 59s), "2024-02-29T23:59:59Z");
    EXPECT_EQ(iso8601(day(2024, 2, 29) + 24h), "2024-03-01T00:00:00Z");
}

TEST(Dates_FromIso8601, IsTheMomentInUtc) {
    EXPECT_EQ(dateFromIso8601("2026-03-01T12:05:09Z"), day(2026, 3, 1) + 12h + 5min + 9s);
    EXPECT_EQ(dateFromIso8601("1969-12-31T23:59:59Z"), Date{} - 1s);
}

TEST(Dates_FromIso8601, ZoneIsTakenOff) {
    EXPECT_EQ(dateFromIso8601("2026-03-01T12:00:00+05:30"), day(2026, 3, 1) + 6h + 30min);
    EXPECT_EQ(dateFromIso8601("2026-03-01T23:00:00-02:00"), day(2026, 3, 2) + 1h);
}

TEST(Dates_FromIso8601, ReadsWhatWasWritten) {
    std::mt19937_64 random(7);
    std::uniform_int_distribution<std::int64_t> seconds(-2'000'000'000, 8'000'000'000);
    for (int round = 0; round < 1000; ++round) {
        const std::chrono::sys_seconds date{std::chrono::seconds(seconds(random))};
        EXPECT_EQ(dateFromIso8601(iso8601(date)), date);
    }
}

TEST(Dates_FromIso8601, FarDaysDoNotOverflow) {
    EXPECT_TRUE(dateFromIso8601("9999-12-31T23:59:59Z"));
    EXPECT_TRUE(dateFromIso8601("0000-01-01T00:00:00Z"));
}

TEST(Dates_FromIso8601, FractionsOfASecondAreNotOfThisForm) {
    EXPECT_FALSE(dateFromIso8601("2026-03-01T12:00:00.000Z"));
    EXPECT_FALSE(dateFromIso8601("2026-03-01T12:00:00.5+01:00"));
}

TEST(Dates_FromIso8601, OtherFormsAreNoDate) {
    for (const char* text :
         {"", "2026-03-01", "2026-03-01T12:00:00", "2026-03-01 12:00:00Z", "2026-3-1T12:00:00Z",
          "2026-03-01T12:00Z", "2026-03-01T12:00:00z", "2026-03-01T12:00:00ZZ",
          "2026-03-01T12:00:00+0100", "2026-03-01T12:00:00+01", "2026-03-01T12:00:00*01:00",
          " 2026-03-01T12:00:00Z", "2026-03-01T1a:00:00Z", "yesterday"}) {
        EXPECT_FALSE(dateFromIso8601(text)) << text;
    }
}

TEST(Dates_FromIso8601, DaysAndTimesThatDoNotExistAreNoDate) {
    for (const char* text :
         {"2026-02-29T12:00:00Z", "2026-13-01T12:00:00Z", "2026-00-01T12:00:00Z",
          "2026-01-00T12:00:00Z", "2026-01-01T24:00:00Z", "2026-01-01T12:60:00Z",
          "2026-01-01T12:00:60Z", "2026-01-01T12:00:00+24:00", "2026-01-01T12:00:00+01:60"}) {
        EXPECT_FALSE(dateFromIso8601(text)) << text;
    }
}

TEST(Dates_Since2001, BeginAtTheFirstMomentOf2001) {
    EXPECT_EQ(secondsSince2001(day(2001, 1, 1)), 0);
    EXPECT_EQ(secondsSince2001(day(2001, 1, 2) + 500ms), 86400.5);
    EXPECT_EQ(dateFromSecondsSince2001(0), day(2001, 1, 1));
}

TEST(Dates_Since2001, EarlierDatesAreNegative) {
    EXPECT_EQ(secondsSince2001(Date{}), -978307200);
    EXPECT_EQ(secondsSince2001(day(2000, 12, 31) + 23h + 59min + 59s + 750ms), -0.25);
    EXPECT_EQ(dateFromSecondsSince2001(-978307200.5), Date{} - 500ms);
}

TEST(Dates_Since2001, NumberThatBecameADateComesBackTheSame) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> seconds(-1e9, 2e9);
    for (int round = 0; round < 20000; ++round) {
        const double number = seconds(random);
        const Date date = dateFromSecondsSince2001(number);
        EXPECT_EQ(dateFromSecondsSince2001(secondsSince2001(date)), date) << number;
    }
}

TEST(Dates_Since2001, NumberOfOurTimesComesBackToTheLastBit) {
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> seconds(6e8, 1.2e9);
    for (int round = 0; round < 20000; ++round) {
        const double number = seconds(random);
        EXPECT_EQ(secondsSince2001(dateFromSecondsSince2001(number)), number);
    }
}

TEST(Dates_Since2001, DateComesBackToTheMicrosecond) {
    const Date date = day(2026, 3, 1) + 123456789ns;
    const Date back = dateFromSecondsSince2001(secondsSince2001(date));
    EXPECT_LE(std::chrono::abs(back - date), 1us);
}

TEST(Dates_Since2001, NumbersBeyondTheClockAreHeldAtItsEnds) {
    EXPECT_GT(dateFromSecondsSince2001(1e300), day(2200, 1, 1));
    EXPECT_LT(dateFromSecondsSince2001(-1e300), day(1800, 1, 1));
}

}  // namespace
}  // namespace tarnbeck
