// Draining a child's two pipes so that neither can fill up and block the child against the other.
// The thread that waits for the child does the draining itself, both pipes at once, so that a
// command costs no further thread. Blocking; one thread at a time.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "FileDescriptor.h"
#include "ProcessLauncher.h"

namespace tarnbeck {

// Gets the bytes of both pipes as they are read, on the thread that drains them: any number of
// them, which may end within a character.
using ByteObserver = std::function<void(std::string_view bytes)>;

// One pipe's bytes: all of them, up to end of file, or none. A pipe that is still open when the
// waiting ends counts as empty, and so does one that passes `largestOutput`.
class PipeBuffer {
  public:
    static constexpr std::size_t largestOutput = std::size_t{512} << 20;

    explicit PipeBuffer(FileDescriptor pipe) : pipe_(std::move(pipe)) {}

    bool reachedEnd() const { return !pipe_; }
    int descriptor() const { return pipe_.get(); }
    // Reads what is there and tells `observer`, if there is one; only when the descriptor is
    // readable.
    void readAvailable(const ByteObserver& observer);
    // The bytes if the end was reached, otherwise nothing.
    std::string takeContent();

  private:
    FileDescriptor pipe_;
    std::string bytes_;
    bool tooLarge_ = false;
};

class ProcessPipeReadHandle {
  public:
    ProcessPipeReadHandle(FileDescriptor standardOutput, FileDescriptor standardError)
        : standardOutput_(std::move(standardOutput)), standardError_(std::move(standardError)) {}

    // From now on `observer` is told what is read, whatever becomes of it in the buffers.
    void observe(ByteObserver observer) { observer_ = std::move(observer); }

    // Drains until the child has ended, and reaps it; false when the deadline came first.
    bool waitForExit(ChildProcess& child, std::chrono::steady_clock::time_point deadline);
    // Drains until both pipes are at their end; false when the deadline came first.
    bool waitForEnd(std::chrono::steady_clock::time_point deadline);

    std::string takeStandardOutput() { return standardOutput_.takeContent(); }
    std::string takeStandardError() { return standardError_.takeContent(); }

  private:
    bool reachedEnd() const { return standardOutput_.reachedEnd() && standardError_.reachedEnd(); }
    // Waits for the pipes and for `event` (a descriptor, or -1 for none) and reads what came.
    void drainOnce(int event, std::chrono::steady_clock::time_point deadline);

    PipeBuffer standardOutput_;
    PipeBuffer standardError_;
    ByteObserver observer_;
};

namespace ProcessPipeReader {

// Begins to drain; the descriptors are the read ends of the child's pipes.
ProcessPipeReadHandle readStdoutAndStderr(FileDescriptor stdoutPipe, FileDescriptor stderrPipe);

}  // namespace ProcessPipeReader

}  // namespace tarnbeck
