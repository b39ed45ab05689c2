// The table of repositories for people.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "GitRepository.h"

namespace tarnbeck::cli {

// One character that stands for the repository's symbol.
std::string_view iconCharacter(const GitRepository& repository);

// The text in the colour, by the terminal's own escape sequences.
std::string colored(std::string_view text, StatusColor color);

struct TableStyle {
    bool color = false;
    std::optional<std::size_t> columns;  // the terminal's width; the table is made to fit
};

// The text in the colour, where the table has colours.
std::string painted(std::string_view text, StatusColor color, const TableStyle& style);

// "1 repository", "3 repositories".
std::string counted(std::size_t count, std::string_view one, std::string_view many);

// The repositories' names, fit to be printed; those that occur more than once have their folder
// before them.
std::vector<std::string> distinctNames(const std::vector<std::string>& paths);

// Icon, name, branch, sync badge and summary of each repository: red, orange, yellow, green, and
// by the given order in each. Every line ends with a line feed. Names that occur more than once
// have their folder before them. On a narrow terminal names and branches are cut, and the badge,
// which the summary repeats, goes first.
std::string statusTable(std::vector<RepositorySnapshot> repositories, const TableStyle& style);

// The same for one, without columns: "✎ name  main  Ahead 2  1 change · ahead 2".
std::string statusLine(const GitRepository& repository, const TableStyle& style);

// "12 repositories · 5 need work · 7 clean · 1 could not be scanned"
std::string statusCounts(const std::vector<RepositorySnapshot>& repositories, std::size_t failed);

// What to do when discovery found nothing below the folders.
std::string nothingFoundText(const std::vector<std::string>& scanDirectories);

}  // namespace tarnbeck::cli
