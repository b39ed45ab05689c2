// What GitHub knows of a local repository: its open issues and open pull requests, asked of the
// command-line tool `gh` and never of GitHub's interface itself, and kept in a cache.
//
// Unless it says otherwise, an operation blocks and is never called from the main thread; any
// number of threads at once.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "GhListCommand.h"
#include "GitCommand.h"
#include "GitHubIssueCache.h"
#include "GitHubRepoScanResult.h"

namespace tarnbeck {

class GitHubScanner {
  public:
    // What it works with; all that is referred to must outlive it.
    struct Tools {
        ProcessLauncher& launcher;
        GitRunner git;
        ScanLog& log;
        const Clock& clock;
        WorkQueues& queues;
        // Waits on the calling thread, before something is tried once more.
        std::function<void(std::chrono::nanoseconds)> pause = sleepOnThisThread;
    };
    struct Options {
        std::string home;
        // Takes the place of `.config/tarnbeck/github-issues-cache.json` under the home.
        std::optional<std::string> cacheFileURLOverride = {};
        // Looked for in this order, once; no search path is used.
        std::vector<std::string> ghCandidates = {"/opt/homebrew/bin/gh", "/usr/local/bin/gh",
                                                 "/usr/bin/gh"};
        GhTimeouts timeouts = {};
    };
    struct ScanRequest {
        std::string at;  // the repository's path
        GitHubIssueRefreshPolicy policy = GitHubIssueRefreshPolicy::useCache;
    };

    GitHubScanner(const Options& options, Tools tools);

    // The open issues and pull requests of the repository at a path. When GitHub gives only one of
    // the two lists, or none, the cache fills the gap if it is young enough.
    GitHubRepoScanResult scan(const ScanRequest& request);

    // "owner/repo" of the remote `origin`. Once found it stays until the program ends.
    std::optional<std::string> gitHubOwnerRepo(const std::string& at);

    // "owner/repo" of a remote on GitHub, in its HTTPS or its SSH form; absent for all other hosts.
    // Every ".git" in the URL is dropped, not only a final one. Pure, any thread.
    static std::optional<std::string> parseOwnerRepo(std::string_view from);

    // What the cache has for a repository's path, however old. Any thread, the main one too: they
    // never wait for `gh` or for a writing; the first of all calls reads the cache file.
    std::optional<ImmutableList<GitHubIssue>> lastKnownIssues(const std::string& path) const;
    std::optional<ImmutableList<GitHubPullRequest>> lastKnownPullRequests(
        const std::string& path) const;
    std::optional<Date> lastKnownIssueFetchDate(const std::string& path) const;

    // Waits until what was stored so far is on disk: for the end of the program.
    void drain() { cache_.drain(); }

  private:
    static void sleepOnThisThread(std::chrono::nanoseconds duration);

    std::optional<ImmutableList<GitHubIssue>> fetchIssues(const std::string& ownerRepo);
    std::optional<ImmutableList<GitHubPullRequest>> fetchPullRequests(const std::string& ownerRepo);
    template <class Item>
    std::optional<ImmutableList<Item>> fetchItems(
        const GhListCommand::List& list, ImmutableList<Item> (&parser)(std::string_view bytes));
    template <class Item>
    std::optional<ImmutableList<Item>> fetchItemsOnce(
        const GhListCommand::List& list, ImmutableList<Item> (&parser)(std::string_view bytes));
    GitHubRepoScanResult storedSuccess(GitHubRepositoryData data, const std::string& path);

    const Tools tools_;
    GhListCommand ghList_;
    GitHubIssueCache cache_;
    std::mutex remoteCacheMutex_;
    std::unordered_map<std::string, std::string> remoteCache_;  // guarded by `remoteCacheMutex_`
};

}  // namespace tarnbeck
