#include <filesystem>
#include <fstream>

#include "LogLines.h"
#include "MachineRights.h"
#include "ScanLog.h"
#include "Simulation.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::line;
using testing::runOnSmallDisk;
using testing::Simulation;
using testing::TemporaryFolder;
using testing::WithoutRootRights;

TEST(ScanLog_Disaster, FolderThatCannotBeMadeLosesTheLinesAndNothingElse) {
    Simulation simulation;
    TemporaryFolder folder;
    folder.write(".config", "a file where the folder should be");
    ScanLog log({.home = folder.path()}, simulation.loop, simulation.queues);
    log.write("lost");
    log.drain();
    EXPECT_EQ(contentOf(folder / ".config"), "a file where the folder should be");
}

TEST(ScanLog_Disaster, LinesArriveAgainWhenTheFolderIsBack) {
    Simulation simulation;
    TemporaryFolder folder;
    ScanLog log({.home = "/nonexistent", .logURLOverride = folder / "logs/scan.log"},
                simulation.loop, simulation.queues);
    log.write("lost");
    log.drain();
    folder.makeFolder("logs");
    log.write("written");
    log.drain();
    EXPECT_EQ(contentOf(folder / "logs/scan.log"), line("written"));
}

TEST(ScanLog_Disaster, FolderThatGoesWhileTheLogIsOpenLosesLinesUntilItIsBack) {
    Simulation simulation;
    TemporaryFolder folder;
    folder.makeFolder("logs");
    ScanLog log({.home = "/nonexistent", .logURLOverride = folder / "logs/scan.log"},
                simulation.loop, simulation.queues);
    log.write("gone with its folder");
    log.drain();
    fs::remove_all(folder / "logs");
    log.write("lost");
    log.drain();
    folder.makeFolder("logs");
    log.write("written");
    log.drain();
    EXPECT_EQ(contentOf(folder / "logs/scan.log"), line("written"));
}

TEST(ScanLog_Disaster, FolderThatMayNotBeWrittenLosesLinesUntilItMay) {
    Simulation simulation;
    TemporaryFolder folder;
    const std::string logs = folder.makeFolder("logs");
    fs::permissions(logs, fs::perms::owner_read | fs::perms::owner_exec);
    ScanLog log({.home = "/nonexistent", .logURLOverride = logs + "/scan.log"}, simulation.loop,
                simulation.queues);
    {
        const WithoutRootRights rights;
        log.write("lost");
        log.drain();  // on this thread
    }
    EXPECT_FALSE(fs::exists(logs + "/scan.log"));
    fs::permissions(logs, fs::perms::owner_all);
    log.write("written");
    log.drain();
    EXPECT_EQ(contentOf(logs + "/scan.log"), line("written"));
}

constexpr std::size_t diskSize = 65536;

// Writes until nothing more fits, but for `room` bytes.
void fillDisk(const std::string& path, std::size_t room) {
    std::ofstream(path) << std::string(diskSize - room, 'f');
}

TEST(ScanLog_Disaster, FullDiskKeepsNoHalfLineAndLaterLinesArriveWhenThereIsRoom) {
    const TemporaryFolder folder;
    const std::string& disk = folder.path();
    const auto reason = runOnSmallDisk(disk, diskSize, [&] {
        Simulation simulation;
        ScanLog log({.home = "/nonexistent", .logURLOverride = disk + "/scan.log"}, simulation.loop,
                    simulation.queues);
        const auto write = [&](const std::string& message) {
            log.write(message);
            log.drain();
        };
        write("before");
        fillDisk(disk + "/filler", 4096);
        write(std::string(10000, 'x'));
        EXPECT_EQ(contentOf(disk + "/scan.log"), line("before"));
        fs::remove(disk + "/filler");
        write("after");
        EXPECT_EQ(contentOf(disk + "/scan.log"), line("before") + line("after"));
    });
    if (reason) GTEST_SKIP() << "This machine can't mount a small disk for a test: " << *reason;
}

TEST(ScanLog_Disaster, LineThatStillFitsOnAFullDiskIsWrittenAfterOneThatDidNot) {
    const TemporaryFolder folder;
    const std::string& disk = folder.path();
    const auto reason = runOnSmallDisk(disk, diskSize, [&] {
        Simulation simulation;
        ScanLog log({.home = "/nonexistent", .logURLOverride = disk + "/scan.log"}, simulation.loop,
                    simulation.queues);
        log.write("before");
        log.drain();
        fillDisk(disk + "/filler", 4096);
        log.write(std::string(10000, 'x'));
        log.write("small");
        log.drain();
        EXPECT_EQ(contentOf(disk + "/scan.log"), line("before") + line("small"));
    });
    if (reason) GTEST_SKIP() << "This machine can't mount a small disk for a test: " << *reason;
}

}  // namespace
}  // namespace tarnbeck
