// One line of what a repository's section shows, ready to be drawn: what it says, how it is told to
// a screen reader, and what can be done with it. Plain values; texts are UTF-8 as received, and are
// shown as plain text, never as markup.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "StatusColor.h"

namespace tarnbeck {

// What a click or a key can ask of a row or a header. A face hands back the identity of the row and
// one of these, and nothing else.
enum class RowActionKind {
    toggle,    // opens or closes what hangs below
    copy,      // puts `reference` on the clipboard
    openFile,  // opens `reference`, an absolute path, with what the system opens it with
    openUrl,   // opens `reference` in the browser
    discard,   // asks whether the changes of the file are to be discarded
    refresh,   // the header's refresh, whose meaning depends on the domain
    refreshGit,
    refreshIssues,
    refreshDependencies,
    sync,  // fetch and fast-forward
};

struct RowAction {
    RowActionKind kind = RowActionKind::toggle;
    std::string_view symbol;  // one of `symbolNames`; empty: the row itself is what is clicked
    std::string help;         // tooltip and accessible name
    StatusColor color = StatusColor::secondary;
    bool isInProgress = false;  // a progress indicator stands in its place
    std::string reference;      // what is copied or opened
    std::string toast;          // what is said when it was copied

    bool operator==(const RowAction&) const = default;
};

// At the right of a row: a status in its colour, then labels, cut at the end.
struct RepositoryRowMetadataGroup {
    std::optional<std::string> status;
    StatusColor statusColor = StatusColor::secondary;
    std::vector<std::string> labels;

    bool operator==(const RepositoryRowMetadataGroup&) const = default;
};

struct Row {
    enum class Kind {
        alert,       // a warning about the repository
        subsection,  // the header of a group of rows
        branch,
        worktree,
        remoteBranch,
        tag,
        stash,
        fileChange,
        issue,
        pullRequest,
        state,  // tells why there is nothing, or that something is being loaded
        more,   // "… and 3 more"
    };

    std::string id;  // a path of identity, unique in the window: "/path\nbranches\nmain"
    Kind kind = Kind::state;
    int depth = 0;                   // 0: a subsection; 1: its rows; 2: below one of those
    std::optional<bool> isExpanded;  // absent: no chevron
    std::string_view symbol;         // one of `symbolNames`, or empty
    StatusColor symbolColor = StatusColor::secondary;
    bool isLoading = false;  // a progress indicator stands in the place of the symbol
    std::string status;      // the status letters of a changed file
    StatusColor statusColor = StatusColor::secondary;
    std::string reference;  // "#123" of an issue: a link of its own before the title
    std::string title;
    std::string countLabel;  // behind the title of a subsection: "3", "2 updates"
    bool isTitleSecondary = false;
    bool isMonospaced = false;
    bool isElidedInMiddle = false;    // a path; names are cut at their end
    bool isTitleHighlighted = false;  // it contains what is searched for
    RepositoryRowMetadataGroup metadata;
    std::string help;                // tooltip of the row
    std::optional<RowAction> click;  // what a click on the row does
    std::vector<RowAction> actions;  // at its right, in this order
    std::string accessibleName;

    bool operator==(const Row&) const = default;
};

}  // namespace tarnbeck
