// How long it takes to find out which of 5,000 repositories are shown, and in which order: by each
// sort mode, with and without a search text, from nothing and from what is remembered of them.
#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "MainView.h"
#include "Report.h"
#include "Timing.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

constexpr int repositoryCount = 5000;
constexpr int rounds = 9;
constexpr double limit = 15;  // milliseconds

constexpr auto words = std::to_array<std::string_view>(
    {"fix", "login", "crash", "feature", "update", "parser", "network", "cache", "release",
     "service", "frontend", "backend", "storage", "metric", "deploy", "Windows"});

class Wording {
  public:
    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    std::string_view word() { return words[static_cast<std::size_t>(below(words.size()))]; }
    std::string title() {
        return fmt::format("{} the {} of the {} when the {} is gone", word(), word(), word(),
                           word());
    }
    std::string date() {
        return fmt::format("20{:02}-{:02}-{:02}T{:02}:{:02}:{:02}Z", 15 + below(11), 1 + below(12),
                           1 + below(28), below(24), below(60), below(60));
    }
    template <class Make>
    auto list(int count, Make make) {
        std::vector<decltype(make())> items;
        for (int index = 0; index < count; ++index) items.push_back(make());
        return items;
    }

  private:
    std::mt19937 random_{1};
};

GitHubIssue issue(Wording& wording) {
    return {.title = wording.title(),
            .labels = {"bug", std::string(wording.word())},
            .createdAt = wording.date(),
            .updatedAt = wording.date()};
}

GitHubPullRequest pullRequest(Wording& wording) {
    return {.title = wording.title(), .labels = {"dependencies"}, .createdAt = wording.date()};
}

DependencySummary dependencies(Wording& wording) {
    return {.ecosystems = {{.manager = "npm",
                            .status = DependencyHealth::updatesAvailable,
                            .updates = wording.list(wording.below(12), [&] {
                                return DependencyUpdate{
                                    .package =
                                        fmt::format("@{}/{}", wording.word(), wording.word())};
                            })}}};
}

// One in four is as tidy as can be.
RepositorySnapshot repository(Wording& wording, int index) {
    GitRepository made;
    made.name = fmt::format("{}-{}-{}", wording.word(), wording.word(), index);
    made.path = fmt::format("/home/user/projects/{}", made.name);
    made.branches = {{.name = "main", .isCurrent = true}};
    if (wording.below(4) == 0) return std::make_shared<const GitRepository>(std::move(made));
    const auto branchName = [&] {
        return fmt::format("{}/{}-the-{}", wording.word(), wording.word(), wording.word());
    };
    made.branches =
        wording.list(wording.below(16), [&] { return GitBranch{.name = branchName()}; });
    made.remoteBranches = wording.list(20, [&] { return "origin/" + branchName(); });
    made.tags = wording.list(20, [&] { return fmt::format("v1.{}", wording.below(99)); });
    made.uncommittedChanges = wording.list(wording.below(6), [&] {
        return FileChange{.status = "M",
                          .filePath = fmt::format("src/{}/{}.cpp", wording.word(), wording.word())};
    });
    made.issues = wording.list(wording.below(24), [&] { return issue(wording); });
    made.pullRequests = wording.list(wording.below(6), [&] { return pullRequest(wording); });
    made.dependencySummary = dependencies(wording);
    return std::make_shared<const GitRepository>(std::move(made));
}

// The middle one of some rounds, in milliseconds. `shown` is how many are kept.
template <class Work>
double milliseconds(Work work, std::size_t& shown) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        times.push_back(1000 * secondsOf([&] { shown = work().size(); }));
    }
    return median(times);
}

}  // namespace

int main() {
    Wording wording;
    std::vector<RepositorySnapshot> repos;
    for (int index = 0; index < repositoryCount; ++index) {
        repos.push_back(repository(wording, index));
    }
    std::ranges::shuffle(repos, std::mt19937(2));
    const NameCollator collator("en_US");
    Report report;
    for (const auto& [mode, name] : rawValues(SortMode{})) {
        for (const std::string_view searchText : {"", "zzz", "cache"}) {
            const MainView::FilterAndSort by{.repos = repos,
                                             .domainMode = DomainMode::combined,
                                             .filterMode = FilterMode::all,
                                             .searchText = searchText,
                                             .sortMode = mode};
            std::size_t shown = 0;
            const double first =
                milliseconds([&] { return MainView::filterAndSortRepos(by, collator); }, shown);
            RepositoryFactsCache facts;
            const double again = milliseconds(
                [&] { return MainView::filterAndSortRepos(by, collator, facts); }, shown);
            const std::string what = fmt::format("{} \"{}\" ({} shown)", name, searchText, shown);
            report.atMost(what + ", ms", first, limit);
            report.atMost(what + ", remembered, ms", again, limit / 2);
        }
    }
    return report.exitStatus();
}
