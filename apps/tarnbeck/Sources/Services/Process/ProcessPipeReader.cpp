#include "ProcessPipeReader.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

namespace tarnbeck {
namespace {

using std::chrono::steady_clock;

// Rounded up, so that a deadline is never met early by a turn of the loop.
int millisecondsUntil(steady_clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 24 * 3600 * 1000));
}

}  // namespace

void PipeBuffer::readAvailable() {
    std::array<char, 65536> chunk;  // NOLINT: filled by `read`, and too large to clear each time
    const ssize_t count = read(pipe_.get(), chunk.data(), chunk.size());
    if (count > 0) {
        tooLarge_ = tooLarge_ || bytes_.size() + static_cast<std::size_t>(count) > largestOutput;
        if (tooLarge_) {
            bytes_ = {};
        } else {
            bytes_.append(chunk.data(), static_cast<std::size_t>(count));
        }
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
        pipe_.close();
    }
}

std::string PipeBuffer::takeContent() {
    return reachedEnd() ? std::move(bytes_) : std::string();
}

bool ProcessPipeReadHandle::waitForExit(const ChildProcess& child,
                                        steady_clock::time_point deadline) {
    while (true) {
        if (drainOnce(child.exitDescriptor(), deadline)) return true;
        if (steady_clock::now() >= deadline) return false;
    }
}

bool ProcessPipeReadHandle::waitForEnd(steady_clock::time_point deadline) {
    constexpr int noEvent = -1;
    while (!standardOutput_.reachedEnd() || !standardError_.reachedEnd()) {
        drainOnce(noEvent, deadline);
        if (steady_clock::now() >= deadline) break;
    }
    return standardOutput_.reachedEnd() && standardError_.reachedEnd();
}

bool ProcessPipeReadHandle::drainOnce(int event, steady_clock::time_point deadline) {
    // `poll` passes over negative descriptors: a pipe at its end, or no event.
    std::array<pollfd, 3> sources{{{standardOutput_.descriptor(), POLLIN, 0},
                                   {standardError_.descriptor(), POLLIN, 0},
                                   {event, POLLIN, 0}}};
    if (poll(sources.data(), sources.size(), millisecondsUntil(deadline)) <= 0) return false;
    if (sources[0].revents != 0) standardOutput_.readAvailable();
    if (sources[1].revents != 0) standardError_.readAvailable();
    return sources[2].revents != 0;
}

ProcessPipeReadHandle ProcessPipeReader::readStdoutAndStderr(FileDescriptor stdoutPipe,
                                                             FileDescriptor stderrPipe) {
    return {std::move(stdoutPipe), std::move(stderrPipe)};
}

}  // namespace tarnbeck
