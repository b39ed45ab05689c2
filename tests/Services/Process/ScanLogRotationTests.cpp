#include <filesystem>
#include <fstream>

#include "LogLines.h"
#include "ObservedLog.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::line;
using testing::Simulation;
using testing::TemporaryFolder;

// A log whose file had `size` bytes before it was opened.
struct GrownLog {
    explicit GrownLog(std::int64_t size) {
        folder.write("scan.log", std::string(static_cast<std::size_t>(size), 'o'));
    }

    void write(const std::string& message) {
        log.write(message);
        log.drain();
    }
    std::string current() const { return contentOf(folder / "scan.log"); }
    std::string rotated() const { return contentOf(folder / "scan.log.1"); }
    bool hasRotated() const { return fs::exists(folder / "scan.log.1"); }

    Simulation simulation;
    TemporaryFolder folder;
    ScanLog log{{.home = "/nonexistent", .logURLOverride = folder / "scan.log"},
                simulation.loop,
                simulation.queues};
};

std::int64_t lengthOf(const std::string& message) {
    return std::ssize(line(message));
}

TEST(ScanLog_Rotation, LimitIsEightMebibytes) {
    EXPECT_EQ(ScanLog::largestSize, 8'388'608);
}

TEST(ScanLog_Rotation, LineThatReachesTheLimitExactlyStaysInTheOldFile) {
    GrownLog log(ScanLog::largestSize - lengthOf("fits"));
    log.write("fits");
    EXPECT_FALSE(log.hasRotated());
    EXPECT_EQ(std::ssize(log.current()), ScanLog::largestSize);
}

TEST(ScanLog_Rotation, LineThatWouldPassTheLimitOpensTheFreshFile) {
    GrownLog log(ScanLog::largestSize - lengthOf("first") + 1);
    log.write("first");
    EXPECT_EQ(log.current(), line("first"));
    EXPECT_EQ(std::ssize(log.rotated()), ScanLog::largestSize - lengthOf("first") + 1);
}

TEST(ScanLog_Rotation, EarlierOldFileIsReplaced) {
    GrownLog log(ScanLog::largestSize);
    log.folder.write("scan.log.1", "two generations ago\n");
    log.write("first");
    EXPECT_EQ(log.rotated(), std::string(ScanLog::largestSize, 'o'));
    EXPECT_FALSE(fs::exists(log.folder / "scan.log.2"));
}

TEST(ScanLog_Rotation, BytesAreCountedOnFromWhatWasThereAtOpening) {
    GrownLog log(ScanLog::largestSize - lengthOf("fits") - lengthOf("fits too"));
    log.write("fits");
    log.write("fits too");
    EXPECT_FALSE(log.hasRotated());
    log.write("first");
    EXPECT_EQ(log.current(), line("first"));
}

TEST(ScanLog_Rotation, BytesAreCountedAndNotCharacters) {
    const std::string message = "— dashes —";
    GrownLog log(ScanLog::largestSize - lengthOf(message) + 1);
    log.write(message);
    EXPECT_EQ(log.current(), line(message));
}

TEST(ScanLog_Rotation, CountBeginsAnewWithTheFreshFile) {
    GrownLog log(ScanLog::largestSize);
    log.write("first");
    log.folder.write("scan.log.1", "kept\n");
    log.write("second");
    EXPECT_EQ(log.current(), line("first") + line("second"));
    EXPECT_EQ(log.rotated(), "kept\n");
}

TEST(ScanLog_Rotation, OldFileIsNamedByReplacingTheExtension) {
    Simulation simulation;
    TemporaryFolder folder;
    folder.write("diagnostics.txt", std::string(ScanLog::largestSize, 'o'));
    ScanLog log({.home = "/nonexistent", .logURLOverride = folder / "diagnostics.txt"},
                simulation.loop, simulation.queues);
    log.write("first");
    log.drain();
    EXPECT_EQ(contentOf(folder / "diagnostics.txt"), line("first"));
    EXPECT_EQ(fs::file_size(folder / "diagnostics.log.1"), ScanLog::largestSize);
}

TEST(ScanLog_Rotation, OldFileThatCannotBeReplacedLosesNoLine) {
    GrownLog log(ScanLog::largestSize);
    log.folder.write("scan.log.1/in the way", "");
    log.write("first");
    EXPECT_TRUE(log.current().ends_with("o" + line("first")));
}

TEST(ScanLog_Deletion, NextLineGoesToANewFile) {
    GrownLog log(0);
    log.write("lost with its file");
    fs::remove(log.folder / "scan.log");
    log.write("first");
    EXPECT_EQ(log.current(), line("first"));
}

TEST(ScanLog_Deletion, CountBeginsAnewWithTheNewFile) {
    GrownLog log(ScanLog::largestSize - lengthOf("fits"));
    log.write("fits");
    fs::remove(log.folder / "scan.log");
    log.write("first");
    log.write("second");
    EXPECT_EQ(log.current(), line("first") + line("second"));
    EXPECT_FALSE(log.hasRotated());
}

TEST(ScanLog_Deletion, FileThatAnotherProgramPutInItsPlaceIsContinued) {
    GrownLog log(0);
    log.write("lost with its file");
    log.folder.write("new.log", "theirs\n");
    fs::rename(log.folder / "new.log", log.folder / "scan.log");
    log.write("ours");
    EXPECT_EQ(log.current(), "theirs\n" + line("ours"));
}

TEST(ScanLog_Deletion, CountGoesOnFromTheSizeOfTheFilePutInItsPlace) {
    GrownLog log(0);
    log.write("lost with its file");
    log.folder.write("new.log", std::string(ScanLog::largestSize, 'n'));
    fs::rename(log.folder / "new.log", log.folder / "scan.log");
    log.write("first");
    EXPECT_EQ(log.current(), line("first"));
    EXPECT_EQ(log.rotated(), std::string(ScanLog::largestSize, 'n'));
}

TEST(ScanLog_Deletion, FileThatAnotherProgramRotatedAwayIsNotRotatedAgain) {
    GrownLog log(ScanLog::largestSize - lengthOf("fits"));
    log.write("fits");
    fs::rename(log.folder / "scan.log", log.folder / "scan.log.1");
    log.folder.write("scan.log", "theirs\n");
    log.write("ours");
    EXPECT_EQ(log.current(), "theirs\n" + line("ours"));
    EXPECT_EQ(std::ssize(log.rotated()), ScanLog::largestSize);
}

TEST(ScanLog_Deletion, GrowthByAnotherProgramCountsTowardsTheLimit) {
    GrownLog log(0);
    log.write("ours");
    std::ofstream(log.folder / "scan.log", std::ios::app) << std::string(ScanLog::largestSize, 't');
    log.write("first");
    EXPECT_EQ(log.current(), line("first"));
}

}  // namespace
}  // namespace tarnbeck
