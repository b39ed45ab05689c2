// What GitHub answered about repositories, for people and for scripts.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "GitHubRepoScanResult.h"
#include "Json.h"
#include "Record.h"
#include "StatusTable.h"

namespace tarnbeck::cli {

struct IssueAnswer {
    std::string path;
    std::optional<std::string> ownerRepo;  // absent where no remote is on GitHub
    GitHubRepoScanResult result;
    std::optional<Date> fetchedAt;  // of what is shown
    GitHubRepositoryData shown;     // the answer, or the last one known where there was none
};

// "3 issues · 1 pull request"; "no open issues".
std::string issueCounts(std::size_t issues, std::size_t pullRequests);

// The repository's heading, a line for each issue and pull request; nothing where it is not on
// GitHub.
std::string issueList(const IssueAnswer& answer, const TableStyle& style);

// "3 repositories · 12 issues · 2 pull requests · 1 not on GitHub · 1 could not be asked about"
std::string issueTotals(const std::vector<IssueAnswer>& answers);

JsonValue issueJson(const IssueAnswer& answer);

// "GITHUB FAIL(4) gh issue list for you/x — please log in" of the scan log as a person would say
// it: "please log in (gh issue list, exit status 4)".
std::string gitHubFailureInWords(std::string_view logLine);

}  // namespace tarnbeck::cli
