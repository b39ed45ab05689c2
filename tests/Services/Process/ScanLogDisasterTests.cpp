#include <filesystem>

#include "ScanLog.h"
#include "Simulation.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::Simulation;
using testing::TemporaryFolder;

constexpr std::string_view stamp = "[2026-03-01T12:00:00Z] ";

std::string line(const std::string& message) {
    return std::string(stamp) + message + "\n";
}

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

}  // namespace
}  // namespace tarnbeck
