#include <chrono>
#include <initializer_list>
#include <utility>
#include <variant>

#include <fmt/format.h>

#include "FileSystem.h"
#include "GitHubScanner.h"
#include "GitOutputParsers.h"
#include "Overloaded.h"
#include "Paths.h"
#include "RepositoryScanner.h"
#include "Text.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;

constexpr auto commandTimeout = 15s;
constexpr auto pauseBeforeRetry = 250ms;
constexpr auto pauseBeforeSecondLook = 500ms;
constexpr int mostRetries = 1;

// The attempt is to be made again after a pause.
struct Again {
    std::chrono::milliseconds pause;
};
using Outcome = std::variant<std::optional<GitRepository>, Again>;

enum class Answer { required, mayBeEmpty };

// One attempt at reading one repository: its git commands, one after the other.
class ScanAttempt {
  public:
    ScanAttempt(const RepositoryScanner::StaticScan& tools,
                const RepositoryScanner::ScanRequest& request)
        : tools_(tools),
          retryCount_(request.retryCount),
          path_(expandingTilde(request.at, tools.home)),
          gitDirectory_(path_ + "/.git"),
          selection_{"-C", path_} {}

    Outcome run() {
        if (!exists(gitDirectory_)) return std::nullopt;
        repository_.path = path_;
        repository_.name = lastPathComponent(path_);
        if (!read()) return retryOrGiveUp();
        repository_.dependencySummary = tools_.initialDependencySummary(path_);
        if (needsSecondLook()) return Again{pauseBeforeSecondLook};
        return std::move(repository_);
    }

  private:
    using Arguments = std::vector<std::string>;
    using Words = std::initializer_list<std::string_view>;

    // False when a required command failed; `failure_` says which.
    bool read() {
        chooseSelection();
        if (!readHead() || !readBranches() || !readBareness()) return false;
        readRemotes();
        readSyncStatus();
        readWorktrees();
        repository_.tags = GitOutputParsers::parseTags(orEmpty({"tag", "--sort=-creatordate"}));
        return isBare_ || readWorkingTree();
    }

    std::optional<std::string> git(const Arguments& selection, const std::string& logPath,
                                   Words logical, Answer answer) const {
        Arguments all;
        all.reserve(selection.size() + logical.size());
        all.insert(all.end(), selection.begin(), selection.end());
        all.insert(all.end(), logical.begin(), logical.end());
        return tools_.git({.executableArgs = std::move(all),
                           .logRepoPath = logPath,
                           .logicalArgs = {logical.begin(), logical.end()},
                           .timeout = commandTimeout,
                           .allowEmpty = answer == Answer::mayBeEmpty});
    }

    std::optional<std::string> required(Words logical, std::string_view reason,
                                        Answer answer = Answer::required) {
        auto output = git(selection_, path_, logical, answer);
        if (!output) failure_ = reason;
        return output;
    }

    std::string orEmpty(Words logical) const {
        return git(selection_, path_, logical, Answer::mayBeEmpty).value_or("");
    }

    // `core.bare` may be set although there is a work tree: then git has to be told both by name.
    void chooseSelection() {
        const Words question = {"rev-parse", "--is-bare-repository"};
        const Arguments explicitForm = {"--git-dir", gitDirectory_, "--work-tree", path_};
        const auto normally = git(selection_, path_, question, Answer::required);
        if (!isDirectory(gitDirectory_)) return;
        const auto explicitly = git(explicitForm, path_, question, Answer::required);
        if (normally != "true" || explicitly != "false") return;
        selection_ = explicitForm;
        repository_.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    }

    bool readHead() {
        auto head = required({"rev-parse", "--abbrev-ref", "HEAD"}, "HEAD resolution failed");
        repository_.isDetachedHead = head == "HEAD";
        if (repository_.isDetachedHead) {
            head = required({"rev-parse", "--short", "HEAD"},
                            "detached HEAD short hash resolution failed");
        }
        repository_.currentBranch = std::move(head);
        return repository_.currentBranch.has_value();
    }

    bool readBranches() {
        const auto output =
            required({"branch", "--format=%(refname:short)\t%(HEAD)"}, "branch enumeration failed");
        if (output) repository_.branches = GitOutputParsers::parseLocalBranches(*output);
        return output.has_value();
    }

    bool readBareness() {
        const auto output =
            required({"rev-parse", "--is-bare-repository"}, "bare repository detection failed");
        isBare_ = output == "true";
        return output.has_value();
    }

