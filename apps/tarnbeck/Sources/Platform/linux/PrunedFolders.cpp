#include "PrunedFolders.h"

#include <algorithm>
#include <array>

#include "FileSystem.h"

namespace tarnbeck {
namespace {

constexpr std::array<std::string_view, 4> stores = {"objects", "lfs", "annex", "fsmonitor--daemon"};

// Takes the first component off `path`.
std::string_view takeComponent(std::string_view& path) {
    const std::size_t slash = std::min(path.find('/'), path.size());
    const std::string_view component = path.substr(0, slash);
    path.remove_prefix(std::min(slash + 1, path.size()));
    return component;
}

// The git folder to which `path` leads from the folder `modules`: the names of submodules may have
// slashes, and what is no part of the name has a file HEAD. Takes what it goes through off `path`.
bool entersSubmodule(std::string modules, std::string_view& path) {
    while (!path.empty()) {
        modules += '/';
        modules += takeComponent(path);
        if (exists(modules + "/HEAD")) return true;
    }
    return false;
}

// Whether `path` leads from the git folder `gitFolder` to one: to itself, to that of a linked
// worktree or to that of a submodule.
bool leadsToGitFolder(const std::string& gitFolder, std::string_view path) {
    while (!path.empty()) {
        const std::string_view area = takeComponent(path);
        if (path.empty()) return false;
        if (area == "worktrees") {
            takeComponent(path);
        } else if (area == "modules") {
            const auto modulesEnd = static_cast<std::size_t>(path.data() - gitFolder.data()) - 1;
            if (!entersSubmodule(gitFolder.substr(0, modulesEnd), path)) return false;
        } else {
            return false;
        }
    }
    return true;
}

// Whether the folder is itself a git folder, going by the innermost component ".git".
bool isGitFolder(const std::string& folder) {
    constexpr std::string_view component = "/.git";
    std::size_t at = folder.rfind(component);
    while (at != std::string::npos && at != 0) {
        const std::size_t end = at + component.size();
        if (end == folder.size()) return true;
        if (folder[end] == '/') {
            return leadsToGitFolder(folder, std::string_view(folder).substr(end + 1));
        }
        at = folder.rfind(component, at - 1);
    }
    return false;
}

}  // namespace

PrunedFolders::PrunedFolders(const std::set<std::string, std::less<>>& excludes)
    : excludes_(excludes.begin(), excludes.end()) {}

bool PrunedFolders::isBelowExcluded(std::string_view path) const {
    while (!path.empty()) {
        if (isExcluded(takeComponent(path))) return true;
    }
    return false;
}

bool PrunedFolders::isPruned(const std::string& parent, std::string_view name) const {
    if (isExcluded(name)) return true;
    return std::find(stores.begin(), stores.end(), name) != stores.end() && isGitFolder(parent);
}

}  // namespace tarnbeck
