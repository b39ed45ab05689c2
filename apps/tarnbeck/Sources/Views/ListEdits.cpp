#include "ListEdits.h"

#include <algorithm>
#include <utility>

namespace tarnbeck {
namespace {

using Kind = ListEdit::Kind;
using Indices = std::vector<std::size_t>;

// How many of the marked places lie before one; marking and asking take log n.
class MarkedPlaces {
  public:
    explicit MarkedPlaces(std::size_t count) : sums_(count + 1) {}

    void mark(std::size_t place) { change(place, 1); }
    void unmark(std::size_t place) { change(place, -1); }
    std::size_t before(std::size_t place) const {
        std::ptrdiff_t sum = 0;
        for (std::size_t index = place; index > 0; index &= index - 1) sum += sums_[index];
        return static_cast<std::size_t>(sum);
    }

  private:
    void change(std::size_t place, std::ptrdiff_t by) {
        for (std::size_t index = place + 1; index < sums_.size(); index += index & (~index + 1)) {
            sums_[index] += by;
        }
    }

    std::vector<std::ptrdiff_t> sums_;
};

// The places that the items of the new list have among those of the old list that stay: a
// permutation.
Indices placesOfStaying(std::size_t oldCount, const Indices& origins) {
    Indices ranks(oldCount, 0);
    for (const std::size_t origin : origins) {
        if (origin != detail::newlyMade) ranks[origin] = 1;
    }
    std::size_t rank = 0;
    for (std::size_t& slot : ranks) rank += std::exchange(slot, rank);
    Indices places;
    for (const std::size_t origin : origins) {
        if (origin != detail::newlyMade) places.push_back(ranks[origin]);
    }
    return places;
}

// Marks the members of a longest ascending subsequence: what need not move.
std::vector<bool> resting(const Indices& places) {
    Indices ends;  // of the ascending sequences of each length, the one that ends lowest
    Indices previous(places.size(), detail::newlyMade);
    for (std::size_t index = 0; index < places.size(); ++index) {
        const auto end = std::ranges::lower_bound(
            ends, places[index], {}, [&](std::size_t candidate) { return places[candidate]; });
        if (end != ends.begin()) previous[index] = *(end - 1);
        if (end == ends.end()) {
            ends.push_back(index);
        } else {
            *end = index;
        }
    }
    std::vector<bool> rests(places.size(), false);
    std::size_t member = ends.empty() ? detail::newlyMade : ends.back();
    while (member != detail::newlyMade) {
        rests[member] = true;
        member = previous[member];
    }
    return rests;
}

void addRemovals(std::vector<ListEdit>& edits, std::size_t oldCount, const Indices& origins) {
    std::vector<bool> stays(oldCount, false);
    for (const std::size_t origin : origins) {
        if (origin != detail::newlyMade) stays[origin] = true;
    }
    std::size_t end = oldCount;
    while (end > 0) {
        std::size_t begin = end;
        while (begin > 0 && !stays[begin - 1]) --begin;
        if (begin < end)
            edits.push_back({.kind = Kind::remove, .from = begin, .count = end - begin});
        end = begin == 0 ? 0 : begin - 1;
    }
}

// Items move in the order of the new list, each right behind the one before it there. So at any
// moment the list is, for each resting item in turn: the item itself, those that were moved behind
// it, and then those that stood behind it from the beginning and have yet to move.
void addMoves(std::vector<ListEdit>& edits, const Indices& places) {
    const std::vector<bool> rests = resting(places);
    MarkedPlaces restingPlaces(places.size());
    MarkedPlaces waitingPlaces(places.size());
    for (std::size_t index = 0; index < places.size(); ++index) {
        (rests[index] ? restingPlaces : waitingPlaces).mark(places[index]);
    }
    Indices movedBehind;  // for each item that moved, how many resting ones are before it
    std::size_t restingBefore = 0;
    std::size_t behind = 0;  // the place right behind the last of those
    for (std::size_t index = 0; index < places.size(); ++index) {
        const std::size_t place = places[index];
        if (rests[index]) {
            ++restingBefore;
            behind = place + 1;
            continue;
        }
        const std::size_t oldRestingBefore = restingPlaces.before(place);
        const auto movedBefore = std::ranges::upper_bound(movedBehind, oldRestingBefore);
        const std::size_t from = waitingPlaces.before(place) + oldRestingBefore +
                                 static_cast<std::size_t>(movedBefore - movedBehind.begin());
        waitingPlaces.unmark(place);
        const std::size_t to = waitingPlaces.before(behind) + restingBefore + movedBehind.size();
        movedBehind.push_back(restingBefore);
        edits.push_back({.kind = Kind::move, .from = from, .to = to});
    }
}

void addInsertions(std::vector<ListEdit>& edits, const Indices& origins) {
    std::size_t begin = 0;
    while (begin < origins.size()) {
        std::size_t end = begin;
        while (end < origins.size() && origins[end] == detail::newlyMade) ++end;
        if (begin < end) edits.push_back({.kind = Kind::insert, .to = begin, .count = end - begin});
        begin = end + 1;
    }
}

}  // namespace

std::vector<ListEdit> detail::structuralEdits(std::size_t oldCount, const Indices& origins) {
    std::vector<ListEdit> edits;
    addRemovals(edits, oldCount, origins);
    addMoves(edits, placesOfStaying(oldCount, origins));
    addInsertions(edits, origins);
    return edits;
}

void detail::addUpdate(std::vector<ListEdit>& edits, std::size_t at) {
    if (!edits.empty() && edits.back().kind == Kind::update &&
        edits.back().to + edits.back().count == at) {
        ++edits.back().count;
    } else {
        edits.push_back({.kind = Kind::update, .to = at});
    }
}

}  // namespace tarnbeck
