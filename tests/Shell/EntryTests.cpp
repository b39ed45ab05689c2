#include <filesystem>
#include <map>
#include <memory>
#include <optional>

#include "EarlyPosts.h"
#include "PlayedSurroundings.h"
#include "Simulation.h"
#include "TarnbeckEntry.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class Defaults : public UserDefaults {
  public:
    std::optional<bool> boolean(std::string_view key) const override {
        const auto found = booleans.find(std::string(key));
        if (found == booleans.end()) return std::nullopt;
        return found->second;
    }
    std::optional<double> number(std::string_view) const override { return std::nullopt; }
    std::optional<std::string> data(std::string_view) const override { return std::nullopt; }
    void setBoolean(std::string_view, bool) override {}
    void setNumber(std::string_view, double) override {}
    void setData(std::string_view, std::string_view) override {}

    std::map<std::string, bool> booleans;
};

// Several copies of the program in one process.
class Entry : public ::testing::Test {
  protected:
    std::unique_ptr<TarnbeckEntry> makeEntry() {
        return std::make_unique<TarnbeckEntry>(TarnbeckEntry::Services{
            .userDefaults = defaults,
            .platform = {.fileManager = files,
                         .signals = signals,
                         .postToMainThread = mainThread.post()},
            .clock = simulation.loop,
            .systemLog = [this](const std::string& line) { log.push_back(line); },
            .lockLocation = {single_instance::SingleInstanceLockLocation::Directory{base}}});
    }
    int run(TarnbeckEntry& entry) {
        return entry.main([this] { ++applications; });
    }

    testing::TemporaryFolder folder;
    std::string base = folder.path();
    Defaults defaults;
    single_instance::SystemFileManager files;
    single_instance::testing::PlayedSignals signals;
    single_instance::testing::PlayedMainThread mainThread;
    testing::Simulation simulation;
    std::vector<std::string> log;
    int applications = 0;
};

TEST_F(Entry, FirstCopyRunsAndKeepsItsController) {
    const auto entry = makeEntry();
    EXPECT_EQ(run(*entry), 0);
    EXPECT_EQ(applications, 1);
    ASSERT_NE(entry->singleInstanceController(), nullptr);
    EXPECT_TRUE(entry->singleInstanceController()->holdsLock());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(Entry, ControllerIsThereWhenTheApplicationIsMade) {
    const auto entry = makeEntry();
    bool isThere = false;
    entry->main([&] { isThere = entry->singleInstanceController() != nullptr; });
    EXPECT_TRUE(isThere);
}

TEST_F(Entry, LockBearsTheBundlesName) {
    const auto entry = makeEntry();
    run(*entry);
    EXPECT_TRUE(std::filesystem::exists(folder / "com.local.Tarnbeck/com.local.Tarnbeck.lock"));
    EXPECT_THAT(signals.observed, ElementsAre("com.local.Tarnbeck.single-instance.activate"));
}

TEST_F(Entry, SecondCopySignalsAndEndsWithoutAWord) {
    const auto first = makeEntry();
    run(*first);
    const auto second = makeEntry();
    EXPECT_EQ(run(*second), 0);
    EXPECT_EQ(applications, 1);
    EXPECT_THAT(signals.posted, ElementsAre("com.local.Tarnbeck.single-instance.activate"));
    EXPECT_THAT(log, IsEmpty());
    EXPECT_EQ(second->singleInstanceController(), nullptr);
}

TEST_F(Entry, SecondCopyLeavesNoRequest) {
    const auto first = makeEntry();
    run(*first);
    const auto second = makeEntry();
    run(*second);
    EXPECT_FALSE(std::filesystem::exists(folder / "com.local.Tarnbeck/DuplicateLaunchRequests"));
}

TEST_F(Entry, WithoutALockNothingRunsAndTheSystemsLogSaysWhy) {
    base = folder.write("not-a-folder", "");
    const auto entry = makeEntry();
    EXPECT_EQ(run(*entry), 0);
    EXPECT_EQ(applications, 0);
    ASSERT_THAT(log, SizeIs(1));
    EXPECT_THAT(log[0], StartsWith("Tarnbeck failed to acquire the single-instance lock: "));
    EXPECT_GT(log[0].size(),
              std::string("Tarnbeck failed to acquire the single-instance lock: ").size());
}

TEST_F(Entry, EachCopyRunsWhereTheDefaultsSaySo) {
    defaults.booleans["allowMultipleInstances"] = true;
    const auto first = makeEntry();
    const auto second = makeEntry();
    run(*first);
    run(*second);
    EXPECT_EQ(applications, 2);
    EXPECT_THAT(signals.observed, IsEmpty());
    EXPECT_THAT(signals.posted, IsEmpty());
}

TEST_F(Entry, SignalThatComesBeforeTheHandlerIsDeliveredOnceItIsSet) {
    const auto first = makeEntry();
    run(*first);
    signals.deliver();
    signals.deliver();
    mainThread.run();
    int activations = 0;
    first->singleInstanceController()->setActivationHandler([&] { ++activations; });
    EXPECT_EQ(activations, 1);
}

TEST(EarlyPosts, WaitForTheLoopAndKeepTheirOrder) {
    testing::Simulation simulation;
    EarlyPosts posts;
    std::vector<int> order;
    posts.post([&] { order.push_back(1); });
    posts.post([&] { order.push_back(2); });
    posts.handTo(&simulation.loop);
    posts.post([&] { order.push_back(3); });
    EXPECT_THAT(order, IsEmpty());
    simulation.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(EarlyPosts, WaitAgainWhenTheLoopHasGone) {
    testing::Simulation simulation;
    EarlyPosts posts;
    bool ran = false;
    posts.handTo(&simulation.loop);
    posts.handTo(nullptr);
    posts.post([&] { ran = true; });
    simulation.runUntilIdle();
    EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace tarnbeck
