#include <algorithm>
#include <cstdint>
#include <random>
#include <set>
#include <utility>

#include <fmt/format.h>

#include "ListEdits.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = ListEdit::Kind;

struct Item {
    std::string id;
    int revision = 0;
    bool operator==(const Item&) const = default;
};
using Items = std::vector<Item>;

std::vector<ListEdit> edits(const Items& before, const Items& after) {
    return listEdits(before, after, &Item::id);
}

// "a b c" as items.
Items items(const std::string& ids) {
    Items result;
    for (const char id : ids) {
        if (id != ' ') result.push_back({.id = std::string(1, id)});
    }
    return result;
}

// Does what a model of rows does, as if it knew nothing but the step and the new list.
Items replayed(Items list, const std::vector<ListEdit>& steps, const Items& after) {
    const auto at = [](auto& range, std::size_t index) {
        return range.begin() + static_cast<std::ptrdiff_t>(index);
    };
    for (const ListEdit& step : steps) {
        switch (step.kind) {
            case Kind::remove:
                list.erase(at(list, step.from), at(list, step.from + step.count));
                break;
            case Kind::move: {
                Item item = list.at(step.from);
                list.erase(at(list, step.from));
                list.insert(at(list, step.to), std::move(item));
                break;
            }
            case Kind::insert:
                list.insert(at(list, step.to), at(after, step.to), at(after, step.to + step.count));
                break;
            case Kind::update:
                std::copy_n(at(after, step.to), step.count, at(list, step.to));
                break;
        }
    }
    return list;
}

// Any mixture of old, new, changed and moved items.
class RandomLists {
  public:
    explicit RandomLists(std::uint32_t seed) : random_(seed) {}

    std::pair<Items, Items> next() {
        Items before = some(20);
        Items after = some(20);
        return {std::move(before), std::move(after)};
    }
    Items shuffled(Items list) {
        std::ranges::shuffle(list, random_);
        return list;
    }

  private:
    Items some(int most) {
        Items list;
        const int count = below(most + 1);
        for (int index = 0; index < count; ++index)
            list.push_back({fmt::format("{}", index), below(2)});
        std::erase_if(list, [&](const Item&) { return below(4) == 0; });
        return below(2) == 0 ? list : shuffled(list);
    }
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

    std::mt19937 random_;
};

std::size_t count(const std::vector<ListEdit>& steps, Kind kind) {
    std::size_t sum = 0;
    for (const ListEdit& step : steps) sum += step.kind == kind ? step.count : 0;
    return sum;
}

TEST(ListEdits, EqualListsNeedNoStep) {
    EXPECT_THAT(edits(items("a b c"), items("a b c")), IsEmpty());
    EXPECT_THAT(edits({}, {}), IsEmpty());
}

TEST(ListEdits, NeighboursComeInOneStep) {
    EXPECT_THAT(edits(items("a d"), items("a b c d e")),
                ElementsAre(ListEdit{.kind = Kind::insert, .to = 1, .count = 2},
                            ListEdit{.kind = Kind::insert, .to = 4, .count = 1}));
}

TEST(ListEdits, NeighboursGoInOneStepTheLastFirst) {
    EXPECT_THAT(edits(items("a b c d e"), items("a d")),
                ElementsAre(ListEdit{.kind = Kind::remove, .from = 4, .count = 1},
                            ListEdit{.kind = Kind::remove, .from = 1, .count = 2}));
}

TEST(ListEdits, OneThatGoesToTheEndMovesAlone) {
    EXPECT_THAT(edits(items("a b c d"), items("b c d a")),
                ElementsAre(ListEdit{.kind = Kind::move, .from = 0, .to = 3}));
}

TEST(ListEdits, OneThatGoesToTheBeginningMovesAlone) {
    EXPECT_THAT(edits(items("a b c d"), items("d a b c")),
                ElementsAre(ListEdit{.kind = Kind::move, .from = 3, .to = 0}));
}

TEST(ListEdits, ContentThatChangedIsUpdatedWhereItStands) {
    EXPECT_THAT(
        edits({{"a", 1}, {"b", 1}, {"c", 1}, {"d", 1}}, {{"a", 1}, {"b", 2}, {"c", 2}, {"d", 1}}),
        ElementsAre(ListEdit{.kind = Kind::update, .to = 1, .count = 2}));
}

TEST(ListEdits, OneThatMovedAndChangedIsMovedAndUpdated) {
    EXPECT_THAT(edits({{"a", 1}, {"b", 1}, {"c", 1}}, {{"b", 1}, {"c", 1}, {"a", 2}}),
                ElementsAre(ListEdit{.kind = Kind::move, .from = 0, .to = 2},
                            ListEdit{.kind = Kind::update, .to = 2}));
}

TEST(ListEdits, RemovalsGoBeforeMovesInsertionsAndUpdates) {
    EXPECT_THAT(edits({{"x", 1}, {"a", 1}, {"b", 1}}, {{"b", 2}, {"a", 1}, {"n", 1}}),
                ElementsAre(ListEdit{.kind = Kind::remove, .from = 0},
                            ListEdit{.kind = Kind::move, .from = 1, .to = 0},
                            ListEdit{.kind = Kind::insert, .to = 2},
                            ListEdit{.kind = Kind::update, .to = 0}));
}

TEST(ListEdits, StepsLeadToTheNewListWhateverTheListsAre) {
    RandomLists lists(1);
    for (int round = 0; round < 3000; ++round) {
        const auto [before, after] = lists.next();
        ASSERT_EQ(replayed(before, edits(before, after), after), after) << "round " << round;
    }
}

TEST(ListEdits, WhatOccursTwiceStillLeadsToTheNewList) {
    for (const auto& [before, after] :
         {std::pair{"a a b", "a b a a"}, {"a b a c", "c a"}, {"a a", "a"}}) {
        EXPECT_EQ(replayed(items(before), edits(items(before), items(after)), items(after)),
                  items(after));
    }
}

TEST(ListEdits, OnlyWhatDiffersHasAStep) {
    RandomLists lists(2);
    for (int round = 0; round < 3000; ++round) {
        const auto [before, after] = lists.next();
        const auto has = [](const Items& list, const Item& item) {
            return std::ranges::find(list, item.id, &Item::id) != list.end();
        };
        const auto steps = edits(before, after);
        ASSERT_EQ(count(steps, Kind::remove), std::ranges::count_if(before, [&](const Item& item) {
                      return !has(after, item);
                  }));
        ASSERT_EQ(count(steps, Kind::insert), std::ranges::count_if(after, [&](const Item& item) {
                      return !has(before, item);
                  }));
        ASSERT_EQ(count(steps, Kind::update), std::ranges::count_if(after, [&](const Item& item) {
                      return has(before, item) && std::ranges::find(before, item) == before.end();
                  }));
    }
}

// The fewest that can move are those outside of a longest ascending run; found here by trying all.
TEST(ListEdits, NoMoreItemsMoveThanMust) {
    RandomLists lists(3);
    const std::string ids = "abcdefg";
    for (int round = 0; round < 300; ++round) {
        const Items before = items(ids);
        const Items after = lists.shuffled(before);
        std::size_t longest = 0;
        for (std::uint32_t subset = 0; subset < (1U << ids.size()); ++subset) {
            std::string run;
            for (std::size_t index = 0; index < ids.size(); ++index) {
                if ((subset >> index & 1U) != 0) run += after[index].id;
            }
            if (std::ranges::is_sorted(run)) longest = std::max(longest, run.size());
        }
        ASSERT_EQ(count(edits(before, after), Kind::move), ids.size() - longest);
    }
}

}  // namespace
}  // namespace tarnbeck
