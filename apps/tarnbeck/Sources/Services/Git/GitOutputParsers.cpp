#include "GitOutputParsers.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

#include "Text.h"

namespace tarnbeck::GitOutputParsers {
namespace {

// Room for one record a line, so that long outputs are not moved while they are read.
template <class RecordType>
std::vector<RecordType> listWithRoomFor(std::string_view output) {
    std::vector<RecordType> list;
    list.reserve(static_cast<std::size_t>(std::ranges::count(output, '\n')) + 1);
    return list;
}

// The rest of a line that begins with `prefix`.
std::optional<std::string_view> behind(std::string_view prefix, std::string_view line) {
    if (!line.starts_with(prefix)) return std::nullopt;
    return line.substr(prefix.size());
}

// A whole decimal integer; anything else counts as 0.
std::int64_t integerOr0(std::string_view digits) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc{} && end == digits.data() + digits.size() ? number : 0;
}

}  // namespace

std::vector<GitBranch> parseLocalBranches(std::string_view output) {
    auto branches = listWithRoomFor<GitBranch>(output);
    forEachLine(output, [&](std::string_view line) {
        line = line.substr(std::min(line.find_first_not_of('\t'), line.size()));
        if (line.empty()) return;
        const std::size_t tab = line.find('\t');
        const bool isCurrent = tab != std::string_view::npos && line.substr(tab + 1) == "*";
        branches.push_back({std::string(line.substr(0, tab)), isCurrent});
    });
    return branches;
}

std::vector<std::string> parseRemoteBranches(std::string_view output) {
    auto branches = listWithRoomFor<std::string>(output);
    forEachLine(output, [&](std::string_view line) {
        if (line.find('/') == std::string_view::npos) return;
        if (line.find("HEAD") != std::string_view::npos) return;
        branches.emplace_back(line);
    });
    return branches;
}

std::vector<FileChange> parseChanges(std::string_view output) {
    auto changes = listWithRoomFor<FileChange>(output);
    forEachLine(output, [&](std::string_view line) {
        if (line.size() < 3) return;
        const std::string_view status = trimming(line.substr(0, 2), ' ');
        changes.push_back(
            {std::string(status.empty() ? "?" : status), std::string(line.substr(3))});
    });
    return changes;
}

std::vector<GitStash> parseStashes(std::string_view output) {
    constexpr char unitSeparator = '\x1F';
    auto stashes = listWithRoomFor<GitStash>(output);
    forEachLine(output, [&](std::string_view line) {
        const std::size_t end = line.find(unitSeparator);
        if (end == 0) return;
        const std::string_view subject =
            end == std::string_view::npos ? std::string_view{} : line.substr(end + 1);
        stashes.push_back({std::string(line.substr(0, end)), std::string(subject)});
    });
    return stashes;
}

std::vector<GitWorktree> parseWorktrees(std::string_view output) {
    std::vector<GitWorktree> worktrees;
    GitWorktree nobody;  // what stands before the first path belongs to no worktree
    forEachLine(output, [&](std::string_view line) {
        GitWorktree& worktree = worktrees.empty() ? nobody : worktrees.back();
        if (const auto path = behind("worktree ", line)) {
            const bool isFirst = worktrees.empty();
            worktrees.push_back({.path = std::string(*path), .isMainWorktree = isFirst});
        } else if (const auto hash = behind("HEAD ", line)) {
            worktree.commitHash = *hash;
        } else if (const auto head = behind("branch refs/heads/", line)) {
            worktree.branch = *head;
        } else if (const auto reference = behind("branch ", line)) {
            worktree.branch = *reference;
        } else if (line == "detached") {
            worktree.isDetached = true;
        } else if (line == "bare") {
            worktree.isBare = true;
        }
    });
    return worktrees;
}

GitSyncStatus parseSyncStatus(std::string_view output) {
    if (output.empty()) return GitSyncStatus::Unknown{};
    std::optional<std::string> upstream;
    std::int64_t ahead = 0;
    std::int64_t behindCount = 0;
    forEachLine(output, [&](std::string_view line) {
        if (const auto name = behind("# branch.upstream ", line)) {
            upstream = *name;
        } else if (const auto counts = behind("# branch.ab ", line)) {
            forEachPiece(*counts, ' ', [&](std::string_view piece) {
                if (piece.starts_with('+')) ahead = integerOr0(piece.substr(1));
                if (piece.starts_with('-')) behindCount = integerOr0(piece.substr(1));
            });
        }
    });
    if (!upstream) return GitSyncStatus::NoUpstream{};
    if (ahead > 0 && behindCount > 0) return GitSyncStatus::Diverged{*upstream, ahead, behindCount};
    if (ahead > 0) return GitSyncStatus::Ahead{*upstream, ahead};
    if (behindCount > 0) return GitSyncStatus::Behind{*upstream, behindCount};
    return GitSyncStatus::UpToDate{*upstream};
}

std::vector<std::string> parseTags(std::string_view output) {
    auto tags = listWithRoomFor<std::string>(output);
    forEachLine(output, [&](std::string_view line) { tags.emplace_back(line); });
    return tags;
}

}  // namespace tarnbeck::GitOutputParsers
