// Repositories as busy developers have them, made up in memory.
#pragma once

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "GitRepository.h"

namespace tarnbeck::benchmark {

inline constexpr auto words = std::to_array<std::string_view>(
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

inline GitHubIssue issue(Wording& wording) {
    return {.title = wording.title(),
            .labels = {"bug", std::string(wording.word())},
            .createdAt = wording.date(),
            .updatedAt = wording.date()};
}

inline GitHubPullRequest pullRequest(Wording& wording) {
    return {.title = wording.title(), .labels = {"dependencies"}, .createdAt = wording.date()};
}

inline DependencySummary dependencies(Wording& wording) {
    return {.ecosystems = {{.manager = "npm",
                            .status = DependencyHealth::updatesAvailable,
                            .updates = wording.list(wording.below(12), [&] {
                                return DependencyUpdate{
                                    .package =
                                        fmt::format("@{}/{}", wording.word(), wording.word())};
                            })}}};
}

// One in four is as tidy as can be.
inline RepositorySnapshot repository(Wording& wording, int index) {
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

// `count` of them, in no order.
inline std::vector<RepositorySnapshot> madeUpRepositories(int count) {
    Wording wording;
    std::vector<RepositorySnapshot> repositories;
    for (int index = 0; index < count; ++index) repositories.push_back(repository(wording, index));
    std::shuffle(repositories.begin(), repositories.end(), std::mt19937(2));
    return repositories;
}

}  // namespace tarnbeck::benchmark
