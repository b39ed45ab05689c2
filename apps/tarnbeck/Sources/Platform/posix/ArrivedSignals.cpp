#include "ArrivedSignals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>

#include <unistd.h>

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

}  // namespace

void noteSignals(std::initializer_list<int> signals, int wakeDescriptor) {
    signalWakeDescriptor = wakeDescriptor;
    struct sigaction action {};
    action.sa_handler = noteSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;  // a write that is held up by its reader must not hold up the signal
    for (const int signal : signals) sigaction(signal, &action, nullptr);
}

void stopWakingFor(int wakeDescriptor) {
    signalWakeDescriptor.compare_exchange_strong(wakeDescriptor, -1);
}

std::vector<int> takeArrivedSignals() {
    const std::uint64_t arrived = signalsArrived.exchange(0);
    std::vector<int> signals;
    for (int signal = 1; arrived != 0 && signal <= highestSignal; ++signal) {
        if ((arrived >> (signal - 1)) & 1) signals.push_back(signal);
    }
    return signals;
}

}  // namespace tarnbeck
