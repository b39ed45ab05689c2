#include "RegularExpression.h"

namespace tarnbeck {
namespace {

using Anchors = RegularExpression::Anchors;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

TEST(RegularExpressions, AllMatchesGiveTheirCapturesInOrder) {
    const RegularExpression pairs("(\\w+)=(\\d+)", Anchors::text);
    EXPECT_THAT(pairs.allMatches("a=1, é=22"),
                ElementsAre(ElementsAre("a", "1"), ElementsAre("é", "22")));
}

TEST(RegularExpressions, AnchorsStandForTheTextOrForEachLine) {
    EXPECT_THAT(RegularExpression("^(x)$", Anchors::lines).allMatches("x\ny\nx"),
                ElementsAre(ElementsAre("x"), ElementsAre("x")));
    EXPECT_THAT(RegularExpression("^(x)$", Anchors::text).allMatches("x\ny\nx"), IsEmpty());
}

TEST(RegularExpressions, MatchAtTheBeginningNeedNotReachTheEnd) {
    const RegularExpression name("([a-z]+)(-x)?", Anchors::text);
    EXPECT_THAT(name.matchAtBeginning("abc 1"), Optional(ElementsAre("abc", "")));
    EXPECT_EQ(name.matchAtBeginning(" abc"), std::nullopt);
}

TEST(RegularExpressions, OneThatCannotBeBuiltMatchesNothing) {
    const RegularExpression broken("(", Anchors::text);
    EXPECT_THAT(broken.allMatches("("), IsEmpty());
    EXPECT_EQ(broken.matchAtBeginning("("), std::nullopt);
}

TEST(RegularExpressions, SearchWithoutEndIsGivenUp) {
    const RegularExpression nested("(a+)+(a+)+(a+)+b", Anchors::text);
    EXPECT_THAT(nested.allMatches(std::string(5000, 'a')), IsEmpty());
}

}  // namespace
}  // namespace tarnbeck
