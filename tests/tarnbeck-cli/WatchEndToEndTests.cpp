#include <chrono>
#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <thread>

#include "GitFixture.h"
#include "Json.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Does something again every 7 seconds as long as this lives: what happens before the watcher
// stands is not seen.
class PersistentUser {
  public:
    explicit PersistentUser(std::function<void(int time)> action)
        : thread_([this, action = std::move(action)] {
              std::unique_lock lock(mutex_);
              for (int time = 0; !over_; ++time) {
                  action(time);
                  ended_.wait_for(lock, std::chrono::seconds(7), [this] { return over_; });
              }
          }) {}
    ~PersistentUser() {
        {
            const std::lock_guard lock(mutex_);
            over_ = true;
        }
        ended_.notify_all();
        thread_.join();
    }
    PersistentUser(const PersistentUser&) = delete;
    PersistentUser& operator=(const PersistentUser&) = delete;

  private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool over_ = false;  // guarded by `mutex_`
    std::thread thread_;
};

class WatchEndToEnd : public ::testing::Test {
  protected:
    ProgramCall watch(std::vector<std::string> flags = {}) const {
        ProgramCall call{.arguments = {"watch"}, .home = folder.path()};
        call.arguments.insert(call.arguments.end(), flags.begin(), flags.end());
        return call;
    }

    TemporaryFolder folder;
};

TEST_F(WatchEndToEnd, JsonTellsTheFirstScanOneObjectALine) {
    makeRepository(folder / "projects/beta");
    makeRepository(folder / "projects/alpha");
    folder.write("projects/beta/file.txt", "other\n");
    RunningProgram program(watch({"--json"}));
    std::vector<JsonValue> events;
    for (int count = 0; count < 4; ++count) {
        const std::string line = program.readLine();
        const auto json = parsedJson(line);
        ASSERT_TRUE(json) << line;
        EXPECT_EQ(json->at("at").as_string().size(), 20U) << line;
        events.push_back(*json);
    }
    EXPECT_EQ(events.at(0).at("event").as_string(), "scanStarted");
    EXPECT_EQ(events.at(1).at("event").as_string(), "repository");
    EXPECT_EQ(events.at(1).at("repository").at("name").as_string(), "alpha");
    EXPECT_EQ(events.at(2).at("repository").at("name").as_string(), "beta");
    EXPECT_EQ(events.at(3).at("event").as_string(), "scanFinished");
    EXPECT_EQ(events.at(3).at("repositories").as_int64(), 2);
    EXPECT_EQ(events.at(3).at("dirty").as_int64(), 1);
}

TEST_F(WatchEndToEnd, PeopleSeeTheTableFirst) {
    makeRepository(folder / "projects/alpha");
    RunningProgram program(watch());
    EXPECT_EQ(program.readLine(), "✓ alpha  main  No upstream");
    EXPECT_EQ(program.readLine(), "1 repository · 1 clean");
}

TEST_F(WatchEndToEnd, PeopleOnATerminalAreToldHowItEnds) {
    ProgramCall call = watch();
    call.output = ProgramCall::Output::terminal;
    RunningProgram program(call);
    EXPECT_TRUE(program.readUntil("Ctrl-C ends it"));
}

TEST_F(WatchEndToEnd, RepositoryThatCantBeScannedIsNamed) {
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["~/gone"]})");
    RunningProgram program(watch());
    EXPECT_EQ(program.readLine(), "0 repositories · 1 could not be scanned");
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait().errors, "tarnbeck-cli: " + (folder / "gone") + ": does not exist\n");
}

TEST_F(WatchEndToEnd, NothingToWatchTellsTheWayOn) {
    RunningProgram program(watch());
    EXPECT_EQ(program.readLine(), "0 repositories");
    EXPECT_THAT(program.readLine(), HasSubstr("No repositories found below ~/projects."));
}

TEST_F(WatchEndToEnd, JsonStaysPureWhenTheConfigurationIsCorrupt) {
    folder.write(".config/tarnbeck/config.json", "[");
    RunningProgram program(watch({"--json"}));
    for (int count = 0; count < 2; ++count) {
        const std::string line = program.readLine();
        EXPECT_TRUE(parsedJson(line)) << line;
    }
    program.signal(SIGTERM);
    EXPECT_THAT(program.wait().errors, HasSubstr("Failed to load config: "));
}

