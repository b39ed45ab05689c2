#include <cstdint>
#include <optional>
#include <tuple>
#include <unordered_set>

#include "ImmutableList.h"
#include "Record.h"

namespace tarnbeck {
namespace {

struct Leaf {
    std::string name;
    bool operator==(const Leaf&) const = default;
    static constexpr auto fields() { return std::tuple{field("name", &Leaf::name)}; }
};

struct Tree {
    std::optional<std::int64_t> count;
    ImmutableList<Leaf> leaves;
    std::optional<Date> date;
    bool operator==(const Tree&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("count", &Tree::count), field("leaves", &Tree::leaves),
                          field("date", &Tree::date)};
    }
};

TEST(RecordHashing, EqualRecordsHashAlike) {
    const Tree tree{.count = 1, .leaves = {{"a"}, {"b"}}, .date = Date{}};
    const Tree same{.count = 1, .leaves = {{"a"}, {"b"}}, .date = Date{}};
    EXPECT_EQ(hashValue(tree), hashValue(same));
    EXPECT_EQ(std::hash<Tree>{}(tree), hashValue(tree));
}

TEST(RecordHashing, EveryFieldTakesPart) {
    const std::unordered_set<std::size_t> hashes = {hashValue(Tree{}), hashValue(Tree{.count = 1}),
                                                    hashValue(Tree{.leaves = {{"a"}}}),
                                                    hashValue(Tree{.date = Date{}})};
    EXPECT_EQ(hashes.size(), 4U);
}

TEST(RecordHashing, AbsentDiffersFromZeroAndEmpty) {
    EXPECT_NE(hashValue(Tree{}), hashValue(Tree{.count = 0}));
    EXPECT_NE(hashValue(std::optional<std::string>()), hashValue(std::optional<std::string>("")));
}

TEST(RecordHashing, OrderOfAListCounts) {
    EXPECT_NE(hashValue(Tree{.leaves = {{"a"}, {"b"}}}), hashValue(Tree{.leaves = {{"b"}, {"a"}}}));
}

TEST(RecordHashing, RecordsServeAsKeys) {
    const std::unordered_set<Tree> trees = {Tree{}, Tree{.count = 1}, Tree{}};
    EXPECT_EQ(trees.size(), 2U);
    EXPECT_TRUE(trees.contains(Tree{.count = 1}));
}

}  // namespace
}  // namespace tarnbeck
