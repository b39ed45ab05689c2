#include "DiscardFixture.h"

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

#include "GitOutputParsers.h"
#include "GitPaths.h"

namespace tarnbeck::testing {

namespace fs = std::filesystem;

namespace {

std::string described(const fs::directory_entry& entry) {
    struct stat information {};
    lstat(entry.path().c_str(), &information);
    const std::string mode = std::to_string(information.st_mode) + " ";
    if (entry.is_symlink()) return mode + "-> " + fs::read_symlink(entry.path()).string();
    return entry.is_regular_file() ? mode + contentOf(entry.path()) : mode;
}

}  // namespace

Tree treeAt(const std::string& workTree) {
    Tree tree;
    for (fs::recursive_directory_iterator each(workTree), end; each != end; ++each) {
        if (each.depth() == 0 && each->path().filename() == ".git") {
            each.disable_recursion_pending();
        } else {
            tree[each->path().lexically_relative(workTree)] = described(*each);
        }
    }
    return tree;
}

std::vector<FileChange> changesIn(const std::string& workTree) {
    return GitOutputParsers::parseChanges(git(workTree, {"status", "--porcelain", "-uall"}));
}

FileChange rowOf(const std::vector<FileChange>& rows, std::string_view name) {
    const auto row = std::ranges::find_if(rows, [&](const FileChange& change) {
        return GitPaths::unquoted(change.filePath) == name;
    });
    if (row != rows.end()) return *row;
    ADD_FAILURE() << "git shows no change of " << name;
    return {};
}

FileChange changeOf(const std::string& workTree, std::string_view name) {
    return rowOf(changesIn(workTree), name);
}

std::optional<std::string> DiscardTest::discard(const std::string& filePath,
                                                const std::string& status) {
    return discardIn({.repoPath = repository, .filePath = filePath, .status = status});
}

std::optional<std::string> DiscardTest::discardIn(const DiscardRequest& request) {
    const GitDiscardService service({.home = folder / "home", .executable = executable}, launcher,
                                    [this](std::string_view line) { lines.emplace_back(line); });
    return service.discardFileChange(request);
}

std::optional<std::string> DiscardTest::discardRow(std::string_view name,
                                                   std::string_view expectedStatus) {
    const FileChange row = changeOf(repository, name);
    EXPECT_EQ(row.status, expectedStatus);
    return discard(row.filePath, row.status);
}

}  // namespace tarnbeck::testing
