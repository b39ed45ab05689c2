// What the user typed, read once into plain values.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tarnbeck::cli {

enum class ColorChoice { automatic, always, never };

struct StatusArguments {
    std::vector<std::string> paths;  // empty: the configured repositories
    bool json = false;
    bool fetch = false;
    ColorChoice color = ColorChoice::automatic;
};
struct WatchArguments {
    bool json = false;
    ColorChoice color = ColorChoice::automatic;
};
struct IssuesArguments {
    std::vector<std::string> paths;  // empty: the configured repositories
    bool json = false;
    bool refresh = false;
    ColorChoice color = ColorChoice::automatic;
};
struct DepsArguments {
    std::vector<std::string> paths;  // empty: the configured repositories
    bool json = false;
    bool refresh = false;
    ColorChoice color = ColorChoice::automatic;
};
struct InstallArguments {
    std::string path;                    // a repository, or a path inside one
    std::optional<std::string> project;  // as `deps` shows it
    bool yes = false;                    // do not ask
};
struct SyncArguments {
    std::string path;
};
struct DiscoverArguments {
    std::vector<std::string> directories;  // empty: the configured ones
    bool json = false;
};
struct AddArguments {
    std::vector<std::string> paths;
};
struct RemoveArguments {
    std::vector<std::string> paths;
};
struct ConfigArguments {
    bool json = false;
};
struct DiscardArguments {
    std::string path;  // a repository, or a path inside one
    std::string file;
    bool yes = false;  // do not ask
};
struct LogArguments {
    bool follow = false;
    std::optional<std::size_t> lines;  // absent: all, and the usual number when it follows
};
struct DoctorArguments {
    bool json = false;
};

using Arguments =
    std::variant<StatusArguments, WatchArguments, IssuesArguments, DepsArguments, InstallArguments,
                 SyncArguments, DiscoverArguments, AddArguments, RemoveArguments, ConfigArguments,
                 DiscardArguments, LogArguments, DoctorArguments>;

// What is to be done, or the exit status of a call that is already answered (help, version, wrong
// usage), whose answer has been printed.
std::variant<Arguments, int> parsedCommandLine(std::vector<std::string> words);

}  // namespace tarnbeck::cli
