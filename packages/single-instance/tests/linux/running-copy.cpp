// A program that may run only once.
//   running-copy FOLDER [ARGUMENT…]
// Says "running", "already running" or "failed" and the reason. The copy that runs says "activated"
// and all arguments of other copies for each call of its handler, and ends with its input.
#include <cstdio>
#include <deque>
#include <functional>
#include <mutex>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "SingleInstanceController.h"

namespace {

using namespace single_instance;

class MainThread {
  public:
    void post(std::function<void()> task) {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        eventfd_write(wakeUp_.get(), 1);
    }
    void runUntilInputEnds() {
        while (true) {
            pollfd sources[] = {{STDIN_FILENO, POLLIN, 0}, {wakeUp_.get(), POLLIN, 0}};
            poll(sources, 2, -1);
            if (sources[0].revents != 0) return;
            eventfd_t count = 0;
            eventfd_read(wakeUp_.get(), &count);
            while (const auto task = next()) task();
        }
    }

  private:
    std::function<void()> next() {
        const std::lock_guard lock(mutex_);
        if (tasks_.empty()) return nullptr;
        auto task = std::move(tasks_.front());
        tasks_.pop_front();
        return task;
    }

    OwnedDescriptor wakeUp_{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::mutex mutex_;
    std::deque<std::function<void()>> tasks_;
};

void say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void sayActivated(const std::vector<DuplicateLaunchRequest>& requests) {
    std::string line = "activated";
    for (const auto& request : requests) {
        for (const auto& argument : request.arguments) line += " " + argument;
    }
    say(line);
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 2) return 2;
    MainThread mainThread;
    SystemFileManager files;
    const auto signals = makeSystemNamedSignals();
    const SingleInstanceConfiguration configuration(
        {.bundleIdentifier = "org.example.RunningCopy",
         .lockLocation = {SingleInstanceLockLocation::Directory{arguments[1]}},
         // Of its own for each test.
         .activationSignalName = std::string("org.example.RunningCopy.") + arguments[1]});
    const auto now =
        std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
    auto result = SingleInstanceController::start(
                      configuration, {{arguments + 2, arguments + count}, {}, now},
                      {.fileManager = files,
                       .signals = *signals,
                       .postToMainThread =
                           [&](std::function<void()> task) { mainThread.post(std::move(task)); }})
                      .value;
    if (std::holds_alternative<SingleInstanceStartupResult::AlreadyRunning>(result)) {
        say("already running");
        return 0;
    }
    if (const auto* failed = std::get_if<SingleInstanceStartupResult::Failed>(&result)) {
        say("failed " + failed->error.description());
        return 1;
    }
    auto& controller = *std::get<SingleInstanceStartupResult::Run>(result).controller;
    say("running");
    controller.setDuplicateLaunchHandler(sayActivated);
    mainThread.runUntilInputEnds();
    return 0;
}
