// What a check of dependencies is doing, for the line that shows how far it is.
#pragma once

#include <functional>
#include <string>

#include "DependencyTools.h"

namespace tarnbeck::cli {

// "npm in web": the tool, and the project where it is not the repository's own. Pure; any thread.
std::string commandInWords(const Command& command, const std::string& repoPath);

// The same tools, with `begins` told of each command before it runs, on the thread that runs it.
DependencyTools tellingCommands(DependencyTools tools,
                                std::function<void(const Command& command)> begins);

}  // namespace tarnbeck::cli
