// The way on which the system finds what a path names: through which folder, by which name, links
// included.
#pragma once

#include <functional>
#include <string>

namespace tarnbeck {

struct PathStep {
    std::string folder;  // a path without links
    std::string name;    // what is looked up in it

    std::string path() const { return folder == "/" ? "/" + name : folder + "/" + name; }
    bool operator==(const PathStep&) const = default;
};

// Calls `passes` with each step, in order and before the name is looked at; ends at what is missing
// and at the last component. Gives the last step; empty for the root of all. `path` is absolute.
// Blocks.
PathStep followTrail(const std::string& path, const std::function<void(const PathStep&)>& passes);

}  // namespace tarnbeck
