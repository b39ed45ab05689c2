#include "LoopbackServer.h"

#include <utility>

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

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

std::string LoopbackServer::start(const std::vector<std::string>& scriptAndArguments) {
    auto launched = launcher_.launch(
        {.executable = installedProgram("python3"), .arguments = scriptAndArguments});
    if (!launched) {
        ADD_FAILURE() << launched.error();
        return {};
    }
    server_ = *std::move(launched);
    output_ = server_->takeStandardOutput();
    std::string port = firstLine(output_.get());
    EXPECT_NE(port, "") << "the server does not start";
    return port;
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
