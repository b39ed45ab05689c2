// What the sections of all repositories remember while a view lives, and what their rows do: which
// subsections are open (kept for later runs), what is being discarded, the alert and the toast of
// the view. Main thread.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "AppToast.h"
#include "Clipboard.h"
#include "ExternalOpener.h"
#include "GitDiscardService.h"
#include "GitRepository.h"
#include "MainLoop.h"
#include "RepositorySectionExpansionStore.h"
#include "SectionContent.h"
#include "ViewAlert.h"
#include "WeakAnchor.h"
#include "WorkQueues.h"

namespace tarnbeck {

class RepositorySections {
  public:
    // What a section calls; one that is not set is not offered.
    struct Callbacks {
        std::function<void()> onRequestRefresh;
        std::function<void(const std::string& path)> onRefreshIssues;
        std::function<void(const std::string& path)> onRefreshDependencies;
        std::function<void(const std::string& path)> onRefreshGit;
        std::function<void(const std::string& path)> onSyncRepo;
    };
    // Blocks; called off the main thread. Words for the user when it failed.
    using Discard = std::function<std::optional<std::string>(const DiscardRequest&)>;

    struct Services {
        MainLoop& loop;
        WorkQueues& queues;
        RepositorySectionExpansionStore expansionStore;
        Clipboard& clipboard;
        ExternalOpener& opener;
        Discard discard;
        Callbacks callbacks;
    };
    // `onChange` is told the path whose section is to be drawn anew, or an empty text when only the
    // alert or the toast changed.
    RepositorySections(Services services, std::function<void(const std::string& path)> onChange);
    RepositorySections(const RepositorySections&) = delete;
    RepositorySections& operator=(const RepositorySections&) = delete;

    const Callbacks& callbacks() const { return services_.callbacks; }

    // Made from what is stored when it is first asked for. The reference holds until the path is
    // forgotten.
    const SectionState& stateOf(const std::string& path);
    // Drops what was remembered of discards whose rows a new snapshot no longer has, and a question
    // about one of them.
    void repositoryChanged(const GitRepository& repository);
    // The repository is no longer shown anywhere: what is remembered of it goes, and its alerts.
    void forget(const std::string& path);

    // Does what `kind` asks of the row; of the header where `rowId` is empty (all but `toggle`,
    // which is the view's). Nothing for what the content does not offer. `flags` are those that
    // `content` was made with: the header's refresh depends on the domain.
    struct Call {
        const SectionContent& content;
        const SectionFlags& flags;
        const std::string& rowId;
        RowActionKind kind;
        std::size_t occurrence = 0;  // among the row's actions of this kind
    };
    void perform(const Call& call);

    void copyReferenceToClipboard(const std::string& reference, const std::string& toastText);

    const AppToast& toast() const { return toast_; }
    const std::optional<ViewAlert>& alert() const { return alert_; }
    void answerAlert(std::size_t button);

  private:
    // One file whose changes are, or may be, discarded.
    struct DiscardTarget {
        std::string path;  // of the repository
        std::string rowId;
        DiscardRequest request;
    };
    enum class DiscardAlert { confirmDiscard, discardFailed };
    struct PendingAlert {
        DiscardAlert kind;
        DiscardTarget target;
        ViewAlert alert;
    };

    // All that is stored of all repositories.
    struct Stored {
        RepositorySectionExpansionStore::State branches;
        RepositorySectionExpansionStore::State subsections;
    };

    SectionState storedState(const std::string& path);
    const Stored& stored();
    void toggle(const std::string& path, const Row& row);
    void toggleSubsection(const std::string& path, std::string_view key);
    void toggleBranch(const std::string& path, const std::string& branch);
    void saveSubsection(const std::string& path, std::string_view key, bool isExpanded);
    void refresh(const Call& call);

    void confirmDiscard(const std::string& path, const Row& row);
    void discardChange(const DiscardTarget& target);
    void discardEnded(const DiscardTarget& target, const std::optional<std::string>& error);
    void onDiscardCompleted(const std::string& path);
    DiscardState* discardOf(const DiscardTarget& target);

    void present(PendingAlert pending);
    template <class Predicate>
    void dismissAlerts(Predicate isDismissed);

    const Services services_;
    const std::function<void(const std::string&)> onChange_;
    std::map<std::string, SectionState> states_;
    std::optional<Stored> stored_;  // as it was read in this turn of the main loop
    std::map<std::string, SteadyTime> completedDiscards_;  // by row id
    AppToast toast_;
    Timer toastTimer_;
    std::optional<ViewAlert> alert_;    // that of the first of these
    std::deque<PendingAlert> pending_;  // one is shown at a time
    WeakAnchor<RepositorySections> anchor_{*this};
};

}  // namespace tarnbeck
