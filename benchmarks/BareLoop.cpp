#include "BareLoop.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnbeck::benchmark {
namespace {

std::size_t drain(int output, int error) {
    static char buffer[65536];
    pollfd pipes[2] = {{output, POLLIN, 0}, {error, POLLIN, 0}};
    std::size_t total = 0;
    int open = 2;
    while (open > 0) {
        poll(pipes, 2, -1);
        for (pollfd& pipe : pipes) {
            if (pipe.fd < 0 || pipe.revents == 0) continue;
            const ssize_t count = read(pipe.fd, buffer, sizeof buffer);
            if (count > 0) {
                total += static_cast<std::size_t>(count);
            } else {
                pipe.fd = -1;
                --open;
            }
        }
    }
    return total;
}

std::size_t runOne(char* const* arguments, char* const* environment) {
    int output[2];
    int error[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(error, O_CLOEXEC) != 0) std::abort();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    posix_spawn_file_actions_adddup2(&actions, error[1], 2);
    pid_t child = 0;
    if (posix_spawn(&child, "/usr/bin/git", &actions, nullptr, arguments, environment) != 0) {
        std::abort();
    }
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    close(error[1]);
    const std::size_t total = drain(output[0], error[0]);
    close(output[0]);
    close(error[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return total;
}

}  // namespace

std::size_t runBareLoop(const std::vector<std::vector<std::string>>& commands,
                        const std::string& home) {
    std::string homeEntry = "HOME=" + home;
    std::string path = "PATH=/usr/bin:/bin:/usr/sbin:/sbin:/usr/local/bin:/opt/homebrew/bin";
    char prompt[] = "GIT_TERMINAL_PROMPT=0";
    char locks[] = "GIT_OPTIONAL_LOCKS=0";
    char locale[] = "LC_ALL=C";
    char* const environment[] = {homeEntry.data(), prompt, locks, locale, path.data(), nullptr};
    std::size_t total = 0;
    for (const auto& command : commands) {
        std::vector<char*> arguments = {const_cast<char*>("git")};
        for (const auto& argument : command)
            arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        total += runOne(arguments.data(), environment);
    }
    return total;
}

}  // namespace tarnbeck::benchmark
