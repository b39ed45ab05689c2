#include "RepositorySections.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>
#include <vector>

#include "RepositorySectionHeader.h"
#include "RowParts.h"
#include "Text.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
constexpr auto toastDuration = 1600ms;

// Keys of JSON are UTF-8, paths are bytes.
std::string storedKey(const std::string& path) {
    return replacingInvalidUtf8(path);
}

std::map<std::string, bool> storedEntry(const RepositorySectionExpansionStore::State& state,
                                        const std::string& path) {
    const auto entry = state.find(storedKey(path));
    return entry == state.end() ? std::map<std::string, bool>{} : entry->second;
}

struct SubsectionField {
    std::string_view key;
    bool SectionState::*isShown;
    bool isPersisted;
};
constexpr std::array<SubsectionField, 7> subsectionFields = {
    {{SubsectionKey::branches, &SectionState::showBranches, false},
     {SubsectionKey::worktrees, &SectionState::showWorktrees, false},
     {SubsectionKey::remote, &SectionState::showRemoteSection, true},
     {SubsectionKey::tags, &SectionState::showTagsSection, false},
     {SubsectionKey::stashes, &SectionState::showStashesSection, true},
     {SubsectionKey::issues, &SectionState::showIssuesSection, true},
     {SubsectionKey::pullRequests, &SectionState::showPullRequestsSection, true}}};

const Row* rowOf(const SectionContent& content, const std::string& rowId) {
    const auto row = std::ranges::find(content.rows, rowId, &Row::id);
    return row == content.rows.end() ? nullptr : &*row;
}

// The action that is asked for, where it is offered and can be taken now.
const RowAction* offeredAction(const RepositorySections::Call& call, const Row* row) {
    std::vector<const RowAction*> offered;
    if (row && row->click) offered.push_back(&*row->click);
    for (const RowAction& action : row ? row->actions : call.content.header.actions) {
        offered.push_back(&action);
    }
    std::erase_if(offered, [&](const RowAction* action) { return action->kind != call.kind; });
    if (call.occurrence >= offered.size()) return nullptr;
    const RowAction* action = offered[call.occurrence];
    return action->isInProgress ? nullptr : action;
}

void callWith(const std::function<void(const std::string&)>& callback, const std::string& path) {
    if (callback) callback(path);
}

}  // namespace

RepositorySections::RepositorySections(Services services,
                                       std::function<void(const std::string&)> onChange)
    : services_(std::move(services)), onChange_(std::move(onChange)) {}

const SectionState& RepositorySections::stateOf(const std::string& path) {
    const auto found = states_.find(path);
    if (found != states_.end()) return found->second;
    return states_.emplace(path, storedState(path)).first->second;
}

SectionState RepositorySections::storedState(const std::string& path) {
    const Stored& all = stored();
    const auto open = storedEntry(all.subsections, path);
    const auto isOpen = [&](std::string_view key) {
        const auto found = open.find(std::string(key));
        return found != open.end() && found->second;
    };
    return {.branchChangesExpanded = storedEntry(all.branches, path),
            .showRemoteSection = isOpen(SubsectionKey::remote),
            .showStashesSection = isOpen(SubsectionKey::stashes),
            .showIssuesSection = isOpen(SubsectionKey::issues),
            .showPullRequestsSection = isOpen(SubsectionKey::pullRequests)};
}

// A view that opens asks for hundreds of paths in one turn of the loop. Later another view may have
// stored something else.
const RepositorySections::Stored& RepositorySections::stored() {
    if (!stored_) {
        const RepositorySectionExpansionStore& store = services_.expansionStore;
        stored_ = {.branches = store.loadDictionaryState(store.persistedBranchExpansionKey),
                   .subsections = store.loadDictionaryState(store.persistedSubsectionExpansionKey)};
        services_.loop.post(
            anchor_.guarded([](RepositorySections& self) { self.stored_.reset(); }));
    }
    return *stored_;
}

