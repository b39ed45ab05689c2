#include <algorithm>
#include <cstddef>
#include <string>

#include "GitReferenceVisibility.h"
#include "RepositoryGitDetails.h"
#include "RowParts.h"
#include "Text.h"

namespace tarnbeck {
namespace {

constexpr std::size_t maximumShownReferences = 10;

// What tells remote branches from tags.
struct ReferenceKind {
    Row::Kind kind;
    std::string_view symbol;
    std::string_view help;
    std::string_view toast;
    std::string_view accessibleKind;
    std::string_view oneMore;  // for those who hear it
    std::string_view severalMore;
};

Row referenceRow(const SectionContext& context, std::string_view key, const ReferenceKind& kind,
                 const std::string& name) {
    Row row{.id = rowIdBelow(rowIdBelow(context.repository.path, key), name),
            .depth = 1,
            .symbol = kind.symbol,
            .title = printable(name),
            .isTitleHighlighted = context.search.isIn(name)};
    row.accessibleName = std::string(kind.accessibleKind) + " " + row.title;
    row.actions.push_back(copyAction({name, kind.help, kind.toast}));
    return row;
}

// Names are shown up to a limit, and a word on the rest.
template <class Names>
void emitReferences(const SectionContext& context, const CollapsibleSubsection& subsection,
                    const ReferenceKind& kind, const Names& names, RowSink& sink) {
    emitSubsection(context, subsection, sink, [&] {
        const std::size_t shown = std::min(names.size(), maximumShownReferences);
        for (std::size_t index = 0; index < shown; ++index) {
            sink.add(kind.kind,
                     [&] { return referenceRow(context, subsection.key, kind, names[index]); });
        }
        if (names.size() == shown) return;
        sink.add(Row::Kind::more, [&] {
            const std::size_t rest = names.size() - shown;
            return moreRow(
                {.id = rowIdBelow(rowIdBelow(context.repository.path, "more"), subsection.key),
                 .title = andMore(rest),
                 .accessibleName = "And " + countedWords(static_cast<std::int64_t>(rest),
                                                         kind.oneMore, kind.severalMore)});
        });
    });
}

void emitRemoteSection(const SectionContext& context, RowSink& sink) {
    const auto names =
        GitReferenceVisibility::visibleRemoteBranches(context.repository.remoteBranches);
    if (names.empty()) return;
    const CollapsibleSubsection subsection{.key = SubsectionKey::remote,
                                           .title = "Remote",
                                           .icon = "cloud",
                                           .count = static_cast<std::int64_t>(names.size()),
                                           .isExpanded = context.state.showRemoteSection};
    const ReferenceKind kind{.kind = Row::Kind::remoteBranch,
                             .symbol = "cloud",
                             .help = "Copy remote branch name",
                             .toast = "Remote branch copied",
                             .accessibleKind = "Remote branch",
                             .oneMore = "more remote branch",
                             .severalMore = "more remote branches"};
    emitReferences(context, subsection, kind, names, sink);
}

void emitTagsSection(const SectionContext& context, RowSink& sink) {
    const ImmutableList<std::string>& names = context.repository.tags;
    if (names.empty()) return;
    const CollapsibleSubsection subsection{.key = SubsectionKey::tags,
                                           .title = "Tags",
                                           .icon = "tag",
                                           .count = static_cast<std::int64_t>(names.size()),
                                           .isExpanded = context.state.showTagsSection};
    const ReferenceKind kind{.kind = Row::Kind::tag,
                             .symbol = "tag",
                             .help = "Copy tag name",
                             .toast = "Tag name copied",
                             .accessibleKind = "Tag",
                             .oneMore = "more tag",
                             .severalMore = "more tags"};
    emitReferences(context, subsection, kind, names, sink);
}

Row stashRow(const SectionContext& context, const GitStash& stash) {
    const bool hasSubject = !stash.subject.empty();
    Row row{.id = rowIdBelow(rowIdBelow(context.repository.path, SubsectionKey::stashes),
                             stash.reference),
            .depth = 1,
            .symbol = "tray.full",
            .title = hasSubject ? printable(stash.subject) : "No stash message",
            .isTitleSecondary = !hasSubject,
            .isTitleHighlighted = hasSubject && context.search.isIn(stash.subject),
            .metadata = {.labels = {printable(stash.reference)}}};
    row.accessibleName = "Stash " + printable(stash.reference) + ", " + row.title;
    row.actions.push_back(
        copyAction({stash.reference, "Copy stash reference", "Stash reference copied"}));
    return row;
}

void emitStashSection(const SectionContext& context, RowSink& sink) {
    const GitRepository& repository = context.repository;
    if (repository.stashCount <= 0) return;
    const CollapsibleSubsection subsection{.key = SubsectionKey::stashes,
                                           .title = "Stashes",
                                           .icon = "tray.full",
                                           .count = repository.stashCount,
                                           .isExpanded = context.state.showStashesSection};
    emitSubsection(context, subsection, sink, [&] {
        for (const GitStash& stash : repository.stashes) {
            sink.add(Row::Kind::stash, [&] { return stashRow(context, stash); });
        }
        if (!repository.stashes.empty()) return;
        sink.add(Row::Kind::state, [&] {
            return inlineStateRow({.id = rowIdBelow(repository.path, "noStashDetails"),
                                   .text = "Stash details unavailable",
                                   .systemImage = "exclamationmark.circle"});
        });
    });
}

}  // namespace

void emitReferenceSections(const SectionContext& context, RowSink& sink) {
    if (context.flags.showRemotes) emitRemoteSection(context, sink);
    if (context.flags.showTags) emitTagsSection(context, sink);
    emitStashSection(context, sink);
}

}  // namespace tarnbeck
