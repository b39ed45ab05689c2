#include <algorithm>
#include <iterator>
#include <utility>

#include "MenuBarController.h"

namespace tarnbeck {
namespace {

using system_awake::standardCaffeinateAssertions;

constexpr std::size_t mostDirtyNames = 10;

using MenuRow = MenuBarController::ContextMenuRow;

MenuRow label(std::string title) {
    return {.item = {.title = std::move(title), .isEnabled = false}};
}

MenuRow separator() {
    return {.item = MenuItem::separator()};
}

// How the repositories stand, and the first of those that are not clean.
std::vector<MenuRow> repositoryRows(const std::vector<RepositorySnapshot>& repositories) {
    if (repositories.empty()) return {label("No repos configured")};
    std::vector<MenuRow> dirty;
    std::size_t clean = 0;
    for (const auto& repository : repositories) {
        if (repository->isClean()) {
            ++clean;
        } else if (dirty.size() < mostDirtyNames) {
            dirty.push_back(label(repository->name));
        }
    }
    std::vector<MenuRow> rows = {
        label(std::to_string(clean) + "/" + std::to_string(repositories.size()) + " repos clean")};
    if (!dirty.empty()) rows.push_back(separator());
    std::ranges::move(dirty, std::back_inserter(rows));
    return rows;
}

}  // namespace

std::vector<MenuRow> MenuBarController::makeContextMenu() const {
    using Self = MenuBarController;
    const bool isAwake = services_.caffeinateController.isActive();
    const bool showsCount = services_.scanner.configuration().showDirtyCountInMenuBar;
    std::vector<MenuRow> rows = repositoryRows(services_.scanner.repositories());
    rows.push_back(separator());
    rows.push_back({{.title = "Scan Now", .key = "r"}, &Self::scanNow});
    rows.push_back({{.title = "Settings…", .key = ","}, &Self::openSettings});
    rows.push_back(separator());
    rows.push_back({{.title = "Keep Mac Awake", .isChecked = isAwake}, &Self::toggleCaffeinate});
    rows.push_back({{.title = "Show Dirty Count in Menu Bar", .isChecked = showsCount},
                    &Self::toggleDirtyCount});
    rows.push_back(separator());
    rows.push_back({{.title = "Quit", .key = "q"}, &Self::quitApp});
    return rows;
}

void MenuBarController::scanNow() {
    services_.scanner.requestRefresh({.trigger = RepositoryRefreshTrigger::manual,
                                      .refreshDependencies = true,
                                      .refreshIssues = true,
                                      .forceIssueRefresh = true,
                                      .refreshRemotes = false});
}

void MenuBarController::openSettings() {
    services_.onOpenSettings();
}

// The running state only; what is to happen at the next launch stays.
void MenuBarController::toggleCaffeinate() {
    services_.caffeinateController.toggle(standardCaffeinateAssertions);
}

void MenuBarController::toggleDirtyCount() {
    AppConfiguration configuration = services_.scanner.configuration();
    configuration.showDirtyCountInMenuBar = !configuration.showDirtyCountInMenuBar;
    services_.scanner.setConfiguration(std::move(configuration));
    services_.scanner.saveConfiguration();
    refreshIcon();
}

void MenuBarController::quitApp() {
    services_.platform.terminate();
}

}  // namespace tarnbeck
