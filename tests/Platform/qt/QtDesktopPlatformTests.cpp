#include <QGuiApplication>
#include <QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ClockByHand.h"
#include "QtDesktopPlatform.h"

namespace tarnbeck {
namespace {

class CountingDelegate : public ApplicationDelegate {
  public:
    void applicationDidFinishLaunching() override {}
    bool applicationShouldTerminateAfterLastWindowClosed() override {
        ++questions;
        return false;
    }
    void applicationWillTerminate() override {}
    int questions = 0;
};

class QtDesktop : public ::testing::Test {
  protected:
    void open(bool showsMainView = true) {
        platform.openWindowGroup(
            {.title = "Name", .width = 640, .height = 480, .showsMainView = showsMainView});
    }

    testing::ClockByHand clock;
    QWindow window;
    int made = 0;
    QtDesktopPlatform platform{[this] {
                                   ++made;
                                   return &window;
                               },
                               clock};
};

TEST_F(QtDesktop, MainWindowIsAsTheGroupSays) {
    open();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.title(), QStringLiteral("Name"));
    EXPECT_EQ(window.size(), QSize(640, 480));
}

TEST_F(QtDesktop, WindowThatShowsNothingIsNotMadeBeforeItIsAskedFor) {
    open(false);
    EXPECT_EQ(made, 0);
    platform.showMainWindow();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(window.title(), QStringLiteral("Name"));
}

TEST_F(QtDesktop, MainWindowComesBackOutOfThePanel) {
    open();
    window.showMinimized();
    ASSERT_EQ(window.windowStates(), Qt::WindowMinimized);
    platform.showMainWindow();
    EXPECT_EQ(window.windowStates(), Qt::WindowNoState);
}

TEST_F(QtDesktop, MainWindowThatFillsTheScreenGoesOnDoingSo) {
    open();
    window.showMaximized();
    platform.showMainWindow();
    EXPECT_EQ(window.windowStates(), Qt::WindowMaximized);
}

TEST_F(QtDesktop, NobodyIsToldAfterTheDelegateWasDetached) {
    CountingDelegate delegate;
    platform.attach(delegate);
    Q_EMIT qGuiApp->lastWindowClosed();
    ASSERT_EQ(delegate.questions, 1);
    platform.detach();
    Q_EMIT qGuiApp->lastWindowClosed();
    EXPECT_EQ(delegate.questions, 1);
}

}  // namespace
}  // namespace tarnbeck
