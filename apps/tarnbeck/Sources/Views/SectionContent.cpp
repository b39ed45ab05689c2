#include "SectionContent.h"

#include "GitReferenceVisibility.h"
#include "RepositoryGitDetails.h"
#include "RepositoryIssuesSection.h"
#include "RepositorySectionHeader.h"
#include "RowSink.h"

namespace tarnbeck {
namespace {

bool hasVisibleGitDetails(const SectionInput& input) {
    const GitRepository& repository = input.repository;
    const SectionFlags& flags = input.flags;
    using namespace GitReferenceVisibility;
    return !repository.branches.empty() || !visibleWorktrees(repository.worktrees).empty() ||
           (flags.showRemotes && !visibleRemoteBranches(repository.remoteBranches).empty()) ||
           (flags.showTags && !repository.tags.empty()) || repository.stashCount > 0 ||
           repository.isDetachedHead || flags.showIssues;
}

bool hasVisibleDetails(const SectionInput& input) {
    return (input.flags.showGitDetails && hasVisibleGitDetails(input)) ||
           input.flags.showIssuesOnly || input.flags.showDependencyDetails;
}

void emitDetails(const SectionInput& input, RowSink& sink) {
    if (!input.flags.isExpanded || !hasVisibleDetails(input)) return;
    if (input.flags.showGitDetails) emitGitDetails(input, sink);
    if (input.flags.showIssuesOnly) emitIssuesSection(input, sink);
}

}  // namespace

SectionContent sectionContent(const SectionInput& input) {
    SectionContent content{.path = input.repository.path, .header = sectionHeader(input)};
    RowSink sink(content.rows);
    emitDetails(input, sink);
    return content;
}

std::vector<Row::Kind> sectionRowKinds(const SectionInput& input) {
    std::vector<Row::Kind> kinds;
    RowSink sink(kinds);
    emitDetails(input, sink);
    return kinds;
}

}  // namespace tarnbeck
