// A server on loopback that tests let real tools talk to, played by a script beside this file.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PosixProcessLauncher.h"

namespace tarnbeck::testing {

// Where a program is installed; empty when it is not.
std::string installedProgram(const std::string& name);

class LoopbackServer {
  public:
    ~LoopbackServer() { stop(); }

    // Runs the script, and returns the port that it prints; empty, with a failed expectation, when
    // it does not start.
    std::string start(const std::vector<std::string>& scriptAndArguments);
    // Waits for its end: from then on its port refuses connections.
    void stop();

  private:
    PosixProcessLauncher launcher_;
    std::unique_ptr<ChildProcess> server_;
    FileDescriptor output_;
};

}  // namespace tarnbeck::testing
