#include <atomic>
#include <thread>

#include <unistd.h>

#include "OwnDescriptors.h"
#include "Pipe.h"
#include "ProcessPipeReader.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::openDescriptors;

void writeTo(const FileDescriptor& pipe, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(pipe.get(), bytes.data(), bytes.size());
        ASSERT_GT(written, 0);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

struct TwoPipes {
    Pipe output = makePipe();
    Pipe errors = makePipe();
    ProcessPipeReadHandle reader = ProcessPipeReader::readStdoutAndStderr(
        std::move(output.readEnd), std::move(errors.readEnd));

    void closeWriteEnds() {
        output.writeEnd.close();
        errors.writeEnd.close();
    }
};

TEST(ProcessPipeReader_Draining, EachStreamGoesIntoItsOwnBuffer) {
    TwoPipes pipes;
    writeTo(pipes.output.writeEnd, "to output");
    writeTo(pipes.errors.writeEnd, "to errors");
    pipes.closeWriteEnds();
    EXPECT_TRUE(pipes.reader.waitForEnd(steady_clock::now() + 10s));
    EXPECT_EQ(pipes.reader.takeStandardOutput(), "to output");
    EXPECT_EQ(pipes.reader.takeStandardError(), "to errors");
}

TEST(ProcessPipeReader_Draining, BytesAreKeptAsTheyCome) {
    TwoPipes pipes;
    const std::string bytes("\0\xFF\r\n\0", 5);
    writeTo(pipes.output.writeEnd, bytes);
    pipes.closeWriteEnds();
    pipes.reader.waitForEnd(steady_clock::now() + 10s);
    EXPECT_EQ(pipes.reader.takeStandardOutput(), bytes);
}

TEST(ProcessPipeReader_Draining, StreamsThatFillUpInTurnNeverBlockTheWriter) {
    TwoPipes pipes;
    const std::string chunk(1 << 20, 'x');
    std::thread writer([&] {
        for (int round = 0; round < 8; ++round) {
            writeTo(pipes.errors.writeEnd, chunk);
            writeTo(pipes.output.writeEnd, chunk);
        }
        pipes.closeWriteEnds();
    });
    EXPECT_TRUE(pipes.reader.waitForEnd(steady_clock::now() + 60s));
    writer.join();
    EXPECT_EQ(pipes.reader.takeStandardOutput().size(), chunk.size() * 8);
    EXPECT_EQ(pipes.reader.takeStandardError().size(), chunk.size() * 8);
}

TEST(ProcessPipeReader_Draining, PipeThatIsStillOpenCountsAsEmptyAndNotAsHalfFull) {
    TwoPipes pipes;
    writeTo(pipes.output.writeEnd, "half of it");
    writeTo(pipes.errors.writeEnd, "all of it");
    pipes.errors.writeEnd.close();
    EXPECT_FALSE(pipes.reader.waitForEnd(steady_clock::now() + 20ms));
    EXPECT_EQ(pipes.reader.takeStandardOutput(), "");
    EXPECT_EQ(pipes.reader.takeStandardError(), "all of it");
}

TEST(ProcessPipeReader_Draining, WhatCameBeforeAFirstWaitRanOutIsNotLost) {
    TwoPipes pipes;
    writeTo(pipes.output.writeEnd, "first, ");
    EXPECT_FALSE(pipes.reader.waitForEnd(steady_clock::now() + 20ms));
    writeTo(pipes.output.writeEnd, "second");
    pipes.closeWriteEnds();
    EXPECT_TRUE(pipes.reader.waitForEnd(steady_clock::now() + 10s));
    EXPECT_EQ(pipes.reader.takeStandardOutput(), "first, second");
}

TEST(ProcessPipeReader_Draining, WriterThatNeverStopsDoesNotOutrunTheDeadline) {
    TwoPipes pipes;
    std::atomic<bool> stop{false};
    std::thread writer([&] {
        while (!stop) writeTo(pipes.output.writeEnd, "more and more ");
    });
    const auto start = steady_clock::now();
    EXPECT_FALSE(pipes.reader.waitForEnd(start + 100ms));
    EXPECT_LT(steady_clock::now() - start, 5s);
    stop = true;
    while (!pipes.reader.waitForEnd(steady_clock::now() + 10ms)) {
        if (writer.joinable()) writer.join();
        pipes.closeWriteEnds();
    }
}

TEST(ProcessPipeReader_Draining, StreamPastTheLargestOutputCountsAsEmpty) {
    TwoPipes pipes;
    std::thread writer([&] {
        const std::string chunk(1 << 20, 'x');
        for (std::size_t size = 0; size <= PipeBuffer::largestOutput; size += chunk.size()) {
            writeTo(pipes.output.writeEnd, chunk);
        }
        pipes.closeWriteEnds();
    });
    EXPECT_TRUE(pipes.reader.waitForEnd(steady_clock::now() + 120s));
    writer.join();
    EXPECT_EQ(pipes.reader.takeStandardOutput().size(), 0U);
}

TEST(ProcessPipeReader_Draining, NoDescriptorIsLeftWhetherOrNotTheEndWasReached) {
    const auto before = openDescriptors();
    {
        TwoPipes pipes;
        pipes.errors.writeEnd.close();
        pipes.reader.waitForEnd(steady_clock::now() + 10ms);
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ProcessPipeReader_Observer, IsToldOfEachPieceBeforeThePipesAreAtTheirEnd) {
    TwoPipes pipes;
    std::vector<std::string> pieces;
    pipes.reader.observe([&](std::string_view bytes) { pieces.emplace_back(bytes); });
    writeTo(pipes.output.writeEnd, "first");
    EXPECT_FALSE(pipes.reader.waitForEnd(steady_clock::now() + 20ms));
    writeTo(pipes.errors.writeEnd, "second");
    EXPECT_FALSE(pipes.reader.waitForEnd(steady_clock::now() + 20ms));
    EXPECT_THAT(pieces, ::testing::ElementsAre("first", "second"));
}

TEST(ProcessPipeReader_Observer, GetsACharacterInTheTwoHalvesThatCame) {
    TwoPipes pipes;
    std::vector<std::string> pieces;
    pipes.reader.observe([&](std::string_view bytes) { pieces.emplace_back(bytes); });
    for (const char* half : {"\xC3", "\xA9"}) {
        writeTo(pipes.output.writeEnd, half);
        pipes.reader.waitForEnd(steady_clock::now() + 20ms);
    }
    pipes.closeWriteEnds();
    pipes.reader.waitForEnd(steady_clock::now() + 10s);
    EXPECT_THAT(pieces, ::testing::ElementsAre("\xC3", "\xA9"));
    EXPECT_EQ(pipes.reader.takeStandardOutput(), "\xC3\xA9");
}

TEST(ProcessPipeReader_Observer, GetsWhatAPipePastTheLargestOutputForgets) {
    TwoPipes pipes;
    std::size_t seen = 0;
    pipes.reader.observe([&](std::string_view bytes) { seen += bytes.size(); });
    const std::string chunk(1 << 20, 'x');
    std::size_t written = 0;
    std::thread writer([&] {
        for (; written <= PipeBuffer::largestOutput; written += chunk.size()) {
            writeTo(pipes.output.writeEnd, chunk);
        }
        pipes.closeWriteEnds();
    });
    EXPECT_TRUE(pipes.reader.waitForEnd(steady_clock::now() + 120s));
    writer.join();
    EXPECT_EQ(seen, written);
}

// Ends when it has been asked often enough, and offers no event.
class ChildWithoutEvent : public ChildProcess {
  public:
    explicit ChildWithoutEvent(int questions) : questions_(questions) {}
    pid_t processIdentifier() const override { return 0; }
    FileDescriptor takeStandardOutput() override { return {}; }
    FileDescriptor takeStandardError() override { return {}; }
    int exitDescriptor() override { return -1; }
    bool isRunning() override { return questions_-- > 0; }
    int terminationStatus() const override { return 0; }
    void terminate() override {}
    void kill() override {}

  private:
    int questions_;
};

TEST(ProcessPipeReader_Exit, IsSeenBeforeTheDeadlineThoughTheSystemHasNoEventForIt) {
    TwoPipes pipes;
    ChildWithoutEvent child(3);
    const auto deadline = steady_clock::now() + 60s;
    EXPECT_TRUE(pipes.reader.waitForExit(child, deadline));
    EXPECT_LT(steady_clock::now(), deadline - 30s);
}

}  // namespace
}  // namespace tarnbeck
