// Real copies of a program that may run only once.
#include <csignal>

#include "CompanionProgram.h"
#include "TemporaryFolder.h"

namespace single_instance::testing {
namespace {

using tarnbeck::testing::CompanionProgram;
using tarnbeck::testing::contentOf;

class RunningCopies_Start : public ::testing::Test {
  protected:
    std::vector<std::string> command(std::vector<std::string> arguments = {}) const {
        std::vector<std::string> result{RUNNING_COPY, folder_.path()};
        result.insert(result.end(), arguments.begin(), arguments.end());
        return result;
    }
    // A copy that is to end at once: what it says.
    std::optional<std::string> launchAgain(std::vector<std::string> arguments = {}) const {
        CompanionProgram copy(command(std::move(arguments)));
        auto said = copy.readLine();
        EXPECT_EQ(copy.readLine(), std::nullopt);
        EXPECT_EQ(copy.wait(), 0);
        return said;
    }

    tarnbeck::testing::TemporaryFolder folder_;
};

TEST_F(RunningCopies_Start, SecondCopyWakesTheFirstAndEnds) {
    CompanionProgram first(command());
    ASSERT_EQ(first.readLine(), "running");
    EXPECT_EQ(launchAgain(), "already running");
    EXPECT_EQ(first.readLine(), "activated");
}

TEST_F(RunningCopies_Start, FirstCopyHearsOfEachOneThatFollows) {
    CompanionProgram first(command());
    ASSERT_EQ(first.readLine(), "running");
    for (const std::string argument : {"one", "two", "three"}) {
        EXPECT_EQ(launchAgain({argument}), "already running");
        EXPECT_EQ(first.readLine(), "activated " + argument);
    }
}

TEST_F(RunningCopies_Start, LockNamesTheProcess) {
    CompanionProgram first(command());
    ASSERT_EQ(first.readLine(), "running");
    EXPECT_EQ(contentOf(folder_ / "org.example.RunningCopy/org.example.RunningCopy.lock"),
              std::to_string(first.processIdentifier()) + "\n");
}

TEST_F(RunningCopies_Start, CopyThatEndedMakesRoomForTheNext) {
    CompanionProgram first(command());
    ASSERT_EQ(first.readLine(), "running");
    first.closeInput();
    EXPECT_EQ(first.wait(), 0);
    CompanionProgram second(command());
    EXPECT_EQ(second.readLine(), "running");
}

TEST_F(RunningCopies_Start, KilledCopyLeavesNeitherLockNorSignalBehind) {
    CompanionProgram first(command());
    ASSERT_EQ(first.readLine(), "running");
    first.signal(SIGKILL);
    EXPECT_EQ(first.wait(), -SIGKILL);
    CompanionProgram second(command());
    ASSERT_EQ(second.readLine(), "running");
    EXPECT_EQ(launchAgain({"after"}), "already running");
    EXPECT_EQ(second.readLine(), "activated after");
}

TEST_F(RunningCopies_Start, RequestsThatNobodyTookReachTheNextCopyWithItsFirstSignal) {
    folder_.write("org.example.RunningCopy/DuplicateLaunchRequests/A.json",
                  R"({"arguments":["old"],"fileURLs":[],"createdAt":"2026-03-01T12:00:00Z"})");
    CompanionProgram first(command());
    ASSERT_EQ(first.readLine(), "running");
    launchAgain({"new"});
    EXPECT_EQ(first.readLine(), "activated old new");
}

TEST_F(RunningCopies_Start, OfManyAtOnceExactlyOneRuns) {
    constexpr int count = 8;
    std::vector<std::unique_ptr<CompanionProgram>> copies;
    for (int index = 0; index < count; ++index) {
        copies.push_back(std::make_unique<CompanionProgram>(command()));
    }
    int running = 0;
    for (const auto& copy : copies) running += copy->readLine() == "running" ? 1 : 0;
    EXPECT_EQ(running, 1);
}

TEST_F(RunningCopies_Start, CopyThatCantMakeTheFolderSaysWhyAndDoesNotRun) {
    CompanionProgram copy({RUNNING_COPY, folder_.write("file", "") + "/below"});
    EXPECT_EQ(copy.readLine(), "failed the folder of the lock can't be made: Not a directory");
    EXPECT_EQ(copy.wait(), 1);
}

}  // namespace
}  // namespace single_instance::testing
