// Answers commands without running any, and keeps what was asked.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DependencyCommandRunner.h"

namespace tarnbeck::testing {

// "/usr/bin/env npm outdated --json"
inline std::string commandLine(const Command& command) {
    std::string line = command.executable;
    for (const std::string& argument : command.args) line += " " + argument;
    return line;
}

inline CommandResult printed(std::string standardOutput, std::int32_t status = 0) {
    return {.terminationStatus = status, .stdout = std::move(standardOutput)};
}

inline CommandResult failed(std::int32_t status, std::string standardError = "") {
    return {.terminationStatus = status, .stderr = std::move(standardError)};
}

class RecordedCommands {
  public:
    // A command whose line contains `words` gets this answer; of several the last one told. What
    // has no answer is not found, as by `env`.
    void answer(std::string words, CommandResult result) {
        answers_.emplace_back(std::move(words), std::move(result));
    }

    // Holds on to this.
    CommandRunner runner() {
        return [this](const Command& command) { return run(command); };
    }

    // What was run, in order.
    const std::vector<Command>& commands() const { return commands_; }
    std::vector<std::string> lines() const {
        std::vector<std::string> all;
        for (const Command& command : commands_) all.push_back(commandLine(command));
        return all;
    }
    void forget() { commands_.clear(); }

  private:
    CommandResult run(const Command& command) {
        const std::lock_guard lock(mutex_);
        commands_.push_back(command);
        const std::string line = commandLine(command);
        for (auto answer = answers_.rbegin(); answer != answers_.rend(); ++answer) {
            if (line.find(answer->first) != std::string::npos) return answer->second;
        }
        return failed(127, "not found");
    }

    std::mutex mutex_;
    std::vector<std::pair<std::string, CommandResult>> answers_;
    std::vector<Command> commands_;
};

}  // namespace tarnbeck::testing
