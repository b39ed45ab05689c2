// From changed paths to the cheapest refresh that is still correct: the few repositories that are
// concerned, or else a full scan, and neither too often.
#include <algorithm>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

#include "FileSystem.h"
#include "Paths.h"
#include "RepositoryScanner.h"
#include "Text.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;

constexpr auto debounceInterval = 1500ms;
constexpr std::size_t mostPendingPaths = 512;
constexpr std::size_t mostScopedRepositories = 4;
constexpr std::ptrdiff_t mostLoggedPaths = 4;

// The innermost of the path itself and the folders around it that is watched.
WatchRootMap::const_iterator watchRootAround(std::string_view path, const WatchRootMap& roots) {
    auto root = roots.find(path);
    while (root == roots.end() && !path.empty()) {
        const std::size_t slash = path.rfind('/');
        path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
        root = path.empty() ? roots.end() : roots.find(path);
    }
    return root;
}

std::string scopedRefreshLine(const std::set<std::string>& members,
                              const std::set<std::string>& changedPaths) {
    const std::vector<std::string> repositories(members.begin(), members.end());
    const auto end = std::ranges::next(changedPaths.begin(), mostLoggedPaths, changedPaths.end());
    const std::vector<std::string> first(changedPaths.begin(), end);
    return fmt::format("FSEVENT scoped refresh repos={} paths[{}]={}", joined(repositories, ","),
                       changedPaths.size(), joined(first, ","));
}

}  // namespace

std::vector<std::string> RepositoryScanner::buildWatchPaths(const WatchSubject& subject) {
    std::vector<std::string> paths;
    std::unordered_set<std::string> seen;
    const auto add = [&](const std::string& path) {
        std::string expanded = expandingTilde(path, subject.home);
        if (seen.insert(expanded).second) paths.push_back(std::move(expanded));
    };
    for (const std::string& path : subject.configuredPaths) add(path);
    for (const auto& repository : subject.repositories) {
        for (const GitWorktree& worktree : repository->worktrees) {
            if (!worktree.isBare) add(worktree.path);
        }
    }
    std::erase_if(paths, [](const std::string& path) { return !isDirectory(path); });
    std::ranges::sort(paths);
    return paths;
}

WatchRootMap RepositoryScanner::buildWatchRootMapping(const WatchSubject& subject) {
    WatchRootMap roots;
    for (const std::string& path : subject.configuredPaths) {
        const std::string expanded = expandingTilde(path, subject.home);
        roots.insert_or_assign(expanded, expanded);
    }
    for (const auto& repository : subject.repositories) {
        for (const GitWorktree& worktree : repository->worktrees) {
            if (worktree.isBare) continue;
            roots.try_emplace(expandingTilde(worktree.path, subject.home), repository->path);
        }
    }
    return roots;
}

std::optional<std::set<std::string>> RepositoryScanner::repoPathsAffected(
    const std::set<std::string>& byChangedPaths, const WatchRootMap& watchRootToRepoPath) {
    if (byChangedPaths.empty()) return std::nullopt;
    std::set<std::string> affected;
    for (std::string_view path : byChangedPaths) {
        if (path.ends_with('/')) path.remove_suffix(1);
        const auto root = watchRootAround(path, watchRootToRepoPath);
        if (root == watchRootToRepoPath.end()) return std::nullopt;
        affected.insert(root->second);
    }
    return affected;
}

void RepositoryScanner::startFileWatching() {
    if (!services_.fileEvents) return;
    const auto changed =
        anchor_.guarded([](RepositoryScanner& self, std::vector<std::string>& paths) {
            self.requestFileSystemRefresh(std::move(paths));
        });
    fileWatcher_.emplace(
        FileSystemWatcher::Services{.loop = services_.loop,
                                    .queues = services_.queues,
                                    .log = services_.log,
                                    .events = *services_.fileEvents,
                                    .report = report_},
        FileSystemWatcher::Options{
            .debounceInterval = debounceInterval,
            .excludes = FileSystemWatcher::defaultExcludes(),
            .callback = [&loop = services_.loop, changed](std::vector<std::string> paths) {
                loop.post([changed, paths = std::move(paths)]() mutable { changed(paths); });
            }});
    refreshFileWatchingPaths(true);
}

