// A repository with work in it, of which a test discards one piece.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "GitDiscardService.h"
#include "GitFixture.h"
#include "GitRepository.h"
#include "PosixProcessLauncher.h"

namespace tarnbeck::testing {

// What stands in a work tree, by path: the kind and mode of each thing and what is in it. git's own
// folder at the top is left out.
using Tree = std::map<std::string, std::string>;
Tree treeAt(const std::string& workTree);

// The rows of `git status`, as the scan of a repository reads them.
std::vector<FileChange> changesIn(const std::string& workTree);
// The row of the file with this (unquoted) name.
FileChange rowOf(const std::vector<FileChange>& rows, std::string_view name);
FileChange changeOf(const std::string& workTree, std::string_view name);

// Hands requests on to the real launcher, and remembers them.
class RecordingLauncher : public ProcessLauncher {
  public:
    struct Launch {
        std::string executable;
        std::vector<std::string> arguments;
        std::vector<std::string> environment;
    };
    std::vector<Launch> launches;

    Result<std::unique_ptr<ChildProcess>> launch(const LaunchRequest& request) override {
        launches.push_back({request.executable,
                            request.arguments,
                            {request.environment.begin(), request.environment.end()}});
        return real_.launch(request);
    }
    void endAllSessions() override { real_.endAllSessions(); }

  private:
    PosixProcessLauncher real_;
};

class DiscardTest : public ::testing::Test {
  protected:
    // The words for the user; absent on success.
    std::optional<std::string> discard(const std::string& filePath, const std::string& status);
    std::optional<std::string> discardIn(const DiscardRequest& request);
    // Discards the row that git shows for the file, whose status must be the expected one.
    std::optional<std::string> discardRow(std::string_view name, std::string_view expectedStatus);

    std::string write(std::string_view name, std::string_view content) const {
        return folder.write("repository/" + std::string(name), content);
    }
    std::string in(std::string_view name) const { return repository + "/" + std::string(name); }
    void commit(std::string_view name, std::string_view content) const {
        write(name, content);
        gitHere({"add", "--", ":(literal)" + std::string(name)});
        gitHere({"commit", "-q", "-m", "Add a file"});
    }
    std::string gitHere(const std::vector<std::string>& arguments) const {
        return git(repository, arguments);
    }

    TemporaryFolder folder;
    std::string repository = makeRepository(folder / "repository");
    std::string executable = "/usr/bin/git";
    std::vector<std::string> lines;  // what the logger got
    RecordingLauncher launcher;
};

}  // namespace tarnbeck::testing
