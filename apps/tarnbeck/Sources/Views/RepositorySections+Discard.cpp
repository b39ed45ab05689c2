#include <algorithm>
#include <chrono>
#include <utility>

#include <fmt/format.h>

#include "FileChangeRow.h"
#include "Paths.h"
#include "RepositoryGitDetails.h"
#include "RepositorySections.h"
#include "Text.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;

// A snapshot that still has the change so long after it was discarded is no old one any more: the
// file has been changed again.
constexpr auto longestHidingAfterDiscard = 10s;

ViewAlert confirmAlert(const FileChange& change) {
    const std::string name = fileNameOf(change);
    return {.title = "Discard changes?",
            .message = fmt::format("Discard all uncommitted changes for {}?",
                                   printable(lastPathComponent(name))),
            .buttons = {{"Cancel", ViewAlert::Role::cancel},
                        {"Discard", ViewAlert::Role::destructive}}};
}

ViewAlert failedAlert(const std::string& message) {
    return {
        .title = "Discard failed", .message = message, .buttons = {{"OK", ViewAlert::Role::plain}}};
}

}  // namespace

void RepositorySections::confirmDiscard(const std::string& path, const Row& row) {
    auto identity = fileChangeIdentity(path, row.id);
    if (!identity) return;
    const FileChange change{.status = row.status, .filePath = identity->filePath};
    const bool isAsked = std::ranges::any_of(pending_, [&](const PendingAlert& pending) {
        return pending.kind == DiscardAlert::confirmDiscard && pending.target.rowId == row.id;
    });
    if (isAsked) return;
    present({.kind = DiscardAlert::confirmDiscard,
             .target = {.path = path,
                        .rowId = row.id,
                        .request = {.repoPath = std::move(identity->workTree),
                                    .filePath = change.filePath,
                                    .status = change.status}},
             .alert = confirmAlert(change)});
}

void RepositorySections::discardChange(const DiscardTarget& target) {
    stateOf(target.path);
    DiscardState& state = states_.at(target.path).discards[target.rowId];
    if (state.isDiscarding) return;
    state = {.isDiscarding = true, .isOptimisticallyHidden = true};
    completedDiscards_.erase(target.rowId);
    const auto ended = anchor_.guarded(
        [target](RepositorySections& self, const std::optional<std::string>& error) {
            self.discardEnded(target, error);
        });
    services_.queues.userInitiated(
        [discard = services_.discard, request = target.request, &loop = services_.loop, ended] {
            auto error = discard(request);
            loop.post([ended, error = std::move(error)] { ended(error); });
        });
    onChange_(target.path);
}

void RepositorySections::discardEnded(const DiscardTarget& target,
                                      const std::optional<std::string>& error) {
    DiscardState* state = discardOf(target);
    if (!state) return;  // the repository has gone meanwhile
    if (error) {
        states_.at(target.path).discards.erase(target.rowId);
        present(
            {.kind = DiscardAlert::discardFailed, .target = target, .alert = failedAlert(*error)});
    } else {
        state->isDiscarding = false;
        completedDiscards_[target.rowId] = services_.loop.steadyNow();
        onDiscardCompleted(target.path);
    }
    onChange_(target.path);
}

void RepositorySections::onDiscardCompleted(const std::string& path) {
    const Callbacks& callbacks = services_.callbacks;
    if (callbacks.onRefreshGit) {
        callbacks.onRefreshGit(path);
    } else if (callbacks.onRequestRefresh) {
        callbacks.onRequestRefresh();
    }
}

DiscardState* RepositorySections::discardOf(const DiscardTarget& target) {
    const auto section = states_.find(target.path);
    if (section == states_.end()) return nullptr;
    const auto state = section->second.discards.find(target.rowId);
    return state == section->second.discards.end() ? nullptr : &state->second;
}

void RepositorySections::repositoryChanged(const GitRepository& repository) {
    dismissAlerts([&](const PendingAlert& pending) {
        return pending.kind == DiscardAlert::confirmDiscard &&
               pending.target.path == repository.path &&
               !hasFileChange(repository, pending.target.rowId);
    });
    const auto section = states_.find(repository.path);
    if (section == states_.end() || section->second.discards.empty()) return;
    const SteadyTime now = services_.loop.steadyNow();
    const auto isOver = [&](const auto& discard) {
        const auto completed = completedDiscards_.find(discard.first);
        if (completed == completedDiscards_.end()) return false;  // under way
        if (now - completed->second < longestHidingAfterDiscard &&
            hasFileChange(repository, discard.first)) {
            return false;
        }
        completedDiscards_.erase(completed);
        return true;
    };
    if (std::erase_if(section->second.discards, isOver) > 0) onChange_(repository.path);
}

void RepositorySections::forget(const std::string& path) {
    dismissAlerts([&](const PendingAlert& pending) { return pending.target.path == path; });
    const auto section = states_.find(path);
    if (section == states_.end()) return;
    for (const auto& [rowId, discard] : section->second.discards) completedDiscards_.erase(rowId);
    states_.erase(section);
}

void RepositorySections::present(PendingAlert pending) {
    pending_.push_back(std::move(pending));
    alert_ = pending_.front().alert;
    onChange_({});
}

template <class Predicate>
void RepositorySections::dismissAlerts(Predicate isDismissed) {
    if (std::erase_if(pending_, isDismissed) == 0) return;
    alert_ = pending_.empty() ? std::nullopt : std::optional(pending_.front().alert);
    onChange_({});
}

void RepositorySections::answerAlert(std::size_t button) {
    if (!alert_ || button >= alert_->buttons.size()) return;
    const ViewAlert::Role role = alert_->buttons[button].role;
    const PendingAlert answered = std::move(pending_.front());
    pending_.pop_front();
    alert_ = pending_.empty() ? std::nullopt : std::optional(pending_.front().alert);
    if (role == ViewAlert::Role::destructive) discardChange(answered.target);
    onChange_({});
}

}  // namespace tarnbeck
