#include <filesystem>

#include <sys/stat.h>

#include "ObservedLog.h"
#include "ScanLog.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::contentOf;
using ::testing::ElementsAre;
using testing::ObservedLog;
using testing::Simulation;
using testing::TemporaryFolder;

TEST(ScanLog_Line, IsTheStampInBracketsABlankAndTheMessage) {
    Simulation simulation;
    ObservedLog observed(simulation);
    observed.log.write("FAIL(1) git status at /repo — why");
    observed.log.drain();
    EXPECT_EQ(contentOf(observed.log.location()),
              "[2026-03-01T12:00:00Z] FAIL(1) git status at /repo — why\n");
}

TEST(ScanLog_Line, CarriesTheTimeOfTheCallAndNotOfTheDisk) {
    Simulation simulation;
    ObservedLog observed(simulation);
    observed.log.write("early");
    simulation.loop.advance(90s, [] {});
    observed.log.write("late");
    simulation.loop.advance(1h, [] {});
    observed.log.drain();
    EXPECT_EQ(contentOf(observed.log.location()),
              "[2026-03-01T12:00:00Z] early\n[2026-03-01T12:01:30Z] late\n");
}

TEST(ScanLog_Line, CutsFractionsOfASecondInsteadOfRounding) {
    Simulation simulation;
    ObservedLog observed(simulation);
    simulation.loop.advance(1999ms, [] {});
    observed.log.write("cut");
    observed.log.drain();
    EXPECT_EQ(contentOf(observed.log.location()), "[2026-03-01T12:00:01Z] cut\n");
}

TEST(ScanLog_Line, BytesThatAreNotUtf8AreReplaced) {
    Simulation simulation;
    ObservedLog observed(simulation);
    observed.log.write("at /\xFF/repo");
    observed.log.drain();
    EXPECT_EQ(contentOf(observed.log.location()), "[2026-03-01T12:00:00Z] at /\xEF\xBF\xBD/repo\n");
}

TEST(ScanLog_Line, EmptyMessageIsALineToo) {
    Simulation simulation;
    ObservedLog observed(simulation);
    observed.log.write("");
    observed.log.drain();
    EXPECT_EQ(contentOf(observed.log.location()), "[2026-03-01T12:00:00Z] \n");
}

TEST(ScanLog_Write, LeavesTheDiskToTheQueue) {
    Simulation simulation;
    ObservedLog observed(simulation);
    observed.log.write("later");
    EXPECT_FALSE(std::filesystem::exists(observed.folder / ".config"));
    simulation.runUntilIdle();
    EXPECT_EQ(contentOf(observed.log.location()), "[2026-03-01T12:00:00Z] later\n");
}

TEST(ScanLog_Write, LinesKeepTheOrderOfTheirCalls) {
    Simulation simulation;
    ObservedLog observed(simulation);
    std::string expected;
    for (int number = 0; number < 100; ++number) {
        observed.log.write(std::to_string(number));
        expected += "[2026-03-01T12:00:00Z] " + std::to_string(number) + "\n";
    }
    simulation.runUntilIdle();
    EXPECT_EQ(contentOf(observed.log.location()), expected);
}

TEST(ScanLog_Write, EndOfTheLogWaitsForItsLines) {
    Simulation simulation;
    TemporaryFolder folder;
    {
        ScanLog log({.home = folder.path()}, simulation.loop, simulation.queues);
        log.write("last words");
    }
    EXPECT_EQ(contentOf(folder / ".config/tarnbeck/scan.log"),
              "[2026-03-01T12:00:00Z] last words\n");
}

TEST(ScanLog_Write, LogOfAnEarlierRunIsContinued) {
    Simulation simulation;
    TemporaryFolder folder;
    folder.write(".config/tarnbeck/scan.log", "[2026-02-28T09:00:00Z] before\n");
    ScanLog log({.home = folder.path()}, simulation.loop, simulation.queues);
    log.write("after");
    log.drain();
    EXPECT_EQ(contentOf(log.location()),
              "[2026-02-28T09:00:00Z] before\n[2026-03-01T12:00:00Z] after\n");
}

TEST(ScanLog_Location, IsBelowTheHomeInAFolderThatIsMadeWithItsParents) {
    Simulation simulation;
    ObservedLog observed(simulation);
    EXPECT_EQ(observed.log.location(), observed.folder / ".config/tarnbeck/scan.log");
    EXPECT_TRUE(std::filesystem::is_directory(observed.folder / ".config/tarnbeck"));
}

TEST(ScanLog_Location, FolderAndFileAreForTheUserAlone) {
    Simulation simulation;
    ObservedLog observed(simulation);
    observed.log.write("private");
    observed.log.drain();
    struct stat folder {};
    struct stat file {};
    ASSERT_EQ(stat((observed.folder / ".config/tarnbeck").c_str(), &folder), 0);
    ASSERT_EQ(stat(observed.log.location().c_str(), &file), 0);
    EXPECT_EQ(folder.st_mode & 0777, 0700U);
    EXPECT_EQ(file.st_mode & 0777, 0600U);
}

TEST(ScanLog_Location, OverrideTakesPrecedenceAndTheHomeIsLeftAlone) {
    Simulation simulation;
    TemporaryFolder folder;
    ScanLog log({.home = folder / "home", .logURLOverride = folder / "other.log"}, simulation.loop,
                simulation.queues);
    log.write("elsewhere");
    log.drain();
    EXPECT_EQ(log.location(), folder / "other.log");
    EXPECT_EQ(contentOf(folder / "other.log"), "[2026-03-01T12:00:00Z] elsewhere\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "home"));
}

TEST(ScanLog_Observers, AreToldEachMessageAtOnceWithoutItsStamp) {
    Simulation simulation;
    ObservedLog observed(simulation);
    observed.log.write("one");
    observed.log.write("two");
    EXPECT_THAT(observed.lines, ElementsAre("one", "two"));
}

TEST(ScanLog_Observers, AreToldNothingAfterTheirTokenWent) {
    Simulation simulation;
    ObservedLog observed(simulation);
    observed.log.write("heard");
    observed.token.reset();
    observed.log.write("unheard");
    EXPECT_THAT(observed.lines, ElementsAre("heard"));
}

TEST(ScanLog_Observers, MayWriteThemselves) {
    Simulation simulation;
    ObservedLog observed(simulation);
    const auto echo = observed.log.observe([&](std::string_view message) {
        if (message == "call") observed.log.write("echo");
    });
    observed.log.write("call");
    EXPECT_THAT(observed.lines, ElementsAre("call", "echo"));
}

}  // namespace
}  // namespace tarnbeck
