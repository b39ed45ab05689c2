// What every real main loop promises.
#pragma once

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "MainLoop.h"

namespace tarnbeck {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

template <class Loop>
class MainLoop_Post : public ::testing::Test {};
TYPED_TEST_SUITE_P(MainLoop_Post);
template <class Loop>
class MainLoop_Timers : public ::testing::Test {};
TYPED_TEST_SUITE_P(MainLoop_Timers);
template <class Loop>
class MainLoop_Stop : public ::testing::Test {};
TYPED_TEST_SUITE_P(MainLoop_Stop);
template <class Loop>
class MainLoop_Signals : public ::testing::Test {};
TYPED_TEST_SUITE_P(MainLoop_Signals);
template <class Loop>
class MainLoop_Rest : public ::testing::Test {};
TYPED_TEST_SUITE_P(MainLoop_Rest);
template <class Loop>
class MainLoop_Clock : public ::testing::Test {};
TYPED_TEST_SUITE_P(MainLoop_Clock);

TYPED_TEST_P(MainLoop_Post, TasksRunInTheOrderInWhichTheyCame) {
    TypeParam loop;
    std::vector<int> order;
    for (int number = 0; number < 5; ++number) {
        loop.post([&order, number] { order.push_back(number); });
    }
    loop.stop();
    loop.run();
    EXPECT_THAT(order, ElementsAre(0, 1, 2, 3, 4));
}

TYPED_TEST_P(MainLoop_Post, TaskPostedByATaskRunsAfterAllThatWerePostedBefore) {
    TypeParam loop;
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

TYPED_TEST_P(MainLoop_Post, FromAnotherThreadWakesALoopThatSleeps) {
    TypeParam loop;
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

TYPED_TEST_P(MainLoop_Post, ManyThreadsLoseNoTaskAndNoOrderOfTheirOwn) {
    constexpr int posters = 4;
    constexpr int tasksEach = 5000;
    TypeParam loop;
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

TYPED_TEST_P(MainLoop_Post, TasksThatGoOnPostingDoNotHoldUpATimer) {
    TypeParam loop;
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

TYPED_TEST_P(MainLoop_Timers, RunInTheOrderInWhichTheyAreDue) {
    TypeParam loop;
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

TYPED_TEST_P(MainLoop_Timers, NeverRunBeforeTheirTime) {
    TypeParam loop;
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

TYPED_TEST_P(MainLoop_Timers, AreNotRunWithinTheCallThatAsksForThem) {
    TypeParam loop;
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
template <class Loop>
void runForAMoment(Loop& loop) {
    loop.after(5ms, [&] { loop.stop(); }).detach();
    loop.run();
}

TYPED_TEST_P(MainLoop_Timers, CancelledOneIsNotCalled) {
    TypeParam loop;
    bool called = false;
    Timer timer = loop.after(1ms, [&] { called = true; });
    timer.cancel();
    runForAMoment(loop);
    EXPECT_FALSE(called);
}

TYPED_TEST_P(MainLoop_Timers, OneCancelledByAnotherThatIsDueAtTheSameTimeIsNotCalled) {
    TypeParam loop;
    bool called = false;
    Timer second;
    const Timer first = loop.after(1ms, [&] { second.cancel(); });
    second = loop.after(1ms, [&] { called = true; });
    runForAMoment(loop);
    EXPECT_FALSE(called);
}

TYPED_TEST_P(MainLoop_Timers, OneWhoseHolderGoesIsNotCalled) {
    TypeParam loop;
    bool called = false;
    {
        const Timer timer = loop.after(1ms, [&] { called = true; });
    }
    runForAMoment(loop);
    EXPECT_FALSE(called);
}

TYPED_TEST_P(MainLoop_Timers, OneThatIsReplacedByAnotherIsNotCalled) {
    TypeParam loop;
    std::vector<int> order;
    Timer timer = loop.after(1ms, [&] { order.push_back(1); });
    timer = loop.after(1ms, [&] { order.push_back(2); });
    runForAMoment(loop);
    EXPECT_THAT(order, ElementsAre(2));
}

TYPED_TEST_P(MainLoop_Timers, OneThatIsLetGoIsCalledAllTheSame) {
    TypeParam loop;
    bool called = false;
    loop.after(1ms, [&] { called = true; }).detach();
    runForAMoment(loop);
    EXPECT_TRUE(called);
}

TYPED_TEST_P(MainLoop_Timers, ArePendingFromTheAskingUntilTheCall) {
    TypeParam loop;
    Timer timer;
    bool pendingInCall = true;
    timer = loop.after(1ms, [&] { pendingInCall = timer.isPending(); });
    EXPECT_TRUE(timer.isPending());
    runForAMoment(loop);
    EXPECT_FALSE(pendingInCall);
    EXPECT_FALSE(timer.isPending());
}

TYPED_TEST_P(MainLoop_Timers, CancelledOneLetsGoOfWhatItsTaskHolds) {
    TypeParam loop;
    auto held = std::make_shared<int>(1);
    Timer timer = loop.after(1h, [held] {});
    timer.cancel();
    EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST_P(MainLoop_Stop, FromAnotherThreadEndsALoopThatSleeps) {
    TypeParam loop;
    std::thread stopper;
    loop.post([&] { stopper = std::thread([&] { loop.stop(); }); });
    loop.run();
    stopper.join();
}

TYPED_TEST_P(MainLoop_Stop, LoopCanBeRunAgain) {
    TypeParam loop;
    loop.stop();
    loop.run();
    bool ran = false;
    loop.post([&] { ran = true; });
    loop.stop();
    loop.run();
    EXPECT_TRUE(ran);
}

TYPED_TEST_P(MainLoop_Stop, WhatIsNotYetDueIsNotCalled) {
    TypeParam loop;
    bool called = false;
    const Timer timer = loop.after(1h, [&] { called = true; });
    loop.stop();
    loop.run();
    EXPECT_FALSE(called);
}

TYPED_TEST_P(MainLoop_Signals, ReachTheHandlerOnTheMainThreadWithTheirNumber) {
    TypeParam loop;
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

TYPED_TEST_P(MainLoop_Signals, WakeALoopThatSleeps) {
    TypeParam loop;
    std::thread sender;
    loop.onSignals({SIGUSR1}, [&](int) { loop.stop(); });
    loop.post([&] { sender = std::thread([] { kill(getpid(), SIGUSR1); }); });
    loop.run();
    sender.join();
}

TYPED_TEST_P(MainLoop_Rest, TakesNoProcessorTimeWhileNothingIsDue) {
    TypeParam loop;
    const Timer timer = loop.after(300ms, [&] { loop.stop(); });
    const std::clock_t before = std::clock();
    loop.run();
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
}

TYPED_TEST_P(MainLoop_Clock, TellsTheSystemsTime) {
    const TypeParam loop;
    const WallTime before = std::chrono::system_clock::now();
    const WallTime now = loop.wallNow();
    EXPECT_GE(now, before);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

REGISTER_TYPED_TEST_SUITE_P(MainLoop_Post, TasksRunInTheOrderInWhichTheyCame,
                            TaskPostedByATaskRunsAfterAllThatWerePostedBefore,
                            FromAnotherThreadWakesALoopThatSleeps,
                            ManyThreadsLoseNoTaskAndNoOrderOfTheirOwn,
                            TasksThatGoOnPostingDoNotHoldUpATimer);
REGISTER_TYPED_TEST_SUITE_P(MainLoop_Timers, RunInTheOrderInWhichTheyAreDue,
                            NeverRunBeforeTheirTime, AreNotRunWithinTheCallThatAsksForThem,
                            CancelledOneIsNotCalled,
                            OneCancelledByAnotherThatIsDueAtTheSameTimeIsNotCalled,
                            OneWhoseHolderGoesIsNotCalled, OneThatIsReplacedByAnotherIsNotCalled,
                            OneThatIsLetGoIsCalledAllTheSame, ArePendingFromTheAskingUntilTheCall,
                            CancelledOneLetsGoOfWhatItsTaskHolds);
REGISTER_TYPED_TEST_SUITE_P(MainLoop_Stop, FromAnotherThreadEndsALoopThatSleeps, LoopCanBeRunAgain,
                            WhatIsNotYetDueIsNotCalled);
REGISTER_TYPED_TEST_SUITE_P(MainLoop_Signals, ReachTheHandlerOnTheMainThreadWithTheirNumber,
                            WakeALoopThatSleeps);
REGISTER_TYPED_TEST_SUITE_P(MainLoop_Rest, TakesNoProcessorTimeWhileNothingIsDue);
REGISTER_TYPED_TEST_SUITE_P(MainLoop_Clock, TellsTheSystemsTime);

}  // namespace tarnbeck
