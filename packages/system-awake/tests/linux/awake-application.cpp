// Keeps the machine awake until its input ends or it is killed. Says "active" and the number of the
// child, or "failed" and the words.
#include <cstdio>
#include <fstream>
#include <string>

#include <unistd.h>

#include "CaffeinateController.h"
#include "LogindInhibitLauncher.h"

int main() {
    using namespace system_awake;
    LogindInhibitLauncher launcher(
        {.who = "Application", .why = "Testing", .timeout = std::chrono::seconds(20)});
    CaffeinateController controller(launcher, getpid(), {.postToMainThread = [](const auto&) {}});
    controller.start(standardCaffeinateAssertions);
    if (const auto* failed = std::get_if<CaffeinateState::Failed>(&controller.state().value)) {
        std::printf("failed %s\n", failed->message.c_str());
        return 1;
    }
    const std::string thread = std::to_string(getpid());
    std::ifstream children("/proc/self/task/" + thread + "/children");
    std::string child;
    children >> child;
    std::printf("active %s\n", child.c_str());
    std::fflush(stdout);
    char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) > 0) {
    }
    return 0;
}
