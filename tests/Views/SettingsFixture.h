// A settings window on a scanner in virtual time.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ScannerHarness.h"
#include "SettingsOutline.h"
#include "SettingsView.h"

namespace tarnbeck::testing {

class SettingsFixture : public ::testing::Test {
  protected:
    SettingsView& make() {
        harness.answersAtOnce = true;
        harness.make();
        view = std::make_unique<SettingsView>(SettingsView::Services{
            .scanner = *harness.scanner,
            .loop = harness.simulation.loop,
            .queues = harness.simulation.queues,
            .home = harness.folder.path(),
            .dismiss = [this] { ++timesDismissed; },
            .versionLabel = versionLabel,
        });
        observation = view->observe([this] { ++timesTold; });
        return *view;
    }

    static SettingsControlId id(SettingsControl control) {
        return static_cast<SettingsControlId>(control);
    }
    void press(SettingsControl button) { view->press(id(button)); }
    void setText(SettingsControl control, std::string text) {
        view->setText(id(control), std::move(text));
    }
    void settle() { harness.simulation.runUntilIdle(); }

    const AppConfiguration& stored() const { return harness.scanner->configuration(); }
    const std::vector<AppConfiguration>& saved() const { return harness.savedConfigurations; }
    std::string inHome(std::string_view name) const { return harness.folder / name; }
    std::string cards() const { return outlineOfCards(view->content()); }

    // Makes repositories in the home and searches "~/code".
    void discover(const std::vector<std::string>& names) {
        for (const std::string& name : names) harness.folder.makeFolder(name + "/.git");
        view->selectPane(SettingsPane::discovery);
        setText(SettingsControl::scanDirectories, "~/code");
        press(SettingsControl::scanForRepos);
        settle();
    }
    std::vector<std::string> discoveredNames() const {
        std::vector<std::string> names;
        for (const DiscoveredRepo& repo : view->state().discoveredRepos) names.push_back(repo.name);
        return names;
    }
    void tick(std::string_view name) {
        for (const DiscoveredRepo& repo : view->state().discoveredRepos) {
            if (repo.name == name) return view->setOn(repo.id, true);
        }
        FAIL() << "not discovered: " << name;
    }
    std::vector<std::string> configuredPaths() const {
        std::vector<std::string> paths;
        for (const ConfiguredRepo& repo : view->state().configuredRepoPaths) {
            paths.push_back(repo.path);
        }
        return paths;
    }

    std::string versionLabel;
    ScannerHarness harness;
    std::unique_ptr<SettingsView> view;
    SettingsView::Observers::Token observation;
    int timesTold = 0;
    int timesDismissed = 0;
};

}  // namespace tarnbeck::testing
