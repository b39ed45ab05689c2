#include "SectionContent.h"

#include "GitReferenceVisibility.h"
#include "RepositoryGitDetails.h"
#include "RepositoryIssuesSection.h"
#include "RepositorySectionHeader.h"
#include "RowSink.h"

namespace tarnbeck {
namespace {

bool hasVisibleGitDetails(const SectionContext& context) {
    const GitRepository& repository = context.repository;
    const SectionFlags& flags = context.flags;
    using namespace GitReferenceVisibility;
    return !repository.branches.empty() || !visibleWorktrees(repository.worktrees).empty() ||
           (flags.showRemotes && !visibleRemoteBranches(repository.remoteBranches).empty()) ||
           (flags.showTags && !repository.tags.empty()) || repository.stashCount > 0 ||
           repository.isDetachedHead || flags.showIssues;
}

bool hasVisibleDetails(const SectionContext& context) {
    return (context.flags.showGitDetails && hasVisibleGitDetails(context)) ||
           context.flags.showIssuesOnly || context.flags.showDependencyDetails;
}

void emitDetails(const SectionContext& context, RowSink& sink) {
    if (!context.flags.isExpanded || !hasVisibleDetails(context)) return;
    if (context.flags.showGitDetails) emitGitDetails(context, sink);
    if (context.flags.showIssuesOnly) emitIssuesSection(context, sink);
}

}  // namespace

SectionContent sectionContent(const SectionInput& input) {
    const CaseInsensitiveSearch search(input.flags.searchHighlight);
    const SectionContext context{input.repository, input.state, input.flags, search};
    SectionContent content{.path = input.repository.path, .header = sectionHeader(context)};
    RowSink sink(content.rows);
    emitDetails(context, sink);
    return content;
}

std::vector<Row::Kind> sectionRowKinds(const SectionInput& input) {
    const CaseInsensitiveSearch search(input.flags.searchHighlight);
    std::vector<Row::Kind> kinds;
    RowSink sink(kinds);
    emitDetails({input.repository, input.state, input.flags, search}, sink);
    return kinds;
}

}  // namespace tarnbeck
