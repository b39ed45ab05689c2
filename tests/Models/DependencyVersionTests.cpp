#include "DependencyVersion.h"

namespace tarnbeck {
namespace {

using Type = DependencyUpdateType;
using ::testing::Optional;

VersionComponents components(std::int64_t major, std::int64_t minor, std::int64_t patch) {
    return {major, minor, patch};
}

TEST(VersionComponents, AreTheFirstThreeRunsOfDigits) {
    EXPECT_THAT(parseVersionComponents("v1.2.3-beta.4"), Optional(components(1, 2, 3)));
    EXPECT_THAT(parseVersionComponents("~1.10"), Optional(components(1, 10, 0)));
    EXPECT_THAT(parseVersionComponents("1..2--3"), Optional(components(1, 2, 3)));
}

TEST(VersionComponents, MissingOnesAreZero) {
    EXPECT_THAT(parseVersionComponents("2"), Optional(components(2, 0, 0)));
    EXPECT_THAT(parseVersionComponents("2.1"), Optional(components(2, 1, 0)));
}

TEST(VersionComponents, AreAbsentWithoutADigit) {
    EXPECT_EQ(parseVersionComponents(""), std::nullopt);
    EXPECT_EQ(parseVersionComponents("latest"), std::nullopt);
    EXPECT_EQ(parseVersionComponents("\xff\xfe"), std::nullopt);
}

TEST(VersionComponents, OneThatPasses64BitsIsZero) {
    EXPECT_THAT(parseVersionComponents("9223372036854775807.1"),
                Optional(components(9223372036854775807, 1, 0)));
    EXPECT_THAT(parseVersionComponents("9223372036854775808.1"), Optional(components(0, 1, 0)));
    EXPECT_THAT(parseVersionComponents("1.99999999999999999999.3"), Optional(components(1, 0, 3)));
}

TEST(VersionComponents, DigitsOfOtherScriptsBelongToARunButAreNoNumber) {
    EXPECT_THAT(parseVersionComponents("٣.1"), Optional(components(0, 1, 0)));
    EXPECT_THAT(parseVersionComponents("1٣.2"), Optional(components(0, 2, 0)));
    EXPECT_THAT(parseVersionComponents("1²3"), Optional(components(1, 3, 0)));  // no decimal digit
}

TEST(VersionComponents, BytesThatAreNotUtf8SeparateRuns) {
    EXPECT_THAT(parseVersionComponents("1\xff"
                                       "2"),
                Optional(components(1, 2, 0)));
}

TEST(InferredUpdateType, IsThatOfTheFirstComponentThatIsRaised) {
    EXPECT_EQ(infer({.current = "1.2.3", .latest = "2.0.0"}), Type::major);
    EXPECT_EQ(infer({.current = "1.2.3", .latest = "1.3.0"}), Type::minor);
    EXPECT_EQ(infer({.current = "1.2.3", .latest = "1.2.4"}), Type::patch);
    EXPECT_EQ(infer({.current = "1.2", .latest = "1.2.1"}), Type::patch);
}

TEST(InferredUpdateType, OfEqualVersionsIsUnknown) {
    EXPECT_EQ(infer({.current = "1.2.3", .latest = "1.2.3"}), Type::unknown);
}

TEST(InferredUpdateType, OfADowngradeIsUnknown) {
    EXPECT_EQ(infer({.current = "2.0.0", .latest = "1.9.9"}), Type::unknown);
    EXPECT_EQ(infer({.current = "1.3.0", .latest = "1.2.9"}), Type::unknown);
    EXPECT_EQ(infer({.current = "1.2.4", .latest = "1.2.3"}), Type::unknown);
}

TEST(InferredUpdateType, OfATextWithoutDigitsIsUnknown) {
    EXPECT_EQ(infer({.current = "MISSING", .latest = "1.0.0"}), Type::unknown);
    EXPECT_EQ(infer({.current = "1.0.0", .latest = ""}), Type::unknown);
}

TEST(InferredUpdateType, OfAPreReleaseAndItsReleaseIsUnknown) {
    EXPECT_EQ(infer({.current = "1.2.3-rc.1", .latest = "1.2.3"}), Type::unknown);
}

TEST(InferredUpdateType, OfADifferenceInTheFourthComponentIsUnknown) {
    EXPECT_EQ(infer({.current = "1.2.3.4", .latest = "1.2.3.5"}), Type::unknown);
}

TEST(VersionIsOlder, WhenItsComponentsAreLower) {
    EXPECT_TRUE(isOlder("1.9.9", "1.10"));
    EXPECT_FALSE(isOlder("1.10", "1.9.9"));
    EXPECT_FALSE(isOlder("1.0", "1.0.0"));
}

TEST(VersionIsOlder, NeverWithoutDigitsOnEitherSide) {
    EXPECT_FALSE(isOlder("latest", "1.0"));
    EXPECT_FALSE(isOlder("1.0", "latest"));
}

}  // namespace
}  // namespace tarnbeck
