// Which change of a work tree the FILE on the command line means.
#pragma once

#include <string>
#include <string_view>

#include "GitRepository.h"
#include "Result.h"

namespace tarnbeck::cli {

struct ChangeQuestion {
    const ImmutableList<FileChange>& changes;
    std::string workTree;       // absolute
    std::string typed;          // what the user wrote
    std::string currentFolder;  // absolute, without links
};

// The change that is meant: by the path as git prints it, as a path inside the work tree, or as a
// path from the current folder or the root that leads into the work tree. Otherwise in words why
// there is none: no change is meant, more than one is, or it is none that can be discarded. Asks
// the file system.
Result<FileChange> selectedChange(const ChangeQuestion& question);

// The file's name as it is shown to people.
std::string shownName(const FileChange& change);

}  // namespace tarnbeck::cli
