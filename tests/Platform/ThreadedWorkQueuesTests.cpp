#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <latch>
#include <memory>
#include <set>
#include <thread>

#include "ThreadedWorkQueues.h"

namespace tarnbeck {
namespace {

TEST(ThreadedWorkQueues_Pools, TasksRunOnAThreadOfTheirOwn) {
    ThreadedWorkQueues queues;
    std::promise<std::thread::id> user;
    std::promise<std::thread::id> utility;
    queues.userInitiated([&] { user.set_value(std::this_thread::get_id()); });
    queues.utility([&] { utility.set_value(std::this_thread::get_id()); });
    EXPECT_NE(user.get_future().get(), std::this_thread::get_id());
    EXPECT_NE(utility.get_future().get(), std::this_thread::get_id());
}

// Each task waits until all others run too: a pool of fixed size would lock itself.
void runTogether(const std::function<void(Task)>& queue) {
    constexpr int tasks = 40;
    std::latch allRun(tasks);
    std::latch allDone(tasks);
    for (int number = 0; number < tasks; ++number) {
        queue([&] {
            allRun.arrive_and_wait();
            allDone.count_down();
        });
    }
    allDone.wait();
}

TEST(ThreadedWorkQueues_Pools, UserInitiatedGrowsWhenTasksBlock) {
    ThreadedWorkQueues queues;
    runTogether([&](Task task) { queues.userInitiated(std::move(task)); });
    queues.waitUntilIdle();
}

TEST(ThreadedWorkQueues_Pools, UtilityGrowsWhenTasksBlock) {
    ThreadedWorkQueues queues;
    runTogether([&](Task task) { queues.utility(std::move(task)); });
    queues.waitUntilIdle();
}

TEST(ThreadedWorkQueues_Pools, ManySerialQueuesRunTogether) {
    ThreadedWorkQueues queues;
    runTogether([&](Task task) { queues.serial("one of many")->post(std::move(task)); });
    queues.waitUntilIdle();
}

TEST(ThreadedWorkQueues_Pools, ThreadThatIsIdleIsTakenBeforeANewOneIsMade) {
    ThreadedWorkQueues queues;
    std::set<std::thread::id> threads;
    for (int number = 0; number < 50; ++number) {
        queues.userInitiated([&] { threads.insert(std::this_thread::get_id()); });
        queues.waitUntilIdle();
    }
    EXPECT_LE(threads.size(), 3U);  // the one before may not yet have gone back to wait
}

TEST(ThreadedWorkQueues_Pools, WhatATaskHoldsIsFreedBeforeTheQueueCountsAsIdle) {
    ThreadedWorkQueues queues;
    auto held = std::make_shared<int>(1);
    queues.utility([held] {});
    queues.waitUntilIdle();
    EXPECT_EQ(held.use_count(), 1);
}

TEST(ThreadedWorkQueues_WaitUntilIdle, ReturnsAfterTasksThatTasksPosted) {
    ThreadedWorkQueues queues;
    std::atomic<int> ran{0};
    queues.userInitiated([&] {
        ++ran;
        queues.userInitiated([&] {
            ++ran;
            queues.userInitiated([&] { ++ran; });
        });
    });
    queues.waitUntilIdle();
    EXPECT_EQ(ran, 3);
}

TEST(ThreadedWorkQueues_WaitUntilIdle, ReturnsAfterWorkThatWentBackAndForthBetweenTheClasses) {
    for (int round = 0; round < 200; ++round) {
        ThreadedWorkQueues queues;
        std::atomic<int> ran{0};
        queues.utility([&] {
            queues.userInitiated(
                [&] { queues.utility([&] { queues.userInitiated([&] { ++ran; }); }); });
        });
        queues.waitUntilIdle();
        EXPECT_EQ(ran, 1);
    }
}

TEST(ThreadedWorkQueues_WaitUntilIdle, GivesUpOnATaskThatGoesOn) {
    ThreadedWorkQueues queues;
    std::promise<void> end;
    queues.utility([&] { end.get_future().wait(); });
    EXPECT_FALSE(queues.waitUntilIdle(std::chrono::milliseconds(1)));
    end.set_value();
    EXPECT_TRUE(queues.waitUntilIdle(std::chrono::hours(1)));
}

TEST(ThreadedWorkQueues_End, RunsWhatIsQueuedToItsEnd) {
    std::atomic<int> ran{0};
    {
        ThreadedWorkQueues queues;
        for (int number = 0; number < 100; ++number) {
            queues.userInitiated([&] { ++ran; });
            queues.utility([&] { ++ran; });
            queues.serial("short")->post([&] { ++ran; });
        }
    }
    EXPECT_EQ(ran, 300);
}

TEST(ThreadedWorkQueues_End, RunsWhatItsLastTasksPostToTheOtherClass) {
    std::atomic<int> ran{0};
    {
        ThreadedWorkQueues queues;
        queues.utility(
            [&] { queues.userInitiated([&] { queues.serial("late")->post([&] { ++ran; }); }); });
    }
    EXPECT_EQ(ran, 1);
}

TEST(ThreadedWorkQueues_Serial, TasksRunInTheOrderInWhichTheyCame) {
    ThreadedWorkQueues queues;
    const auto queue = queues.serial("ordered");
    std::vector<int> order;
    std::vector<int> expected;
    for (int number = 0; number < 10000; ++number) {
        queue->post([&order, number] { order.push_back(number); });
        expected.push_back(number);
    }
    queue->drain();
    EXPECT_EQ(order, expected);
}

TEST(ThreadedWorkQueues_Serial, TasksNeverRunAtTheSameTime) {
    ThreadedWorkQueues queues;
    const auto queue = queues.serial("one at a time");
    std::atomic<int> running{0};
    std::atomic<int> mostAtOnce{0};
    std::vector<std::thread> posters;
    for (int poster = 0; poster < 4; ++poster) {
        posters.emplace_back([&] {
            for (int number = 0; number < 1000; ++number) {
                queue->post([&] {
                    mostAtOnce = std::max(mostAtOnce.load(), ++running);
                    --running;
                });
            }
        });
    }
    for (std::thread& poster : posters) poster.join();
    queue->drain();
    EXPECT_EQ(mostAtOnce, 1);
}

TEST(ThreadedWorkQueues_Serial, OneThatBlocksDoesNotHoldUpAnother) {
    ThreadedWorkQueues queues;
    const auto blocked = queues.serial("blocked");
    const auto other = queues.serial("other");
    std::latch otherRan(1);
    blocked->post([&] { otherRan.wait(); });
    other->post([&] { otherRan.count_down(); });
    blocked->drain();
}

TEST(ThreadedWorkQueues_Drain, ReturnsAtOnceWhereNothingWasPosted) {
    ThreadedWorkQueues queues;
    queues.serial("unused")->drain();
}

TEST(ThreadedWorkQueues_Drain, ReturnsWhenAllThatWasPostedHasRunAndWasFreed) {
    ThreadedWorkQueues queues;
    const auto queue = queues.serial("drained");
    auto held = std::make_shared<int>(1);
    for (int number = 0; number < 100; ++number) queue->post([held] {});
    queue->drain();
    EXPECT_EQ(held.use_count(), 1);
}

TEST(ThreadedWorkQueues_Drain, DoesNotWaitForWhatIsPostedMeanwhile) {
    ThreadedWorkQueues queues;
    const auto queue = queues.serial("never empty");
    std::atomic<bool> stop{false};
    std::function<void()> postAgain = [&] {
        if (!stop) queue->post(postAgain);
    };
    queue->post(postAgain);
    queue->drain();
    stop = true;
    queues.waitUntilIdle();
}

TEST(ThreadedWorkQueues_Serial, TasksRunThoughNobodyHoldsTheQueueAnyMore) {
    ThreadedWorkQueues queues;
    std::atomic<bool> ran{false};
    queues.serial("let go")->post([&] { ran = true; });
    queues.waitUntilIdle();
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace tarnbeck
