// What the doctor finds, and what it advises. Pure, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "Record.h"
#include "WatchCapacity.h"

namespace tarnbeck::cli {

struct ToolFacts {
    std::string name;
    std::optional<std::string> path;       // where it is found when it is needed
    std::optional<std::string> version;    // absent when it does not tell
    std::string trouble;                   // why it does not
    std::optional<std::string> elsewhere;  // else where the user's own search path leads to it
};

struct LoginFacts {
    enum class State { notAsked, holds, fails, tookTooLong };

    State state = State::notAsked;                 // as it is when gh is needed
    std::string words;                             // what gh says where it fails
    bool holdsForUser = false;                     // in the user's own environment
    bool tokenIsInFile = false;                    // of gh's own, below the home
    std::vector<std::string> tokenVariables = {};  // names, of those that are set
};

struct EnvironmentFacts {
    bool hasSshAgent = false;
    std::vector<std::string> proxyVariables = {};  // names, of those that are set
};

struct WatchFacts {
    std::optional<WatchCapacity> capacity;  // absent: no limit
    std::int64_t needed = 0;                // about, for the configured repositories
};

struct ConfiguredPathFacts {
    std::string path;  // absolute
    bool exists = false;
    bool isRepository = false;
    std::optional<std::string> excludedName = {};  // a component below which nothing is watched
};

struct FileFacts {
    std::string configuration;
    bool configurationExists = false;
    std::optional<std::string> configurationTrouble = {};  // why it can't be read
    std::optional<std::string> brokenConfiguration = {};   // what was kept of an earlier one
    std::string folder;
    std::optional<std::string> folderTrouble = {};  // why nothing can be written there
    std::string log;
    std::optional<std::string> logTrouble = {};
};

struct DoctorFacts {
    std::vector<ToolFacts> tools;
    LoginFacts login;
    EnvironmentFacts environment;
    WatchFacts watching;
    std::vector<ConfiguredPathFacts> repositories;
    std::vector<ConfiguredPathFacts> scanDirectories = {};  // where the first ones are looked for
    FileFacts files;
};

struct Finding {
    std::string section;
    bool isOk = true;
    std::string finding;
    std::optional<std::string> advice = {};  // one line; absent where all is well

    bool operator==(const Finding&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("section", &Finding::section), field("isOk", &Finding::isOk),
                          field("finding", &Finding::finding), field("advice", &Finding::advice)};
    }
};

std::vector<Finding> findingsOf(const DoctorFacts& facts);

// For people: the sections, each with its findings, and how many of them want something done.
std::string doctorText(const std::vector<Finding>& findings);

// "2.39.5" of "git version 2.39.5 (Apple Git-154)"; the first line where there is no number.
std::string versionIn(std::string_view output);

}  // namespace tarnbeck::cli
