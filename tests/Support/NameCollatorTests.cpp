#include <algorithm>

#include "NameCollator.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> sorted(std::vector<std::string> names, const std::string& locale = "en") {
    const NameCollator collator(locale);
    std::ranges::stable_sort(names, [&](const std::string& left, const std::string& right) {
        return collator.compare(left, right) < 0;
    });
    return names;
}

TEST(NameCollator, UpperAndLowerCaseAreEqual) {
    EXPECT_EQ(NameCollator("en").compare("README", "readme"), 0);
    EXPECT_THAT(sorted({"b", "A", "a", "B"}), ElementsAre("A", "a", "b", "B"));
}

TEST(NameCollator, AccentsAreNotEqual) {
    EXPECT_NE(NameCollator("en").compare("resume", "résumé"), 0);
}

TEST(NameCollator, AccentedLetterStandsBesideItsPlainOne) {
    EXPECT_THAT(sorted({"zebra", "élan", "eland", "fox"}),
                ElementsAre("élan", "eland", "fox", "zebra"));
}

TEST(NameCollator, DigitsAreNotReadAsNumbers) {
    EXPECT_THAT(sorted({"app2", "app10", "app1"}), ElementsAre("app1", "app10", "app2"));
}

TEST(NameCollator, LanguageDecides) {
    EXPECT_THAT(sorted({"z", "ö", "o"}, "de_DE"), ElementsAre("o", "ö", "z"));
    EXPECT_THAT(sorted({"z", "ö", "o"}, "sv_SE"), ElementsAre("o", "z", "ö"));
}

TEST(NameCollator, ComposedAndDecomposedFormsAreEqual) {
    EXPECT_EQ(NameCollator("en").compare("\u00E9", "e\u0301"), 0);
}

TEST(NameCollator, MachineWithoutALanguageStillTakesUpperAndLowerCaseAlike) {
    const NameCollator posix("en_US_POSIX");
    EXPECT_EQ(posix.compare("ALPHA", "alpha"), 0);
    EXPECT_LT(posix.compare("alpha", "Beta"), 0);
}

TEST(NameCollator, UnknownLanguageStillOrdersNames) {
    EXPECT_THAT(sorted({"b", "A"}, "xx_YY"), ElementsAre("A", "b"));
}

TEST(NameCollator, BytesThatAreNotUtf8AreComparedAllTheSame) {
    const NameCollator collator("en");
    EXPECT_EQ(collator.compare("a\xFF", "a\xFF"), 0);
    EXPECT_LT(collator.compare("a\xFF", "b"), 0);
}

}  // namespace
}  // namespace tarnbeck
