#include "PosixMainLoop.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "Pipe.h"

namespace tarnbeck {
namespace {

constexpr int highestSignal = 64;
std::atomic<int> signalWakeDescriptor{-1};
std::atomic<std::uint64_t> signalsArrived{0};

void noteSignal(int signal) {
    const int error = errno;
    signalsArrived.fetch_or(std::uint64_t{1} << (signal - 1));
    const char byte = 0;
    // A full pipe wakes the loop just as well.
    [[maybe_unused]] const ssize_t written = write(signalWakeDescriptor, &byte, 1);
    errno = error;
}

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
    int mine = wakeWrite_.get();
    signalWakeDescriptor.compare_exchange_strong(mine, -1);
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
    auto pending = std::make_shared<Task>(std::move(task));
    timers_.emplace(steadyNow() + delay, pending);
    return Timer(std::move(pending));
}

void PosixMainLoop::onSignals(std::initializer_list<int> signals,
                              std::function<void(int)> handler) {
    signalHandler_ = std::move(handler);
    signalWakeDescriptor = wakeWrite_.get();
    struct sigaction action {};
    action.sa_handler = noteSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;  // a write that is held up by its reader must not hold up the signal
    for (const int signal : signals) sigaction(signal, &action, nullptr);
}

void PosixMainLoop::run() {
    while (!stopped_) {
        runSignalled();
        runPosted();
        runDueTimers();
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

void PosixMainLoop::runDueTimers() {
    const SteadyTime now = steadyNow();
    while (!timers_.empty() && timers_.begin()->first <= now) {
        const auto pending = timers_.extract(timers_.begin()).mapped();
        const Task task = std::exchange(*pending, nullptr);
        if (task) task();
    }
}

void PosixMainLoop::runSignalled() {
    const std::uint64_t arrived = signalsArrived.exchange(0);
    for (int signal = 1; arrived != 0 && signal <= highestSignal; ++signal) {
        if ((arrived >> (signal - 1)) & 1) signalHandler_(signal);
    }
}

int PosixMainLoop::pollTimeout() {
    while (!timers_.empty() && !*timers_.begin()->second) timers_.erase(timers_.begin());
    if (timers_.empty()) return -1;
    const auto remaining = timers_.begin()->first - steadyNow();
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
