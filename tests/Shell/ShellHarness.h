// The application on a desktop by hand, with a scanner in virtual time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "DesktopByHand.h"
#include "ScannerHarness.h"
#include "TarnbeckApp.h"

namespace tarnbeck::testing {

class ShellHarness {
  public:
    using AppMode = AppConfiguration::AppMode;

    explicit ShellHarness(AppMode configured = AppMode::menuBarOnly) {
        scanner.options.configuration.appMode = configured;
        scanner.options.configuration.keepAwakeOnLaunch = false;
        scanner.options.saveConfiguration = [this](const AppConfiguration& configuration) {
            desktop.events.push_back("save " + std::string(rawValue(configuration.appMode)));
            saved.push_back(configuration);
        };
    }

    TarnbeckApp& make() {
        app = std::make_unique<TarnbeckApp>(TarnbeckApp::Services{
            .input = input,
            .loop = loop(),
            .platform = desktop,
            .popoverPlatform = desktop,
            .runtime = runtime,
            .makeScanner = [this] { return madeScanner("scanner"); },
            .makeFixtureScanner = [this] { return madeScanner("fixture scanner"); },
            .caffeinateLauncher = caffeinate,
            .processIdentifier = 4711,
            .makePopoverHost =
                [this](menubar_popover::Popover&) {
                    desktop.events.emplace_back("host");
                    return std::make_unique<PopoverHostByHand>(desktop.events);
                },
            .windowPlatform = settings,
            .makeSettingsContent = settings.contentMaker(),
            .processName = "tarnbeck",
            .setActivationHandler =
                [this](std::function<void()> handler) {
                    desktop.events.emplace_back("activation handler");
                    activate = std::move(handler);
                },
            .report = [this](std::string_view line) { reports.emplace_back(line); },
            .isFirstStart = isFirstStart});
        return *app;
    }

    // As the platform does it.
    void launch() {
        make();
        app->openScenes();
        desktop.delegate->applicationDidFinishLaunching();
        runUntilIdle();
    }

    void show(std::vector<GitRepository> repositories) {
        std::vector<RepositorySnapshot> snapshots;
        for (GitRepository& repository : repositories) {
            snapshots.push_back(std::make_shared<const GitRepository>(std::move(repository)));
        }
        app->scanner().setRepositories(std::move(snapshots));
        runUntilIdle();
    }

    // What happened since the last time.
    Events takeEvents() { return std::exchange(desktop.events, {}); }

    VirtualMainLoop& loop() { return scanner.simulation.loop; }
    void runUntilIdle() { scanner.simulation.runUntilIdle(); }
    const std::vector<StatusImage>& images() const { return desktop.button->images; }

    LaunchInput input;
    bool isFirstStart = false;
    ScannerHarness scanner;
    DesktopByHand desktop{[this](Task task) { loop().post(std::move(task)); }};
    CaffeinateByHand caffeinate{desktop.events};
    WindowsByHand settings{desktop.events};
    AppRuntime runtime;
    std::vector<AppConfiguration> saved;
    std::vector<std::string> reports;
    std::function<void()> activate;  // a duplicate launch
    std::unique_ptr<TarnbeckApp> app;

  private:
    std::unique_ptr<RepositoryScanner> madeScanner(const char* event) {
        desktop.events.emplace_back(event);
        scanner.make();
        return std::move(scanner.scanner);
    }
};

inline GitRepository dirtyRepositoryAt(const std::string& path) {
    GitRepository repository = repositoryAt(path);
    repository.uncommittedChanges = {{.status = "M", .filePath = "a"}};
    return repository;
}

}  // namespace tarnbeck::testing
