// The sections of a view in virtual time, with a clipboard, an opener and a discard that only note
// what they are asked for.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "InMemoryUserDefaults.h"
#include "RepositorySections.h"
#include "SectionFixture.h"
#include "Simulation.h"

namespace tarnbeck::testing {

class NotedClipboard : public Clipboard {
  public:
    void setString(std::string_view text) override { texts.emplace_back(text); }
    std::vector<std::string> texts;
};

class NotedOpener : public ExternalOpener {
  public:
    void openFile(std::string_view path) override { files.emplace_back(path); }
    void openUrl(std::string_view url) override { urls.emplace_back(url); }
    std::vector<std::string> files;
    std::vector<std::string> urls;
};

class RepositorySectionsHarness : public ::testing::Test {
  protected:
    RepositorySectionsHarness() { makeSections(allCallbacks()); }

    // In the order in which they are called: "git /work/lake".
    RepositorySections::Callbacks allCallbacks() {
        const auto noting = [this](const char* what) {
            return [this, what](const std::string& path) {
                calls.push_back(std::string(what) + " " + path);
            };
        };
        return {.onRequestRefresh = [this] { calls.emplace_back("request"); },
                .onRefreshIssues = noting("issues"),
                .onRefreshDependencies = noting("dependencies"),
                .onRefreshGit = noting("git"),
                .onSyncRepo = noting("sync")};
    }

    void makeSections(RepositorySections::Callbacks callbacks) {
        sections.emplace(
            RepositorySections::Services{.loop = simulation.loop,
                                         .queues = simulation.queues,
                                         .expansionStore = {defaults},
                                         .clipboard = clipboard,
                                         .opener = opener,
                                         .discard =
                                             [this](const DiscardRequest& request) {
                                                 discarded.push_back(request.repoPath + " " +
                                                                     request.filePath + " " +
                                                                     request.status);
                                                 return discardError;
                                             },
                                         .callbacks = std::move(callbacks)},
            [this](const std::string& path) { changes.push_back(path); });
    }

    SectionContent content() { return sectionContent({repository, state(), flags}); }
    const SectionState& state() { return sections->stateOf(repository.path); }
    std::vector<std::string> titles() { return titlesOf(content().rows); }

    void perform(const std::string& rowId, RowActionKind kind, std::size_t occurrence = 0) {
        const SectionContent shown = content();
        sections->perform({shown, flags, rowId, kind, occurrence});
    }
    void performOnTitled(std::string_view title, RowActionKind kind) {
        perform(rowTitled(content().rows, title).id, kind);
    }
    void performOnHeader(RowActionKind kind) { perform("", kind); }

    Simulation simulation;
    InMemoryUserDefaults defaults;
    NotedClipboard clipboard;
    NotedOpener opener;
    std::vector<std::string> discarded;
    std::optional<std::string> discardError;
    std::vector<std::string> calls;
    std::vector<std::string> changes;  // what the view was told
    GitRepository repository = calmRepository();
    SectionFlags flags = flagsOf(DomainMode::git);
    std::optional<RepositorySections> sections;
};

}  // namespace tarnbeck::testing
