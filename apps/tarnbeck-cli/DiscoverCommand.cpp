#include "Commands.h"
#include "ExitStatus.h"
#include "Output.h"
#include "RepositoryDiscovery.h"
#include "RepositoryJson.h"
#include "RepositorySelection.h"
#include "Text.h"

namespace tarnbeck::cli {

int runDiscover(Companion& companion, const DiscoverArguments& arguments) {
    const AppConfiguration configuration = AppConfiguration::load(companion.place());
    int status = exitSuccess;
    std::vector<std::string> directories = configuration.scanDirectories;
    if (!arguments.directories.empty()) {
        directories = arguments.directories;
        for (const std::string& directory : directories) {
            const auto missing = reasonWhyMissing(absolutePath(directory, companion.home()));
            if (!missing) continue;
            complain(directory + ": " + *missing);
            status = exitFailure;
        }
    }
    const auto found = discoverRepos({.in = directories,
                                      .ignoring = configuration.discoveryIgnorePaths,
                                      .home = companion.home()});
    if (arguments.json) {
        print(jsonArrayText({found.begin(), found.end()}));
    } else {
        for (const std::string& path : found) print(path + "\n");
    }
    return status;
}

}  // namespace tarnbeck::cli
