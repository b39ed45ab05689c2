#include "Commands.h"
#include "ExitStatus.h"
#include "Output.h"
#include "RepositoryDiscovery.h"
#include "RepositoryJson.h"
#include "RepositorySelection.h"
#include "Text.h"

namespace tarnbeck::cli {

namespace {

// As they are for another program, harmless on a terminal.
void printLines(const std::vector<std::string>& paths) {
    const bool forPeople = standardOutputIsTerminal();
    std::string lines;
    for (const std::string& path : paths) lines += (forPeople ? printable(path) : path) + "\n";
    print(lines);
}

}  // namespace

int runDiscover(Companion& companion, const DiscoverArguments& arguments) {
    const AppConfiguration configuration = AppConfiguration::load(companion.place());
    int status = exitSuccess;
    std::vector<std::string> directories = configuration.scanDirectories;
    if (!arguments.directories.empty()) {
        directories = arguments.directories;
        for (const std::string& directory : directories) {
            const auto reason = reasonWhyUnsearchable(absolutePath(directory, companion.home()));
            if (!reason) continue;
            complain(directory + ": " + *reason);
            status = exitFailure;
        }
    }
    ProgressLine progress;
    progress.show("Looking for repositories");
    const auto found = discoverRepos({.in = directories,
                                      .ignoring = configuration.discoveryIgnorePaths,
                                      .home = companion.home()});
    progress.clear();
    if (found.empty() && status == exitSuccess) {
        complain("no repository found below " + joined(directories, ", "));
    }
    if (arguments.json) {
        print(jsonArrayText({found.begin(), found.end()}));
    } else {
        printLines(found);
    }
    return status;
}

}  // namespace tarnbeck::cli
