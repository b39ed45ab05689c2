#include "LoopbackServer.h"

#include <chrono>
#include <utility>

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include "DependencyCommandRunner.h"
#include "FileSystem.h"

namespace tarnbeck::testing {
namespace {

// The first line that is printed, without its line feed.
std::string firstLine(int descriptor) {
    std::string line;
    char character = 0;
    while (read(descriptor, &character, 1) == 1 && character != '\n') line += character;
    return line;
}

}  // namespace

std::string installedProgram(const std::string& name) {
    for (const char* folder : {"/opt/homebrew/bin/", "/usr/local/bin/", "/usr/bin/"}) {
        if (isExecutableFile(folder + name)) return folder + name;
    }
    return {};
}

void makeCertificate(const std::string& folder) {
    PosixProcessLauncher launcher;
    const auto made =
        DependencyCommandRunner(folder, launcher)
            .runCommand({.executable = installedProgram("openssl"),
                         .args = {"req", "-x509", "-newkey", "ec", "-pkeyopt",
                                  "ec_paramgen_curve:prime256v1", "-nodes", "-keyout", "key.pem",
                                  "-out", "certificate.pem", "-days", "2", "-subj", "/CN=localhost",
                                  "-addext", "subjectAltName=DNS:localhost", "-addext",
                                  "keyUsage=critical,digitalSignature,keyCertSign"},
                         .cwd = folder,
                         .timeout = std::chrono::seconds(60)});
    ASSERT_EQ(made.terminationStatus, 0) << made.stderr;
}

void LoopbackServer::start(const std::vector<std::string>& arguments) {
    auto launched =
        launcher_.launch({.executable = installedProgram("python3"), .arguments = arguments});
    ASSERT_TRUE(launched) << launched.error();
    server_ = *std::move(launched);
    output_ = server_->takeStandardOutput();
    port_ = firstLine(output_.get());
    ASSERT_NE(port_, "") << "the server does not start";
}

void LoopbackServer::stop() {
    if (!server_) return;
    server_->kill();
    pollfd exit{.fd = server_->exitDescriptor(), .events = POLLIN};
    poll(&exit, 1, 10'000);
    EXPECT_FALSE(server_->isRunning());
    server_.reset();
}

}  // namespace tarnbeck::testing