WatchSubject RepositoryScanner::watchSubject() const {
    return {.configuredPaths = configuration().repoPaths,
            .repositories = repositories(),
            .home = services_.home};
}

void RepositoryScanner::refreshFileWatchingPaths(bool force) {
    WatchSubject subject = watchSubject();
    watchRootToRepoPath_ = buildWatchRootMapping(subject);
    if (!fileWatcher_) return;
    const auto apply =
        anchor_.guarded([force](RepositoryScanner& self, std::vector<std::string>& paths) {
            self.applyWatchPaths(std::move(paths), force);
        });
    // The questions to the file system are asked on the watcher's queue; the answers come back in
    // the order of the questions.
    fileWatcher_->perform([subject = std::move(subject), &loop = services_.loop, apply] {
        loop.post([apply, paths = buildWatchPaths(subject)]() mutable { apply(paths); });
    });
}

void RepositoryScanner::applyWatchPaths(std::vector<std::string> paths, bool force) {
    if (!force && paths == watchedPaths_) return;
    watchedPaths_ = std::move(paths);
    fileWatcher_->watch(watchedPaths_);
    // Changing the stream drops what was about to be told, and sees nothing until the new one
    // stands; one look at everything makes up for it. Who forces it asks for a scan anyway.
    if (!force) requestFileSystemRefresh({});
}

void RepositoryScanner::requestFileSystemRefresh(std::vector<std::string> changedPaths) {
    if (changedPaths.empty()) pendingFileSystemFullScan_ = true;
    for (std::string& path : changedPaths) pendingFileSystemEventPaths_.insert(std::move(path));
    if (pendingFileSystemEventPaths_.size() > mostPendingPaths) {
        pendingFileSystemFullScan_ = true;
        pendingFileSystemEventPaths_.clear();
    }
    const std::chrono::nanoseconds wait = timeToNextFileSystemRefresh();
    if (wait > 0ns) {
        scheduleDelayedFileSystemRefresh(wait);
    } else {
        performFileSystemRefresh();
    }
}

// A clock that jumped back makes the interval count as passed.
std::chrono::nanoseconds RepositoryScanner::timeToNextFileSystemRefresh() const {
    if (!lastFileSystemRefreshAt_) return 0ns;
    const std::chrono::nanoseconds passed = services_.loop.wallNow() - *lastFileSystemRefreshAt_;
    return passed < 0ns ? 0ns : fileSystemRefreshMinimumInterval_ - passed;
}

void RepositoryScanner::scheduleDelayedFileSystemRefresh(std::chrono::nanoseconds after) {
    delayedFileSystemRefreshTask_ = services_.loop.after(
        std::max<std::chrono::nanoseconds>(after, 0ns), [this] { performFileSystemRefresh(); });
}

void RepositoryScanner::forgetPendingFileSystemEvents() {
    delayedFileSystemRefreshTask_.cancel();
    pendingFileSystemEventPaths_.clear();
    pendingFileSystemFullScan_ = false;
}

void RepositoryScanner::performFileSystemRefresh() {
    const auto changedPaths = std::exchange(pendingFileSystemEventPaths_, {});
    const bool fullScan = std::exchange(pendingFileSystemFullScan_, false);
    const auto members = fullScan ? std::nullopt : repositoriesToRefreshFor(changedPaths);
    if (!members) {
        requestRefresh({.trigger = RepositoryRefreshTrigger::fileSystemEvent});
        return;
    }
    lastFileSystemRefreshAt_ = services_.loop.wallNow();
    services_.log.write(scopedRefreshLine(*members, changedPaths));
    for (const std::string& path : *members) refreshGitForRepo(path);
}

// Absent where only a full scan will do.
std::optional<std::set<std::string>> RepositoryScanner::repositoriesToRefreshFor(
    const std::set<std::string>& changedPaths) const {
    if (isScanning()) return std::nullopt;
    auto members = repoPathsAffected(changedPaths, watchRootToRepoPath_);
    if (!members || members->size() > mostScopedRepositories) return std::nullopt;
    const bool allKnown = std::ranges::all_of(
        *members, [this](const std::string& path) { return repositoryAt(path) != nullptr; });
    return allKnown ? members : std::nullopt;
}

}  // namespace tarnbeck