void RepositorySections::perform(const Call& call) {
    const bool isOfHeader = call.rowId.empty();
    const Row* row = isOfHeader ? nullptr : rowOf(call.content, call.rowId);
    if (!isOfHeader && !row) return;
    const RowAction* action = offeredAction(call, row);
    if (!action) return;
    const std::string path = call.content.path;  // what is called may replace the content
    const Callbacks& callbacks = services_.callbacks;
    switch (call.kind) {
        case RowActionKind::toggle:
            return toggle(path, *row);
        case RowActionKind::copy:
            return copyReferenceToClipboard(action->reference, action->toast);
        case RowActionKind::openFile:
            return services_.opener.openFile(action->reference);
        case RowActionKind::openUrl:
            return services_.opener.openUrl(action->reference);
        case RowActionKind::discard:
            return confirmDiscard(path, *row);
        case RowActionKind::refresh:
            return refresh(call);
        case RowActionKind::refreshGit:
            return callWith(callbacks.onRefreshGit, path);
        case RowActionKind::refreshIssues:
            return callWith(callbacks.onRefreshIssues, path);
        case RowActionKind::refreshDependencies:
            return callWith(callbacks.onRefreshDependencies, path);
        case RowActionKind::sync:
            return callWith(callbacks.onSyncRepo, path);
    }
}

void RepositorySections::refresh(const Call& call) {
    const std::string path = call.content.path;
    const DomainMode domain = domainOf(call.flags);
    const Callbacks& callbacks = services_.callbacks;
    const auto isAbout = [&](DomainMode one) {
        return domain == one || domain == DomainMode::combined;
    };
    if (isAbout(DomainMode::git)) callWith(callbacks.onRefreshGit, path);
    if (isAbout(DomainMode::issues)) callWith(callbacks.onRefreshIssues, path);
    if (isAbout(DomainMode::dependencies)) callWith(callbacks.onRefreshDependencies, path);
}

void RepositorySections::toggle(const std::string& path, const Row& row) {
    const std::string component = row.id.substr(path.size() + 1);
    if (row.kind == Row::Kind::branch) {
        return toggleBranch(path, component.substr(SubsectionKey::branches.size() + 1));
    }
    toggleSubsection(path, component);
}

void RepositorySections::toggleSubsection(const std::string& path, std::string_view key) {
    const auto field = std::ranges::find(subsectionFields, key, &SubsectionField::key);
    if (field == subsectionFields.end()) return;
    stateOf(path);
    bool& isShown = states_.at(path).*(field->isShown);
    isShown = !isShown;
    if (field->isPersisted) saveSubsection(path, key, isShown);
    onChange_(path);
}

void RepositorySections::saveSubsection(const std::string& path, std::string_view key,
                                        bool isExpanded) {
    const RepositorySectionExpansionStore& store = services_.expansionStore;
    auto stored = store.loadDictionaryState(store.persistedSubsectionExpansionKey);
    stored[storedKey(path)][std::string(key)] = isExpanded;
    store.saveDictionaryState(stored, store.persistedSubsectionExpansionKey);
    stored_.reset();
}

void RepositorySections::toggleBranch(const std::string& path, const std::string& branch) {
    stateOf(path);
    auto& expanded = states_.at(path).branchChangesExpanded;
    expanded[branch] = !expanded[branch];
    const RepositorySectionExpansionStore& store = services_.expansionStore;
    auto stored = store.loadDictionaryState(store.persistedBranchExpansionKey);
    stored[storedKey(path)] = expanded;
    store.saveDictionaryState(stored, store.persistedBranchExpansionKey);
    stored_.reset();
    onChange_(path);
}

void RepositorySections::copyReferenceToClipboard(const std::string& reference,
                                                  const std::string& toastText) {
    services_.clipboard.setString(reference);
    const std::uint64_t token = toast_.token + 1;
    toast_ = {.message = toastText, .isVisible = true, .token = token};
    const auto hide = anchor_.guarded([token](RepositorySections& self) {
        if (self.toast_.token != token) return;  // another one is shown by now
        self.toast_.isVisible = false;
        self.onChange_({});
    });
    toastTimer_ = services_.loop.after(toastDuration, [hide] { hide(); });
    onChange_({});
}

}  // namespace tarnbeck
