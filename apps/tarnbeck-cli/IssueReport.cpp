#include "IssueReport.h"

#include <algorithm>

#include <fmt/format.h>

#include "Dates.h"
#include "JsonCoding.h"
#include "Overloaded.h"
#include "Paths.h"
#include "RepositoryJson.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

std::string_view resultName(const GitHubRepoScanResult& result) {
    return std::visit(Overloaded{
                          [](const GitHubRepoScanResult::Success&) { return "success"; },
                          [](const GitHubRepoScanResult::Skipped&) { return "skipped"; },
                          [](const GitHubRepoScanResult::Failed&) { return "failed"; },
                      },
                      result.value);
}

// "2026-03-01" of "2026-03-01T12:00:00Z".
std::string_view dayOf(std::string_view date) {
    return date.substr(0, date.find('T'));
}

struct Row {
    std::string_view kind;
    StatusColor color;
    std::int64_t number;
    std::string_view title;
    std::vector<std::string> tags;
    std::string_view author;
    std::string_view createdAt;
};

// The title gives way where the line is too long for the terminal.
std::string rowLine(const Row& row, const TableStyle& style) {
    std::string behind;
    if (!row.tags.empty()) behind += fmt::format("  [{}]", joined(row.tags, ", "));
    behind = fmt::format("{}  {}  {}", behind, row.author, dayOf(row.createdAt));
    const std::string before = fmt::format("  {} #{:<5} ", row.kind, row.number);
    std::string title = printable(row.title);
    const std::string tail = printable(behind);
    if (style.columns) {
        constexpr std::size_t least = 20;
        const std::size_t taken = displayWidth(before) + displayWidth(tail);
        title =
            elidedAtEnd(title, std::max(least, *style.columns - std::min(taken, *style.columns)));
    }
    return painted(before, row.color, style) + title +
           painted(tail, StatusColor::secondary, style) + "\n";
}

template <class Item>
Row rowOf(const Item& item, std::string_view kind, StatusColor color) {
    return {.kind = kind,
            .color = color,
            .number = item.number,
            .title = item.title,
            .tags = {item.labels.begin(), item.labels.end()},
            .author = item.author,
            .createdAt = item.createdAt};
}

std::string heading(const IssueAnswer& answer) {
    std::string text =
        fmt::format("{}  {}  {}", printable(lastPathComponent(answer.path)),
                    printable(answer.ownerRepo.value_or("")),
                    issueCounts(answer.shown.issues.size(), answer.shown.pullRequests.size()));
    if (answer.result.is<GitHubRepoScanResult::Success>()) return text;
    return answer.fetchedAt
               ? fmt::format("{}, as of {}", text, iso8601(*answer.fetchedAt))
               : fmt::format("{}  {}  not known", printable(lastPathComponent(answer.path)),
                             printable(answer.ownerRepo.value_or("")));
}

// "gh issue list" of "… gh issue list for you/x …".
std::string_view commandIn(std::string_view line) {
    const std::string_view rest = line.substr(std::min(line.find("gh "), line.size()));
    return rest.substr(0, rest.find(" for "));
}

}  // namespace

std::string issueCounts(std::size_t issues, std::size_t pullRequests) {
    if (issues + pullRequests == 0) return "no open issues";
    std::vector<std::string> parts;
    if (issues > 0) parts.push_back(counted(issues, "issue", "issues"));
    if (pullRequests > 0) parts.push_back(counted(pullRequests, "pull request", "pull requests"));
    return joined(parts, " · ");
}

std::string issueList(const IssueAnswer& answer, const TableStyle& style) {
    if (answer.result.is<GitHubRepoScanResult::Skipped>()) return {};
    std::string text = heading(answer) + "\n";
    for (const GitHubIssue& issue : answer.shown.issues) {
        text += rowLine(rowOf(issue, "●", StatusColor::green), style);
    }
    for (const GitHubPullRequest& pullRequest : answer.shown.pullRequests) {
        Row row = rowOf(pullRequest, "⇄", StatusColor::blue);
        if (pullRequest.isDraft) row.tags.insert(row.tags.begin(), "draft");
        text += rowLine(row, style);
    }
    return text;
}

std::string issueTotals(const std::vector<IssueAnswer>& answers) {
    std::size_t issues = 0;
    std::size_t pullRequests = 0;
    std::size_t elsewhere = 0;
    std::size_t failed = 0;
    for (const IssueAnswer& answer : answers) {
        issues += answer.shown.issues.size();
        pullRequests += answer.shown.pullRequests.size();
        elsewhere += answer.result.is<GitHubRepoScanResult::Skipped>() ? 1 : 0;
        failed += answer.result.is<GitHubRepoScanResult::Failed>() ? 1 : 0;
    }
    std::string text = counted(answers.size(), "repository", "repositories");
    if (elsewhere + failed < answers.size()) text += " · " + issueCounts(issues, pullRequests);
    if (elsewhere > 0) text += fmt::format(" · {} not on GitHub", elsewhere);
    if (failed > 0) text += fmt::format(" · {} could not be asked about", failed);
    return text;
}

JsonValue issueJson(const IssueAnswer& answer) {
    return JsonObject{{"path", answer.path},
                      {"ownerRepo", encodedJson(answer.ownerRepo, outputStyle)},
                      {"result", resultName(answer.result)},
                      {"fetchedAt", encodedJson(answer.fetchedAt, outputStyle)},
                      {"issues", encodedJson(answer.shown.issues, outputStyle)},
                      {"pullRequests", encodedJson(answer.shown.pullRequests, outputStyle)}};
}

std::string gitHubFailureInWords(std::string_view line) {
    constexpr std::string_view dash = " — ";
    const std::string_view command = commandIn(line);
    if (line.ends_with("gh CLI not found in known paths")) {
        return "gh, the command-line tool of GitHub, is not installed where it is looked for "
               "(`tarnbeck-cli doctor` says more)";
    }
    if (line.find(" launch failed ") != std::string_view::npos) {
        return fmt::format("gh can't be started: {}", line.substr(line.rfind(": ") + 2));
    }
    if (line.find("TIMEOUT ") != std::string_view::npos) {
        return fmt::format("{} took too long", command);
    }
    const std::size_t opening = line.find('(') + 1;
    const std::string_view status = line.substr(opening, line.find(')') - opening);
    const std::size_t end = line.find(dash);
    std::string_view said =
        end == std::string_view::npos ? std::string_view() : line.substr(end + dash.size());
    said = said.substr(0, said.find('\n'));
    return fmt::format("{} ({}, exit status {})", said.empty() ? "gh failed" : said, command,
                       status);
}

}  // namespace tarnbeck::cli
