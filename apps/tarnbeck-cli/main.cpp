#include <csignal>
#include <string>
#include <variant>
#include <vector>

#include "CommandLine.h"
#include "Commands.h"
#include "Companion.h"
#include "Output.h"
#include "Overloaded.h"
#include "Paths.h"

int main(int argc, char** argv) {
    using namespace tarnbeck;
    using namespace tarnbeck::cli;
    fillMissingStandardStreams();
    // A reader that goes away is told of by the write.
    std::signal(SIGPIPE, SIG_IGN);
    const auto parsed = parsedCommandLine({argv + 1, argv + argc});
    if (const int* status = std::get_if<int>(&parsed)) return *status;
    Companion companion(userHome());
    return std::visit(
        Overloaded{
            [&](const StatusArguments& arguments) { return runStatus(companion, arguments); },
            [&](const WatchArguments& arguments) { return runWatch(companion, arguments); },
            [&](const IssuesArguments& arguments) { return runIssues(companion, arguments); },
            [&](const DepsArguments& arguments) { return runDeps(companion, arguments); },
            [&](const InstallArguments& arguments) { return runInstall(companion, arguments); },
            [&](const SyncArguments& arguments) { return runSync(companion, arguments); },
            [&](const DiscoverArguments& arguments) { return runDiscover(companion, arguments); },
            [&](const AddArguments& arguments) { return runAdd(companion, arguments); },
            [&](const RemoveArguments& arguments) { return runRemove(companion, arguments); },
            [&](const ConfigArguments& arguments) { return runConfig(companion, arguments); },
            [&](const DiscardArguments& arguments) { return runDiscard(companion, arguments); },
            [&](const LogArguments& arguments) { return runLog(companion, arguments); },
            [&](const DoctorArguments& arguments) { return runDoctor(companion, arguments); },
        },
        std::get<Arguments>(parsed));
}
