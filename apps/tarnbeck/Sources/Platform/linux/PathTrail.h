// The way on which the system finds what a path names: through which folder, by which name, links
// included.
#pragma once

#include <functional>
#include <string>

namespace tarnbeck {

// Calls `passes` with each folder (a path without links) and the name that is looked up in it, in
// order and before that name is looked at; ends at what is missing and at the last component.
// `path` is absolute. Blocks.
void followTrail(
    const std::string& path,
    const std::function<void(const std::string& folder, const std::string& name)>& passes);

}  // namespace tarnbeck
