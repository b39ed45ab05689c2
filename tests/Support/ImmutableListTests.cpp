#include "ImmutableList.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;

TEST(ImmutableList_Content, IsWhatItWasMadeOf) {
    const ImmutableList<std::string> list = {"b", "a"};
    EXPECT_THAT(list, ElementsAre("b", "a"));
    EXPECT_EQ(list.size(), 2U);
    EXPECT_FALSE(list.empty());
    EXPECT_EQ(list[1], "a");
}

TEST(ImmutableList_Content, EmptyOneHasNoElements) {
    for (const auto& list : {ImmutableList<int>{}, ImmutableList<int>(std::vector<int>{})}) {
        EXPECT_TRUE(list.empty());
        EXPECT_EQ(list.size(), 0U);
        EXPECT_EQ(list.begin(), list.end());
    }
}

TEST(ImmutableList_Copying, SharesTheElements) {
    const ImmutableList<std::string> list = {"a", "b"};
    const ImmutableList<std::string> copy = list;
    EXPECT_EQ(copy.begin(), list.begin());
}

TEST(ImmutableList_Copying, CopyOutlivesTheOriginal) {
    ImmutableList<std::string> copy;
    {
        const ImmutableList<std::string> list = {"a long text that needs memory of its own"};
        copy = list;
    }
    EXPECT_THAT(copy, ElementsAre("a long text that needs memory of its own"));
}

TEST(ImmutableList_Equality, GoesByTheElementsAndTheirOrder) {
    EXPECT_EQ((ImmutableList<int>{1, 2}), (ImmutableList<int>{1, 2}));
    EXPECT_NE((ImmutableList<int>{1, 2}), (ImmutableList<int>{2, 1}));
    EXPECT_NE((ImmutableList<int>{1, 2}), (ImmutableList<int>{1}));
}

TEST(ImmutableList_Equality, EmptyOnesAreEqualHoweverTheyWereMade) {
    EXPECT_EQ(ImmutableList<int>{}, ImmutableList<int>(std::vector<int>{}));
    EXPECT_NE(ImmutableList<int>{}, (ImmutableList<int>{1}));
    EXPECT_NE((ImmutableList<int>{1}), ImmutableList<int>{});
}

}  // namespace
}  // namespace tarnbeck
