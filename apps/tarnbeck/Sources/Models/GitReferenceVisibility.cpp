#include "GitReferenceVisibility.h"

#include <algorithm>
#include <iterator>

namespace tarnbeck::GitReferenceVisibility {

std::vector<GitWorktree> visibleWorktrees(const ImmutableList<GitWorktree>& worktrees) {
    std::vector<GitWorktree> visible;
    std::ranges::copy_if(worktrees, std::back_inserter(visible), [](const GitWorktree& worktree) {
        return !worktree.isMainWorktree && !worktree.isBare;
    });
    return visible;
}

std::vector<std::string> visibleRemoteBranches(const ImmutableList<std::string>& branches) {
    std::vector<std::string> visible;
    std::ranges::copy_if(branches, std::back_inserter(visible), [](const std::string& branch) {
        return branch.find('/') != std::string::npos && !branch.ends_with("/main") &&
               !branch.ends_with("/master") && !branch.ends_with("/HEAD");
    });
    return visible;
}

}  // namespace tarnbeck::GitReferenceVisibility
