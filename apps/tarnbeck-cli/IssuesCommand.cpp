#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>

#include <fmt/format.h>

#include "Commands.h"
#include "ExitStatus.h"
#include "IssueReport.h"
#include "Output.h"
#include "Paths.h"
#include "RepositoryJson.h"
#include "RepositorySelection.h"
#include "ScanFollower.h"

namespace tarnbeck::cli {
namespace {

// Why GitHub could not be asked, learnt from what the scan log is told.
class GitHubFailures {
  public:
    explicit GitHubFailures(ScanLog& log)
        : observation_(log.observe([this](std::string_view line) { note(line); })) {}

    // The reason of the last failure. That `gh` is missing is said once and holds for all.
    std::string reason() const {
        const std::lock_guard lock(mutex_);
        return last_.empty() ? "GitHub could not be asked" : gitHubFailureInWords(last_);
    }

  private:
    void note(std::string_view line) {
        if (!line.starts_with("GITHUB ")) return;
        const std::lock_guard lock(mutex_);
        last_ = line;
    }

    mutable std::mutex mutex_;
    std::string last_;
    ScanLog::Observers::Token observation_;
};

// Asks about one repository after the other, in the background, and prints what comes.
class IssueQuestions {
  public:
    IssueQuestions(Companion& companion, const IssuesArguments& arguments,
                   std::vector<std::string> paths)
        : companion_(companion),
          arguments_(arguments),
          style_{.color = usesColor(arguments.color), .columns = terminalColumns()},
          paths_(std::move(paths)),
          failures_(companion.log()) {}

    void run() {
        companion_.runLoop([this] {
            askNext();
            if (paths_.empty()) companion_.loop().stop();
        });
    }

    const std::vector<IssueAnswer>& answers() const { return answers_; }
    const std::vector<SelectionProblem>& problems() const { return problems_; }

  private:
    void askNext() {
        if (answers_.size() == paths_.size()) return companion_.loop().stop();
        const std::string path = paths_[answers_.size()];
        progress_.show(fmt::format("Asking GitHub {}/{} {}", answers_.size() + 1, paths_.size(),
                                   lastPathComponent(path)));
        companion_.services().queues.userInitiated([this, path] {
            companion_.loop().post([this, answer = answerAbout(path)] { take(answer); });
        });
    }

    // Blocks while `gh` runs.
    IssueAnswer answerAbout(const std::string& path) {
        GitHubScanner& gitHub = companion_.gitHub();
        IssueAnswer answer{.path = path};
        answer.result =
            gitHub.scan({.at = path,
                         .policy = arguments_.refresh ? GitHubIssueRefreshPolicy::forceRefresh
                                                      : GitHubIssueRefreshPolicy::useCache});
        if (answer.result.is<GitHubRepoScanResult::Skipped>()) return answer;
        answer.ownerRepo = gitHub.gitHubOwnerRepo(path);
        answer.fetchedAt = gitHub.lastKnownIssueFetchDate(path);
        if (const auto* data = answer.result.data()) {
            answer.shown = *data;
            return answer;
        }
        if (auto issues = gitHub.lastKnownIssues(path)) answer.shown.issues = *std::move(issues);
        if (auto known = gitHub.lastKnownPullRequests(path))
            answer.shown.pullRequests = *std::move(known);
        return answer;
    }

    void take(const IssueAnswer& answer) {
        progress_.clear();
        if (!arguments_.json) print(issueList(answer, style_));
        if (answer.result.is<GitHubRepoScanResult::Failed>()) {
            problems_.push_back({answer.path, failures_.reason()});
            complain(answer.path + ": " + failures_.reason());
        }
        answers_.push_back(answer);
        askNext();
    }

    Companion& companion_;
    const IssuesArguments& arguments_;
    const TableStyle style_;
    const std::vector<std::string> paths_;
    GitHubFailures failures_;
    ProgressLine progress_;
    std::vector<IssueAnswer> answers_;
    std::vector<SelectionProblem> problems_;
};

RepositorySelection repositoriesToAskAbout(Companion& companion, const IssuesArguments& arguments) {
    ProgressLine progress;
    progress.show("Looking for repositories");
    return selectedOrConfigured(arguments.paths, companion.place(), companion.services().collator);
}

}  // namespace

int runIssues(Companion& companion, const IssuesArguments& arguments) {
    const RepositorySelection selection = repositoriesToAskAbout(companion, arguments);
    IssueQuestions questions(companion, arguments, selection.paths);
    questions.run();
    const std::size_t failed = complainAbout(selection.problems) + questions.problems().size();
    if (arguments.json) {
        std::vector<JsonValue> elements;
        std::ranges::transform(questions.answers(), std::back_inserter(elements), issueJson);
        print(jsonArrayText(elements));
    } else if (!questions.answers().empty()) {
        print(issueTotals(questions.answers()) + "\n");
    }
    return failed > 0 ? exitFailure : exitSuccess;
}

}  // namespace tarnbeck::cli
