#include "RepositoryIssuesSection.h"

#include <algorithm>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "RowParts.h"
#include "Text.h"

namespace tarnbeck {
namespace {

constexpr std::size_t maximumShownItems = 25;

std::vector<std::string> printableLabels(const ImmutableList<std::string>& labels) {
    std::vector<std::string> shown;
    for (const std::string& label : labels) shown.push_back(printable(label));
    return shown;
}

// The column has room for two.
std::vector<std::string> metadataLabels(const ImmutableList<std::string>& labels) {
    constexpr std::size_t room = 2;
    if (labels.size() > room) return {fmt::format("{} labels", labels.size())};
    return printableLabels(labels);
}

void appendLabelsAndAuthor(std::string& name, const ImmutableList<std::string>& labels,
                           const std::string& author) {
    if (!labels.empty()) {
        name += labels.size() == 1 ? ", label " : ", labels ";
        name += joined(printableLabels(labels), ", ");
    }
    if (!author.empty()) name += ", by " + printable(author);
}

// What issues and pull requests have in common.
template <class Item>
Row itemRow(const SectionContext& context, std::string_view key, const Item& item) {
    return {.id = rowIdBelow(rowIdBelow(context.repository.path, key), std::to_string(item.number)),
            .depth = 1,
            .reference = fmt::format("#{}", item.number),
            .title = printable(item.title),
            .isTitleHighlighted = context.search.isIn(item.title),
            .metadata = {.labels = metadataLabels(item.labels)}};
}

Row issueRow(const SectionContext& context, const GitHubIssue& issue) {
    const bool isOpen = lowercased(issue.state) == "open";
    Row row = itemRow(context, SubsectionKey::issues, issue);
    row.symbol = isOpen ? "circle" : "circle.fill";
    row.symbolColor = isOpen ? StatusColor::green : StatusColor::secondary;
    row.click = openUrlAction(issue.url, fmt::format("Open issue #{}", issue.number));
    row.actions.push_back(copyAction({issue.title, "Copy issue title", "Issue title copied"}));
    row.accessibleName = fmt::format("Issue {}, {}, {}", issue.number, row.title,
                                     printable(lowercased(issue.state)));
    appendLabelsAndAuthor(row.accessibleName, issue.labels, issue.author);
    return row;
}

std::string pullRequestHelp(const GitHubPullRequest& pullRequest) {
    std::string help = printable(pullRequest.title) + "\nStatus: " +
                       (pullRequest.isDraft ? "Draft" : printable(pullRequest.state));
    if (!pullRequest.labels.empty()) {
        help += "\nLabels: " + joined(printableLabels(pullRequest.labels), ", ");
    }
    if (!pullRequest.author.empty()) help += "\nAuthor: " + printable(pullRequest.author);
    return help;
}

Row pullRequestRow(const SectionContext& context, const GitHubPullRequest& pullRequest) {
    Row row = itemRow(context, SubsectionKey::pullRequests, pullRequest);
    row.symbol = "arrow.triangle.merge";
    if (pullRequest.isDraft) row.metadata.status = "Draft";
    row.help = pullRequestHelp(pullRequest);
    row.click =
        openUrlAction(pullRequest.url, fmt::format("Open pull request #{}", pullRequest.number));
    row.actions.push_back(
        copyAction({pullRequest.title, "Copy pull request title", "Pull request title copied"}));
    row.accessibleName =
        fmt::format("Pull request {}, {}, {}", pullRequest.number, row.title,
                    pullRequest.isDraft ? "draft" : printable(lowercased(pullRequest.state)));
    appendLabelsAndAuthor(row.accessibleName, pullRequest.labels, pullRequest.author);
    return row;
}

std::optional<RowAction> issueRefreshAccessory(const SectionFlags& flags) {
    if (!flags.canRefreshIssues && !flags.issueReloadInProgress) return std::nullopt;
    return RowAction{.kind = RowActionKind::refreshIssues,
                     .symbol = "arrow.clockwise",
                     .help = "Reload issues and pull requests",
                     .isInProgress = flags.issueReloadInProgress};
}

// One of the two lists, with what is said where it is empty.
template <class Item>
struct ItemList {
    CollapsibleSubsection subsection;
    Row::Kind kind;
    const ImmutableList<Item>& items;
    std::string_view loading;
    std::string_view none;
    Row (*row)(const SectionContext&, const Item&);
    std::string_view oneMore;  // for those who hear it
    std::string_view severalMore;
};

// Numbers are the identity. That of a broken cache could name one twice.
template <class Item>
Row rowAt(const SectionContext& context, const ItemList<Item>& list, std::size_t index) {
    Row row = list.row(context, list.items[index]);
    const auto* const begin = list.items.begin();
    const auto* const item = begin + index;
    if (std::find_if(begin, item,
                     [&](const Item& other) { return other.number == item->number; }) != item) {
        row.id = rowIdBelow(row.id, std::to_string(index));
    }
    return row;
}

template <class Item>
void emitStateOfEmpty(const SectionContext& context, const ItemList<Item>& list, RowSink& sink) {
    sink.add(Row::Kind::state, [&] {
        const std::string id =
            rowIdBelow(rowIdBelow(context.repository.path, "state"), list.subsection.key);
        if (context.flags.issueScanInProgress) {
            return inlineStateRow({.id = id, .text = list.loading, .isLoading = true});
        }
        return inlineStateRow({.id = id, .text = list.none, .systemImage = "checkmark.circle"});
    });
}

template <class Item>
void emitItems(const SectionContext& context, ItemList<Item> list, RowSink& sink) {
    list.subsection.count = static_cast<std::int64_t>(list.items.size());
    list.subsection.headerAccessory = issueRefreshAccessory(context.flags);
    emitSubsection(context, list.subsection, sink, [&] {
        if (list.items.empty()) return emitStateOfEmpty(context, list, sink);
        const std::size_t shown = std::min(list.items.size(), maximumShownItems);
        for (std::size_t index = 0; index < shown; ++index) {
            sink.add(list.kind, [&] { return rowAt(context, list, index); });
        }
        if (list.items.size() == shown) return;
        sink.add(Row::Kind::more, [&] {
            const std::size_t rest = list.items.size() - shown;
            return moreRow(
                {.id = rowIdBelow(rowIdBelow(context.repository.path, "more"), list.subsection.key),
                 .title = fmt::format("... and {} more on GitHub", rest),
                 .accessibleName = fmt::format(
                     "And {} on GitHub", countedWords(static_cast<std::int64_t>(rest), list.oneMore,
                                                      list.severalMore))});
        });
    });
}

}  // namespace

void emitIssuesSection(const SectionContext& context, RowSink& sink) {
    emitItems<GitHubIssue>(context,
                           {.subsection = {.key = SubsectionKey::issues,
                                           .title = "Issues",
                                           .icon = "exclamationmark.bubble",
                                           .isExpanded = context.state.showIssuesSection},
                            .kind = Row::Kind::issue,
                            .items = context.repository.issues,
                            .loading = "Loading issues...",
                            .none = "No open issues",
                            .row = issueRow,
                            .oneMore = "more issue",
                            .severalMore = "more issues"},
                           sink);
    emitItems<GitHubPullRequest>(
        context,
        {.subsection = {.key = SubsectionKey::pullRequests,
                        .title = "Pull Requests",
                        .icon = "arrow.triangle.merge",
                        .isExpanded = context.state.showPullRequestsSection},
         .kind = Row::Kind::pullRequest,
         .items = context.repository.pullRequests,
         .loading = "Loading pull requests...",
         .none = "No open pull requests",
         .row = pullRequestRow,
         .oneMore = "more pull request",
         .severalMore = "more pull requests"},
        sink);
}

}  // namespace tarnbeck
