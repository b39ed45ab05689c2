#include "RepositoryGitDetails.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "FileChangeRow.h"
#include "GitReferenceVisibility.h"
#include "RepositoryIssuesSection.h"
#include "RowParts.h"
#include "Text.h"

namespace tarnbeck {
namespace {

constexpr std::size_t maximumShownChanges = 20;

// The linked worktrees by the branch that is checked out in them.
using WorktreesByBranch = std::multimap<std::string_view, const GitWorktree*>;

struct WorkTreeChanges {
    const std::string* workTree;
    const ImmutableList<FileChange>* changes;
};

WorktreesByBranch worktreesByBranch(const std::vector<GitWorktree>& worktrees) {
    WorktreesByBranch byBranch;
    for (const GitWorktree& worktree : worktrees) {
        if (worktree.branch) byBranch.emplace(*worktree.branch, &worktree);
    }
    return byBranch;
}

// What is to be shown below a branch. Where the repository itself is a linked worktree, it stands
// among them, and its changes are those of the current branch.
std::vector<WorkTreeChanges> changesOf(const GitBranch& branch, const GitRepository& repository,
                                       const WorktreesByBranch& worktrees) {
    std::vector<WorkTreeChanges> changes;
    if (branch.isCurrent && !repository.uncommittedChanges.empty()) {
        changes.push_back({&repository.path, &repository.uncommittedChanges});
    }
    const auto [begin, end] = worktrees.equal_range(branch.name);
    for (auto each = begin; each != end; ++each) {
        const GitWorktree& worktree = *each->second;
        if (worktree.changes.empty() || worktree.path == repository.path) continue;
        changes.push_back({&worktree.path, &worktree.changes});
    }
    return changes;
}

std::size_t countOf(const std::vector<WorkTreeChanges>& changes) {
    std::size_t count = 0;
    for (const WorkTreeChanges& each : changes) count += each.changes->size();
    return count;
}

void emitAlertRows(const SectionContext& context, RowSink& sink) {
    const GitRepository& repository = context.repository;
    const auto emit = [&](Row alert) {
        alert.accessibleName = "Warning: " + alert.title;
        sink.add(Row::Kind::alert, [&] { return std::move(alert); });
    };
    if (repository.gitConfigurationIssue) {
        emit({.id = rowIdBelow(repository.path, "configurationIssue"),
              .symbol = "exclamationmark.octagon",
              .symbolColor = StatusColor::orange,
              .title = "Git config issue: core.bare=true despite an existing worktree"});
    }
    if (repository.isDetachedHead) {
        emit({.id = rowIdBelow(repository.path, "detachedHead"),
              .symbol = "exclamationmark.triangle",
              .symbolColor = StatusColor::red,
              .title =
                  "Detached HEAD at " + printable(repository.currentBranch.value_or("unknown"))});
    }
}

RowAction gitRefreshAccessory(bool isInProgress) {
    return {.kind = RowActionKind::refreshGit,
            .symbol = "arrow.clockwise",
            .help = isInProgress ? "Refreshing git data…" : "Refresh git data for this repository",
            .isInProgress = isInProgress};
}

class BranchesSection {
  public:
    BranchesSection(const SectionContext& context, const std::vector<GitWorktree>& worktrees,
                    RowSink& sink)
        : context_(context), worktrees_(worktreesByBranch(worktrees)), sink_(sink) {}

    void emit() {
        const SectionFlags& flags = context_.flags;
        CollapsibleSubsection subsection{
            .key = SubsectionKey::branches,
            .title = "Branches",
            .icon = "arrow.triangle.branch",
            .count = static_cast<std::int64_t>(context_.repository.branches.size()),
            .isExpanded = context_.state.showBranches};
        if (flags.canRefreshGit || flags.gitReloadInProgress) {
            subsection.headerAccessory = gitRefreshAccessory(flags.gitReloadInProgress);
        }
        emitSubsection(context_, subsection, sink_, [&] {
            for (const GitBranch& branch : context_.repository.branches) emitBranch(branch);
        });
    }

  private:
    void emitBranch(const GitBranch& branch) {
        const auto changes = changesOf(branch, context_.repository, worktrees_);
        const auto stored = context_.state.branchChangesExpanded.find(branch.name);
        const bool isExpanded = !changes.empty() &&
                                stored != context_.state.branchChangesExpanded.end() &&
                                stored->second;
        sink_.add(Row::Kind::branch, [&] {
            Row row = branchRow(branch);
            if (!changes.empty()) makeExpandable(row, isExpanded, countOf(changes));
            return row;
        });
        if (isExpanded) emitChanges(branch, changes);
    }

    Row branchRow(const GitBranch& branch) const {
        const std::string title = printable(branch.name);
        Row row{.id = rowIdBelow(rowIdBelow(context_.repository.path, SubsectionKey::branches),
                                 branch.name),
                .depth = 1,
                .symbol = branch.isCurrent ? "circle.fill" : "circle",
                .title = title,
                .isTitleHighlighted = context_.search.isIn(branch.name),
                .accessibleName = "Branch " + title};
        if (branch.isCurrent) {
            row.metadata.labels.emplace_back("current");
            row.accessibleName += ", current";
        }
        if (worktrees_.contains(branch.name)) {
            row.metadata.labels.emplace_back("worktree");
            row.accessibleName += ", checked out in a worktree";
        }
        row.actions.push_back(copyAction({branch.name, "Copy branch name", "Branch name copied"}));
        return row;
    }

