#include "PosixMainLoop.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "ArrivedSignals.h"
#include "Pipe.h"

namespace tarnbeck {
namespace {

void makeNonBlocking(const FileDescriptor& descriptor) {
    fcntl(descriptor.get(), F_SETFL, fcntl(descriptor.get(), F_GETFL) | O_NONBLOCK);
}

}  // namespace

PosixMainLoop::PosixMainLoop() {
    Pipe pipe = makePipe();
    wakeRead_ = std::move(pipe.readEnd);
    wakeWrite_ = std::move(pipe.writeEnd);
    makeNonBlocking(wakeRead_);
    makeNonBlocking(wakeWrite_);
}

PosixMainLoop::~PosixMainLoop() {
    stopWakingFor(wakeWrite_.get());
}

WallTime PosixMainLoop::wallNow() const {
    return std::chrono::system_clock::now();
}

SteadyTime PosixMainLoop::steadyNow() const {
    return std::chrono::steady_clock::now();
}

void PosixMainLoop::post(Task task) {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(task));
    if (!std::exchange(asleep_, false)) return;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(wakeWrite_.get(), &byte, 1);
}

Timer PosixMainLoop::after(std::chrono::nanoseconds delay, Task task) {
    return timers_.add(steadyNow() + delay, std::move(task));
}

void PosixMainLoop::onSignals(std::initializer_list<int> signals,
                              std::function<void(int)> handler) {
    signalHandler_ = std::move(handler);
    noteSignals(signals, wakeWrite_.get());
}

void PosixMainLoop::run() {
    while (!stopped_) {
        runSignalled();
        runPosted();
        timers_.runDue(steadyNow());
        if (!stopped_) sleepUntilWoken();
    }
    stopped_ = false;
}

void PosixMainLoop::stop() {
    post([this] { stopped_ = true; });
}

void PosixMainLoop::runPosted() {
    // What is posted meanwhile waits for the next turn, so that timers and signals get theirs.
    std::deque<Task> tasks;
    {
        const std::lock_guard lock(mutex_);
        tasks.swap(posted_);
    }
    for (; !tasks.empty(); tasks.pop_front()) tasks.front()();
}

void PosixMainLoop::runSignalled() {
    for (const int signal : takeArrivedSignals()) signalHandler_(signal);
}

int PosixMainLoop::pollTimeout() {
    const auto due = timers_.nextDue();
    if (!due) return -1;
    const auto remaining = *due - steadyNow();
    constexpr auto longest = std::chrono::hours(24);
    const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(
        std::min<SteadyTime::duration>(std::max<SteadyTime::duration>(remaining, {}), longest));
    return static_cast<int>(rounded.count());
}

void PosixMainLoop::sleepUntilWoken() {
    {
        const std::lock_guard lock(mutex_);
        if (!posted_.empty()) return;
        asleep_ = true;
    }
    pollfd wake{wakeRead_.get(), POLLIN, 0};
    const bool woken = poll(&wake, 1, pollTimeout()) > 0;
    {
        const std::lock_guard lock(mutex_);
        asleep_ = false;
    }
    if (!woken) return;
    std::array<char, 64> bytes{};
    while (read(wakeRead_.get(), bytes.data(), bytes.size()) == std::ssize(bytes)) {
    }
}

}  // namespace tarnbeck
