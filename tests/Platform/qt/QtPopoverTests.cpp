#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ClockByHand.h"
#include "QtMainLoop.h"
#include "QtPopover.h"
#include "QtPopoverPlatform.h"
#include "ScreenGeometry.h"

namespace tarnbeck {
namespace {

using menubar_popover::Edge;
using menubar_popover::Event;
using menubar_popover::EventFate;
using menubar_popover::EventKind;

constexpr QRect screen{0, 28, 1600, 972};  // below a panel at the top

QRect placed(PopoverPlace place) {
    place.available = screen;
    return popoverFrame(place);
}

TEST(PopoverFrame, IsCentredBelowItsItem) {
    EXPECT_EQ(placed({.item = {800, 0, 28, 28}, .size = {760, 560}}), QRect(433, 32, 760, 560));
}

TEST(PopoverFrame, IsAboveAnItemInTheLowerHalf) {
    const QRect frame = popoverFrame({.item = {800, 972, 28, 28},
                                      .pointer = {},
                                      .size = {760, 560},
                                      .available = {0, 0, 1600, 972}});
    EXPECT_EQ(frame, QRect(433, 972 - 4 - 560, 760, 560));
}

TEST(PopoverFrame, StaysOnTheScreenAtItsRightEdge) {
    EXPECT_EQ(placed({.item = {1570, 0, 28, 28}, .size = {760, 560}}).right(), 1599);
}

TEST(PopoverFrame, StaysOnTheScreenAtItsLeftEdge) {
    EXPECT_EQ(placed({.item = {2, 0, 28, 28}, .size = {760, 560}}).left(), 0);
}

TEST(PopoverFrame, IsAtThePointerWhereTheItemsPlaceIsNotKnown) {
    EXPECT_EQ(placed({.pointer = {800, 10}, .size = {760, 560}}), QRect(420, 28, 760, 560));
    EXPECT_EQ(placed({.pointer = {800, 900}, .size = {760, 560}}).bottom(), 895);
}

TEST(PopoverFrame, LargerThanTheScreenBeginsAtItsCorner) {
    EXPECT_EQ(placed({.item = {800, 0, 28, 28}, .size = {2000, 1200}}).topLeft(), QPoint(0, 28));
}

TEST(PopoverFrame, KeepsToAScreenThatIsNotTheFirst) {
    const QRect second(1600, 0, 1280, 1024);
    EXPECT_TRUE(second.contains(popoverFrame(
        {.item = {2850, 0, 28, 28}, .pointer = {}, .size = {760, 560}, .available = second})));
}

class Button : public menubar_popover::StatusBarButton {
  public:
    std::optional<menubar_popover::Rect> screenFrame() const override {
        return menubar_popover::Rect{300, 0, 28, 28};
    }
};

class QtPopoverWindow : public ::testing::Test {
  protected:
    QtPopoverWindow() {
        window.setFlags(Qt::Tool | Qt::FramelessWindowHint);
        popover.setWindow(&window);
        popover.setContentSize({400, 300});
    }
    void show() {
        popover.show(button, Edge::bottom);
        QCoreApplication::processEvents();
    }

    QWindow window;
    QWindow other;
    testing::ClockByHand clock;
    QtPopover popover{clock};
    Button button;
    int closed = 0;
    menubar_popover::Token observation = popover.observeDidClose([this] { ++closed; });
};

TEST_F(QtPopoverWindow, IsShownInItsSizeOnTheScreen) {
    show();
    EXPECT_TRUE(popover.isShown());
    EXPECT_EQ(window.size(), QSize(400, 300));
    EXPECT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(window.geometry()));
}

TEST_F(QtPopoverWindow, LargerThanTheScreenKeepsItsSizeAndBeginsAtItsCorner) {
    popover.setContentSize({5000, 5000});
    show();
    EXPECT_EQ(window.size(), QSize(5000, 5000));
    EXPECT_EQ(window.position(), QGuiApplication::primaryScreen()->availableGeometry().topLeft());
}

TEST_F(QtPopoverWindow, TellsWhereItIsWhileItIsShown) {
    EXPECT_EQ(popover.windowFrame(), std::nullopt);
    show();
    ASSERT_TRUE(popover.windowFrame());
    EXPECT_EQ(popover.windowFrame()->width, 400);
}

TEST_F(QtPopoverWindow, TellsThatItHasClosed) {
    show();
    popover.performClose(nullptr);
    EXPECT_FALSE(popover.isShown());
    EXPECT_EQ(closed, 1);
}

TEST_F(QtPopoverWindow, TellsOfAClosingByTheWindowManager) {
    show();
    window.close();
    EXPECT_EQ(closed, 1);
}

TEST_F(QtPopoverWindow, ClosesWhenAnotherWindowBecomesActive) {
    show();
    ASSERT_TRUE(window.isActive());
    other.show();
    other.requestActivate();
    QCoreApplication::processEvents();
    EXPECT_FALSE(popover.isShown());
    EXPECT_EQ(closed, 1);
}

TEST_F(QtPopoverWindow, IsClosedForGoodWhenItsWindowHasGone) {
    QtPopover bereft(clock);
    {
        QWindow passing;
        bereft.setWindow(&passing);
    }
    bereft.performClose(nullptr);
    EXPECT_FALSE(bereft.isShown());
}

TEST_F(QtPopoverWindow, ClickThatTookItsFocusDoesNotOpenItAgain) {
    EXPECT_FALSE(popover.hasJustChanged());
    show();
    EXPECT_TRUE(popover.hasJustChanged());
    popover.performClose(nullptr);
    EXPECT_TRUE(popover.hasJustChanged());
    clock.now += std::chrono::milliseconds(249);
    EXPECT_TRUE(popover.hasJustChanged());
    clock.now += std::chrono::milliseconds(1);
    EXPECT_FALSE(popover.hasJustChanged());
}

class QtPopoverEvents : public ::testing::Test {
  protected:
    menubar_popover::Token watch() {
        return platform.addLocalMonitor({EventKind::leftMouseDown, EventKind::keyDown},
                                        [this](const Event& event) {
                                            seen.push_back(event);
                                            return EventFate::goesOn;
                                        });
    }
    void press(Qt::MouseButton button) {
        QMouseEvent event(QEvent::MouseButtonPress, {}, {}, button, button, {});
        QCoreApplication::sendEvent(&window, &event);
    }

    QtMainLoop loop;
    QtPopoverPlatform platform{loop};
    QWindow window;
    std::vector<Event> seen;
};

TEST_F(QtPopoverEvents, ShowThePressOfAButtonThatIsAskedFor) {
    const auto token = watch();
    press(Qt::LeftButton);
    press(Qt::RightButton);
    EXPECT_THAT(seen, ::testing::ElementsAre(Event{.kind = EventKind::leftMouseDown}));
}

TEST_F(QtPopoverEvents, ShowNoKeyThatTheContentMayWant) {
    const auto token = watch();
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, {});
    QCoreApplication::sendEvent(&window, &event);
    EXPECT_TRUE(seen.empty());
}

TEST_F(QtPopoverEvents, ShowTheEscapeThatTheContentDidNotWant) {
    const auto token = watch();
    platform.escapeWasPressed();
    EXPECT_THAT(seen, ::testing::ElementsAre(Event{.kind = EventKind::keyDown, .keyCode = 53}));
}

TEST_F(QtPopoverEvents, EndWithTheToken) {
    auto token = watch();
    token.reset();
    press(Qt::LeftButton);
    EXPECT_TRUE(seen.empty());
}

}  // namespace
}  // namespace tarnbeck
