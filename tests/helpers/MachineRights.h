// What tests need of the machine to see files go wrong: lost rights and a full disk.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarnbeck::testing {

// As long as this lives, the modes of files hold for the calling thread even when it is root's.
// Nothing changes for an ordinary user.
class WithoutRootRights {
  public:
    WithoutRootRights();
    ~WithoutRootRights();
    WithoutRootRights(const WithoutRootRights&) = delete;
    WithoutRootRights& operator=(const WithoutRootRights&) = delete;
};

// For this process and for what it becomes, for good: even root then meets the modes of files.
void giveUpRootRights();

// Runs `action` on a thread that alone sees a disk of `bytes` at `folder`; the disk goes with the
// thread. Absent when it ran; otherwise the reason why this machine can't do it.
std::optional<std::string> runOnSmallDisk(const std::string& folder, std::size_t bytes,
                                          const std::function<void()>& action);

struct Mount {
    std::string source;  // a file or a folder
    std::string target;  // one of the same kind, where `source` is to be seen
};

// Runs `action` on a thread that alone, with the children that it starts, sees each source at its
// target. Absent when it ran; otherwise the reason why this machine can't do it.
std::optional<std::string> runWithMounts(const std::vector<Mount>& mounts,
                                         const std::function<void()>& action);

}  // namespace tarnbeck::testing
