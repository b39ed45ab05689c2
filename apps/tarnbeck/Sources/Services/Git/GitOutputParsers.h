// git's text outputs, read into records. Pure, any thread; the command lines stand with the scan
// of a repository. The formats are git's own (git-status, git-worktree, git-branch).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "GitRepository.h"

namespace tarnbeck::GitOutputParsers {

// `branch --format=%(refname:short)<tab>%(HEAD)`
std::vector<GitBranch> parseLocalBranches(std::string_view output);

// `branch -r --format=%(refname:short)`. Whatever holds "HEAD" anywhere is left out.
std::vector<std::string> parseRemoteBranches(std::string_view output);

// `status --porcelain -uall`. A path is everything behind the status, as it stands: renames keep
// git's arrow, quoted names their quotes.
std::vector<FileChange> parseChanges(std::string_view output);

// `stash list --format=%gd%x1f%gs`
std::vector<GitStash> parseStashes(std::string_view output);

// `worktree list --porcelain`. The first one is the main worktree.
std::vector<GitWorktree> parseWorktrees(std::string_view output);

// `status --porcelain=v2 --branch -u`. A branch whose upstream has gone counts as up to date.
GitSyncStatus parseSyncStatus(std::string_view output);

// `tag --sort=-creatordate`
std::vector<std::string> parseTags(std::string_view output);

}  // namespace tarnbeck::GitOutputParsers
