// The folders that an inotify descriptor watches, as a tree of names: which folder a watch stands
// for, and under which paths it is known. Knows nothing of the system; one thread at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

namespace tarnbeck {

class WatchTree {
  public:
    using Folder = std::uint32_t;
    static constexpr Folder none = ~Folder{0};

    // The folder of a watch, or none.
    Folder find(int watch) const;
    // A folder that is new to the tree. Without a parent it has no path before it gets one by
    // `addRootPath`.
    Folder add(int watch, Folder parent, std::string_view name);
    // Takes the folder, with all below it, to another place.
    void move(Folder folder, Folder parent, std::string_view name);
    // Takes the folder and all below it out of the tree; `removed` hears of each while its flags
    // still stand. A folder that is held keeps its paths.
    void remove(Folder folder, const std::function<void(Folder)>& removed);

    // As long as a folder is held its number means no other, and its paths can be told, also after
    // it was removed.
    void hold(Folder folder) { ++folders_[folder].references; }
    void release(Folder folder);

    int watch(Folder folder) const { return folders_[folder].watch; }
    Folder parent(Folder folder) const { return folders_[folder].parent; }
    const std::string& name(Folder folder) const { return folders_[folder].name; }
    bool isAt(Folder folder, Folder parent, std::string_view name) const;
    bool isWithin(Folder folder, Folder ancestor) const;

    // Watched for what happens in it, not only as one on the way to a root.
    bool isWatched(Folder folder) const { return folders_[folder].isWatched; }
    void setWatched(Folder folder) { folders_[folder].isWatched = true; }
    // Roots are reached through it.
    bool isGuard(Folder folder) const { return folders_[folder].isGuard; }
    void setGuard(Folder folder, bool guard) { folders_[folder].isGuard = guard; }
    // Something in it could not be read.
    bool hasUnreadable(Folder folder) const { return folders_[folder].hasUnreadable; }
    void setUnreadable(Folder folder) { folders_[folder].hasUnreadable = true; }
    bool isRoot(Folder folder) const { return folders_[folder].isRoot; }

    // The number of the walk that saw it last.
    std::uint32_t generation(Folder folder) const { return folders_[folder].generation; }
    void setGeneration(Folder folder, std::uint32_t walk) { folders_[folder].generation = walk; }

    // Names under which the folder is known besides its place below its parent.
    void addRootPath(Folder folder, const std::string& path);
    void removeRootPath(Folder folder, const std::string& path);

    // A path of the folder that the system can be given; empty where none is known.
    std::string path(Folder folder) const;
    // The path of `name` in the folder (of the folder itself where that is empty) under each root
    // that leads to it, none twice.
    std::vector<std::string> paths(Folder folder, std::string_view name) const;

    void forEach(const std::function<void(Folder)>& action) const;
    std::size_t size() const { return byWatch_.size(); }

  private:
    struct Node {
        std::string name;
        Folder parent = none;
        Folder firstChild = none;
        Folder next = none;
        Folder previous = none;
        int watch = -1;                // below 0: no longer in the tree
        std::uint32_t references = 0;  // children and holds
        std::uint32_t generation = 0;
        bool isWatched = false;
        bool isGuard = false;
        bool isRoot = false;
        bool hasUnreadable = false;
    };

    void attach(Folder folder, Folder parent);
    void detach(Folder folder);
    void removeOne(Folder folder);
    void freeIfUnused(Folder folder);

    std::vector<Node> folders_;
    std::vector<Folder> unused_;
    boost::unordered_flat_map<int, Folder> byWatch_;
    boost::unordered_flat_map<Folder, std::vector<std::string>> rootPaths_;
};

// "/a/b" of "/a" and "b", "/b" of "/" and "b", "/a" of "/a" and the empty name.
std::string joinedPath(std::string_view folder, std::string_view name);

}  // namespace tarnbeck
