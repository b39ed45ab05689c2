#include "ProcessPipeReader.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr int noEvent = -1;

// Rounded up, so that a deadline is never met early by a turn of the loop.
int millisecondsUntil(steady_clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
    return static_cast<int>(std::clamp(left, 0ms, std::chrono::milliseconds(24h)).count());
}

}  // namespace

void PipeBuffer::readAvailable(const ByteObserver& observer) {
    std::array<char, 65536> chunk;  // filled by `read`, and too large to clear each time
    const ssize_t count = read(pipe_.get(), chunk.data(), chunk.size());
    if (count > 0) {
        const std::string_view bytes(chunk.data(), static_cast<std::size_t>(count));
        tooLarge_ = tooLarge_ || bytes_.size() + bytes.size() > largestOutput;
        if (tooLarge_) {
            bytes_ = {};
        } else {
            bytes_.append(bytes);
        }
        if (observer) observer(bytes);
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
        pipe_.close();
    }
}

std::string PipeBuffer::takeContent() {
    return reachedEnd() ? std::move(bytes_) : std::string();
}

bool ProcessPipeReadHandle::waitForExit(ChildProcess& child, steady_clock::time_point deadline) {
    // Nearly every child ends within this time, and closes its pipes as it ends: then no event has
    // to be asked for.
    waitForEnd(std::min(deadline, steady_clock::now() + 50ms));
    while (child.isRunning()) {
        const auto now = steady_clock::now();
        if (now >= deadline) return false;
        const int exit = child.exitDescriptor();
        // Where the system has no descriptor left for the event, the child is asked again and
        // again.
        drainOnce(exit, exit < 0 ? std::min(deadline, now + 30ms) : deadline);
    }
    return true;
}

bool ProcessPipeReadHandle::waitForEnd(steady_clock::time_point deadline) {
    while (!reachedEnd() && steady_clock::now() < deadline) drainOnce(noEvent, deadline);
    return reachedEnd();
}

void ProcessPipeReadHandle::drainOnce(int event, steady_clock::time_point deadline) {
    // `poll` passes over negative descriptors: a pipe at its end, or no event.
    std::array<pollfd, 3> sources{{{standardOutput_.descriptor(), POLLIN, 0},
                                   {standardError_.descriptor(), POLLIN, 0},
                                   {event, POLLIN, 0}}};
    if (poll(sources.data(), sources.size(), millisecondsUntil(deadline)) <= 0) return;
    if (sources[0].revents != 0) standardOutput_.readAvailable(observer_);
    if (sources[1].revents != 0) standardError_.readAvailable(observer_);
}

ProcessPipeReadHandle ProcessPipeReader::readStdoutAndStderr(FileDescriptor stdoutPipe,
                                                             FileDescriptor stderrPipe) {
    return {std::move(stdoutPipe), std::move(stderrPipe)};
}

}  // namespace tarnbeck
