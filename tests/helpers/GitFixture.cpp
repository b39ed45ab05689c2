#include "GitFixture.h"

#include <chrono>
#include <fstream>
#include <stdexcept>

#include "PosixProcessLauncher.h"
#include "ProcessPipeReader.h"

namespace tarnbeck::testing {
namespace {

const ImmutableList<std::string> environment = {
    "HOME=/nonexistent",
    "PATH=/usr/bin:/bin",
    "LC_ALL=C.UTF-8",
    "GIT_CONFIG_NOSYSTEM=1",
    "GIT_AUTHOR_NAME=A U Thor",
    "GIT_AUTHOR_EMAIL=author@example.com",
    "GIT_COMMITTER_NAME=A U Thor",
    "GIT_COMMITTER_EMAIL=author@example.com",
    "GIT_CONFIG_COUNT=3",
    "GIT_CONFIG_KEY_0=init.defaultBranch",
    "GIT_CONFIG_VALUE_0=main",
    "GIT_CONFIG_KEY_1=protocol.file.allow",
    "GIT_CONFIG_VALUE_1=always",
    "GIT_CONFIG_KEY_2=gc.auto",
    "GIT_CONFIG_VALUE_2=0",
};

}  // namespace

std::string git(const std::string& folder, const std::vector<std::string>& arguments,
                bool mayFail) {
    PosixProcessLauncher launcher;
    auto child = launcher.launch({.executable = "/usr/bin/git",
                                  .arguments = arguments,
                                  .environment = environment,
                                  .workingDirectory = folder.c_str()});
    if (!child) throw std::runtime_error(child.error());
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    auto reader = ProcessPipeReader::readStdoutAndStderr((*child)->takeStandardOutput(),
                                                         (*child)->takeStandardError());
    reader.waitForEnd(deadline);
    reader.waitForExit(**child, deadline);
    const bool failed = (*child)->isRunning() || (*child)->terminationStatus() != 0;
    if (failed && !mayFail) {
        throw std::runtime_error("git " + arguments.at(0) + " in " + folder + ": " +
                                 reader.takeStandardError());
    }
    return reader.takeStandardOutput();
}

std::string makeRepository(const std::string& path, const std::vector<std::string>& initArguments) {
    std::vector<std::string> arguments = {"init", "-q"};
    arguments.insert(arguments.end(), initArguments.begin(), initArguments.end());
    arguments.insert(arguments.end(), {"--", path});
    git("/", arguments);
    commitFile(path, "file.txt", "content\n");
    return path;
}

void commitFile(const std::string& repository, const std::string& name,
                const std::string& content) {
    std::ofstream(repository + "/" + name) << content;
    git(repository, {"add", "--", name});
    git(repository, {"commit", "-q", "-m", "Change " + name});
}

}  // namespace tarnbeck::testing
