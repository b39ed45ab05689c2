// The steps that lead from one list to another: what a model of rows tells its view, so that all
// that stays keeps its place, focus and animations. Pure, any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarnbeck {

// One step. Steps are done one after the other, and an index means the list as it is at that
// moment.
struct ListEdit {
    enum class Kind {
        remove,  // the `count` items from `from` on go
        move,    // the item at `from` is taken out, and put in so that it stands at `to`
        insert,  // the new list's items from `to` on, `count` of them, come in at `to`
        update,  // the `count` items from `to` on become the new list's from `to` on
    };
    Kind kind = Kind::remove;
    std::size_t from = 0;
    std::size_t to = 0;
    std::size_t count = 1;

    bool operator==(const ListEdit&) const = default;
};

namespace detail {

inline constexpr std::size_t newlyMade = static_cast<std::size_t>(-1);

// All but the updates. `origins` says for each item of the new list where it was in the old one,
// which had `oldCount` items, or `newlyMade`; no origin occurs twice.
std::vector<ListEdit> structuralEdits(std::size_t oldCount,
                                      const std::vector<std::size_t>& origins);

// Adds the update of one item, to the last step if it goes on there.
void addUpdate(std::vector<ListEdit>& edits, std::size_t at);

template <class Item, class IdOf>
std::vector<std::size_t> origins(const std::vector<Item>& before, const std::vector<Item>& after,
                                 IdOf idOf) {
    const auto id = [&](const Item& item) { return std::string_view(std::invoke(idOf, item)); };
    std::vector<std::size_t> result(after.size(), newlyMade);
    std::size_t begin = 0;
    while (begin < before.size() && begin < after.size() && id(before[begin]) == id(after[begin])) {
        result[begin] = begin;
        ++begin;
    }
    std::unordered_map<std::string_view, std::size_t> left;
    for (std::size_t index = before.size(); index > begin; --index) {
        left[id(before[index - 1])] = index - 1;
    }
    for (std::size_t index = begin; index < after.size() && !left.empty(); ++index) {
        const auto found = left.find(id(after[index]));
        if (found == left.end()) continue;
        result[index] = found->second;
        left.erase(found);
    }
    return result;
}

}  // namespace detail

// The steps from `before` to `after`: removals, from the end on, then moves, insertions and
// updates. Items are told apart by `idOf(item)`, a text that lives in the item; what occurs twice
// is removed and inserted where it has no partner. What stays the same has no step, no more items
// than necessary move, and only what differs (`==`) is updated. O(n log n).
template <class Item, class IdOf>
std::vector<ListEdit> listEdits(const std::vector<Item>& before, const std::vector<Item>& after,
                                IdOf idOf) {
    const std::vector<std::size_t> origins = detail::origins(before, after, idOf);
    std::vector<ListEdit> edits = detail::structuralEdits(before.size(), origins);
    for (std::size_t index = 0; index < after.size(); ++index) {
        if (origins[index] == detail::newlyMade) continue;
        if (!(before[origins[index]] == after[index])) detail::addUpdate(edits, index);
    }
    return edits;
}

}  // namespace tarnbeck
