#include "RowParts.h"

#include <utility>

#include <fmt/format.h>

namespace tarnbeck {

std::string rowIdBelow(std::string_view parent, std::string_view component) {
    std::string id;
    id.reserve(parent.size() + 1 + component.size());
    id += parent;
    id += '\n';
    id += component;
    return id;
}

std::string countedWords(std::int64_t count, std::string_view noun, std::string_view plural) {
    return fmt::format("{} {}", count, count == 1 ? noun : plural);
}

Row subsectionRow(const std::string& path, CollapsibleSubsection subsection) {
    const std::string_view standing = subsection.isExpanded ? "expanded" : "collapsed";
    Row row{
        .id = rowIdBelow(path, subsection.key),
        .isExpanded = subsection.isExpanded,
        .symbol = subsection.icon,
        .title = std::string(subsection.title),
        .countLabel = std::to_string(subsection.count),
        .click = RowAction{.kind = RowActionKind::toggle,
                           .help = fmt::format("{} {}", subsection.isExpanded ? "Hide" : "Show",
                                               subsection.title)},
        .accessibleName = fmt::format("{}, {}, {}", subsection.title, subsection.count, standing)};
    if (subsection.headerAccessory) row.actions.push_back(*std::move(subsection.headerAccessory));
    return row;
}

Row inlineStateRow(RepositoryInlineStateRow state) {
    return {.id = std::move(state.id),
            .depth = 1,
            .symbol = state.isLoading ? std::string_view{} : state.systemImage,
            .isLoading = state.isLoading,
            .title = std::string(state.text),
            .isTitleSecondary = true,
            .accessibleName = std::string(state.text)};
}

Row moreRow(MoreRow more) {
    return {.id = std::move(more.id),
            .depth = more.depth,
            .title = std::move(more.title),
            .isTitleSecondary = true,
            .accessibleName = std::move(more.accessibleName)};
}

std::string andMore(std::size_t rest) {
    return fmt::format("… and {} more", rest);
}

RowAction copyAction(CopyAction copy) {
    return {.kind = RowActionKind::copy,
            .symbol = "doc.on.doc",
            .help = std::string(copy.help),
            .reference = std::move(copy.reference),
            .toast = std::string(copy.toast)};
}

std::optional<RowAction> openUrlAction(const std::string& url, std::string help) {
    if (url.empty()) return std::nullopt;
    return RowAction{.kind = RowActionKind::openUrl, .help = std::move(help), .reference = url};
}

}  // namespace tarnbeck
