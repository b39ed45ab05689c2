// A server of our own on loopback, played by one of the Python programs beside this, and what it
// takes to speak TLS.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PosixProcessLauncher.h"

namespace tarnbeck::testing {

// Where a program is installed; empty when it is not.
std::string installedProgram(const std::string& name);

// Writes "certificate.pem" for localhost, which vouches for itself, and its "key.pem" into a
// folder. A failed assertion when that can't be done.
void makeCertificate(const std::string& folder);

class LoopbackServer {
  public:
    LoopbackServer() = default;
    ~LoopbackServer() { stop(); }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    // Runs the machine's Python with these arguments and waits until the program prints its port. A
    // failed assertion when it does not.
    void start(const std::vector<std::string>& arguments);
    void stop();

    const std::string& port() const { return port_; }

  private:
    PosixProcessLauncher launcher_;
    std::unique_ptr<ChildProcess> server_;
    FileDescriptor output_;
    std::string port_;
};

}  // namespace tarnbeck::testing
