// A main view over a scanner in virtual time.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "MainView.h"
#include "ScannerHarness.h"

namespace tarnbeck::testing {

// One that needs attention in every domain that tells of git.
inline GitRepository dirtyRepositoryAt(const std::string& path) {
    GitRepository repository = repositoryAt(path);
    repository.uncommittedChanges = {{.status = "M", .filePath = "a.cpp"}};
    return repository;
}

class MainViewHarness {
  public:
    // The view is made but not on the screen yet.
    explicit MainViewHarness(MainView::Host where = {}) : host(where) {
        scanners.make();
        caffeinate.emplace(launcher, std::nullopt,
                           system_awake::CaffeinateController::Environment{
                               .postToMainThread =
                                   [this](std::function<void()> task) {
                                       scanners.simulation.loop.post(std::move(task));
                                   },
                               .now = [this] { return scanners.simulation.loop.wallNow(); }});
        makeView();
    }

    void makeView() {
        view = std::make_unique<MainView>(
            MainView::Services{
                .scanner = scanner(),
                .caffeinateController = *caffeinate,
                .collator = scanners.collator,
                .sections = {.loop = scanners.simulation.loop,
                             .queues = scanners.simulation.queues,
                             .expansionStore = {.userDefaults = defaults},
                             .clipboard = clipboard,
                             .opener = opener,
                             .discard = [](const DiscardRequest&) { return std::nullopt; },
                             .callbacks = {}},
                .onOpenSettings = [this] { ++settingsOpened; }},
            host);
        observation = view->observe([this] { ++changes; });
    }

    RepositoryScanner& scanner() { return *scanners.scanner; }

    void show(std::vector<GitRepository> repositories) {
        std::vector<RepositorySnapshot> snapshots;
        for (GitRepository& repository : repositories) {
            snapshots.push_back(std::make_shared<const GitRepository>(std::move(repository)));
        }
        scanner().setRepositories(std::move(snapshots));
        view->setVisible(true);
        settle();
    }
    void settle() { scanners.simulation.runUntilIdle(); }
    void advance(std::chrono::nanoseconds duration) { scanners.simulation.advance(duration); }

    // Does it, and lets the view take notice.
    template <class Action>
    void act(Action action) {
        action(*view);
        settle();
    }

    const MainViewContent& content() const { return view->content(); }
    template <class Area>
    const Area& area() const {
        return std::get<Area>(content().area);
    }
    std::map<std::string, std::uint64_t> revisions() const {
        std::map<std::string, std::uint64_t> result;
        for (const auto& entry : area<SectionList>().entries) result[entry.path] = entry.revision;
        return result;
    }
    // Changes the configuration as the settings window does.
    template <class Change>
    void configure(Change change) {
        AppConfiguration configuration = scanner().configuration();
        change(configuration);
        scanner().setConfiguration(std::move(configuration));
        settle();
    }

    struct Defaults : UserDefaults {
        std::optional<bool> boolean(std::string_view) const override { return std::nullopt; }
        std::optional<double> number(std::string_view) const override { return std::nullopt; }
        std::optional<std::string> data(std::string_view key) const override {
            const auto found = stored.find(std::string(key));
            return found == stored.end() ? std::nullopt : std::optional(found->second);
        }
        void setBoolean(std::string_view, bool) override {}
        void setNumber(std::string_view, double) override {}
        void setData(std::string_view key, std::string_view bytes) override {
            stored[std::string(key)] = bytes;
        }
        std::map<std::string, std::string> stored;
    };
    struct Board : Clipboard {
        void setString(std::string_view text) override { copied.emplace_back(text); }
        std::vector<std::string> copied;
    };
    struct Opener : ExternalOpener {
        void openFile(std::string_view path) override { opened.emplace_back(path); }
        void openUrl(std::string_view url) override { opened.emplace_back(url); }
        std::vector<std::string> opened;
    };
    // Starts children that do nothing, or fails with the given words.
    struct Launcher : system_awake::CaffeinateLaunching {
        struct Child : system_awake::CaffeinateProcess {
            const std::string& id() const override { return name; }
            bool isRunning() const override { return running; }
            void setTerminationHandler(std::function<void()>) override {}
            void terminate() override { running = false; }
            std::string name = "child";
            bool running = true;
        };
        std::variant<std::unique_ptr<system_awake::CaffeinateProcess>, system_awake::LaunchFailure>
        start(const std::vector<std::string>& arguments, std::optional<std::int32_t>) override {
            if (failure) return system_awake::LaunchFailure{*failure};
            started.push_back(arguments);
            return std::make_unique<Child>();
        }
        std::optional<std::string> failure;
        std::vector<std::vector<std::string>> started;
    };

    ScannerHarness scanners;
    Defaults defaults;
    Board clipboard;
    Opener opener;
    Launcher launcher;
    MainView::Host host;
    std::optional<system_awake::CaffeinateController> caffeinate;
    int settingsOpened = 0;
    int changes = 0;  // of the content, as they were told
    std::unique_ptr<MainView> view;
    MainView::Observers::Token observation;
};

}  // namespace tarnbeck::testing
