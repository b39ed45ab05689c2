// The settings, without a toolkit: holds what the window knows while it is open, and writes each
// change through to the scanner's configuration at once. There is nothing to apply. Main thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MainLoop.h"
#include "ObserverList.h"
#include "RepositoryScanner.h"
#include "SettingsContent.h"
#include "SettingsState.h"
#include "WeakAnchor.h"
#include "WorkQueues.h"

namespace tarnbeck {

class SettingsView {
  public:
    using Paths = std::vector<std::string>;

    // What is referred to must outlive the view and its background work.
    struct Services {
        RepositoryScanner& scanner;
        MainLoop& loop;
        WorkQueues& queues;
        std::string home;
        std::function<void()> dismiss;  // closes the window
        std::string versionLabel = {};  // which version this is, to be shown; may be empty
    };
    // Shows the configuration of this moment.
    explicit SettingsView(Services services);
    // Keeps what a slider that is still held has set.
    ~SettingsView();
    SettingsView(const SettingsView&) = delete;
    SettingsView& operator=(const SettingsView&) = delete;

    // --- What is shown ---

    const SettingsContent& content() const { return content_; }
    const SettingsState& state() const { return state_; }
    // Told after the content may have changed.
    using Observers = ObserverList<>;
    [[nodiscard]] Observers::Token observe(Observers::Observer observer);

    // Takes over the configuration as it is now, as when the window is shown again. What was
    // discovered stays.
    void syncStateFromConfiguration();

    // --- What the user does; nothing for a control that is not of that kind, or is gone ---

    void selectPane(SettingsPane pane);
    void press(SettingsControlId button);
    // Turns a toggle or a check box on or off.
    void setOn(SettingsControlId control, bool isOn);
    void choose(SettingsControlId picker, std::size_t option);
    // Moves a slider: shown everywhere at once, kept four times a second at most.
    void setValue(SettingsControlId slider, double value);
    // The slider was let go.
    void finishSetting(SettingsControlId slider);
    // What the user typed into a field or an editor; it is stored when it is added or scanned.
    void setText(SettingsControlId control, std::string text);
    // The button "Done".
    void done() const;

    // The paths that the lines of a text name: trimmed, tildes expanded, empty ones left out, in
    // their order. Pure.
    static Paths parseMultilinePaths(std::string_view text, std::string_view home);

  private:
    void showChange();
    void changeConfiguration(const std::function<void(AppConfiguration&)>& change);
    void saveConfiguration();
    void saveConfigurationSoon();

    void addCustomPath();
    void removeRepo(SettingsControlId button);
    void discoverRepos();
    void takeDiscovered(std::uint64_t requestID, const Paths& paths);
    void addSelectedRepos();
    void ignoreSelectedRepos();

    ConfiguredRepo configuredRepo(std::string path);
    // Their tildes expanded, which is how the scanner tells them apart.
    std::set<std::string> configuredPaths() const;
    // As discovery would find them.
    std::set<std::string> normalizedConfiguredPaths() const;
    Paths selectedPaths() const;
    void dropSelected();

    const Services services_;
    SettingsState state_;
    SettingsContent content_;
    Observers observers_;
    SettingsControlId nextId_ = static_cast<SettingsControlId>(SettingsControl::firstOfRows);
    Timer saveTimer_;
    WeakAnchor<SettingsView> anchor_{*this};
};

}  // namespace tarnbeck
