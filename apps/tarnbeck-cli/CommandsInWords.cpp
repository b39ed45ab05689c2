#include "CommandsInWords.h"

#include <algorithm>
#include <utility>

#include "DependencyScanner+Discovery.h"
#include "Paths.h"

namespace tarnbeck::cli {

std::string commandInWords(const Command& command, const std::string& repoPath) {
    const bool isThroughEnv = command.executable == "/usr/bin/env" && !command.args.empty();
    std::string tool(isThroughEnv ? command.args.front() : lastPathComponent(command.executable));
    std::string project =
        DependencyScanner::relativeProjectPath({.projectPath = command.cwd, .repoPath = repoPath});
    // A member of a workspace is asked about in the root: "--filter ./packages/ui...".
    const auto filter = std::ranges::find(command.args, "--filter");
    if (filter != command.args.end() && filter + 1 != command.args.end()) {
        project = *(filter + 1);
        if (project.starts_with("./")) project.erase(0, 2);
        if (project.ends_with("...")) project.resize(project.size() - 3);
    }
    return project == "." ? tool : tool + " in " + project;
}

DependencyTools tellingCommands(DependencyTools tools,
                                std::function<void(const Command& command)> begins) {
    tools.runCommand = [run = std::move(tools.runCommand),
                        begins = std::move(begins)](const Command& command) {
        begins(command);
        return run(command);
    };
    return tools;
}

}  // namespace tarnbeck::cli
