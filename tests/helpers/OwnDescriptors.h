// What this process holds on to, to see that nothing is left behind.
#pragma once

#include <cerrno>
#include <filesystem>
#include <iterator>

#include <sys/wait.h>

namespace tarnbeck::testing {

inline std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/dev/fd"), {});
}

// Children that run or wait to be reaped. (Reaps one of them.)
inline bool hasChildren() {
    return waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

}  // namespace tarnbeck::testing
