#include <QApplication>
#include <QIcon>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "AppVersionDisplay.h"
#include "DesktopEngine.h"
#include "DesktopSystem.h"
#include "DesktopViews.h"
#include "EarlyPosts.h"
#include "EndLimit.h"
#include "FileSystem.h"
#include "FileUserDefaults.h"
#include "FixtureHome.h"
#include "Paths.h"
#include "QtClipboard.h"
#include "QtContentWindow.h"
#include "QtDesktopPlatform.h"
#include "QtExternalOpener.h"
#include "QtMainLoop.h"
#include "StatusTileRenderer.h"
#include "SystemLog.h"
#include "TarnbeckApp.h"
#include "TarnbeckEntry.h"
#include "UITestLaunchMode.h"
#include "VectorIconEngine.h"
#include "VectorPainter.h"

namespace tarnbeck {

using namespace std::chrono_literals;

namespace {

// Of all that the end takes in the ordinary case, some milliseconds.
constexpr auto longestWriting = 1s;
constexpr auto longestEnd = 1500ms;

LaunchInput launchInput(int argc, char** argv) {
    LaunchInput input{.arguments = {argv + std::min(argc, 1), argv + argc}};
    if (const char* mode = std::getenv("TARNBECK_UI_TEST_MODE")) {
        input.environment["TARNBECK_UI_TEST_MODE"] = mode;
    }
    return input;
}

void printLine(std::string_view line) {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

void complain(std::string_view line) {
    std::fprintf(stderr, "tarnbeck: %.*s\n", static_cast<int>(line.size()), line.data());
}

std::string versionLabel() {
    return app_version::AppVersionDisplay::current(
        {.info = {{"CFBundleShortVersionString", TARNBECK_VERSION}, {"CFBundleVersion", "1"}},
         .executablePath = app_version::runningExecutablePath()});
}

class SystemClock : public Clock {
  public:
    WallTime wallNow() const override { return std::chrono::system_clock::now(); }
    SteadyTime steadyNow() const override { return std::chrono::steady_clock::now(); }
};

// What is there before it is known whether this process may run.
struct Ground {
    explicit Ground(LaunchInput given)
        : input(std::move(given)),
          place{.home = userHome(), .report = printLine},
          userDefaults(place.folder() + "/defaults.json", queues,
                       [](const std::string& line) { complain(line); }) {}

    const LaunchInput input;
    const ConfigurationPlace place;
    ThreadedWorkQueues queues;
    FileUserDefaults userDefaults;
    EarlyPosts earlyPosts;
};

// What the process leaves behind when it ends, however it ends.
class Remains {
  public:
    // Throws `std::system_error` where there is no place for fixtures.
    explicit Remains(const LaunchInput& input) {
        if (UITestLaunchMode::isEnabled(input)) fixtureHome_.emplace();
    }

    // From now on the process ends in time, if need be in the middle of what it does.
    void limitEnd() {
        limit_.emplace(longestEnd, [this] { endAtOnce(); });
    }
    // Destroys nothing else: what goes on in the background may still need it.
    [[noreturn]] void endNow() {
        limit_.reset();
        endAtOnce();
    }

  private:
    [[noreturn]] void endAtOnce() {
        fixtureHome_.reset();
        std::_Exit(EXIT_SUCCESS);
    }

    std::optional<FixtureHome> fixtureHome_;
    std::optional<EndLimit> limit_;
};

// The application on the desktop, from the first object to the last.
class Desktop {
  public:
    Desktop(Ground& ground, TarnbeckEntry& entry) : ground_(ground), entry_(entry) {
        ground_.earlyPosts.handTo(&loop_);
        caffeinateLauncher_ = makeCaffeinateLauncher();
        app_.emplace(appServices());
        // Not before: a first start looks for repositories on this thread, and a signal that
        // comes meanwhile ends the process as it would any other.
        loop_.onSignals({SIGINT, SIGTERM, SIGHUP}, [this](int) { platform_.terminate(); });
    }

    void run() {
        app_->openScenes();
        loop_.post([this] {
            if (auto* delegate = platform_.delegate()) delegate->applicationDidFinishLaunching();
        });
        loop_.run();
    }

    // False where background work goes on that can't be waited for: then nothing here may be
    // destroyed any more.
    bool end() {
        const SteadyTime deadline = loop_.steadyNow() + longestWriting;
        loop_.forgetSignals();  // a second one ends the process at once
        engine_.endChildren();
        dropViews();
        app_.reset();
        ground_.earlyPosts.handTo(nullptr);
        return engine_.finish(deadline);
    }

  private:
    // Windows go before what they are made of, and so does what holds on to one.
    void dropViews() {
        app_->settingsWindowController().dropWindow();
        loop_.dropPosted();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        views_.reset();
    }

    MainView::Services viewServices() {
        return engine_.viewServices(
            {.scanner = app_->scanner(),
             .caffeinateController = app_->caffeinateController(),
             .onOpenSettings = [this] { app_->settingsWindowController().show(); },
             .showsFixtures = UITestLaunchMode::isEnabled(ground_.input)});
    }

    // Made when the first window is: without one there is no need for all that draws it.
    DesktopViews& views() {
        if (!views_) views_.emplace([this] { return viewServices(); });
        return *views_;
    }

    std::shared_ptr<settings_window::WindowContent> settingsContent(
        const SettingsWindowController::ContentRequest& request) {
        const QSizeF smallest(request.minimumSize.width, request.minimumSize.height);
        return views().makeSettingsContent({.scanner = request.scanner,
                                            .loop = loop_,
                                            .queues = engine_.queues(),
                                            .home = engine_.place().home,
                                            .versionLabel = versionLabel()},
                                           smallest.toSize());
    }

    TarnbeckApp::Services appServices() {
        auto* controller = entry_.singleInstanceController();
        return {
            .input = ground_.input,
            .loop = loop_,
            .platform = platform_,
            .popoverPlatform = popoverPlatform_,
            .runtime = runtime_,
            .makeScanner = [this] { return engine_.makeScanner(); },
            .makeFixtureScanner = [this] { return engine_.makeFixtureScanner(); },
            .caffeinateLauncher = *caffeinateLauncher_,
            .processIdentifier = getpid(),
            .makePopoverHost =
                [this](menubar_popover::Popover&) {
                    return views().makePopoverHost(platform_.popover(), popoverPlatform_);
                },
            .windowPlatform = windowPlatform_,
            .makeSettingsContent = [this](const auto& request) { return settingsContent(request); },
            .processName = "tarnbeck",
            .setActivationHandler =
                [controller](std::function<void()> handler) {
                    if (controller) controller->setActivationHandler(std::move(handler));
                },
            .report = complain,
            .isFirstStart = !exists(ground_.place.file()),
        };
    }

    Ground& ground_;
    TarnbeckEntry& entry_;
    QtMainLoop loop_;
    QtClipboard clipboard_;
    QtExternalOpener opener_;
    QtWindowPlatform windowPlatform_{ground_.userDefaults};
    QtPopoverPlatform popoverPlatform_{loop_};
    QtDesktopPlatform platform_{[this] { return views().mainWindow(); }, loop_};
    DesktopEngine engine_{ground_.place,
                          {.loop = loop_,
                           .queues = ground_.queues,
                           .userDefaults = ground_.userDefaults,
                           .clipboard = clipboard_,
                           .opener = opener_}};
    std::unique_ptr<system_awake::CaffeinateLaunching> caffeinateLauncher_;
    AppRuntime runtime_;
    std::optional<TarnbeckApp> app_;
    std::optional<DesktopViews> views_;
};

void nameApplication() {
    QApplication::setApplicationName(QStringLiteral("tarnbeck"));
    QApplication::setDesktopFileName(QStringLiteral("tarnbeck"));
}

void runApplication(int& argc, char** argv, Ground& ground, TarnbeckEntry& entry,
                    Remains& remains) {
    nameApplication();
    chooseSceneGraph();
    QApplication application(argc, argv);
    QApplication::setWindowIcon(
        QIcon(new VectorIconEngine(StatusTileRenderer::render({}, statusTextMeasurement()))));
    Desktop desktop(ground, entry);
    desktop.run();
    remains.limitEnd();
    if (!desktop.end()) remains.endNow();
}

int run(int argc, char** argv) {
    // A reader that goes away is told of by the write.
    std::signal(SIGPIPE, SIG_IGN);
    if (!hasDisplay()) {
        complain("There is no display here. In a terminal there is tarnbeck-cli.");
        return EXIT_FAILURE;
    }
    LaunchInput input = launchInput(argc, argv);
    std::optional<Remains> remains;
    try {
        remains.emplace(input);
    } catch (const std::system_error& error) {
        complain(error.what());
        return EXIT_FAILURE;
    }
    Ground ground(std::move(input));
    single_instance::SystemFileManager files;
    const auto signals = single_instance::makeSystemNamedSignals();
    const SystemClock clock;
    TarnbeckEntry entry(
        {.userDefaults = ground.userDefaults,
         .platform = {.fileManager = files,
                      .signals = *signals,
                      .postToMainThread =
                          [&ground](std::function<void()> task) {
                              ground.earlyPosts.post(std::move(task));
                          }},
         .clock = clock,
         .systemLog = [](const std::string& line) { writeError("single-instance", line); }});
    return entry.main([&] { runApplication(argc, argv, ground, entry, *remains); });
}

}  // namespace
}  // namespace tarnbeck

int main(int argc, char** argv) {
    return tarnbeck::run(argc, argv);
}
