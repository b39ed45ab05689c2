// The scan of one repository in virtual time, with answers of git that a test has laid down.
#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ObservedLog.h"
#include "RepositoryScanner.h"
#include "Simulation.h"
#include "TemporaryFolder.h"
#include "Text.h"

namespace tarnbeck::testing {

// What git answers, by the arguments without the selection of the repository: the first time, the
// second time, and so on; the last answer stays. At first a tidy repository on main.
using Answers = std::map<std::string, std::vector<std::optional<std::string>>>;

inline constexpr const char* isBareQuestion = "rev-parse --is-bare-repository";
inline constexpr const char* headQuestion = "rev-parse --abbrev-ref HEAD";
inline constexpr const char* shortHashQuestion = "rev-parse --short HEAD";
inline constexpr const char* branchesQuestion = "branch --format=%(refname:short)\t%(HEAD)";
inline constexpr const char* remotesQuestion = "remote -v";
inline constexpr const char* remoteBranchesQuestion = "branch -r --format=%(refname:short)";
inline constexpr const char* syncStatusQuestion = "status --porcelain=v2 --branch -u";
inline constexpr const char* worktreesQuestion = "worktree list --porcelain";
inline constexpr const char* changesQuestion = "status --porcelain -uall";
inline constexpr const char* tagsQuestion = "tag --sort=-creatordate";
inline constexpr const char* stashesQuestion = "stash list --format=%gd%x1f%gs";

class RecordedScan {
  public:
    RecordedScan() { folder.makeFolder("project/.git"); }

    // Begins a scan; its first attempt runs at once.
    void begin(const std::string& at) {
        RepositoryScanner::scanRepositoryImpl(
            {.loop = simulation.loop,
             .queues = simulation.queues,
             .log = observed.log,
             .git = [this](const GitInvocation& invocation) { return answerTo(invocation); },
             .home = folder.path(),
             .initialDependencySummary =
                 [this](const std::string& asked) {
                     dependencyQuestions.push_back(asked);
                     return dependencySummary;
                 }},
            {.at = at}, [this](std::optional<GitRepository> result) {
                ++completions;
                repository = std::move(result);
            });
        simulation.runUntilIdle();
    }
    // A whole scan of the project, with all its pauses.
    std::optional<GitRepository> scan() {
        begin(path);
        simulation.advance(std::chrono::seconds(10));
        return repository;
    }

    // The commands so far, without the selection of the repository.
    std::vector<std::string> commands() const {
        std::vector<std::string> texts;
        for (const auto& invocation : invocations) {
            texts.push_back(joined(invocation.logicalArgs, " "));
        }
        return texts;
    }
    std::ptrdiff_t timesAsked(const std::string& question) const {
        return std::ranges::count(commands(), question);
    }

    Simulation simulation;
    ObservedLog observed{simulation};
    TemporaryFolder folder;
    const std::string path = folder / "project";
    Answers answers = {
        {isBareQuestion, {"false"}},
        {headQuestion, {"main"}},
        {shortHashQuestion, {"abc1234"}},
        {branchesQuestion, {"main\t*"}},
        {remotesQuestion, {""}},
        {remoteBranchesQuestion, {""}},
        {syncStatusQuestion, {"# branch.oid 0123\n# branch.head main"}},
        {worktreesQuestion, {"worktree " + path + "\nHEAD 0123\nbranch refs/heads/main\n"}},
        {changesQuestion, {""}},
        {tagsQuestion, {""}},
        {stashesQuestion, {""}},
    };
    DependencySummary dependencySummary;           // what is remembered of its dependencies
    std::vector<std::string> dependencyQuestions;  // the paths that were asked about
    std::vector<GitInvocation> invocations;
    int completions = 0;
    std::optional<GitRepository> repository;

  private:
    std::optional<std::string> answerTo(const GitInvocation& invocation) {
        const std::string question = joined(invocation.logicalArgs, " ");
        const auto& all = answers.at(question);
        const auto before = static_cast<std::size_t>(timesAsked(question));
        invocations.push_back(invocation);
        return all[std::min(before, all.size() - 1)];
    }
};

}  // namespace tarnbeck::testing
