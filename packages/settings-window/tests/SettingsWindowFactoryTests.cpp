#include "SettingsWindowFactory.h"

namespace settings_window::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using Steps = std::vector<std::string>;

class PlayedWindow : public Window {
  public:
    explicit PlayedWindow(Steps& steps) : steps_(steps) {}

    void setTitle(std::string_view title) override { note("title " + std::string(title)); }
    void setReleasedWhenClosed(bool isReleased) override {
        note(isReleased ? "released when closed" : "kept when closed");
    }
    void center() override { note("center"); }
    void setContentView(std::shared_ptr<WindowContent>) override { note("content view"); }
    void setContentViewController(std::shared_ptr<WindowContent>) override {
        note("content view controller");
    }
    void setDelegate(WindowDelegate* delegate) override {
        note(delegate ? "delegate" : "no delegate");
    }
    void setFrameAutosaveName(std::string_view name) override {
        note("autosave " + std::string(name));
    }
    void makeKeyAndOrderFront() override { note("key and front"); }

  private:
    void note(std::string step) { steps_.push_back(std::move(step)); }

    Steps& steps_;
};

class PlayedPlatform : public WindowPlatform {
  public:
    std::shared_ptr<Window> makeWindow(const WindowFrame& frame,
                                       WindowStyleMask styleMask) override {
        madeFrame = frame;
        madeStyle = styleMask;
        steps.emplace_back("make");
        return std::make_shared<PlayedWindow>(steps);
    }
    void activateIgnoringOtherApplications() override { steps.emplace_back("activate"); }

    Steps steps;
    WindowFrame madeFrame;
    WindowStyleMask madeStyle;
};

class Delegate : public WindowDelegate {
  public:
    void windowWillClose() override {}
};

TEST(SettingsWindowFactory_MakeWindow, GoesThroughAllStepsInTheirOrder) {
    PlayedPlatform platform;
    Delegate delegate;
    SettingsWindowFactory::makeWindow({.size = {920, 620},
                                       .title = "Settings",
                                       .styleMask = {.titled = true},
                                       .contentView = std::make_shared<WindowContent>(),
                                       .contentViewController = std::make_shared<WindowContent>(),
                                       .autosaveName = "SettingsWindow",
                                       .delegate = &delegate},
                                      platform);
    EXPECT_THAT(platform.steps,
                ElementsAre("make", "title Settings", "kept when closed", "center", "content view",
                            "content view controller", "delegate", "autosave SettingsWindow"));
}

TEST(SettingsWindowFactory_MakeWindow, PassesOverWhatIsNotGiven) {
    PlayedPlatform platform;
    SettingsWindowFactory::makeWindow({.size = {1, 1}, .title = "T", .styleMask = {}}, platform);
    EXPECT_THAT(platform.steps,
                ElementsAre("make", "title T", "kept when closed", "center", "no delegate"));
}

TEST(SettingsWindowFactory_MakeWindow, BeginsAtTheOriginWithSizeAndStyle) {
    PlayedPlatform platform;
    const WindowStyleMask style{
        .titled = true, .closable = true, .miniaturizable = true, .resizable = true};
    SettingsWindowFactory::makeWindow({.size = {920, 620}, .title = "Settings", .styleMask = style},
                                      platform);
    EXPECT_EQ(platform.madeFrame, (WindowFrame{{0, 0}, {920, 620}}));
    EXPECT_EQ(platform.madeStyle, style);
}

TEST(SettingsWindowFactory_MakeWindow, ShowsNothingYet) {
    PlayedPlatform platform;
    SettingsWindowFactory::makeWindow({.size = {1, 1}, .title = "T", .styleMask = {}}, platform);
    EXPECT_THAT(platform.steps, Not(Contains("key and front")));
}

TEST(SettingsWindowFactory_Present, BringsTheWindowBeforeTheApplication) {
    PlayedPlatform platform;
    PlayedWindow window(platform.steps);
    SettingsWindowFactory::present(window, platform);
    EXPECT_THAT(platform.steps, ElementsAre("key and front", "activate"));
}

}  // namespace
}  // namespace settings_window::testing