    static void makeExpandable(Row& row, bool isExpanded, std::size_t count) {
        row.isExpanded = isExpanded;
        row.click = RowAction{.kind = RowActionKind::toggle,
                              .help = isExpanded ? "Hide changes" : "Show changes"};
        row.accessibleName += ", " +
                              countedWords(static_cast<std::int64_t>(count), "change", "changes") +
                              (isExpanded ? ", expanded" : ", collapsed");
    }

    void emitChanges(const GitBranch& branch, const std::vector<WorkTreeChanges>& changes) {
        std::size_t room = maximumShownChanges;
        for (const WorkTreeChanges& each : changes) {
            const std::size_t shown = std::min(room, each.changes->size());
            for (std::size_t index = 0; index < shown; ++index) {
                emitChange(branch, *each.workTree, (*each.changes)[index]);
            }
            room -= shown;
        }
        const std::size_t count = countOf(changes);
        if (count <= maximumShownChanges) return;
        const std::size_t rest = count - maximumShownChanges;
        sink_.add(Row::Kind::more, [&] {
            return moreRow(
                {.id = rowIdBelow(rowIdBelow(context_.repository.path, "moreChanges"), branch.name),
                 .depth = 2,
                 .title = andMore(rest),
                 .accessibleName =
                     "And " + countedWords(static_cast<std::int64_t>(rest), "more changed file",
                                           "more changed files")});
        });
    }

    void emitChange(const GitBranch& branch, const std::string& workTree,
                    const FileChange& change) {
        const auto id = [&] {
            return fileChangeRowId(context_.repository.path,
                                   {branch.name, workTree, change.filePath});
        };
        const DiscardState discard = discardOf(id);
        if (discard.isOptimisticallyHidden) return;
        sink_.add(Row::Kind::fileChange, [&] {
            return fileChangeRow({.change = change,
                                  .basePath = workTree,
                                  .id = id(),
                                  .search = context_.search,
                                  .isDiscarding = discard.isDiscarding});
        });
    }

    template <class Id>
    DiscardState discardOf(Id id) const {
        const auto& discards = context_.state.discards;
        if (discards.empty()) return {};
        const auto found = discards.find(id());
        return found == discards.end() ? DiscardState{} : found->second;
    }

    const SectionContext& context_;
    const WorktreesByBranch worktrees_;
    RowSink& sink_;
};

std::string worktreeLabel(const GitWorktree& worktree) {
    constexpr std::size_t shortHashLength = 7;
    if (worktree.branch) return *worktree.branch;
    if (!worktree.commitHash) return "detached";
    return "detached @ " + worktree.commitHash->substr(0, shortHashLength);
}

Row worktreeRow(const SectionContext& context, const GitWorktree& worktree) {
    const std::string label = worktreeLabel(worktree);
    Row row{.id = rowIdBelow(rowIdBelow(context.repository.path, SubsectionKey::worktrees),
                             worktree.path),
            .depth = 1,
            .symbol = "folder.fill",
            .title = printable(label),
            .isTitleHighlighted = context.search.isIn(label)};
    row.accessibleName = "Worktree " + row.title + ", at " + printable(worktree.path);
    row.actions.push_back(copyAction({label, "Copy worktree label", "Worktree label copied"}));
    return row;
}

void emitWorktreesSection(const SectionContext& context, const std::vector<GitWorktree>& worktrees,
                          RowSink& sink) {
    const CollapsibleSubsection subsection{.key = SubsectionKey::worktrees,
                                           .title = "Worktrees",
                                           .icon = "folder.badge.gearshape",
                                           .count = static_cast<std::int64_t>(worktrees.size()),
                                           .isExpanded = context.state.showWorktrees};
    emitSubsection(context, subsection, sink, [&] {
        for (const GitWorktree& worktree : worktrees) {
            sink.add(Row::Kind::worktree, [&] { return worktreeRow(context, worktree); });
        }
    });
}

}  // namespace

void emitGitDetails(const SectionContext& context, RowSink& sink) {
    const auto worktrees = GitReferenceVisibility::visibleWorktrees(context.repository.worktrees);
    emitAlertRows(context, sink);
    if (!context.repository.branches.empty()) BranchesSection(context, worktrees, sink).emit();
    if (!worktrees.empty()) emitWorktreesSection(context, worktrees, sink);
    emitReferenceSections(context, sink);
    if (context.flags.showIssues) emitIssuesSection(context, sink);
}

bool hasFileChange(const GitRepository& repository, std::string_view rowId) {
    const auto identity = fileChangeIdentity(repository.path, rowId);
    if (!identity) return false;
    const auto worktrees = GitReferenceVisibility::visibleWorktrees(repository.worktrees);
    const auto byBranch = worktreesByBranch(worktrees);
    const auto branch = std::ranges::find(repository.branches, identity->branch, &GitBranch::name);
    if (branch == repository.branches.end()) return false;
    const auto changes = changesOf(*branch, repository, byBranch);
    return std::ranges::any_of(changes, [&](const WorkTreeChanges& each) {
        return *each.workTree == identity->workTree &&
               std::ranges::find(*each.changes, identity->filePath, &FileChange::filePath) !=
                   each.changes->end();
    });
}

}  // namespace tarnbeck
