// The whole program, without a display.
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "AppConfiguration.h"
#include "CompanionProgram.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

using testing::CompanionProgram;

// Whether the process has a handler of its own for the signal.
bool catches(pid_t process, int signal) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    const std::string label = "SigCgt:";
    for (std::string line; std::getline(status, line);) {
        if (!line.starts_with(label)) continue;
        const std::uint64_t caught = std::stoull(line.substr(label.size()), nullptr, 16);
        return (caught >> (signal - 1)) & 1;
    }
    return false;
}

class ApplicationProcess : public ::testing::Test {
  protected:
    std::vector<std::string> environment() const {
        return {"HOME=" + home.path(),
                "TMPDIR=" + temporary.path(),
                "XDG_DATA_HOME=",
                "XDG_CONFIG_HOME=",
                "XDG_CACHE_HOME=",
                "XDG_RUNTIME_DIR=" + temporary.path(),
                "QT_QPA_PLATFORM=offscreen",
                "TARNBECK_UI_TEST_MODE=0",
                "DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nowhere"};
    }
    void start(const std::vector<std::string>& arguments) {
        std::vector<std::string> command = {TARNBECK_APPLICATION};
        command.insert(command.end(), arguments.begin(), arguments.end());
        program.emplace(command, environment());
        while (!catches(program->processIdentifier(), SIGTERM)) {
            ASSERT_FALSE(program->hasEnded());
            std::this_thread::yield();
        }
    }
    int end(int signal = SIGTERM) {
        program->signal(signal);
        return program->wait();
    }
    AppConfiguration::AppMode storedMode() const {
        return AppConfiguration::load({.home = home.path(), .report = [](std::string_view) {}})
            .appMode;
    }

    testing::TemporaryFolder home;
    testing::TemporaryFolder temporary;
    std::optional<CompanionProgram> program;
};

TEST_F(ApplicationProcess, EndsCleanlyWhenItIsAskedTo) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        start({});
        EXPECT_EQ(end(signal), 0);
    }
}

TEST_F(ApplicationProcess, KeepsTheModeOfItsSwitch) {
    start({"--app-mode=regular"});
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(storedMode(), AppConfiguration::AppMode::regular);
}

TEST_F(ApplicationProcess, SecondCopyEndsWithoutAWordAndLeavesTheFirst) {
    start({});
    CompanionProgram second({TARNBECK_APPLICATION}, environment());
    EXPECT_EQ(second.readLine(), std::nullopt);
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(end(), 0);
}

TEST_F(ApplicationProcess, OnFixturesLeavesTheHomeAlone) {
    start({"--ui-test-fixtures"});
    EXPECT_EQ(end(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

TEST_F(ApplicationProcess, OnFixturesTakesItsOwnHomeAway) {
    start({"--ui-test-fixtures"});
    EXPECT_EQ(end(), 0);
    for (const auto& entry : std::filesystem::directory_iterator(temporary.path())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with("tarnbeck-fixtures"));
    }
}

TEST_F(ApplicationProcess, OnFixturesFailsWithoutAPlaceForThem) {
    auto variables = environment();
    variables.insert(variables.begin(), "TMPDIR=/nowhere");
    CompanionProgram alone({TARNBECK_APPLICATION, "--ui-test-fixtures"}, variables);
    EXPECT_EQ(alone.wait(), 1);
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

// What it says of each repository that it leaves out is more than a pipe holds, and nobody reads.
TEST_F(ApplicationProcess, SignalEndsASearchForRepositoriesAtTheFirstStart) {
    const std::string notUtf8(100, '\xff');
    for (int number = 0; number < 400; ++number) {
        home.makeFolder("projects/" + notUtf8 + std::to_string(number) + "/.git");
    }
    program.emplace(std::vector<std::string>{TARNBECK_APPLICATION}, environment());
    ASSERT_TRUE(program->readLine());
    EXPECT_EQ(end(SIGTERM), -SIGTERM);
}

TEST_F(ApplicationProcess, WithoutADisplayFails) {
    CompanionProgram alone(
        {"/usr/bin/env", "-i", "HOME=" + home.path(), TARNBECK_APPLICATION, "--app-mode=regular"});
    EXPECT_EQ(alone.wait(), 1);
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

TEST_F(ApplicationProcess, LocksInTheUsersPlace) {
    start({});
    EXPECT_TRUE(
        std::filesystem::exists(home / ".local/share/com.local.Tarnbeck/com.local.Tarnbeck.lock"));
    EXPECT_EQ(end(), 0);
}

}  // namespace
}  // namespace tarnbeck
