#include "PosixProcessLauncher.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ExitEvent.h"
#include "FileSystem.h"
#include "Pipe.h"
#include "SpawnFlags.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;

// The text forms that the system call wants, viewing into the request.
std::vector<char*> pointers(const auto& texts, const std::string* first) {
    std::vector<char*> result;
    result.reserve(texts.size() + 2);
    if (first) result.push_back(const_cast<char*>(first->c_str()));
    for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
    result.push_back(nullptr);
    return result;
}

class SpawnActions {
  public:
    SpawnActions() { posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

    void prepare(const LaunchRequest& request, int standardOutput, int standardError) {
        posix_spawn_file_actions_addchdir_np(&actions_, request.workingDirectory);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, standardOutput, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, standardError, STDERR_FILENO);
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

// A session of its own, no blocked signal, and every signal at its default.
class SpawnAttributes {
  public:
    SpawnAttributes() {
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK |
                                                   POSIX_SPAWN_SETSIGDEF | systemSpawnFlags);
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

// A descriptor that is not one of the three standard ones, so that putting those into place in the
// child can't overwrite it. Happens only where this program was started with one of them closed.
FileDescriptor aboveStandard(FileDescriptor descriptor) {
    if (descriptor.get() > STDERR_FILENO || !descriptor) return descriptor;
    return FileDescriptor(fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

enum class Reaping { reap, onlyLook };

// The child's exit status or the number of its signal, once it has ended.
std::optional<int> statusOf(pid_t child, Reaping reaping) {
    siginfo_t information{};
    const int options = WEXITED | WNOHANG | (reaping == Reaping::onlyLook ? WNOWAIT : 0);
    int result = 0;
    do {
        result = waitid(P_PID, static_cast<id_t>(child), &information, options);
    } while (result < 0 && errno == EINTR);
    if (result < 0) return -1;  // somebody else reaped it; nothing more is known
    if (information.si_pid == 0) return std::nullopt;
    return information.si_status;
}

void waitForAll(const std::vector<pid_t>& children, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (const pid_t child : children) {
        const FileDescriptor event = exitEventOf(child);
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd exit{event.get(), POLLIN, 0};
        poll(&exit, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
    }
}

}  // namespace

// The children that were launched and not yet reaped. Shared by the launcher and its children,
// whichever lives longer.
class LiveChildren {
  public:
    // False when the program is ending; otherwise `endLaunch` must follow.
    bool beginLaunch() {
        const std::lock_guard lock(mutex_);
        if (phase_ != Phase::open) return false;
        ++launching_;
        return true;
    }

    // Of a launch that failed there is no child. False when its end has come too late to be ended
    // with the others: the child must go again.
    bool endLaunch(std::optional<pid_t> child) {
        const std::lock_guard lock(mutex_);
        if (child) running_.push_back(*child);
        if (--launching_ == 0) nothingLaunching_.notify_all();
        return phase_ == Phase::open || phase_ == Phase::closing;
    }

    // Under the lock, so that nobody signals a number that is another process by now.
    std::optional<int> reap(pid_t child) {
        const std::lock_guard lock(mutex_);
        return reapLocked(child);
    }

    void abandon(pid_t child) {
        const std::lock_guard lock(mutex_);
        abandoned_.push_back(child);
    }

    void reapAbandoned() {
        const std::lock_guard lock(mutex_);
        std::erase_if(abandoned_, [this](pid_t child) { return reapLocked(child).has_value(); });
    }

    // From here until `finishEnding` nothing is reaped, so that the sessions keep their numbers.
    // Waits a while for what is being launched: its child may run before the launch has ended.
    std::vector<pid_t> beginEnding() {
        std::unique_lock lock(mutex_);
        phase_ = Phase::closing;
        nothingLaunching_.wait_for(lock, std::chrono::seconds(1),
                                   [this] { return launching_ == 0; });
        phase_ = Phase::ending;
        return running_;
    }

    void finishEnding() {
        const std::lock_guard lock(mutex_);
        phase_ = Phase::ended;
    }

  private:
    enum class Phase { open, closing, ending, ended };

    std::optional<int> reapLocked(pid_t child) {
        const bool keeps = phase_ == Phase::closing || phase_ == Phase::ending;
        const auto status = statusOf(child, keeps ? Reaping::onlyLook : Reaping::reap);
        if (status && !keeps) std::erase(running_, child);
        return status;
    }

    std::mutex mutex_;
    std::vector<pid_t> running_;
    std::vector<pid_t> abandoned_;  // a part of the running: nobody waits for them any more
    std::size_t launching_ = 0;
    std::condition_variable nothingLaunching_;
    Phase phase_ = Phase::open;
};

namespace {

class PosixChildProcess : public ChildProcess {
  public:
    PosixChildProcess(std::shared_ptr<LiveChildren> children, pid_t child, FileDescriptor output,
                      FileDescriptor error)
        : children_(std::move(children)),
          child_(child),
          output_(std::move(output)),
          error_(std::move(error)) {}

    ~PosixChildProcess() override {
        if (isRunning()) children_->abandon(child_);
    }

    pid_t processIdentifier() const override { return child_; }
    FileDescriptor takeStandardOutput() override { return std::move(output_); }
    FileDescriptor takeStandardError() override { return std::move(error_); }
    int exitDescriptor() override {
        if (!exit_ && !status_) exit_ = exitEventOf(child_);
        return exit_.get();
    }

    bool isRunning() override {
        if (!status_) status_ = children_->reap(child_);
        return !status_;
    }
    int terminationStatus() const override { return status_.value_or(-1); }
    void terminate() override { signal(SIGTERM); }
    void kill() override { signal(SIGKILL); }

  private:
    void signal(int number) {
        if (!status_) ::kill(child_, number);
    }

    std::shared_ptr<LiveChildren> children_;
    pid_t child_;
    FileDescriptor output_;
    FileDescriptor error_;
    FileDescriptor exit_;
    std::optional<int> status_;
};

}  // namespace

PosixProcessLauncher::PosixProcessLauncher() : children_(std::make_shared<LiveChildren>()) {}

PosixProcessLauncher::~PosixProcessLauncher() {
    children_->reapAbandoned();
}

Result<std::unique_ptr<ChildProcess>> PosixProcessLauncher::launch(const LaunchRequest& request) {
    static const SpawnAttributes attributes;
    children_->reapAbandoned();
    Pipe output = makePipe();
    Pipe errors = makePipe();
    output.writeEnd = aboveStandard(std::move(output.writeEnd));
    errors.writeEnd = aboveStandard(std::move(errors.writeEnd));
    if (!output.writeEnd || !errors.writeEnd) return Failure{systemErrorText(errno)};
    keepAllButStandardFromChildren();
    SpawnActions actions;
    actions.prepare(request, output.writeEnd.get(), errors.writeEnd.get());
    const auto arguments = pointers(request.arguments, &request.executable);
    const auto environment = pointers(request.environment, nullptr);
    if (!children_->beginLaunch()) return Failure{"the program is ending"};
    pid_t child = -1;
    const int failure = posix_spawn(&child, request.executable.c_str(), actions.get(),
                                    attributes.get(), arguments.data(), environment.data());
    const bool isInTime = children_->endLaunch(failure == 0 ? std::optional(child) : std::nullopt);
    if (failure != 0) return Failure{systemErrorText(failure)};
    auto process = std::make_unique<PosixChildProcess>(children_, child, std::move(output.readEnd),
                                                       std::move(errors.readEnd));
    if (!isInTime) ::kill(-child, SIGKILL);
    return std::unique_ptr<ChildProcess>(std::move(process));
}

void PosixProcessLauncher::endAllSessions() {
    const std::vector<pid_t> sessions = children_->beginEnding();
    for (const pid_t session : sessions) ::kill(-session, SIGTERM);
    waitForAll(sessions, 100ms);
    for (const pid_t session : sessions) ::kill(-session, SIGKILL);
    children_->finishEnding();
}

}  // namespace tarnbeck
