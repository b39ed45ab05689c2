// What the rows of all parts of a section are made of. Pure, any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "CaseInsensitiveSearch.h"
#include "Row.h"
#include "RowSink.h"
#include "SectionContent.h"

namespace tarnbeck {

// What decides on the rows of a section; made once for all of them.
struct SectionContext {
    const GitRepository& repository;
    const SectionState& state;
    const SectionFlags& flags;
    const CaseInsensitiveSearch& search;  // for what is highlighted
};

// The subsections of a section, by the component that names them in row ids and in what is stored.
namespace SubsectionKey {
inline constexpr std::string_view branches = "branches";
inline constexpr std::string_view worktrees = "worktrees";
inline constexpr std::string_view remote = "remote";
inline constexpr std::string_view tags = "tags";
inline constexpr std::string_view stashes = "stashes";
inline constexpr std::string_view issues = "issues";
inline constexpr std::string_view pullRequests = "pullRequests";
}  // namespace SubsectionKey

// The id of what hangs below `parent`: a repository's path, or another row's id.
std::string rowIdBelow(std::string_view parent, std::string_view component);

// "1 change", "2 changes"
std::string countedWords(std::int64_t count, std::string_view noun, std::string_view plural);

struct CollapsibleSubsection {
    std::string_view key;
    std::string_view title;
    std::string_view icon;
    std::int64_t count = 0;
    bool isExpanded = false;
    std::optional<RowAction> headerAccessory;
};
Row subsectionRow(const std::string& path, CollapsibleSubsection subsection);

// Adds the header of the subsection, and then what `content` adds if it is open.
template <class Content>
void emitSubsection(const SectionContext& context, const CollapsibleSubsection& subsection,
                    RowSink& sink, Content content) {
    sink.add(Row::Kind::subsection,
             [&] { return subsectionRow(context.repository.path, subsection); });
    if (subsection.isExpanded) content();
}

struct RepositoryInlineStateRow {
    std::string id;
    std::string_view text;
    std::string_view systemImage;
    bool isLoading = false;
};
Row inlineStateRow(RepositoryInlineStateRow state);

// Tells how many there are that are not shown.
struct MoreRow {
    std::string id;
    int depth = 1;
    std::string title;
    std::string accessibleName;
};
Row moreRow(MoreRow more);
// "… and 3 more"
std::string andMore(std::size_t rest);

struct CopyAction {
    std::string reference;
    std::string_view help;
    std::string_view toast;
};
RowAction copyAction(CopyAction copy);

// Opens the address when the row is clicked; absent where there is none.
std::optional<RowAction> openUrlAction(const std::string& url, std::string help);

}  // namespace tarnbeck
