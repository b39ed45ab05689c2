#include "GitHubScanner.h"

#include <thread>
#include <utility>

#include "GitHubListParsers.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;

constexpr auto remoteTimeout = 15s;
constexpr auto retryPause = 300ms;

std::string cacheFileURL(const GitHubScanner::Options& options) {
    return options.cacheFileURLOverride.value_or(options.home +
                                                 "/.config/tarnbeck/github-issues-cache.json");
}

}  // namespace

GitHubScanner::GitHubScanner(const Options& options, Tools tools)
    : tools_(std::move(tools)),
      ghList_(
          {.home = options.home, .executables = options.ghCandidates, .timeouts = options.timeouts},
          tools_.launcher, tools_.log),
      cache_(cacheFileURL(options),
             {.log = tools_.log, .clock = tools_.clock, .queues = tools_.queues}) {}

GitHubRepoScanResult GitHubScanner::scan(const ScanRequest& request) {
    const auto ownerRepo = gitHubOwnerRepo(request.at);
    if (!ownerRepo) return {GitHubRepoScanResult::Skipped{}};
    if (request.policy == GitHubIssueRefreshPolicy::useCache) {
        if (auto cached = cache_.cachedData(request.at)) {
            return {GitHubRepoScanResult::Success{*std::move(cached)}};
        }
    }
    auto issues = fetchIssues(*ownerRepo);
    auto pullRequests = fetchPullRequests(*ownerRepo);
    if (issues && pullRequests) {
        return storedSuccess({*std::move(issues), *std::move(pullRequests)}, request.at);
    }
    auto cached = cache_.cachedData(request.at);
    if (!cached) return {GitHubRepoScanResult::Failed{}};
    if (!issues && !pullRequests) return {GitHubRepoScanResult::Success{*std::move(cached)}};
    return storedSuccess({.issues = issues.value_or(cached->issues),
                          .pullRequests = pullRequests.value_or(cached->pullRequests)},
                         request.at);
}

GitHubRepoScanResult GitHubScanner::storedSuccess(GitHubRepositoryData data,
                                                  const std::string& path) {
    cache_.store(data, path);
    return {GitHubRepoScanResult::Success{std::move(data)}};
}

// Two callers at once may both ask git about one path; their answers are the same.
std::optional<std::string> GitHubScanner::gitHubOwnerRepo(const std::string& at) {
    {
        const std::lock_guard lock(remoteCacheMutex_);
        const auto known = remoteCache_.find(at);
        if (known != remoteCache_.end()) return known->second;
    }
    const auto url = tools_.git({.executableArgs = {"-C", at, "remote", "get-url", "origin"},
                                 .logRepoPath = at,
                                 .logicalArgs = {"remote", "get-url", "origin"},
                                 .timeout = remoteTimeout});
    auto ownerRepo = url ? parseOwnerRepo(*url) : std::nullopt;
    if (!ownerRepo) return std::nullopt;
    const std::lock_guard lock(remoteCacheMutex_);
    remoteCache_[at] = *ownerRepo;
    return ownerRepo;
}

std::optional<ImmutableList<GitHubIssue>> GitHubScanner::lastKnownIssues(
    const std::string& path) const {
    auto entry = cache_.entry(path);
    if (!entry) return std::nullopt;
    return std::move(entry->data.issues);
}

std::optional<ImmutableList<GitHubPullRequest>> GitHubScanner::lastKnownPullRequests(
    const std::string& path) const {
    auto entry = cache_.entry(path);
    if (!entry) return std::nullopt;
    return std::move(entry->data.pullRequests);
}

std::optional<Date> GitHubScanner::lastKnownIssueFetchDate(const std::string& path) const {
    const auto entry = cache_.entry(path);
    if (!entry) return std::nullopt;
    return entry->fetchedAt;
}

void GitHubScanner::sleepOnThisThread(std::chrono::nanoseconds duration) {
    std::this_thread::sleep_for(duration);
}

std::optional<ImmutableList<GitHubIssue>> GitHubScanner::fetchIssues(const std::string& ownerRepo) {
    return fetchItems({.resource = "issue",
                       .ownerRepo = ownerRepo,
                       .jsonFields = "number,title,state,labels,author,createdAt,updatedAt,url"},
                      GitHubListParsers::parseIssuesJSON);
}

std::optional<ImmutableList<GitHubPullRequest>> GitHubScanner::fetchPullRequests(
    const std::string& ownerRepo) {
    return fetchItems(
        {.resource = "pr",
         .ownerRepo = ownerRepo,
         .jsonFields = "number,title,state,labels,author,createdAt,updatedAt,isDraft,url"},
        GitHubListParsers::parsePullRequestsJSON);
}

template <class Item>
std::optional<ImmutableList<Item>> GitHubScanner::fetchItems(
    const GhListCommand::List& list, ImmutableList<Item> (&parser)(std::string_view bytes)) {
    auto items = fetchItemsOnce(list, parser);
    if (items) return items;
    tools_.pause(retryPause);
    return fetchItemsOnce(list, parser);
}

template <class Item>
std::optional<ImmutableList<Item>> GitHubScanner::fetchItemsOnce(
    const GhListCommand::List& list, ImmutableList<Item> (&parser)(std::string_view bytes)) {
    const auto output = ghList_.run(list);
    if (!output) return std::nullopt;
    return parser(*output);
}

}  // namespace tarnbeck
