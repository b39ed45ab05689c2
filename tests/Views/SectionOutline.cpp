#include "SectionOutline.h"

#include <string_view>
#include <vector>

#include "Text.h"

namespace tarnbeck::testing {
namespace {

std::string_view nameOf(RowActionKind kind) {
    switch (kind) {
        case RowActionKind::toggle:
            return "toggle";
        case RowActionKind::copy:
            return "copy";
        case RowActionKind::openFile:
            return "openFile";
        case RowActionKind::openUrl:
            return "openUrl";
        case RowActionKind::discard:
            return "discard";
        case RowActionKind::refresh:
            return "refresh";
        case RowActionKind::refreshGit:
            return "refreshGit";
        case RowActionKind::refreshIssues:
            return "refreshIssues";
        case RowActionKind::refreshDependencies:
            return "refreshDependencies";
        case RowActionKind::sync:
            return "sync";
    }
    return "";
}

std::string_view nameOf(Row::Kind kind) {
    switch (kind) {
        case Row::Kind::alert:
            return "alert";
        case Row::Kind::subsection:
            return "subsection";
        case Row::Kind::branch:
            return "branch";
        case Row::Kind::worktree:
            return "worktree";
        case Row::Kind::remoteBranch:
            return "remoteBranch";
        case Row::Kind::tag:
            return "tag";
        case Row::Kind::stash:
            return "stash";
        case Row::Kind::fileChange:
            return "fileChange";
        case Row::Kind::issue:
            return "issue";
        case Row::Kind::pullRequest:
            return "pullRequest";
        case Row::Kind::state:
            return "state";
        case Row::Kind::more:
            return "more";
    }
    return "";
}

std::string inQuotes(std::string_view text) {
    std::string result = "\"";
    for (const char byte : text) {
        if (byte == '\n') {
            result += "\\n";
        } else {
            result += byte;
        }
    }
    return result + "\"";
}

// "circle.fill green"; the ordinary colour goes without saying.
std::string coloured(std::string_view text, StatusColor color) {
    std::string result(text);
    if (color != StatusColor::secondary) (result += ' ') += rawValue(color);
    return result;
}

std::string metadataOf(const RepositoryRowMetadataGroup& metadata) {
    std::vector<std::string> pieces;
    if (metadata.status) pieces.push_back(coloured(*metadata.status, metadata.statusColor));
    pieces.insert(pieces.end(), metadata.labels.begin(), metadata.labels.end());
    return "{" + joined(pieces, ", ") + "}";
}

std::string looksOf(const Row& row) {
    std::string looks;
    if (row.isTitleSecondary) looks += " secondary";
    if (row.isMonospaced) looks += " monospaced";
    if (row.isElidedInMiddle) looks += " elidedInMiddle";
    if (row.isTitleHighlighted) looks += " highlighted";
    return looks;
}

std::string firstLineOf(const Row& row) {
    std::string line(nameOf(row.kind));
    if (row.isExpanded) line += *row.isExpanded ? " [v]" : " [>]";
    if (row.isLoading) line += " (loading)";
    if (!row.symbol.empty()) line += " (" + coloured(row.symbol, row.symbolColor) + ")";
    if (!row.status.empty()) line += " <" + coloured(row.status, row.statusColor) + ">";
    if (!row.reference.empty()) line += " " + row.reference;
    line += " " + inQuotes(row.title);
    if (!row.countLabel.empty()) line += " " + row.countLabel;
    line += looksOf(row);
    if (row.metadata != RepositoryRowMetadataGroup{}) line += " " + metadataOf(row.metadata);
    return line;
}

}  // namespace

std::string outline(const RowAction& action) {
    std::string line(nameOf(action.kind));
    if (!action.symbol.empty()) line += " (" + coloured(action.symbol, action.color) + ")";
    line += " " + inQuotes(action.help);
    if (action.isInProgress) line += " in progress";
    if (!action.reference.empty()) line += " -> " + inQuotes(action.reference);
    if (!action.toast.empty()) line += ", then " + inQuotes(action.toast);
    return line;
}

std::string outline(const Row& row) {
    const std::string indent(static_cast<std::size_t>(row.depth) * 2, ' ');
    std::string text = indent + firstLineOf(row) + "\n";
    const auto add = [&](std::string_view what, const std::string& line) {
        ((((text += indent) += "    ") += what) += line) += '\n';
    };
    add("says ", inQuotes(row.accessibleName));
    if (!row.help.empty()) add("help ", inQuotes(row.help));
    if (row.click) add("click ", outline(*row.click));
    for (const RowAction& action : row.actions) add("", outline(action));
    return text;
}

std::string outline(const SectionHeader& header) {
    std::string text = "header";
    if (header.canCollapse) text += header.isExpanded ? " [v]" : " [>]";
    text += " (" + coloured(header.statusIcon, header.statusColor) + ") " + inQuotes(header.name);
    if (header.isNameHighlighted) text += " highlighted";
    if (!header.summaryParts.empty()) text += " " + joined(header.summaryParts, " · ");
    text += "\n    says " + inQuotes(header.accessibleName) + "\n";
    for (const RowAction& action : header.actions) text += "    " + outline(action) + "\n";
    for (const StatusBadge& badge : header.badges) {
        text += "    badge " + std::string(badge.title) + " " + coloured(badge.value, badge.color) +
                "\n";
    }
    return text;
}

std::string outline(const SectionContent& content) {
    std::string text = outline(content.header);
    for (const Row& row : content.rows) text += outline(row);
    return text;
}

}  // namespace tarnbeck::testing
