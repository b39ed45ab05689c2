// Child processes: launched with a complete environment, the null device as standard input, a
// session of their own and nothing else inherited.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

#include "FileDescriptor.h"
#include "ImmutableList.h"
#include "Result.h"

namespace tarnbeck {

inline const std::vector<std::string> noArguments;
inline const ImmutableList<std::string> noEnvironment;

// What is to be launched. It refers to what its maker holds: for the time of the call only.
struct LaunchRequest {
    const std::string& executable;  // absolute; no search path is used
    const std::vector<std::string>& arguments = noArguments;
    const ImmutableList<std::string>& environment = noEnvironment;  // "NAME=value", all of it
    const char* workingDirectory = "/";
};

// A running child. It is reaped when it is asked for its status, or when this goes; one that still
// runs then is left to its launcher, which reaps it later. One thread at a time.
class ChildProcess {
  public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    virtual ~ChildProcess() = default;

    virtual pid_t processIdentifier() const = 0;
    // The read ends of the child's pipes; each may be taken once.
    virtual FileDescriptor takeStandardOutput() = 0;
    virtual FileDescriptor takeStandardError() = 0;
    // Readable (to `poll`) when the child has ended; made when it is first asked for, and valid as
    // long as this lives. Negative when the system has no more descriptors.
    virtual int exitDescriptor() = 0;

    // Reaps the child if it has ended.
    virtual bool isRunning() = 0;
    // The exit status, or the number of the signal that ended the child. Only when it has ended.
    virtual int terminationStatus() const = 0;
    // SIGTERM, and SIGKILL, to this one process, and never after it was reaped.
    virtual void terminate() = 0;
    virtual void kill() = 0;
};

class ProcessLauncher {
  public:
    ProcessLauncher() = default;
    ProcessLauncher(const ProcessLauncher&) = delete;
    ProcessLauncher& operator=(const ProcessLauncher&) = delete;
    virtual ~ProcessLauncher() = default;

    // The child, or the system's words why there is none. Any thread.
    virtual Result<std::unique_ptr<ChildProcess>> launch(const LaunchRequest& request) = 0;

    // For the end of the program: asks all children and what they started to end, kills what has
    // not ended after a moment, and launches nothing from then on. Any thread.
    virtual void endAllSessions() = 0;
};

}  // namespace tarnbeck
