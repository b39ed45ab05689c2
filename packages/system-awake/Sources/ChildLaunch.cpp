#include "ChildLaunch.h"

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <spawn.h>

#include "SpawnInheritance.h"

namespace system_awake {
namespace {

constexpr int heldNumber = STDERR_FILENO + 1;

class SpawnActions {
  public:
    SpawnActions() { posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

    // Both descriptors lie above all that they become.
    void prepare(int standardInput, int held) {
        posix_spawn_file_actions_addchdir_np(&actions_, "/");
        if (standardInput >= 0) {
            posix_spawn_file_actions_adddup2(&actions_, standardInput, STDIN_FILENO);
        } else {
            posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        }
        posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        if (held >= 0) posix_spawn_file_actions_adddup2(&actions_, held, heldNumber);
        closeAllFrom(actions_, held >= 0 ? heldNumber + 1 : heldNumber);
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

class SpawnAttributes {
  public:
    SpawnAttributes() {
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK |
                                                   POSIX_SPAWN_SETSIGDEF | inheritanceFlags);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
    const posix_spawnattr_t* get() const { return &attributes_; }

  private:
    posix_spawnattr_t attributes_{};
};

// A copy that lies above all that the child gets. Nothing where there is nothing to copy.
OwnedDescriptor copyOutOfTheWay(const OwnedDescriptor& descriptor) {
    if (!descriptor) return OwnedDescriptor();
    return OwnedDescriptor(fcntl(descriptor.get(), F_DUPFD_CLOEXEC, heldNumber + 1));
}

}  // namespace

std::variant<pid_t, LaunchError> spawn(const ChildLaunch& launch) {
    const OwnedDescriptor input = copyOutOfTheWay(launch.standardInput);
    const OwnedDescriptor held = copyOutOfTheWay(launch.held);
    if ((launch.standardInput && !input) || (launch.held && !held)) return LaunchError{errno};
    SpawnActions actions;
    actions.prepare(input.get(), held.get());
    const SpawnAttributes attributes;
    std::vector<char*> arguments{const_cast<char*>(launch.executable.c_str())};
    for (const std::string& argument : launch.arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    char* const noEnvironment[] = {nullptr};
    pid_t child = -1;
    const int error = posix_spawn(&child, launch.executable.c_str(), actions.get(),
                                  attributes.get(), arguments.data(), noEnvironment);
    if (error != 0) return LaunchError{error};
    return child;
}

}  // namespace system_awake
