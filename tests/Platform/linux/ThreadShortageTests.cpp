#include <cstdlib>
#include <latch>
#include <system_error>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

#include "ThreadedWorkQueues.h"

namespace tarnbeck {
namespace {

// For a process that may be spoilt: root has no limit, so it becomes somebody else.
void allowNoFurtherThread() {
    constexpr uid_t somebody = 65534;
    const rlimit none{.rlim_cur = 0, .rlim_max = 0};
    if (geteuid() == 0 && setuid(somebody) != 0) std::_Exit(2);
    if (setrlimit(RLIMIT_NPROC, &none) != 0) std::_Exit(3);
}

bool canStartAThread() {
    try {
        std::thread([] {}).join();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

[[noreturn]] void runTenTasksOnOneThread() {
    ThreadedWorkQueues queues;
    queues.utility([] {});
    queues.waitUntilIdle();
    allowNoFurtherThread();
    if (canStartAThread()) std::_Exit(4);
    int ran = 0;
    std::latch allPosted(1);
    queues.utility([&] { allPosted.wait(); });
    for (int task = 0; task < 10; ++task) queues.utility([&] { ++ran; });
    allPosted.count_down();
    queues.waitUntilIdle();
    std::_Exit(ran == 10 ? 0 : 1);
}

TEST(ThreadedWorkQueuesDeathTest, WithoutAFurtherThreadTasksWaitForThoseThatThereAre) {
    EXPECT_EXIT(runTenTasksOnOneThread(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tarnbeck
