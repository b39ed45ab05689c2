#include "MachineRights.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <system_error>
#include <thread>

#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tarnbeck::testing {
namespace {

constexpr std::uint32_t fileRights =
    (1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH) | (1U << CAP_FOWNER);

// The C library would change all threads; the system call changes the calling one alone.
void setFileRights(bool held) {
    __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    std::array<__user_cap_data_struct, 2> rights{};
    syscall(SYS_capget, &header, rights.data());
    rights[0].effective = held ? rights[0].effective | (rights[0].permitted & fileRights)
                               : rights[0].effective & ~fileRights;
    syscall(SYS_capset, &header, rights.data());
}

std::string failure(const std::string& step) {
    return step + ": " + std::generic_category().message(errno);
}

// Lets the calling thread see mounts that nobody else sees.
std::optional<std::string> failureOfOwnMounts() {
    if (unshare(CLONE_NEWNS) != 0) return failure("no mounts of its own");
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return failure("private");
    return std::nullopt;
}

std::optional<std::string> failureOfSmallDisk(const std::string& folder, std::size_t bytes) {
    if (auto reason = failureOfOwnMounts()) return reason;
    const std::string options = "size=" + std::to_string(bytes);
    if (mount("none", folder.c_str(), "tmpfs", 0, options.c_str()) != 0) return failure("mount");
    return std::nullopt;
}

std::optional<std::string> failureOfMounts(const std::vector<Mount>& mounts) {
    if (auto reason = failureOfOwnMounts()) return reason;
    for (const auto& [source, target] : mounts) {
        if (mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0) {
            return failure(target);
        }
    }
    return std::nullopt;
}

// Runs `action` on a thread of its own, unless `prepare` fails there.
template <class Prepare>
std::optional<std::string> runPrepared(Prepare prepare, const std::function<void()>& action) {
    std::optional<std::string> reason;
    std::thread([&] {
        reason = prepare();
        if (!reason) action();
    }).join();
    return reason;
}

}  // namespace

WithoutRootRights::WithoutRootRights() {
    setFileRights(false);
}
WithoutRootRights::~WithoutRootRights() {
    setFileRights(true);
}

void giveUpRootRights() {
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
    prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
}

std::optional<std::string> runOnSmallDisk(const std::string& folder, std::size_t bytes,
                                          const std::function<void()>& action) {
    return runPrepared([&] { return failureOfSmallDisk(folder, bytes); }, action);
}

std::optional<std::string> runWithMounts(const std::vector<Mount>& mounts,
                                         const std::function<void()>& action) {
    return runPrepared([&] { return failureOfMounts(mounts); }, action);
}

}  // namespace tarnbeck::testing
