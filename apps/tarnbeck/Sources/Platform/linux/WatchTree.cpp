#include "WatchTree.h"

#include <algorithm>

namespace tarnbeck {

std::string joinedPath(std::string_view folder, std::string_view name) {
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path += folder;
    if (name.empty()) return path;
    if (!path.ends_with('/')) path += '/';
    path += name;
    return path;
}

WatchTree::Folder WatchTree::find(int watch) const {
    const auto found = byWatch_.find(watch);
    return found == byWatch_.end() ? none : found->second;
}

WatchTree::Folder WatchTree::add(int watch, Folder parent, std::string_view name) {
    Folder folder = 0;
    if (unused_.empty()) {
        folder = static_cast<Folder>(folders_.size());
        folders_.emplace_back();
    } else {
        folder = unused_.back();
        unused_.pop_back();
    }
    folders_[folder].watch = watch;
    folders_[folder].name = name;
    byWatch_.emplace(watch, folder);
    attach(folder, parent);
    return folder;
}

void WatchTree::attach(Folder folder, Folder parent) {
    Node& node = folders_[folder];
    node.parent = parent;
    node.previous = none;
    node.next = none;
    if (parent == none) return;
    Node& above = folders_[parent];
    ++above.references;
    node.next = above.firstChild;
    if (node.next != none) folders_[node.next].previous = folder;
    above.firstChild = folder;
}

// Leaves the parent's number where it is: the path of a removed folder still leads through it.
void WatchTree::detach(Folder folder) {
    Node& node = folders_[folder];
    if (node.parent == none) return;
    if (node.previous != none) {
        folders_[node.previous].next = node.next;
    } else {
        folders_[node.parent].firstChild = node.next;
    }
    if (node.next != none) folders_[node.next].previous = node.previous;
    node.next = none;
    node.previous = none;
}

void WatchTree::move(Folder folder, Folder parent, std::string_view name) {
    const Folder before = folders_[folder].parent;
    detach(folder);
    folders_[folder].name = name;
    attach(folder, parent);
    if (before != none) release(before);
}

void WatchTree::remove(Folder folder, const std::function<void(Folder)>& removed) {
    // Deepest first, without recursion: trees may be deep.
    std::vector<Folder> order{folder};
    for (std::size_t index = 0; index < order.size(); ++index) {
        for (Folder child = folders_[order[index]].firstChild; child != none;
             child = folders_[child].next) {
            order.push_back(child);
        }
    }
    for (auto each = order.rbegin(); each != order.rend(); ++each) {
        removed(*each);
        removeOne(*each);
    }
}

void WatchTree::removeOne(Folder folder) {
    detach(folder);
    Node& node = folders_[folder];
    byWatch_.erase(node.watch);
    node.watch = -1;
    freeIfUnused(folder);
}

void WatchTree::release(Folder folder) {
    --folders_[folder].references;
    freeIfUnused(folder);
}

void WatchTree::freeIfUnused(Folder folder) {
    while (folder != none && folders_[folder].watch < 0 && folders_[folder].references == 0) {
        if (folders_[folder].isRoot) rootPaths_.erase(folder);
        const Folder above = folders_[folder].parent;
        folders_[folder] = Node{};
        unused_.push_back(folder);
        if (above != none) --folders_[above].references;
        folder = above;
    }
}

bool WatchTree::isAt(Folder folder, Folder parent, std::string_view name) const {
    return folders_[folder].parent == parent && folders_[folder].name == name;
}

bool WatchTree::isWithin(Folder folder, Folder ancestor) const {
    while (folder != none && folder != ancestor) folder = folders_[folder].parent;
    return folder == ancestor;
}

void WatchTree::addRootPath(Folder folder, const std::string& path) {
    auto& paths = rootPaths_[folder];
    if (std::find(paths.begin(), paths.end(), path) == paths.end()) paths.push_back(path);
    folders_[folder].isRoot = true;
}

void WatchTree::removeRootPath(Folder folder, const std::string& path) {
    const auto found = rootPaths_.find(folder);
    if (found == rootPaths_.end()) return;
    std::erase(found->second, path);
    if (!found->second.empty()) return;
    rootPaths_.erase(found);
    folders_[folder].isRoot = false;
}

// By the topmost root: one in the middle may have been moved away without its name.
std::string WatchTree::path(Folder folder) const {
    std::vector<Folder> below;
    for (; folders_[folder].parent != none; folder = folders_[folder].parent) {
        below.push_back(folder);
    }
    const auto top = rootPaths_.find(folder);
    if (top == rootPaths_.end()) return {};
    std::string path = top->second.front();
    for (auto each = below.rbegin(); each != below.rend(); ++each) {
        if (!path.ends_with('/')) path += '/';
        path += folders_[*each].name;
    }
    return path;
}

std::vector<std::string> WatchTree::paths(Folder folder, std::string_view name) const {
    std::vector<std::string> paths;
    std::string below(name);
    while (folder != none) {
        const Node& node = folders_[folder];
        if (node.isRoot) {
            for (const std::string& root : rootPaths_.at(folder)) {
                std::string path = joinedPath(root, below);
                if (std::find(paths.begin(), paths.end(), path) == paths.end()) {
                    paths.push_back(std::move(path));
                }
            }
        }
        below = joinedPath(node.name, below);
        folder = node.parent;
    }
    return paths;
}

void WatchTree::forEach(const std::function<void(Folder)>& action) const {
    for (Folder folder = 0; folder < folders_.size(); ++folder) {
        if (folders_[folder].watch >= 0) action(folder);
    }
}

}  // namespace tarnbeck
