#include <csignal>

#include "UniqueKeys.h"

namespace tarnbeck {
namespace {

using ::testing::Pair;
using ::testing::UnorderedElementsAre;

auto lengthsByName(const std::vector<std::string>& names) {
    return uniquelyKeyed(
        names, [](const std::string& name) { return name; },
        [](const std::string& name) { return name.size(); });
}

TEST(UniqueKeys, MapEachElementByItsKey) {
    EXPECT_THAT(lengthsByName({"a", "bb"}), UnorderedElementsAre(Pair("a", 1), Pair("bb", 2)));
    EXPECT_TRUE(lengthsByName({}).empty());
}

TEST(UniqueKeys, KeysThatDifferInCaseAreTwo) {
    EXPECT_EQ(lengthsByName({"a", "A"}).size(), 2U);
}

TEST(UniqueKeysDeathTest, RepeatedKeyEndsTheProcessAndIsNamed) {
    EXPECT_EXIT(lengthsByName({"/a", "/b", "/a"}), ::testing::KilledBySignal(SIGABRT),
                "^Duplicate values for key: '/a'\n$");
}

}  // namespace
}  // namespace tarnbeck
