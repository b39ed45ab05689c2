// Plays the children that go wrong. The first argument says which.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

// Interleaves the two streams, so that a reader of one alone would be stuck at once.
int flood(std::size_t megabytes) {
    const std::string chunk(std::size_t{1} << 20, 'x');
    for (std::size_t count = 0; count < megabytes; ++count) {
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
            std::string_view rest = chunk;
            while (!rest.empty()) {
                const ssize_t written = write(stream, rest.data(), rest.size());
                if (written < 0) return 1;
                rest.remove_prefix(static_cast<std::size_t>(written));
            }
        }
    }
    return 0;
}

[[noreturn]] void hang() {
    while (true) pause();
}

int closeBothPipesAndExitLater() {
    close(STDOUT_FILENO);
    close(STDERR_FILENO);
    usleep(100'000);
    return 7;
}

// Prints a line and leaves a child of its own that holds both pipes for `seconds`.
int leaveGrandchild(unsigned seconds) {
    if (fork() == 0) {
        sleep(seconds);
        _exit(0);
    }
    std::puts("printed before leaving");
    std::fflush(stdout);
    return 0;
}

// What a child can see of how it was started.
int describe(int argc, char** argv) {
    for (int index = 2; index < argc; ++index) std::printf("argument=%s\n", argv[index]);
    for (char** entry = environ; *entry; ++entry) std::printf("environment=%s\n", *entry);
    char buffer[4096];
    std::printf("directory=%s\n", getcwd(buffer, sizeof buffer) ? buffer : "?");
    std::printf("leads its session=%d\n", getsid(0) == getpid());
    std::printf("input at its end=%d\n", read(STDIN_FILENO, buffer, 1) == 0);
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    for (int number = 1; number < SIGRTMIN; ++number) {
        struct sigaction action {};
        sigaction(number, nullptr, &action);
        if (sigismember(&blocked, number) == 1) std::printf("blocked signal=%d\n", number);
        if (action.sa_handler == SIG_IGN) std::printf("ignored signal=%d\n", number);
    }
    for (int descriptor = 3; descriptor < 256; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) >= 0) std::printf("inherited descriptor=%d\n", descriptor);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view role = argc > 1 ? argv[1] : "";
    const char* value = argc > 2 ? argv[2] : "";
    if (role == "hang") hang();
    if (role == "print-and-hang") {
        std::puts(value);
        std::fflush(stdout);
        hang();
    }
    if (role == "ignore-sigterm") {
        std::signal(SIGTERM, SIG_IGN);
        std::puts("ready");
        std::fflush(stdout);
        hang();
    }
    if (role == "close-and-hang" || role == "close-and-ignore-sigterm") {
        if (role == "close-and-ignore-sigterm") std::signal(SIGTERM, SIG_IGN);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        hang();
    }
    if (role == "close-and-exit-later") return closeBothPipesAndExitLater();
    if (role == "hang-with-grandchild") {
        leaveGrandchild(static_cast<unsigned>(std::atoi(value)));
        hang();
    }
    if (role == "flood") return flood(std::strtoul(value, nullptr, 10));
    if (role == "leave-grandchild") return leaveGrandchild(static_cast<unsigned>(std::atoi(value)));
    if (role == "broken-utf8") return std::fputs("good \xC3\x28 bad\n", stdout) < 0;
    if (role == "newlines") return std::fputs("\n\n\r\n\n", stdout) < 0;
    if (role == "silent") return 0;
    if (role == "print") return std::fputs(value, stdout) < 0;
    if (role == "fail") {
        std::fputs("  went wrong \xC2\xA0\n\n", stderr);
        return std::atoi(value);
    }
    if (role == "fail-broken-utf8") {
        std::fputs("\xFF\xFE", stderr);
        return 3;
    }
    if (role == "die-by-signal") return std::raise(std::atoi(value));
    if (role == "describe") return describe(argc, argv);
    std::fprintf(stderr, "bad-child: unknown role\n");
    return 64;
}
