#include "ChangeFeed.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iterator>
#include <string_view>
#include <unordered_map>

#include <fmt/format.h>

#include "Dates.h"
#include "DependencyReport.h"
#include "IssueReport.h"
#include "RepositoryJson.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

using Snapshots = std::vector<RepositorySnapshot>;

std::unordered_map<std::string_view, const GitRepository*> byPath(const Snapshots& repositories) {
    std::unordered_map<std::string_view, const GitRepository*> map;
    for (const auto& repository : repositories) map[repository->path] = repository.get();
    return map;
}

JsonObject event(std::string_view name, Date at) {
    return {{"event", name}, {"at", iso8601(at)}};
}

std::string line(const JsonObject& object) {
    return jsonText(object) + "\n";
}

// The user's own time of day, "14:03:22".
std::string clockTime(Date at) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(at);
    std::tm local{};
    localtime_r(&seconds, &local);
    return fmt::format("{:02}:{:02}:{:02}", local.tm_hour, local.tm_min, local.tm_sec);
}

bool haveEqualIssues(const GitRepository& left, const GitRepository& right) {
    return left.issues == right.issues && left.pullRequests == right.pullRequests;
}

bool haveEqualDependencies(const GitRepository& left, const GitRepository& right) {
    return left.dependencySummary.ecosystems == right.dependencySummary.ecosystems;
}

// What git tells of them is the same.
bool equalBesides(const GitRepository& left, const GitRepository& right) {
    GitRepository other = right;
    other.issues = left.issues;
    other.pullRequests = left.pullRequests;
    other.dependencySummary = left.dependencySummary;
    return left == other;
}

// Adds the repository to each list that it belongs to.
void compare(const GitRepository& before, const RepositorySnapshot& after,
             RepositoryChanges& changes) {
    if (!equalBesides(before, *after)) changes.changed.push_back(after);
    if (!haveEqualIssues(before, *after)) changes.issues.push_back(after);
    if (!haveEqualDependencies(before, *after)) changes.dependencies.push_back(after);
}

}  // namespace

RepositoryChanges changesBetween(const Snapshots& before, const Snapshots& after) {
    RepositoryChanges changes;
    const auto old = byPath(before);
    for (const auto& repository : after) {
        const auto known = old.find(repository->path);
        if (known == old.end()) {
            changes.changed.push_back(repository);
        } else if (known->second != repository.get()) {
            compare(*known->second, repository, changes);
        }
    }
    const auto present = byPath(after);
    std::ranges::copy_if(before, std::back_inserter(changes.removed), [&](const auto& repository) {
        return !present.contains(repository->path);
    });
    return changes;
}

std::string ChangeFeed::scanStarted(Date at) const {
    return form_ == Form::json ? line(event("scanStarted", at)) : std::string();
}

std::string ChangeFeed::scanFinished(Date at, const Snapshots& repositories) const {
    if (form_ == Form::forPeople) return {};
    JsonObject object = event("scanFinished", at);
    object["repositories"] = repositories.size();
    object["dirty"] = std::ranges::count_if(
        repositories, [](const auto& repository) { return !repository->isClean(); });
    return line(object);
}

std::string ChangeFeed::repository(Date at, const GitRepository& repository) const {
    if (form_ == Form::forPeople) {
        return fmt::format("{} {}\n", clockTime(at), statusLine(repository, style_));
    }
    JsonObject object = event("repository", at);
    object["repository"] = repositoryJson(repository);
    return line(object);
}

std::string ChangeFeed::issues(Date at, const GitRepository& repository) const {
    if (form_ == Form::forPeople) {
        return fmt::format("{} # {}  {}\n", clockTime(at), printable(repository.name),
                           issueCounts(repository.issues.size(), repository.pullRequests.size()));
    }
    JsonObject object = event("issues", at);
    object["path"] = repository.path;
    object["name"] = repository.name;
    object["issues"] = encodedJson(repository.issues, outputStyle);
    object["pullRequests"] = encodedJson(repository.pullRequests, outputStyle);
    return line(object);
}

std::string ChangeFeed::dependencies(Date at, const GitRepository& repository) const {
    const DependencySummary& summary = repository.dependencySummary;
    if (form_ == Form::forPeople) {
        if (summary.status() == DependencyHealth::checking) return {};
        return fmt::format("{} ▣ {}  {}\n", clockTime(at), printable(repository.name),
                           summary.inlineSummary().value_or("no dependencies"));
    }
    JsonObject object = event("dependencies", at);
    for (const auto& [key, value] : dependencyJson(repository.path, summary)) object[key] = value;
    return line(object);
}

std::string ChangeFeed::removed(Date at, const GitRepository& repository) const {
    if (form_ == Form::forPeople) {
        return fmt::format("{} - {}  removed\n", clockTime(at), printable(repository.name));
    }
    JsonObject object = event("removed", at);
    object["path"] = repository.path;
    object["name"] = repository.name;
    return line(object);
}

}  // namespace tarnbeck::cli
