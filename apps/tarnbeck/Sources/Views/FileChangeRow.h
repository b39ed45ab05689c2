// The row of one changed file. Pure, any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "CaseInsensitiveSearch.h"
#include "GitRepository.h"
#include "Row.h"
#include "SectionContent.h"

namespace tarnbeck {

// Where a changed file is listed: a branch may be checked out in several work trees, and each of
// them may have changed the same file.
struct FileChangeIdentity {
    std::string branch;
    std::string workTree;  // absolute
    std::string filePath;  // of the `FileChange`

    bool operator==(const FileChangeIdentity&) const = default;
};
std::string fileChangeRowId(const std::string& repository, const FileChangeIdentity& identity);
// Absent for the id of another row.
std::optional<FileChangeIdentity> fileChangeIdentity(const std::string& repository,
                                                     std::string_view rowId);

// The name as a person knows it, without git's quotes; bytes as they are. Of a rename or a copy
// the new one, which is the one that exists.
std::string fileNameOf(const FileChange& change);

// What the letters of git's short status stand for: "modified", "added and modified".
std::string statusWords(std::string_view status);

struct FileChangeRowView {
    const FileChange& change;
    const std::string& basePath;  // the work tree
    std::string id;
    const CaseInsensitiveSearch& search;
    bool isDiscarding = false;
};
Row fileChangeRow(FileChangeRowView view);

}  // namespace tarnbeck
