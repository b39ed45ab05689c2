#include <algorithm>
#include <csignal>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

#include <unistd.h>

#include "PosixMainLoop.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

TEST(PosixMainLoop_Post, TasksRunInTheOrderInWhichTheyCame) {
    PosixMainLoop loop;
    std::vector<int> order;
    for (int number = 0; number < 5; ++number) {
        loop.post([&order, number] { order.push_back(number); });
    }
    loop.stop();
    loop.run();
    EXPECT_THAT(order, ElementsAre(0, 1, 2, 3, 4));
}

TEST(PosixMainLoop_Post, TaskPostedByATaskRunsAfterAllThatWerePostedBefore) {
    PosixMainLoop loop;
    std::vector<int> order;
    loop.post([&] {
        order.push_back(1);
        loop.post([&] {
            order.push_back(3);
            loop.stop();
        });
    });
    loop.post([&] { order.push_back(2); });
    loop.run();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(PosixMainLoop_Post, FromAnotherThreadWakesALoopThatSleeps) {
    PosixMainLoop loop;
    std::thread poster;
    std::thread::id runner;
    loop.post([&] {
        poster = std::thread([&] {
            loop.post([&] {
                runner = std::this_thread::get_id();
                loop.stop();
            });
        });
    });
    loop.run();
    poster.join();
    EXPECT_EQ(runner, std::this_thread::get_id());
}

TEST(PosixMainLoop_Post, ManyThreadsLoseNoTaskAndNoOrderOfTheirOwn) {
    constexpr int posters = 4;
    constexpr int tasksEach = 5000;
    PosixMainLoop loop;
    std::vector<std::vector<int>> seen(posters);
    std::vector<std::thread> threads;
    for (int poster = 0; poster < posters; ++poster) {
        threads.emplace_back([&, poster] {
            auto& mine = seen[static_cast<std::size_t>(poster)];
            for (int number = 0; number < tasksEach; ++number) {
                loop.post([&mine, number] { mine.push_back(number); });
            }
        });
    }
    std::thread stopper([&] {
        for (std::thread& thread : threads) thread.join();
        loop.stop();
    });
    loop.run();
    stopper.join();
    for (const auto& numbers : seen) {
        EXPECT_EQ(numbers.size(), std::size_t{tasksEach});
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST(PosixMainLoop_Post, TasksThatGoOnPostingDoNotHoldUpATimer) {
    PosixMainLoop loop;
    bool stopped = false;
    std::function<void()> postAgain = [&] {
        if (!stopped) loop.post(postAgain);
    };
    loop.post(postAgain);
    const Timer timer = loop.after(1ms, [&] {
        stopped = true;
        loop.stop();
    });
    loop.run();
    EXPECT_TRUE(stopped);
}

TEST(PosixMainLoop_Timers, RunInTheOrderInWhichTheyAreDue) {
    PosixMainLoop loop;
    std::vector<int> order;
    const Timer third = loop.after(6ms, [&] {
        order.push_back(3);
        loop.stop();
    });
    const Timer first = loop.after(2ms, [&] { order.push_back(1); });
    const Timer second = loop.after(4ms, [&] { order.push_back(2); });
    loop.run();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(PosixMainLoop_Timers, NeverRunBeforeTheirTime) {
    PosixMainLoop loop;
    const SteadyTime start = loop.steadyNow();
    std::optional<SteadyTime> called;
    const Timer timer = loop.after(20ms, [&] {
        called = loop.steadyNow();
        loop.stop();
    });
    loop.run();
    ASSERT_TRUE(called);
    EXPECT_GE(*called - start, 20ms);
}

TEST(PosixMainLoop_Timers, AreNotRunWithinTheCallThatAsksForThem) {
    PosixMainLoop loop;
    bool called = false;
    const Timer timer = loop.after(0ns, [&] {
        called = true;
        loop.stop();
    });
    EXPECT_FALSE(called);
    loop.run();
    EXPECT_TRUE(called);
}

// Runs the loop until all that is due within 5 ms has been called.
void runForAMoment(PosixMainLoop& loop) {
    loop.after(5ms, [&] { loop.stop(); }).detach();
    loop.run();
}

TEST(PosixMainLoop_Timers, CancelledOneIsNotCalled) {
    PosixMainLoop loop;
    bool called = false;
    Timer timer = loop.after(1ms, [&] { called = true; });
    timer.cancel();
    runForAMoment(loop);
    EXPECT_FALSE(called);
}

TEST(PosixMainLoop_Timers, OneCancelledByAnotherThatIsDueAtTheSameTimeIsNotCalled) {
    PosixMainLoop loop;
    bool called = false;
    Timer second;
    const Timer first = loop.after(1ms, [&] { second.cancel(); });
    second = loop.after(1ms, [&] { called = true; });
    runForAMoment(loop);
    EXPECT_FALSE(called);
}

TEST(PosixMainLoop_Timers, OneWhoseHolderGoesIsNotCalled) {
    PosixMainLoop loop;
    bool called = false;
    {
        const Timer timer = loop.after(1ms, [&] { called = true; });
    }
    runForAMoment(loop);
    EXPECT_FALSE(called);
}

TEST(PosixMainLoop_Timers, OneThatIsReplacedByAnotherIsNotCalled) {
    PosixMainLoop loop;
    std::vector<int> order;
    Timer timer = loop.after(1ms, [&] { order.push_back(1); });
    timer = loop.after(1ms, [&] { order.push_back(2); });
    runForAMoment(loop);
    EXPECT_THAT(order, ElementsAre(2));
}

TEST(PosixMainLoop_Timers, OneThatIsLetGoIsCalledAllTheSame) {
    PosixMainLoop loop;
    bool called = false;
    loop.after(1ms, [&] { called = true; }).detach();
    runForAMoment(loop);
    EXPECT_TRUE(called);
}

TEST(PosixMainLoop_Timers, ArePendingFromTheAskingUntilTheCall) {
    PosixMainLoop loop;
    Timer timer;
    bool pendingInCall = true;
    timer = loop.after(1ms, [&] { pendingInCall = timer.isPending(); });
    EXPECT_TRUE(timer.isPending());
    runForAMoment(loop);
    EXPECT_FALSE(pendingInCall);
    EXPECT_FALSE(timer.isPending());
}

TEST(PosixMainLoop_Timers, CancelledOneLetsGoOfWhatItsTaskHolds) {
    PosixMainLoop loop;
    auto held = std::make_shared<int>(1);
    Timer timer = loop.after(1h, [held] {});
    timer.cancel();
    EXPECT_EQ(held.use_count(), 1);
}

TEST(PosixMainLoop_Stop, FromAnotherThreadEndsALoopThatSleeps) {
    PosixMainLoop loop;
    std::thread stopper;
    loop.post([&] { stopper = std::thread([&] { loop.stop(); }); });
    loop.run();
    stopper.join();
}

TEST(PosixMainLoop_Stop, LoopCanBeRunAgain) {
    PosixMainLoop loop;
    loop.stop();
    loop.run();
    bool ran = false;
    loop.post([&] { ran = true; });
    loop.stop();
    loop.run();
    EXPECT_TRUE(ran);
}

TEST(PosixMainLoop_Stop, WhatIsNotYetDueIsNotCalled) {
    PosixMainLoop loop;
    bool called = false;
    const Timer timer = loop.after(1h, [&] { called = true; });
    loop.stop();
    loop.run();
    EXPECT_FALSE(called);
}

TEST(PosixMainLoop_Signals, ReachTheHandlerOnTheMainThreadWithTheirNumber) {
    PosixMainLoop loop;
    std::vector<int> arrived;
    std::thread::id runner;
    loop.onSignals({SIGUSR1, SIGUSR2}, [&](int signal) {
        arrived.push_back(signal);
        runner = std::this_thread::get_id();
        if (arrived.size() == 2) loop.stop();
    });
    loop.post([] { std::raise(SIGUSR1); });
    const Timer timer = loop.after(1ms, [] { std::raise(SIGUSR2); });
    loop.run();
    EXPECT_THAT(arrived, ElementsAre(SIGUSR1, SIGUSR2));
    EXPECT_EQ(runner, std::this_thread::get_id());
}

TEST(PosixMainLoop_Signals, WakeALoopThatSleeps) {
    PosixMainLoop loop;
    std::thread sender;
    loop.onSignals({SIGUSR1}, [&](int) { loop.stop(); });
    loop.post([&] { sender = std::thread([] { kill(getpid(), SIGUSR1); }); });
    loop.run();
    sender.join();
}

TEST(PosixMainLoop_Rest, TakesNoProcessorTimeWhileNothingIsDue) {
    PosixMainLoop loop;
    const Timer timer = loop.after(300ms, [&] { loop.stop(); });
    const std::clock_t before = std::clock();
    loop.run();
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
}

TEST(PosixMainLoop_Clock, TellsTheSystemsTime) {
    const PosixMainLoop loop;
    const WallTime before = std::chrono::system_clock::now();
    const WallTime now = loop.wallNow();
    EXPECT_GE(now, before);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

}  // namespace
}  // namespace tarnbeck
