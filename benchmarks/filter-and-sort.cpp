// How long it takes to find out which of 5,000 repositories are shown, and in which order, by each
// sort mode: from nothing, with what is remembered of them, and when a text is searched for that
// was not searched for before.
#include <cstddef>
#include <string>
#include <vector>

#include "LargeRepositories.h"
#include "MainView.h"
#include "Report.h"
#include "Timing.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

constexpr int repositoryCount = 5000;
constexpr int rounds = 9;
constexpr double limit = 15;  // milliseconds

// The middle one of some rounds, in milliseconds. `round` is how many came before.
template <class Work>
double milliseconds(Work work) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        times.push_back(1000 * secondsOf([&] { work(round); }));
    }
    return median(times);
}

}  // namespace

int main() {
    const std::vector<RepositorySnapshot> repos = madeUpRepositories(repositoryCount);
    const NameCollator collator("en_US");
    Report report;
    RepositoryFactsCache facts;
    for (const auto& [mode, name] : rawValues(SortMode{})) {
        MainView::FilterAndSort by{.repos = repos,
                                   .domainMode = DomainMode::combined,
                                   .filterMode = FilterMode::all,
                                   .sortMode = mode};
        const auto sortAll = [&](int) { MainView::filterAndSortRepos(by, collator, facts); };
        const auto sortFromNothing = [&](int) { MainView::filterAndSortRepos(by, collator); };
        std::string text;
        const auto searchAnew = [&](int round) {
            text = fmt::format("cache {}", round);
            by.searchText = text;
            MainView::filterAndSortRepos(by, collator, facts);
        };
        const double sortedFromNothing = milliseconds(sortFromNothing);
        report.atMost(fmt::format("{}, ms", name), milliseconds(sortAll), limit);
        report.atMost(fmt::format("{}, another text, ms", name), milliseconds(searchAnew), limit);
        report.note(fmt::format("from nothing {:.1f} ms, with a text {:.1f} ms", sortedFromNothing,
                                milliseconds(sortFromNothing)));
    }
    return report.exitStatus();
}
