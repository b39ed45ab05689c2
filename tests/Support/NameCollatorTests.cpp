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

TEST(NameCollator_SortKey, ComparesAsTheNamesDo) {
    const std::vector<std::string> names = {"",
                                            "a",
                                            "A",
                                            "b",
                                            "ab",
                                            "aB",
                                            "élan",
                                            "eland",
                                            "zebra",
                                            "app2",
                                            "app10",
                                            "a-b",
                                            "a_b",
                                            "résumé",
                                            "resume",
                                            "ö",
                                            "o",
                                            "日本",
                                            "a\xFF",
                                            "e\u0301",
                                            "\u00E9",
                                            "under_score",
                                            std::string(400, 'x'),
                                            std::string(401, 'X')};
    for (const std::string locale : {"en_US", "de_DE", "sv_SE", "en_US_POSIX"}) {
        const NameCollator collator(locale);
        const auto sign = [](int value) { return (value > 0) - (value < 0); };
        for (const std::string& left : names) {
            for (const std::string& right : names) {
                EXPECT_EQ(sign(collator.sortKey(left).compare(collator.sortKey(right))),
                          sign(collator.compare(left, right)))
                    << left << " and " << right << " in " << locale;
            }
        }
    }
}

}  // namespace
}  // namespace tarnbeck
