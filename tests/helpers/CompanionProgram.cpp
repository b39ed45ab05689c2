#include "CompanionProgram.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace tarnbeck::testing {
namespace {

constexpr int patienceInMilliseconds = 60'000;

std::array<int, 2> makeCloseOnExecPipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
    return ends;
}

std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
    return result;
}

int statusOf(int waited) {
    return WIFSIGNALED(waited) ? -WTERMSIG(waited) : WEXITSTATUS(waited);
}

void closeOnce(int& descriptor) {
    if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

}  // namespace

CompanionProgram::CompanionProgram(const std::vector<std::string>& command,
                                   const std::vector<std::string>& environment) {
    const auto input = makeCloseOnExecPipe();
    const auto output = makeCloseOnExecPipe();
    input_ = input[1];
    output_ = output[0];
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    auto arguments = pointers(command);
    arguments.push_back(nullptr);
    auto variables = pointers(environment);  // of two of a name, the first counts
    for (char** variable = environ; *variable; ++variable) variables.push_back(*variable);
    variables.push_back(nullptr);
    const int error = posix_spawnp(&process_, command.front().c_str(), &actions, nullptr,
                                   arguments.data(), variables.data());
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    if (error != 0) {
        process_ = -1;
        ADD_FAILURE() << command.front() << ": " << std::generic_category().message(error);
    }
}

CompanionProgram::~CompanionProgram() {
    closeOnce(input_);
    if (!status_) {
        signal(SIGKILL);
        wait();
    }
    closeOnce(output_);
}

std::optional<std::string> CompanionProgram::readLine() {
    while (true) {
        if (const auto end = unread_.find('\n'); end != std::string::npos) {
            std::string line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            return line;
        }
        if (!readSome()) return std::nullopt;
    }
}

std::optional<std::string> CompanionProgram::readPast(std::string_view beginning) {
    while (auto line = readLine()) {
        if (line->starts_with(beginning)) return line->substr(beginning.size());
    }
    return std::nullopt;
}

bool CompanionProgram::readSome() {
    pollfd output{output_, POLLIN, 0};
    if (poll(&output, 1, patienceInMilliseconds) <= 0) {
        ADD_FAILURE() << "no line came";
        return false;
    }
    std::array<char, 4096> buffer{};
    const ssize_t count = read(output_, buffer.data(), buffer.size());
    if (count <= 0) return false;
    unread_.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

void CompanionProgram::closeInput() {
    closeOnce(input_);
}

void CompanionProgram::signal(int number) const {
    if (process_ > 0 && !status_) kill(process_, number);
}

bool CompanionProgram::hasEnded() {
    int status = 0;
    if (!status_ && waitpid(process_, &status, WNOHANG) == process_) status_ = statusOf(status);
    return status_.has_value();
}

int CompanionProgram::wait() {
    if (status_) return *status_;
    int status = 0;
    while (process_ > 0 && waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    status_ = statusOf(status);
    return *status_;
}

}  // namespace tarnbeck::testing
