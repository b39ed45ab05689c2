#include "GitRepository.h"

#include <algorithm>

#include <fmt/format.h>

#include "GitReferenceVisibility.h"

namespace tarnbeck {
namespace {

bool isMainline(const GitBranch& branch) {
    return branch.name == "main" || branch.name == "master";
}

std::string counted(std::int64_t count, std::string_view noun, std::string_view plural) {
    return fmt::format("{} {}", count, count == 1 ? noun : plural);
}

std::int64_t sizeOf(const auto& list) {
    return static_cast<std::int64_t>(list.size());
}

}  // namespace

StatusColor FileChange::statusColor() const {
    if (status == "M") return StatusColor::blue;
    if (status == "A") return StatusColor::green;
    if (status == "D") return StatusColor::red;
    if (status == "??") return StatusColor::gray;
    if (status == "UU") return StatusColor::orange;
    return StatusColor::secondary;
}

std::string_view FileChange::directoryPath() const {
    std::string_view path = filePath;
    if (path.ends_with('/')) path.remove_suffix(1);  // a repository inside this one
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view{} : path.substr(0, slash + 1);
}

bool FileChange::canDiscard() const {
    static constexpr std::array<std::string_view, 8> discardable = {"M",  "A",  "D",  "MM",
                                                                    "AM", "MD", "AD", "??"};
    return std::ranges::find(discardable, status) != discardable.end();
}

std::string GitWorktree::shortPath(std::string_view home) const {
    if (home.empty() || !path.starts_with(home)) return path;
    return "~" + path.substr(home.size());
}

bool GitRepository::isClean() const {
    return std::ranges::all_of(branches, isMainline) &&
           GitReferenceVisibility::visibleWorktrees(worktrees).empty() &&
           uncommittedChanges.empty() && !isDetachedHead && stashCount == 0 &&
           !gitConfigurationIssue;
}

std::string_view GitRepository::statusIcon() const {
    if (gitConfigurationIssue) return "exclamationmark.triangle.fill";
    if (isDetachedHead) return "exclamationmark.octagon.fill";
    if (!uncommittedChanges.empty()) return "pencil.circle.fill";
    if (syncStatus.is<GitSyncStatus::Ahead>()) return "arrow.up.circle.fill";
    if (syncStatus.is<GitSyncStatus::Behind>()) return "arrow.down.circle.fill";
    if (syncStatus.is<GitSyncStatus::Diverged>()) return "arrow.left.arrow.right.circle.fill";
    if (isClean()) return "checkmark.circle.fill";
    return "exclamationmark.triangle.fill";
}

StatusColor GitRepository::statusColor() const {
    if (gitConfigurationIssue) return StatusColor::orange;
    if (isDetachedHead || !uncommittedChanges.empty()) return StatusColor::red;
    if (syncStatus.is<GitSyncStatus::Behind>() || syncStatus.is<GitSyncStatus::Diverged>()) {
        return StatusColor::yellow;
    }
    if (syncStatus.is<GitSyncStatus::Ahead>()) return StatusColor::orange;
    return isClean() ? StatusColor::green : StatusColor::orange;
}

std::vector<std::string> GitRepository::summaryParts() const {
    std::vector<std::string> parts;
    const auto addCount = [&](std::int64_t count, std::string_view noun, std::string_view plural) {
        if (count > 0) parts.push_back(counted(count, noun, plural));
    };
    if (gitConfigurationIssue) parts.emplace_back("git config issue");
    addCount(sizeOf(branches) - std::ranges::count_if(branches, isMainline), "branch", "branches");
    addCount(sizeOf(GitReferenceVisibility::visibleWorktrees(worktrees)), "worktree", "worktrees");
    addCount(sizeOf(uncommittedChanges), "change", "changes");
    if (auto label = syncStatus.summaryLabel()) parts.push_back(*std::move(label));
    if (isDetachedHead) parts.emplace_back("detached HEAD");
    addCount(stashCount, "stash", "stashes");
    addCount(sizeOf(issues), "issue", "issues");
    addCount(sizeOf(pullRequests), "PR", "PRs");
    return parts;
}

}  // namespace tarnbeck
