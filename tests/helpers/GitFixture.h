// Real repositories made to order with the machine's git, untouched by the user's settings.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "TemporaryFolder.h"

namespace tarnbeck::testing {

// Runs git with `arguments` in `folder`, with a home and an identity of its own, and gives its
// standard output. Throws when git fails, unless `mayFail`.
std::string git(const std::string& folder, const std::vector<std::string>& arguments,
                bool mayFail = false);

// A repository on branch main with one commit of one file, "file.txt".
std::string makeRepository(const std::string& path,
                           const std::vector<std::string>& initArguments = {});

// Writes a file below `repository` and commits it.
void commitFile(const std::string& repository, const std::string& name, const std::string& content);

}  // namespace tarnbeck::testing
