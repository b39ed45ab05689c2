// The snapshot of one local repository at the moment of its last scan: plain values that compare
// and hash by their fields. A new scan makes a new snapshot; a published one never changes.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "DependencyStatus.h"
#include "GitHubIssue.h"
#include "GitHubPullRequest.h"
#include "GitSyncStatus.h"
#include "ImmutableList.h"
#include "Record.h"
#include "StatusColor.h"
#include "TextEnumeration.h"

namespace tarnbeck {

struct GitBranch {
    std::string name;  // identity
    bool isCurrent = false;

    bool operator==(const GitBranch&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("name", &GitBranch::name),
                          field("isCurrent", &GitBranch::isCurrent)};
    }
};

struct FileChange {
    std::string status;    // the letters of git's short status, without blanks
    std::string filePath;  // identity; relative to the work tree, quoted where git quotes it

    // Blue for "M", green for "A", red for "D", gray for "??", orange for "UU", else secondary.
    StatusColor statusColor() const;
    // "src/app/" of "src/app/main.cpp"; empty for a file at the top.
    std::string_view directoryPath() const;
    // Renames, copies and conflicts can't be discarded through a row.
    bool canDiscard() const;

    bool operator==(const FileChange&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("status", &FileChange::status),
                          field("filePath", &FileChange::filePath)};
    }
};

struct GitWorktree {
    std::string path;  // identity
    std::optional<std::string> branch;
    std::optional<std::string> commitHash;
    bool isBare = false;
    bool isDetached = false;
    bool isMainWorktree = false;
    ImmutableList<FileChange> changes;

    // The path with `home` at its beginning shown as "~".
    std::string shortPath(std::string_view home) const;

    bool operator==(const GitWorktree&) const = default;
    static constexpr auto fields() {
        return std::tuple{
            field("path", &GitWorktree::path),
            field("branch", &GitWorktree::branch),
            field("commitHash", &GitWorktree::commitHash),
            field("isBare", &GitWorktree::isBare),
            field("isDetached", &GitWorktree::isDetached),
            field("isMainWorktree", &GitWorktree::isMainWorktree),
            field("changes", &GitWorktree::changes),
        };
    }
};

struct GitStash {
    std::string reference;  // identity; "stash@{0}"
    std::string subject;

    bool operator==(const GitStash&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("reference", &GitStash::reference),
                          field("subject", &GitStash::subject)};
    }
};

// `core.bare` is set although the directory has a work tree.
enum class GitConfigurationIssue { coreBareWorktreeMismatch };

constexpr auto rawValues(GitConfigurationIssue /*tag*/) {
    return std::to_array<std::pair<GitConfigurationIssue, std::string_view>>({
        {GitConfigurationIssue::coreBareWorktreeMismatch, "coreBareWorktreeMismatch"},
    });
}

struct GitRepository {
    std::string path;                          // identity: the work tree, absolute, tilde expanded
    std::string name;                          // last component of `path`
    std::optional<std::string> currentBranch;  // or the short hash when HEAD is detached
    bool isDetachedHead = false;
    ImmutableList<GitBranch> branches;             // in git's order
    ImmutableList<std::string> remoteBranches;     // with their remote as prefix
    std::set<std::string> gitHubOwnerRepos;        // "owner/repo", lower-cased
    ImmutableList<GitWorktree> worktrees;          // the main one first
    ImmutableList<std::string> tags;               // newest first
    ImmutableList<FileChange> uncommittedChanges;  // of the main work tree
    std::int64_t stashCount = 0;
    ImmutableList<GitStash> stashes;  // newest first
    GitSyncStatus syncStatus;
    std::optional<GitConfigurationIssue> gitConfigurationIssue;
    // What slower sources fill; carried over from snapshot to snapshot.
    DependencySummary dependencySummary;
    ImmutableList<GitHubIssue> issues;
    ImmutableList<GitHubPullRequest> pullRequests;

    // Nothing here needs work: only main and master, no visible worktree, no change, no stash, a
    // branch checked out and the configuration in order. The upstream plays no part.
    bool isClean() const;
    // The name of the symbol that stands for the repository.
    std::string_view statusIcon() const;
    StatusColor statusColor() const;
    // Short texts on what is to be seen, in a fixed order: "2 branches", "1 change", "ahead 2".
    std::vector<std::string> summaryParts() const;

    bool operator==(const GitRepository&) const = default;
    static constexpr auto fields() {
        return std::tuple{
            field("path", &GitRepository::path),
            field("name", &GitRepository::name),
            field("currentBranch", &GitRepository::currentBranch),
            field("isDetachedHead", &GitRepository::isDetachedHead),
            field("branches", &GitRepository::branches),
            field("remoteBranches", &GitRepository::remoteBranches),
            field("gitHubOwnerRepos", &GitRepository::gitHubOwnerRepos),
            field("worktrees", &GitRepository::worktrees),
            field("tags", &GitRepository::tags),
            field("uncommittedChanges", &GitRepository::uncommittedChanges),
            field("stashCount", &GitRepository::stashCount),
            field("stashes", &GitRepository::stashes),
            field("syncStatus", &GitRepository::syncStatus),
            field("gitConfigurationIssue", &GitRepository::gitConfigurationIssue),
            field("dependencySummary", &GitRepository::dependencySummary),
            field("issues", &GitRepository::issues),
            field("pullRequests", &GitRepository::pullRequests),
        };
    }
};

// A published snapshot: shared by all who hold it, changed by none.
using RepositorySnapshot = std::shared_ptr<const GitRepository>;

}  // namespace tarnbeck
