// The least that running a list of commands can cost: spawn, drain both pipes, wait; nothing else.
#pragma once

#include <string>
#include <vector>

namespace tarnbeck::benchmark {

// Runs /usr/bin/git once for each list of arguments, one after the other, and gives the number of
// bytes read.
std::size_t runBareLoop(const std::vector<std::vector<std::string>>& commands,
                        const std::string& home);

}  // namespace tarnbeck::benchmark