TEST_F(WatchEndToEnd, ChangeOnDiskShowsByItself) {
    makeRepository(folder / "projects/alpha");
    makeRepository(folder / "projects/beta");
    RunningProgram program(watch());
    EXPECT_EQ(program.readLine(), "✓ alpha  main  No upstream");
    EXPECT_EQ(program.readLine(), "✓ beta   main  No upstream");
    EXPECT_EQ(program.readLine(), "2 repositories · 2 clean");
    PersistentUser user(
        [&](int time) { folder.write("projects/beta/file.txt", std::to_string(time)); });
    EXPECT_THAT(program.readLine(), HasSubstr("✎ beta  main  No upstream  1 change"));
}

TEST_F(WatchEndToEnd, JsonTellsAChangeOnDiskWithoutAScanOfAll) {
    const std::string path = makeRepository(folder / "projects/alpha");
    RunningProgram program(watch({"--json"}));
    while (program.readLine().find("scanFinished") == std::string::npos) {
    }
    PersistentUser user([&](int time) {
        git(path, {"checkout", "-q", "-B", "topic" + std::to_string(time)});
    });
    const std::string line = program.readLine();
    const auto json = parsedJson(line);
    ASSERT_TRUE(json) << line;
    EXPECT_EQ(json->at("event").as_string(), "repository");
    EXPECT_TRUE(json->at("repository").at("currentBranch").as_string().starts_with("topic"));
}

TEST_F(WatchEndToEnd, JsonTellsTheFirstVerdictOnDependenciesByItself) {
    const std::string path = makeRepository(folder / "projects/alpha");
    folder.write("projects/alpha/package.json", "{}");
    folder.write("projects/alpha/yarn.lock", "");
    RunningProgram program(watch({"--json"}));
    EXPECT_THAT(program.readLine(), HasSubstr(R"({"event":"scanStarted")"));
    EXPECT_THAT(program.readLine(), HasSubstr(R"("status":"checking","updates":[])"));
    EXPECT_THAT(program.readLine(), HasSubstr(R"({"event":"scanFinished")"));
    const std::string line = program.readLine();
    const auto json = parsedJson(line);
    ASSERT_TRUE(json) << line;
    EXPECT_EQ(json->at("event").as_string(), "dependencies");
    EXPECT_EQ(json->at("path").as_string(), path);
    EXPECT_EQ(json->at("status").as_string(), "unknown");
    EXPECT_EQ(json->at("inlineSummary").as_string(), "dependency state unknown");
    EXPECT_EQ(json->at("summary").at("ecosystems").as_array().size(), 1);
}

TEST_F(WatchEndToEnd, PeopleSeeTheVerdictOnDependenciesBehindTheTable) {
    makeRepository(folder / "projects/alpha");
    folder.write("projects/alpha/package.json", "{}");
    folder.write("projects/alpha/yarn.lock", "");
    RunningProgram program(watch());
    EXPECT_THAT(program.readLine(), HasSubstr("✎ alpha  main  No upstream  2 changes"));
    EXPECT_THAT(program.readLine(), HasSubstr("1 repository"));
    EXPECT_THAT(program.readLine(), HasSubstr(" ▣ alpha  dependency state unknown"));
}

class WatchEndToEnd_Signals : public WatchEndToEnd, public ::testing::WithParamInterface<int> {};

TEST_P(WatchEndToEnd_Signals, EndIt) {
    makeRepository(folder / "projects/alpha");
    RunningProgram program(watch({"--json"}));
    while (program.readLine().find("scanFinished") == std::string::npos) {
    }
    program.signal(GetParam());
    const auto result = program.wait();
    EXPECT_EQ(result.signal, GetParam());
    EXPECT_EQ(result.errors, "");
}

INSTANTIATE_TEST_SUITE_P(AllThatAskForTheEnd, WatchEndToEnd_Signals,
                         ::testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT));

}  // namespace
}  // namespace tarnbeck::testing
