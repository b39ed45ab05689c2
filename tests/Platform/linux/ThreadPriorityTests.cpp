#include <algorithm>
#include <array>
#include <functional>
#include <future>
#include <thread>
#include <utility>

#include <pthread.h>
#include <sys/resource.h>

#include "PosixProcessLauncher.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck {
namespace {

int ownNiceness() {
    return getpriority(PRIO_PROCESS, 0);
}

int nicenessOn(const std::function<void(Task)>& queue) {
    std::promise<int> niceness;
    queue([&] { niceness.set_value(ownNiceness()); });
    return niceness.get_future().get();
}

TEST(ThreadPriority_Niceness, UserInitiatedIsThatOfTheProgram) {
    ThreadedWorkQueues queues;
    EXPECT_EQ(nicenessOn([&](Task task) { queues.userInitiated(std::move(task)); }), ownNiceness());
}

TEST(ThreadPriority_Niceness, UtilityIsFiveMoreThanThatOfTheProgram) {
    ThreadedWorkQueues queues;
    EXPECT_EQ(nicenessOn([&](Task task) { queues.utility(std::move(task)); }),
              std::min(ownNiceness() + 5, 19));
}

TEST(ThreadPriority_Niceness, UtilityNeverRisesAboveAProgramThatIsVeryNiceItself) {
    std::promise<std::pair<int, int>> both;
    std::thread([&] {
        setpriority(PRIO_PROCESS, 0, 12);
        ThreadedWorkQueues queues;  // its threads take after this one
        both.set_value(
            {ownNiceness(), nicenessOn([&](Task task) { queues.utility(std::move(task)); })});
    }).join();
    const auto [own, utility] = both.get_future().get();
    EXPECT_GT(utility, own);
}

TEST(ThreadPriority_Niceness, SerialQueuesAreUtility) {
    ThreadedWorkQueues queues;
    EXPECT_EQ(nicenessOn([&](Task task) { queues.serial("serial")->post(std::move(task)); }),
              std::min(ownNiceness() + 5, 19));
}

TEST(ThreadPriority_Niceness, ChildrenTakeAfterTheThreadThatStartsThem) {
    ThreadedWorkQueues queues;
    PosixProcessLauncher launcher;
    std::promise<int> niceness;
    queues.utility([&] {
        const auto child = launcher.launch({.executable = BAD_CHILD, .arguments = {"hang"}});
        niceness.set_value(
            getpriority(PRIO_PROCESS, static_cast<id_t>((*child)->processIdentifier())));
    });
    EXPECT_EQ(niceness.get_future().get(), std::min(ownNiceness() + 5, 19));
    launcher.endAllSessions();
}

std::string nameOn(const std::function<void(Task)>& queue) {
    std::promise<std::string> name;
    queue([&] {
        std::array<char, 32> buffer{};
        pthread_getname_np(pthread_self(), buffer.data(), buffer.size());
        name.set_value(buffer.data());
    });
    return name.get_future().get();
}

TEST(ThreadPriority_Names, ThreadOfASerialQueueShowsTheEndOfItsLabel) {
    ThreadedWorkQueues queues;
    EXPECT_EQ(nameOn([&](Task task) { queues.serial("com.tarnbeck.scan-log")->post(task); }),
              "rnbeck.scan-log");
}

TEST(ThreadPriority_Names, ThreadsOfThePoolsShowTheirClass) {
    ThreadedWorkQueues queues;
    EXPECT_EQ(nameOn([&](Task task) { queues.userInitiated(task); }), "tarnbeck-user");
    EXPECT_EQ(nameOn([&](Task task) { queues.utility(task); }), "tarnbeck-util");
}

}  // namespace
}  // namespace tarnbeck