    void readRemotes() {
        repository_.gitHubOwnerRepos =
            RepositoryScanner::gitHubOwnerRepos(orEmpty({"remote", "-v"}));
        repository_.remoteBranches = GitOutputParsers::parseRemoteBranches(
            orEmpty({"branch", "-r", "--format=%(refname:short)"}));
    }

    void readSyncStatus() {
        if (isBare_) return;
        repository_.syncStatus = GitOutputParsers::parseSyncStatus(
            orEmpty({"status", "--porcelain=v2", "--branch", "-u"}));
    }

    void readWorktrees() {
        auto worktrees =
            GitOutputParsers::parseWorktrees(orEmpty({"worktree", "list", "--porcelain"}));
        for (GitWorktree& worktree : worktrees) {
            if (worktree.isMainWorktree || worktree.isBare) continue;
            const auto status = git({"-C", worktree.path}, worktree.path,
                                    {"status", "--porcelain", "-uall"}, Answer::mayBeEmpty);
            worktree.changes = GitOutputParsers::parseChanges(status.value_or(""));
        }
        repository_.worktrees = std::move(worktrees);
    }

    bool readWorkingTree() {
        const auto output = required({"status", "--porcelain", "-uall"},
                                     "working tree status failed", Answer::mayBeEmpty);
        if (!output) return false;
        repository_.uncommittedChanges = GitOutputParsers::parseChanges(*output);
        repository_.stashes =
            GitOutputParsers::parseStashes(orEmpty({"stash", "list", "--format=%gd%x1f%gs"}));
        repository_.stashCount = static_cast<std::int64_t>(repository_.stashes.size());
        return true;
    }

    Outcome retryOrGiveUp() const {
        if (retryCount_ >= mostRetries) return std::nullopt;
        tools_.log.write(fmt::format("RETRY {}: {} — retrying in 250ms (attempt {})",
                                     repository_.name, failure_, retryCount_ + 1));
        return Again{pauseBeforeRetry};
    }

    // A detached HEAD without any branch may be a reference that is just being written.
    bool needsSecondLook() const {
        if (!repository_.branches.empty()) return false;
        if (repository_.isDetachedHead && retryCount_ < mostRetries) {
            tools_.log.write(fmt::format(
                "INCONSISTENT {}: detached HEAD but 0 branches — retrying in 500ms (attempt {})",
                repository_.name, retryCount_ + 1));
            return true;
        }
        tools_.log.write(fmt::format("WARNING {}: 0 branches, isDetached={}, currentBranch={}",
                                     repository_.name, repository_.isDetachedHead,
                                     repository_.currentBranch.value_or("")));
        return false;
    }

    const RepositoryScanner::StaticScan& tools_;
    const int retryCount_;
    const std::string path_;
    const std::string gitDirectory_;
    Arguments selection_;
    bool isBare_ = false;
    std::string_view failure_;
    GitRepository repository_;
};

// The pause goes through the main loop's clock, so that no thread sleeps for it.
void scanAgainAfter(std::chrono::milliseconds pause, const RepositoryScanner::StaticScan& tools,
                    const RepositoryScanner::ScanRequest& request,
                    const ScanCompletion& completion) {
    const auto scanAgain = [=] {
        RepositoryScanner::scanRepositoryImpl(
            tools, {.at = request.at, .retryCount = request.retryCount + 1}, completion);
    };
    tools.loop.post([=, &loop = tools.loop, &queues = tools.queues] {
        loop.after(pause, [=, &queues] { queues.userInitiated(scanAgain); }).detach();
    });
}

}  // namespace

void RepositoryScanner::scanRepositoryImpl(const StaticScan& tools, const ScanRequest& request,
                                           const ScanCompletion& completion) {
    Outcome outcome = ScanAttempt(tools, request).run();
    std::visit(
        Overloaded{
            [&](std::optional<GitRepository>& repository) { completion(std::move(repository)); },
            [&](const Again& again) { scanAgainAfter(again.pause, tools, request, completion); },
        },
        outcome);
}

std::set<std::string> RepositoryScanner::gitHubOwnerRepos(std::string_view fromRemoteOutput) {
    std::set<std::string> ownerRepos;
    forEachLine(fromRemoteOutput, [&](std::string_view line) {
        std::vector<std::string_view> pieces;
        forEachPiece(line, '\t', [&](std::string_view column) {
            forEachPiece(column, ' ', [&](std::string_view piece) { pieces.push_back(piece); });
        });
        if (pieces.size() < 2) return;
        if (const auto ownerRepo = GitHubScanner::parseOwnerRepo(pieces[1])) {
            ownerRepos.insert(lowercased(*ownerRepo));
        }
    });
    return ownerRepos;
}

}  // namespace tarnbeck
