#include <atomic>
#include <map>
#include <set>
#include <sstream>
#include <thread>

#include "PosixMainLoop.h"
#include "ScanLog.h"
#include "Simulation.h"
#include "TemporaryFolder.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck {
namespace {

using testing::contentOf;
using testing::Simulation;
using testing::TemporaryFolder;

constexpr int writers = 8;
constexpr int linesEach = 500;

// The messages of a log, without their stamps; fails for a line that is not whole.
std::vector<std::string> messagesOf(const std::string& content) {
    constexpr std::size_t stampLength = std::string_view("[2026-03-01T12:00:00Z] ").size();
    std::vector<std::string> messages;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        const bool isWhole = line.starts_with('[') && line.find("] writer ") == stampLength - 2;
        EXPECT_TRUE(isWhole) << line;
        if (isWhole) messages.push_back(line.substr(stampLength));
    }
    return messages;
}

void writeFromManyThreads(const std::vector<ScanLog*>& logs) {
    std::vector<std::thread> threads;
    for (int writer = 0; writer < writers; ++writer) {
        ScanLog& log = *logs[static_cast<std::size_t>(writer) % logs.size()];
        threads.emplace_back([&log, writer] {
            for (int number = 0; number < linesEach; ++number) {
                log.write("writer " + std::to_string(writer) + " line " + std::to_string(number));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (ScanLog* log : logs) log->drain();
}

// All lines of all writers are there, those of each writer in their order.
void expectAllLinesIn(const std::vector<std::string>& messages) {
    std::map<std::string, int> next;
    for (const std::string& message : messages) {
        const std::string writer = message.substr(0, message.find(" line "));
        EXPECT_EQ(message, writer + " line " + std::to_string(next[writer]++));
    }
    EXPECT_EQ(next.size(), std::size_t{writers});
    for (const auto& [writer, count] : next) EXPECT_EQ(count, linesEach) << writer;
}

TEST(ScanLog_Sharing, ManyThreadsLoseNoLineAndNoOrderOfTheirOwn) {
    PosixMainLoop clock;
    ThreadedWorkQueues queues;
    TemporaryFolder folder;
    ScanLog log({.home = folder.path()}, clock, queues);
    writeFromManyThreads({&log});
    expectAllLinesIn(messagesOf(contentOf(log.location())));
}

TEST(ScanLog_Sharing, ObserversHearEachLineOfManyThreadsOnce) {
    PosixMainLoop clock;
    ThreadedWorkQueues queues;
    TemporaryFolder folder;
    ScanLog log({.home = folder.path()}, clock, queues);
    std::atomic<int> heard{0};
    const auto token = log.observe([&](std::string_view) { ++heard; });
    writeFromManyThreads({&log});
    EXPECT_EQ(heard, writers * linesEach);
}

TEST(ScanLog_Sharing, TwoProgramsOnOneFileKeepEachOthersLinesWhole) {
    PosixMainLoop clock;
    ThreadedWorkQueues queues;
    TemporaryFolder folder;
    ScanLog first({.home = folder.path()}, clock, queues);
    ScanLog second({.home = folder.path()}, clock, queues);
    writeFromManyThreads({&first, &second});
    expectAllLinesIn(messagesOf(contentOf(first.location())));
}

TEST(ScanLog_Sharing, ProgramWhoseFileWasRotatedByAnotherFollowsToTheFreshOne) {
    Simulation simulation;
    TemporaryFolder folder;
    folder.write("scan.log", std::string(ScanLog::largestSize - 100, 'o'));
    const ScanLog::Options options{.home = "/nonexistent", .logURLOverride = folder / "scan.log"};
    ScanLog first(options, simulation.loop, simulation.queues);
    ScanLog second(options, simulation.loop, simulation.queues);
    const auto write = [](ScanLog& log, const std::string& message) {
        log.write(message);
        log.drain();
    };
    write(first, "writer 1 line 0");
    write(second, "writer 2 line 0");
    write(first, "writer 1 line 1");
    write(second, "writer 2 line 1");
    write(first, "writer 1 line 2");
    EXPECT_EQ(std::ssize(contentOf(folder / "scan.log.1")), ScanLog::largestSize - 100 + 2 * 39);
    EXPECT_THAT(messagesOf(contentOf(folder / "scan.log")),
                ::testing::ElementsAre("writer 1 line 1", "writer 2 line 1", "writer 1 line 2"));
}

}  // namespace
}  // namespace tarnbeck
