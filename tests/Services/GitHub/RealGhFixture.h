// The machine's own `gh` against a server on loopback that it takes for GitHub.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "DependencyCommandRunner.h"
#include "GitHubScanner.h"
#include "LoopbackServer.h"
#include "ObservedLog.h"
#include "PosixProcessLauncher.h"
#include "Text.h"

namespace tarnbeck::testing {

class RealGhFixture : public ::testing::Test {
  protected:
    // Skips the test where the machine lacks a program that it takes.
    void SetUp() override;

    // What the server lists, as nodes of GitHub's interface; the newest first.
    void serverHas(const std::string& connection, const std::vector<std::string>& nodes) {
        folder_.write(connection + ".json", "[" + joined(nodes, ",") + "]");
    }
    // Starts the server in a role of `github-server.py`, and makes it the only host of the home.
    void startServer(const std::string& role);
    void stopServer() { server_.stop(); }

    // Runs `test` where `gh` trusts the server; skips it where this machine can't do that.
    void trustingTheServer(const std::function<void()>& test);

    GitHubRepoScanResult scan(const std::string& ownerRepo = "owner/repo");
    const std::vector<std::string>& lines() const { return log_.lines; }

    TemporaryFolder folder_;
    const std::string home_ = folder_.makeFolder("home");
    Simulation simulation_;
    ObservedLog log_{simulation_};
    PosixProcessLauncher launcher_;
    GhTimeouts timeouts_;

  private:
    void makeCertificate();

    std::string gh_;
    std::string openssl_;
    LoopbackServer server_;
};

}  // namespace tarnbeck::testing
