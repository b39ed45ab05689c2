#include "MachineRights.h"

namespace tarnbeck::testing {

// Tests on a Mac run as an ordinary user.
WithoutRootRights::WithoutRootRights() = default;
WithoutRootRights::~WithoutRootRights() = default;

void giveUpRootRights() {}

std::optional<std::string> runOnSmallDisk(const std::string& /*folder*/, std::size_t /*bytes*/,
                                          const std::function<void()>& /*action*/) {
    return "no disk for one thread alone on this system";
}

std::optional<std::string> runWithMounts(const std::vector<Mount>& /*mounts*/,
                                         const std::function<void()>& /*action*/) {
    return "no mounts for one thread alone on this system";
}

}  // namespace tarnbeck::testing
