#include "SettingsView.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>

#include "Text.h"

namespace tarnbeck {
namespace {

// Between two writes of the file while a slider is held.
constexpr std::chrono::milliseconds pauseBetweenSaves{250};
constexpr double opacitySteps = 100;  // from 0 to 1

struct ToggleFields {
    SettingsControl control;
    bool SettingsState::*shown;
    bool AppConfiguration::*stored;
};
constexpr std::array toggles{
    ToggleFields{SettingsControl::showRemoteBranches, &SettingsState::showRemoteBranches,
                 &AppConfiguration::showRemoteBranches},
    ToggleFields{SettingsControl::showTags, &SettingsState::showTags, &AppConfiguration::showTags},
    ToggleFields{SettingsControl::showIssues, &SettingsState::showIssues,
                 &AppConfiguration::showIssues},
    ToggleFields{SettingsControl::keepAwakeOnLaunch, &SettingsState::keepAwakeOnLaunch,
                 &AppConfiguration::keepAwakeOnLaunch},
};

struct SliderFields {
    SettingsControl control;
    double SettingsState::*shown;
    double AppConfiguration::*stored;
};
constexpr std::array sliders{
    SliderFields{SettingsControl::appBackdropOpacity, &SettingsState::appBackdropOpacity,
                 &AppConfiguration::appBackdropOpacity},
    SliderFields{SettingsControl::popoverBackdropOpacity, &SettingsState::popoverBackdropOpacity,
                 &AppConfiguration::popoverBackdropOpacity},
};

struct TextFields {
    SettingsControl control;
    std::string SettingsState::*shown;
};
constexpr std::array texts{
    TextFields{SettingsControl::customPath, &SettingsState::customPath},
    TextFields{SettingsControl::scanDirectories, &SettingsState::scanDirsText},
    TextFields{SettingsControl::ignorePaths, &SettingsState::ignorePathsText},
};

// What the table says of a control; null when it is not in there.
template <class Table>
const typename Table::value_type* fieldsOf(const Table& table, SettingsControlId id) {
    const auto found =
        std::ranges::find(table, static_cast<SettingsControl>(id), &Table::value_type::control);
    return found == table.end() ? nullptr : &*found;
}

}  // namespace

SettingsView::SettingsView(Services services) : services_(std::move(services)) {
    syncStateFromConfiguration();
}

SettingsView::~SettingsView() {
    if (saveTimer_.isPending()) saveConfiguration();
}

SettingsView::Observers::Token SettingsView::observe(Observers::Observer observer) {
    return observers_.add(std::move(observer));
}

void SettingsView::showChange() {
    content_ = settingsContent(state_);
    Observers::tell(observers_.current());
}

void SettingsView::syncStateFromConfiguration() {
    const AppConfiguration& configuration = services_.scanner.configuration();
    state_.versionLabel = services_.versionLabel;
    state_.scanDirsText = joined(configuration.scanDirectories, "\n");
    state_.ignorePathsText = joined(configuration.discoveryIgnorePaths, "\n");
    for (const ToggleFields& toggle : toggles) state_.*toggle.shown = configuration.*toggle.stored;
    for (const SliderFields& slider : sliders) state_.*slider.shown = configuration.*slider.stored;
    state_.scanIntervalMinutes = configuration.scanIntervalMinutes;
    state_.appMode = configuration.appMode;
    std::vector<ConfiguredRepo> repos;
    for (const std::string& path : configuration.repoPaths) repos.push_back(configuredRepo(path));
    state_.configuredRepoPaths = std::move(repos);
    showChange();
}

void SettingsView::changeConfiguration(const std::function<void(AppConfiguration&)>& change) {
    AppConfiguration changed = services_.scanner.configuration();
    change(changed);
    services_.scanner.setConfiguration(std::move(changed));
}

void SettingsView::saveConfiguration() {
    saveTimer_.cancel();
    services_.scanner.saveConfiguration();
}

void SettingsView::saveConfigurationSoon() {
    if (saveTimer_.isPending()) return;
    saveTimer_ = services_.loop.after(
        pauseBetweenSaves, anchor_.guarded([](auto& self) { self.saveConfiguration(); }));
}

void SettingsView::selectPane(SettingsPane pane) {
    state_.selectedPane = pane;
    showChange();
}

void SettingsView::done() const {
    services_.dismiss();
}

void SettingsView::press(SettingsControlId button) {
    struct Action {
        SettingsControl control;
        void (SettingsView::*perform)();
    };
    static constexpr std::array actions{
        Action{SettingsControl::addCustomPath, &SettingsView::addCustomPath},
        Action{SettingsControl::scanForRepos, &SettingsView::discoverRepos},
        Action{SettingsControl::ignoreSelected, &SettingsView::ignoreSelectedRepos},
        Action{SettingsControl::addSelected, &SettingsView::addSelectedRepos},
    };
    if (const Action* action = fieldsOf(actions, button)) {
        (this->*action->perform)();
    } else {
        removeRepo(button);
    }
}

void SettingsView::setOn(SettingsControlId control, bool isOn) {
    const auto repo = std::ranges::find(state_.discoveredRepos, control, &DiscoveredRepo::id);
    if (repo != state_.discoveredRepos.end()) {
        repo->isSelected = isOn;
        return showChange();
    }
    const ToggleFields* toggle = fieldsOf(toggles, control);
    if (!toggle) return;
    state_.*toggle->shown = isOn;
    changeConfiguration([&](AppConfiguration& stored) { stored.*toggle->stored = isOn; });
    saveConfiguration();
    if (toggle->control == SettingsControl::showIssues) {
        services_.scanner.refreshIssueMonitoring();
    }
    showChange();
}

void SettingsView::choose(SettingsControlId picker, std::size_t option) {
    if (static_cast<SettingsControl>(picker) == SettingsControl::scanInterval) {
        if (option >= scanIntervalOptions.size()) return;
        state_.scanIntervalMinutes = scanIntervalOptions.at(option);
        changeConfiguration([this](AppConfiguration& stored) {
            stored.scanIntervalMinutes = state_.scanIntervalMinutes;
        });
        saveConfiguration();
        services_.scanner.startPeriodicScan();
        return showChange();
    }
    const auto modes = rawValues(AppConfiguration::AppMode{});
    if (static_cast<SettingsControl>(picker) != SettingsControl::appMode) return;
    if (option >= modes.size()) return;
    state_.appMode = modes.at(option).first;
    changeConfiguration([this](AppConfiguration& stored) { stored.appMode = state_.appMode; });
    saveConfiguration();
    showChange();
}

void SettingsView::setValue(SettingsControlId slider, double value) {
    const SliderFields* fields = fieldsOf(sliders, slider);
    if (!fields || std::isnan(value)) return;
    const double opacity = std::round(std::clamp(value, 0.0, 1.0) * opacitySteps) / opacitySteps;
    if (opacity == state_.*fields->shown) return;
    state_.*fields->shown = opacity;
    changeConfiguration([&](AppConfiguration& stored) { stored.*fields->stored = opacity; });
    saveConfigurationSoon();
    showChange();
}

void SettingsView::finishSetting(SettingsControlId slider) {
    if (fieldsOf(sliders, slider) && saveTimer_.isPending()) saveConfiguration();
}

void SettingsView::setText(SettingsControlId control, std::string text) {
    const TextFields* fields = fieldsOf(texts, control);
    if (!fields) return;
    state_.*fields->shown = std::move(text);
    showChange();
}

}  // namespace tarnbeck
