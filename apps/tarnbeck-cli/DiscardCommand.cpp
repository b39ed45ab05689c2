#include <optional>
#include <string>

#include <fmt/format.h>

#include "ChangeSelection.h"
#include "Commands.h"
#include "Confirmation.h"
#include "ExitStatus.h"
#include "GitDiscardService.h"
#include "Output.h"
#include "Paths.h"
#include "RepositorySelection.h"
#include "ScanFailures.h"
#include "SystemLog.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

// The present state of the repository, or why it can't be told.
Result<GitRepository> scanned(Companion& companion, const std::string& path) {
    ScanFailures failures(companion.log());
    ProgressLine progress;
    progress.show(fmt::format("Scanning {}", lastPathComponent(path)));
    const auto services = companion.services();
    const RepositoryScanner::StaticScan tools{.loop = services.loop,
                                              .queues = services.queues,
                                              .log = services.log,
                                              .git = services.git,
                                              .home = services.home};
    std::optional<GitRepository> repository;
    companion.runLoop([&] {
        companion.queues().userInitiated([&] {
            RepositoryScanner::scanRepositoryImpl(tools, {.at = path},
                                                  [&](std::optional<GitRepository> result) {
                                                      repository = std::move(result);
                                                      companion.loop().stop();
                                                  });
        });
    });
    if (!repository) return Failure{failures.reasonFor(path)};
    return *std::move(repository);
}

// Words why it could not be done; absent on success.
std::optional<std::string> discard(Companion& companion, const DiscardRequest& request) {
    const GitDiscardService service(
        {.home = companion.home()}, companion.launcher(),
        [](std::string_view line) { writeError("git-discard", std::string(line)); });
    std::optional<std::string> words;
    companion.runInBackground([&] { words = service.discardFileChange(request); });
    return words;
}

bool isAllowed(const std::string& what) {
    switch (confirmation(what + "? This can't be undone. [y/N] ")) {
        case Confirmation::yes:
            return true;
        case Confirmation::no:
            complain("nothing was discarded");
            return false;
        case Confirmation::nobodyToAsk:
            break;
    }
    complain("standard input is no terminal to ask on: --yes discards without asking");
    return false;
}

int discardFile(Companion& companion, const std::string& repository,
                const DiscardArguments& arguments) {
    const auto snapshot = scanned(companion, repository);
    if (!snapshot) {
        complain(repository + ": " + snapshot.error());
        return exitFailure;
    }
    const auto change = selectedChange({.changes = snapshot->uncommittedChanges,
                                        .workTree = repository,
                                        .typed = arguments.file,
                                        .currentFolder = standardized(".")});
    if (!change) {
        complain(arguments.file + ": " + change.error());
        return exitFailure;
    }
    // The last commit does not have a file that was added either.
    const bool deletes = change->status == "??" || change->status.starts_with('A');
    const std::string subject = fmt::format("{} in {}", shownName(*change), printable(repository));
    const std::string what = (deletes ? "Delete " : "Discard the changes of ") + subject;
    if (!arguments.yes && !isAllowed(what)) return exitFailure;
    const auto failure =
        discard(companion,
                {.repoPath = repository, .filePath = change->filePath, .status = change->status});
    if (failure) {
        complain(*failure);
        return exitFailure;
    }
    print((deletes ? "Deleted " : "Discarded the changes of ") + subject + "\n");
    return exitSuccess;
}

}  // namespace

int runDiscard(Companion& companion, const DiscardArguments& arguments) {
    const auto repository = repositoryAround(arguments.path, companion.home());
    if (!repository) {
        complain(arguments.path + ": " + repository.error());
        return exitFailure;
    }
    return discardFile(companion, *repository, arguments);
}

}  // namespace tarnbeck::cli
