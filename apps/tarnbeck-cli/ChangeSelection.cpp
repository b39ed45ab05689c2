#include "ChangeSelection.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

#include <fmt/format.h>
#include <sys/stat.h>

#include "GitPaths.h"
#include "Paths.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

// The name of what lies at `path`, seen from `folder`.
std::optional<std::string> nameBelow(std::string_view folder, std::string_view path) {
    if (!path.starts_with(folder)) return std::nullopt;
    path.remove_prefix(folder.size());
    if (!path.starts_with('/')) return std::nullopt;
    return std::string(path.substr(1));
}

std::string withoutLinks(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? standardized(real.get()) : path;
}

bool somethingIsAt(const std::string& path) {
    struct stat information {};
    return lstat(path.c_str(), &information) == 0;
}

void addOnce(std::vector<std::string>& names, const std::optional<std::string>& name) {
    if (name && std::ranges::find(names, *name) == names.end()) names.push_back(*name);
}

// The names, inside the work tree, that the word may mean as git would print them or as a path
// from the top.
std::vector<std::string> namesFromTop(const ChangeQuestion& question) {
    std::vector<std::string> names;
    if (question.typed.starts_with('/')) return names;
    for (const std::string& word : {GitPaths::unquoted(question.typed), question.typed}) {
        addOnce(names, nameBelow(question.workTree, standardized(word, question.workTree)));
    }
    return names;
}

// The name that the word means as a path from where the user is.
std::optional<std::string> nameFromHere(const ChangeQuestion& question) {
    const std::string path = standardized(question.typed, question.currentFolder);
    auto name = nameBelow(question.workTree, path);
    return name ? name : nameBelow(withoutLinks(question.workTree), path);
}

// What a change is called by. A rename stands in one row under both names.
std::vector<std::string> namesOf(const FileChange& change) {
    constexpr std::string_view arrow = " -> ";
    std::vector<std::string> names = {GitPaths::unquoted(change.filePath)};
    const std::string& path = change.filePath;
    const bool hasTwo = change.status.find_first_of("RC") != std::string::npos;
    for (std::size_t at = path.find(arrow); hasTwo && at != std::string::npos;
         at = path.find(arrow, at + 1)) {
        names.push_back(GitPaths::unquoted(path.substr(0, at)));
        names.push_back(GitPaths::unquoted(path.substr(at + arrow.size())));
    }
    for (std::string& name : names) {
        if (name.ends_with('/')) name.pop_back();
    }
    return names;
}

std::vector<FileChange> changesCalled(const ImmutableList<FileChange>& changes,
                                      const std::vector<std::string>& names) {
    std::vector<FileChange> found;
    for (const FileChange& change : changes) {
        const auto own = namesOf(change);
        if (std::ranges::find_first_of(own, names) != own.end()) found.push_back(change);
    }
    return found;
}

std::string reasonAgainst(const FileChange& change) {
    const auto has = [&](char letter) { return change.status.find(letter) != std::string::npos; };
    const bool isInConflict = has('U') || change.status == "AA" || change.status == "DD";
    if (isInConflict) return "is in conflict, which has to be resolved";
    if (has('R')) return "is renamed, which can't be discarded here";
    if (has('C')) return "is a copy, which can't be discarded here";
    return fmt::format("has the status {}, which can't be discarded here", change.status);
}

}  // namespace

Result<FileChange> selectedChange(const ChangeQuestion& question) {
    std::vector<std::string> names = namesFromTop(question);
    const auto here = nameFromHere(question);
    const bool isAnotherFile = here && !names.empty() &&
                               std::ranges::find(names, *here) == names.end() &&
                               somethingIsAt(question.workTree + "/" + *here);
    addOnce(names, here);
    const std::vector<FileChange> found = changesCalled(question.changes, names);
    if (found.empty()) {
        return Failure{"is no uncommitted change in " + printable(question.workTree)};
    }
    const FileChange& change = found.front();
    const bool meansHere = changesCalled({change}, {here.value_or("")}).size() == 1;
    if (found.size() > 1 || (isAnotherFile && !meansHere)) {
        return Failure{fmt::format("means more than one file: write {}/… for the one meant",
                                   printable(question.workTree))};
    }
    if (!change.canDiscard()) return Failure{reasonAgainst(change)};
    return change;
}

std::string shownName(const FileChange& change) {
    return printable(GitPaths::unquoted(change.filePath));
}

}  // namespace tarnbeck::cli
