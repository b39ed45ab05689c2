#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <string>

#include "DesktopByHand.h"
#include "DesktopEngine.h"
#include "EndLimit.h"
#include "FileUserDefaults.h"
#include "FixtureHome.h"
#include "Paths.h"
#include "PosixMainLoop.h"
#include "TemporaryFolder.h"
#include "UITestFixtureData.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

class NoClipboard : public Clipboard {
  public:
    void setString(std::string_view) override {}
};

class NoOpener : public ExternalOpener {
  public:
    void openFile(std::string_view) override {}
    void openUrl(std::string_view) override {}
};

class Engine : public ::testing::Test {
  protected:
    // What runs in the background uses what the engine has.
    void TearDown() override {
        if (engine) end();
    }
    bool end() {
        engine->endChildren();
        return engine->finish(loop.steadyNow() + 1min);
    }

    testing::TemporaryFolder home;
    PosixMainLoop loop;
    ThreadedWorkQueues queues;
    FileUserDefaults defaults{home / "defaults.json", queues};
    NoClipboard clipboard;
    NoOpener opener;
    std::optional<DesktopEngine> engine{
        std::in_place, ConfigurationPlace{.home = home.path(), .report = [](std::string_view) {}},
        DesktopEngine::Tools{.loop = loop,
                             .queues = queues,
                             .userDefaults = defaults,
                             .clipboard = clipboard,
                             .opener = opener}};
};

TEST_F(Engine, ScannerHasTheStoredConfiguration) {
    home.write(".config/tarnbeck/config.json", R"({"repoPaths": ["/r/a"], "showTags": false})");
    const auto scanner = engine->makeScanner();
    EXPECT_THAT(scanner->configuration().repoPaths, ElementsAre("/r/a"));
    EXPECT_FALSE(scanner->configuration().showTags);
    EXPECT_TRUE(scanner->isScanning());
}

TEST_F(Engine, FixtureScannerKeepsItsConfigurationInItsHome) {
    const auto scanner = engine->makeFixtureScanner();
    scanner->saveConfiguration();
    ASSERT_TRUE(end());
    const ConfigurationPlace place{.home = home.path(), .report = [](std::string_view) {}};
    EXPECT_EQ(AppConfiguration::load(place).repoPaths, scanner->configuration().repoPaths);
}

TEST_F(Engine, FixturesAreNotDiscarded) {
    const auto scanner = engine->makeFixtureScanner();
    testing::Events events;
    testing::CaffeinateByHand launcher(events);
    system_awake::CaffeinateController caffeinate(
        launcher, std::nullopt, {.postToMainThread = [this](Task task) { loop.post(task); }});
    const auto services = engine->viewServices({.scanner = *scanner,
                                                .caffeinateController = caffeinate,
                                                .onOpenSettings = [] {},
                                                .showsFixtures = true});
    EXPECT_EQ(services.sections.discard(
                  {.repoPath = "/fixtures/repo-dirty", .filePath = "README.md", .status = "M"}),
              "Fixtures stay.");
}

TEST_F(Engine, EndWritesWhatIsToBeKept) {
    auto scanner = engine->makeScanner();
    AppConfiguration configuration = scanner->configuration();
    configuration.showTags = false;
    scanner->setConfiguration(configuration);
    scanner->saveConfiguration();
    scanner.reset();
    EXPECT_TRUE(end());
    const ConfigurationPlace place{.home = home.path(), .report = [](std::string_view) {}};
    EXPECT_FALSE(AppConfiguration::load(place).showTags);
}

TEST_F(Engine, EndDoesNotWaitForWorkThatHangs) {
    std::promise<void> end;
    queues.utility([hanging = end.get_future().share()] { hanging.wait(); });
    engine->endChildren();
    EXPECT_FALSE(engine->finish(loop.steadyNow()));
    end.set_value();
}

TEST_F(Engine, EndDoesNotWaitForAFileThatHangs) {
    std::promise<void> end;
    const auto queue = queues.serial("a file");
    queue->post([hanging = end.get_future().share()] { hanging.wait(); });
    engine->endChildren();
    EXPECT_FALSE(engine->finish(loop.steadyNow()));
    end.set_value();
}

TEST(EndLimit, CallsWhenItIsOver) {
    std::promise<void> over;
    const EndLimit limit(0s, [&] { over.set_value(); });
    over.get_future().wait();
}

TEST(EndLimit, CallsNobodyWhenTheEndWasInTime) {
    bool isCalled = false;
    {
        const EndLimit limit(1h, [&] { isCalled = true; });
    }
    EXPECT_FALSE(isCalled);
}

// Puts the environment back as it was.
class FixtureHomeEnvironment : public ::testing::Test {
  protected:
    ~FixtureHomeEnvironment() override {
        if (before_) {
            setenv("HOME", before_->c_str(), 1);
        } else {
            unsetenv("HOME");
        }
        unsetenv("XDG_CONFIG_HOME");
    }

  private:
    std::optional<std::string> before_ =
        getenv("HOME") ? std::optional<std::string>(getenv("HOME")) : std::nullopt;
};

TEST_F(FixtureHomeEnvironment, LeadsTheProgramAwayFromTheRealOne) {
    setenv("XDG_CONFIG_HOME", "/somewhere", 1);
    const FixtureHome home;
    EXPECT_EQ(userHome(), home.path());
    EXPECT_EQ(getenv("XDG_CONFIG_HOME"), nullptr);
    EXPECT_TRUE(std::filesystem::is_directory(home.path()));
}

TEST_F(FixtureHomeEnvironment, GoesWithAllThatIsInIt) {
    auto home = std::make_unique<FixtureHome>();
    const std::string path = home->path();
    std::filesystem::create_directories(path + "/.config/tarnbeck");
    home.reset();
    EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace tarnbeck
