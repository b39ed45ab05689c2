#include "ProcessCaffeinateProcess.h"

#include <cerrno>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <sys/wait.h>

namespace system_awake {
namespace {

// True when the child has ended; it is left to be reaped.
bool hasEnded(pid_t child, int options) {
    siginfo_t information{};
    int result = 0;
    do {
        result = waitid(P_PID, static_cast<id_t>(child), &information, WEXITED | WNOWAIT | options);
    } while (result != 0 && errno == EINTR);
    return result != 0 || information.si_pid != 0;  // an error: somebody else has reaped it
}

// Signals are for the threads that were there before.
std::thread threadWithoutSignals(std::function<void()> work) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread;
    try {
        thread = std::thread(std::move(work));
    } catch (const std::system_error&) {
        thread = std::thread();  // the caller sees that there is none
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

}  // namespace

// What the process and the thread that waits for it share.
class ProcessCaffeinateProcess::Child {
  public:
    Child(pid_t number, OwnedDescriptor keptUntilTheEnd)
        : number_(number), kept_(std::move(keptUntilTheEnd)) {}

    pid_t number() const { return number_; }

    bool isRunning() const {
        const std::lock_guard lock(mutex_);
        return !reaped_ && !hasEnded(number_, WNOHANG);
    }

    void signal(int signalNumber) const {
        const std::lock_guard lock(mutex_);
        if (!reaped_) kill(number_, signalNumber);
    }

    // Until the child has ended; then tells so. The thread's work.
    void waitAndReap() {
        hasEnded(number_, 0);
        {
            const std::lock_guard lock(mutex_);
            waitpid(number_, nullptr, 0);
            reaped_ = true;
            kept_ = OwnedDescriptor();
        }
        const std::lock_guard lock(handlerMutex_);
        callHandler();
    }

    // When this returns, no call of the former handler is under way.
    void setHandler(std::function<void()> handler) {
        const std::lock_guard lock(handlerMutex_);
        handler_ = std::move(handler);
        if (wasTold_) callHandler();
    }

  private:
    // The lock is held: whoever clears the handler waits for the call.
    void callHandler() {
        wasTold_ = true;
        if (const auto handler = std::exchange(handler_, nullptr)) handler();
    }

    const pid_t number_;
    mutable std::mutex mutex_;
    bool reaped_ = false;
    OwnedDescriptor kept_;
    // One that the handler itself may take, by letting the process go.
    std::recursive_mutex handlerMutex_;
    std::function<void()> handler_;
    bool wasTold_ = false;
};

std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> ProcessCaffeinateProcess::launch(
    ChildLaunch launch) {
    const auto spawned = spawn(launch);
    if (const auto* error = std::get_if<LaunchError>(&spawned)) {
        return LaunchFailure{launch.executable + ": " +
                             std::generic_category().message(error->number)};
    }
    const auto child =
        std::make_shared<Child>(std::get<pid_t>(spawned), std::move(launch.keptUntilTheEnd));
    std::thread waiting = threadWithoutSignals([child] { child->waitAndReap(); });
    if (!waiting.joinable()) {
        child->signal(SIGKILL);
        child->waitAndReap();
        return LaunchFailure{std::generic_category().message(EAGAIN)};
    }
    waiting.detach();
    return std::make_unique<ProcessCaffeinateProcess>(child);
}

ProcessCaffeinateProcess::ProcessCaffeinateProcess(std::shared_ptr<Child> child)
    : id_(boost::uuids::to_string(boost::uuids::random_generator()())), child_(std::move(child)) {}

ProcessCaffeinateProcess::~ProcessCaffeinateProcess() {
    child_->setHandler(nullptr);
}

pid_t ProcessCaffeinateProcess::processIdentifier() const {
    return child_->number();
}

bool ProcessCaffeinateProcess::isRunning() const {
    return child_->isRunning();
}

void ProcessCaffeinateProcess::setTerminationHandler(std::function<void()> handler) {
    child_->setHandler(std::move(handler));
}

void ProcessCaffeinateProcess::terminate() {
    child_->signal(SIGTERM);
}

}  // namespace system_awake
