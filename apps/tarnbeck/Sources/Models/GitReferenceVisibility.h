// Which worktrees and remote branches are shown, and counted by `GitRepository::isClean`.
#pragma once

#include <string>
#include <vector>

#include "GitRepository.h"
#include "ImmutableList.h"

namespace tarnbeck::GitReferenceVisibility {

// All but the main one and bare ones.
std::vector<GitWorktree> visibleWorktrees(const ImmutableList<GitWorktree>& worktrees);

// Those with a remote that are not its main, master or HEAD.
std::vector<std::string> visibleRemoteBranches(const ImmutableList<std::string>& branches);

}  // namespace tarnbeck::GitReferenceVisibility
