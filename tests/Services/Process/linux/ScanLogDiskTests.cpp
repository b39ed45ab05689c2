// A log without rights and one on a full disk, as only Linux lets a test arrange them.
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include <sched.h>
#include <sys/fsuid.h>
#include <sys/mount.h>

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

// On a thread of its own, where even root's writes are those of somebody without rights.
void withoutRights(const std::function<void()>& action) {
    std::thread([&] {
        constexpr uid_t nobody = 65534;
        setfsuid(nobody);
        action();
    }).join();
}

TEST(ScanLog_Disaster, FolderThatMayNotBeWrittenLosesLinesUntilItMay) {
    Simulation simulation;
    TemporaryFolder folder;
    const std::string logs = folder.makeFolder("logs");
    fs::permissions(logs, fs::perms::owner_read | fs::perms::owner_exec);
    ScanLog log({.home = "/nonexistent", .logURLOverride = logs + "/scan.log"}, simulation.loop,
                simulation.queues);
    withoutRights([&] {
        log.write("lost");
        log.drain();
    });
    EXPECT_FALSE(fs::exists(logs + "/scan.log"));
    fs::permissions(logs, fs::perms::owner_all);
    log.write("written");
    log.drain();
    EXPECT_EQ(contentOf(logs + "/scan.log"), line("written"));
}

// A disk of 64 KiB that this thread alone sees, and that goes with the thread.
bool mountSmallDisk(const std::string& folder) {
    return unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", folder.c_str(), "tmpfs", 0, "size=64k") == 0;
}

// Runs `test` with a folder on a disk of 64 KiB; false when the machine lets us have none.
bool onSmallDisk(const std::function<void(const std::string& disk)>& test) {
    TemporaryFolder folder;
    bool mounted = false;
    std::thread([&] {
        mounted = mountSmallDisk(folder.path());
        if (!mounted) return;
        test(folder.path());
        umount2(folder.path().c_str(), MNT_DETACH);
    }).join();
    return mounted;
}

// Writes until nothing more fits, but for `room` bytes.
void fillDisk(const std::string& path, std::size_t room) {
    std::ofstream(path) << std::string(65536 - room, 'f');
}

TEST(ScanLog_Disaster, FullDiskKeepsNoHalfLineAndLaterLinesArriveWhenThereIsRoom) {
    const bool ran = onSmallDisk([](const std::string& disk) {
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
    if (!ran) GTEST_SKIP() << "no right to mount a small disk here";
}

TEST(ScanLog_Disaster, LineThatStillFitsOnAFullDiskIsWrittenAfterOneThatDidNot) {
    const bool ran = onSmallDisk([](const std::string& disk) {
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
    if (!ran) GTEST_SKIP() << "no right to mount a small disk here";
}

}  // namespace
}  // namespace tarnbeck
