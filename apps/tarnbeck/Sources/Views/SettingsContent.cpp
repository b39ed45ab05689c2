#include "SettingsContent.h"

#include <string>
#include <utility>

#include <fmt/format.h>

#include "SettingsState.h"
#include "Text.h"

namespace tarnbeck {
namespace {

SettingsControlId idOf(SettingsControl control) {
    return static_cast<SettingsControlId>(control);
}

SettingsToggle toggle(SettingsControl control, std::string_view title, std::string_view subtitle,
                      bool isOn) {
    return {.id = idOf(control),
            .title = title,
            .subtitle = subtitle,
            .isOn = isOn,
            .accessibleName = std::string(title)};
}

SettingsButton button(SettingsControl control, std::string_view title) {
    return {.id = idOf(control), .title = title, .accessibleName = std::string(title)};
}

// --- Repositories ---

SettingsPathRow pathRow(const ConfiguredRepo& repo) {
    return {.id = repo.id,
            .symbol = "folder.fill",
            .path = repo.path,
            .remove = {.id = repo.removeId,
                       .symbol = "xmark.circle.fill",
                       .help = "Remove",
                       .accessibleName = "Remove " + repo.path}};
}

SettingsCard currentReposSection(const SettingsState& state) {
    SettingsCard card{.title = "Monitored Repositories",
                      .subtitle = fmt::format("{} configured", state.configuredRepoPaths.size())};
    for (const ConfiguredRepo& repo : state.configuredRepoPaths) {
        card.rows.emplace_back(pathRow(repo));
    }
    if (card.rows.empty()) {
        card.rows.emplace_back(SettingsNote{
            .text = "No repositories configured yet. Add one manually or use Discovery."});
    }
    return card;
}

SettingsCard customPathSection(const SettingsState& state) {
    SettingsButton add = button(SettingsControl::addCustomPath, "Add");
    add.isEnabled = !trimmingWhitespaceAndNewlines(state.customPath).empty();
    return {.title = "Add Custom Repository",
            .subtitle = "Add a path directly",
            .rows = {SettingsTextField{.id = idOf(SettingsControl::customPath),
                                       .text = state.customPath,
                                       .prompt = "e.g. ~/projects/my-repo",
                                       .button = std::move(add),
                                       .accessibleName = "Add Custom Repository"}}};
}

// --- Discovery ---

SettingsCard editorCard(SettingsControl control, std::string_view title, std::string subtitle,
                        const std::string& text) {
    return {.title = title,
            .subtitle = std::move(subtitle),
            .rows = {SettingsEditor{
                .id = idOf(control), .text = text, .accessibleName = std::string(title)}}};
}

SettingsButton scanButton(const SettingsState& state) {
    SettingsButton scan =
        button(SettingsControl::scanForRepos,
               state.isDiscoveryScanInProgress ? "Scanning…" : "Scan for Git Repos");
    scan.symbol = "arrow.clockwise";
    scan.isInProgress = state.isDiscoveryScanInProgress;
    return scan;
}

SettingsButtons selectionButtons(const SettingsState& state) {
    SettingsButtons row{.buttons = {button(SettingsControl::ignoreSelected, "Ignore Selected"),
                                    button(SettingsControl::addSelected, "Add Selected")}};
    for (SettingsButton& each : row.buttons) each.isEnabled = state.hasSelection();
    return row;
}

SettingsCard discoveryResults(const SettingsState& state) {
    SettingsCard card{.title = "Discovery Results",
                      .subtitle = fmt::format("{} available", state.discoveredRepos.size())};
    for (const DiscoveredRepo& repo : state.discoveredRepos) {
        card.rows.emplace_back(
            SettingsDiscoveredRow{.id = repo.id,
                                  .name = repo.name,
                                  .path = repo.path,
                                  .isSelected = repo.isSelected,
                                  .accessibleName = repo.name + ", " + repo.path});
    }
    if (card.rows.empty()) {
        card.rows.emplace_back(SettingsNote{.text = "No new repositories found."});
    } else {
        card.rows.emplace_back(selectionButtons(state));
    }
    return card;
}

std::vector<SettingsCard> discoverSection(const SettingsState& state) {
    std::vector<SettingsCard> cards;
    cards.push_back(editorCard(SettingsControl::scanDirectories, "Scan Source Directories",
                               "One directory per line", state.scanDirsText));
    cards.push_back(
        editorCard(SettingsControl::ignorePaths, "Ignore Paths", "", state.ignorePathsText));
    cards.push_back({.rows = {SettingsButtons{.buttons = {scanButton(state)}}}});
    if (state.hasDiscovered) cards.push_back(discoveryResults(state));
    return cards;
}

// --- Display ---

SettingsCard visibility(const SettingsState& state) {
    return {
        .title = "Visibility",
        .subtitle = "Control what is shown in repository details",
        .rows = {toggle(SettingsControl::showRemoteBranches, "Show remote branches",
                        "Display non-default remote branches", state.showRemoteBranches),
                 toggle(SettingsControl::showTags, "Show tags", "Display repository tags section",
                        state.showTags),
                 toggle(SettingsControl::showIssues, "Show GitHub issues",
                        "Display open issues from GitHub (requires gh CLI)", state.showIssues)}};
}

SettingsCard autoScan(const SettingsState& state) {
    const auto option = std::ranges::find(scanIntervalOptions, state.scanIntervalMinutes);
    std::optional<std::size_t> selected;
    if (option != scanIntervalOptions.end()) selected = option - scanIntervalOptions.begin();
    return {
        .title = "Auto Scan",
        .subtitle = "Background refresh interval",
        .rows = {SettingsPicker{.id = idOf(SettingsControl::scanInterval),
                                .title = "Scan interval",
                                .subtitle = "How often repositories are refreshed automatically",
                                .width = 140,
                                .options = {"Off", "5 min", "15 min", "30 min", "60 min"},
                                .selected = selected,
                                .accessibleName = "Scan interval"}}};
}

SettingsCard applicationMode(const SettingsState& state) {
    return {.title = "Application Mode",
            .subtitle = "Choose how the app runs after restart",
            .rows = {SettingsPicker{.id = idOf(SettingsControl::appMode),
                                    .title = "Startup mode",
                                    .subtitle = "Menu bar only or regular window app",
                                    .width = 260,
                                    .options = {"Menu Bar Only", "Regular App"},
                                    .selected = static_cast<std::size_t>(state.appMode),
                                    .accessibleName = "Startup mode"},
                     SettingsNote{.symbol = "info.circle",
                                  .text = "Restart required to apply app mode changes."}}};
}

SettingsCard system(const SettingsState& state) {
    return {.title = "System",
            .subtitle = "Control system-level app behavior",
            .rows = {toggle(SettingsControl::keepAwakeOnLaunch, "Start with Keep Awake enabled",
                            "Run caffeinate automatically when Tarnbeck launches",
                            state.keepAwakeOnLaunch)}};
}

SettingsCard backdropOpacitySection(SettingsControl control, std::string_view title,
                                    std::string subtitle, double value) {
    return {.title = title,
            .subtitle = std::move(subtitle),
            .rows = {SettingsSlider{.id = idOf(control),
                                    .value = value,
                                    .valueLabel = fmt::format("{:.0f} %", value * 100),
                                    .accessibleName = std::string(title)}}};
}

std::vector<SettingsCard> optionsSection(const SettingsState& state) {
    std::vector<SettingsCard> cards{
        visibility(state),
        autoScan(state),
        applicationMode(state),
        system(state),
        backdropOpacitySection(SettingsControl::appBackdropOpacity, "Window Background",
                               "Dark tint over the wallpaper-glass for the regular app window. "
                               "Lower lets more of the desktop show through.",
                               state.appBackdropOpacity),
        backdropOpacitySection(SettingsControl::popoverBackdropOpacity,
                               "Menu Bar Popover Background",
                               "Dark tint over the popover surface. macOS popovers are not "
                               "translucent to the desktop, so this only adjusts how dark the "
                               "surface looks.",
                               state.popoverBackdropOpacity)};
    if (!state.versionLabel.empty()) {
        cards.push_back({.rows = {SettingsNote{.text = state.versionLabel}}});
    }
    return cards;
}

std::vector<SettingsCard> cardsOf(const SettingsState& state) {
    switch (state.selectedPane) {
        case SettingsPane::repositories:
            return {currentReposSection(state), customPathSection(state)};
        case SettingsPane::discovery:
            return discoverSection(state);
        case SettingsPane::display:
            return optionsSection(state);
    }
    return {};
}

std::vector<SettingsSidebarEntry> sidebar(SettingsPane selected) {
    std::vector<SettingsSidebarEntry> entries{
        {.pane = SettingsPane::repositories,
         .title = "Repositories",
         .subtitle = "Monitored paths",
         .symbol = "folder.badge.gearshape"},
        {.pane = SettingsPane::discovery,
         .title = "Discovery",
         .subtitle = "Scan directories",
         .symbol = "magnifyingglass"},
        {.pane = SettingsPane::display,
         .title = "Display",
         .subtitle = "Visibility & auto-scan",
         .symbol = "slider.horizontal.3"},
    };
    for (SettingsSidebarEntry& entry : entries) entry.isSelected = entry.pane == selected;
    return entries;
}

}  // namespace

SettingsContent settingsContent(const SettingsState& state) {
    return {.sidebar = sidebar(state.selectedPane), .cards = cardsOf(state)};
}

}  // namespace tarnbeck
