#include "FileChangeRow.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "GitPaths.h"
#include "RowParts.h"
#include "Text.h"

namespace tarnbeck {
namespace {

constexpr std::string_view arrow = " -> ";

// Where the arrow between the two names of a rename or a copy begins. A name with blanks in it
// stands in quotes, and a quote in it behind a backslash.
std::size_t arrowOf(const FileChange& change) {
    if (change.status.find_first_of("RC") == std::string::npos) return std::string::npos;
    const std::string_view path = change.filePath;
    return path.ends_with('"') && path.find(" -> \"") != std::string_view::npos
               ? path.rfind(" -> \"")
               : path.rfind(arrow);
}

// Names for the eye: both of a rename.
std::string shownNames(const FileChange& change) {
    const std::size_t at = arrowOf(change);
    if (at == std::string::npos) return GitPaths::unquoted(change.filePath);
    return GitPaths::unquoted(change.filePath.substr(0, at)) + std::string(arrow) +
           fileNameOf(change);
}

std::string_view wordOfLetter(char letter) {
    constexpr std::array<std::pair<char, std::string_view>, 6> words = {{{'M', "modified"},
                                                                         {'A', "added"},
                                                                         {'D', "deleted"},
                                                                         {'R', "renamed"},
                                                                         {'C', "copied"},
                                                                         {'T', "changed in type"}}};
    for (const auto& [candidate, word] : words) {
        if (candidate == letter) return word;
    }
    return "changed";
}

std::string_view wordsOfPair(std::string_view status) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 8> words = {
        {{"??", "untracked"},
         {"UU", "in conflict, modified by both"},
         {"AA", "in conflict, added by both"},
         {"DD", "in conflict, deleted by both"},
         {"AU", "in conflict, added by us"},
         {"UA", "in conflict, added by them"},
         {"DU", "in conflict, deleted by us"},
         {"UD", "in conflict, deleted by them"}}};
    for (const auto& [candidate, meaning] : words) {
        if (candidate == status) return meaning;
    }
    return {};
}

std::string joinedPath(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

RowAction discardAction(bool isDiscarding) {
    return {.kind = RowActionKind::discard,
            .symbol = "arrow.uturn.backward.circle",
            .help = "Discard changes in this file",
            .color = StatusColor::orange,
            .isInProgress = isDiscarding};
}

}  // namespace

std::string fileChangeRowId(const std::string& repository, const FileChangeIdentity& identity) {
    std::string id = rowIdBelow(repository, SubsectionKey::branches);
    for (const std::string* component :
         {&identity.branch, &identity.workTree, &identity.filePath}) {
        id += '\n';
        id += *component;
    }
    return id;
}

std::optional<FileChangeIdentity> fileChangeIdentity(const std::string& repository,
                                                     std::string_view rowId) {
    const std::string beginning = rowIdBelow(repository, SubsectionKey::branches) + '\n';
    if (!rowId.starts_with(beginning)) return std::nullopt;
    rowId.remove_prefix(beginning.size());
    // Neither a branch nor a name as git prints it holds a line feed; a folder may.
    const std::size_t behindBranch = rowId.find('\n');
    const std::size_t beforeFile = rowId.rfind('\n');
    if (behindBranch == beforeFile) return std::nullopt;
    return FileChangeIdentity{
        .branch = std::string(rowId.substr(0, behindBranch)),
        .workTree = std::string(rowId.substr(behindBranch + 1, beforeFile - behindBranch - 1)),
        .filePath = std::string(rowId.substr(beforeFile + 1))};
}

std::string fileNameOf(const FileChange& change) {
    const std::size_t at = arrowOf(change);
    const std::string_view path = change.filePath;
    return GitPaths::unquoted(at == std::string::npos ? path : path.substr(at + arrow.size()));
}

std::string statusWords(std::string_view status) {
    if (const std::string_view words = wordsOfPair(status); !words.empty()) {
        return std::string(words);
    }
    std::vector<std::string> words;
    for (const char letter : status) {
        std::string word(wordOfLetter(letter));
        if (std::ranges::find(words, word) == words.end()) words.push_back(std::move(word));
    }
    return joined(words, " and ");
}

Row fileChangeRow(FileChangeRowView view) {
    const std::string name = fileNameOf(view.change);
    const std::string names = shownNames(view.change);
    const std::string title = printable(names);
    Row row{.id = std::move(view.id),
            .depth = 2,
            .status = printable(view.change.status),
            .statusColor = view.change.statusColor(),
            .title = title,
            .isMonospaced = true,
            .isElidedInMiddle = true,
            .isTitleHighlighted = view.search.isIn(names),
            .click = RowAction{.kind = RowActionKind::openFile,
                               .help = "Open file",
                               .reference = joinedPath(view.basePath, name)},
            .accessibleName = "Changed file " + title + ", " + statusWords(view.change.status)};
    row.actions.push_back(copyAction({name, "Copy file path", "File path copied"}));
    if (view.change.canDiscard()) row.actions.push_back(discardAction(view.isDiscarding));
    return row;
}

}  // namespace tarnbeck
