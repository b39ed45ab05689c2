#include <QAction>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QWindow>
#include <chrono>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ClockByHand.h"
#include "QtMenu.h"
#include "QtPopover.h"
#include "QtStatusItem.h"
#include "StatusTileRenderer.h"
#include "VectorPainter.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;

StatusImage imageOf(const MenuBarIconRenderState& state) {
    return {.tile = StatusTileRenderer::render(state, statusTextMeasurement()),
            .toolTip = StatusTileRenderer::toolTip(state)};
}

TEST(QtStatusItem, HandsEachPictureToTheSystemOnce) {
    const testing::ClockByHand clock;
    QtPopover popover(clock);
    QtStatusItem item(popover);
    item.button()->setImage(imageOf({}));
    EXPECT_EQ(item.drawnImages(), 1);
    item.button()->setImage(imageOf({.gitBadgeCount = 1}));
    EXPECT_EQ(item.drawnImages(), 2);
}

TEST(QtStatusItem, IsDrawnAgainWhenTheAppearanceChanges) {
    const testing::ClockByHand clock;
    QtPopover popover(clock);
    QtStatusItem item(popover);
    item.button()->setImage(imageOf({}));
    QEvent change(QEvent::ApplicationPaletteChange);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
    EXPECT_EQ(item.drawnImages(), 2);
}

TEST(QtStatusItem, DrawsNothingBeforeItHasAPicture) {
    const testing::ClockByHand clock;
    QtPopover popover(clock);
    const QtStatusItem item(popover);
    QEvent change(QEvent::ApplicationPaletteChange);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
    EXPECT_EQ(item.drawnImages(), 0);
}

TEST(QtStatusItem, HasNoPlaceOnTheScreenWithoutATray) {
    const testing::ClockByHand clock;
    QtPopover popover(clock);
    const QtStatusItem item(popover);
    EXPECT_EQ(item.button()->screenFrame(), std::nullopt);
}

TEST(QtStatusItem, KnowsTheScreenThatItsPopoverWouldBeOn) {
    const testing::ClockByHand clock;
    QtPopover popover(clock);
    const QtStatusItem item(popover);
    const QSize available = QGuiApplication::primaryScreen()->availableGeometry().size();
    EXPECT_EQ(item.button()->screenVisibleFrame(),
              (ScreenSize{static_cast<double>(available.width()),
                          static_cast<double>(available.height())}));
}

TEST(QtStatusItem, IsDrawnOnceForAChangeOfScaleHoweverOftenTheScreensChanged) {
    const testing::ClockByHand clock;
    QtPopover popover(clock);
    QtStatusItem item(popover);
    item.button()->setImage(imageOf({}));
    QScreen* screen = QGuiApplication::primaryScreen();
    for (int time = 0; time < 3; ++time) Q_EMIT qGuiApp->primaryScreenChanged(screen);
    const int before = item.drawnImages();
    Q_EMIT screen->logicalDotsPerInchChanged(192);
    EXPECT_EQ(item.drawnImages(), before + 1);
}

// The item as the tray uses it, and the popover that its clicks open.
class QtStatusItemClicks : public ::testing::Test {
  protected:
    QtStatusItemClicks() {
        popover.setWindow(&window);
        item.button()->setAction({ClickKind::leftMouseUp, ClickKind::rightMouseUp},
                                 [this] { kinds.push_back(item.currentEvent()->kind); });
    }
    void click() { item.activated(QSystemTrayIcon::Trigger); }
    // It takes the focus from the popover, which closes by that.
    void pressOutside() {
        popover.show(*item.button(), menubar_popover::Edge::bottom);
        clock.now += std::chrono::seconds(5);
        popover.performClose(nullptr);
    }

    testing::ClockByHand clock;
    QWindow window;
    QtPopover popover{clock};
    QtStatusItem item{popover};
    std::vector<ClickKind> kinds;
};

TEST_F(QtStatusItemClicks, ReachTheActionWithTheirKind) {
    click();
    item.activated(QSystemTrayIcon::Context);
    item.activated(QSystemTrayIcon::MiddleClick);
    EXPECT_THAT(kinds, ElementsAre(ClickKind::leftMouseUp, ClickKind::rightMouseUp));
    EXPECT_EQ(item.currentEvent(), std::nullopt);
}

TEST_F(QtStatusItemClicks, OneThatClosedThePopoverDoesNotOpenItAgain) {
    pressOutside();
    clock.now += std::chrono::milliseconds(249);
    click();
    EXPECT_THAT(kinds, ElementsAre());
}

TEST_F(QtStatusItemClicks, OneThatComesLaterOpensItAgain) {
    pressOutside();
    clock.now += std::chrono::milliseconds(250);
    click();
    EXPECT_THAT(kinds, ElementsAre(ClickKind::leftMouseUp));
}

TEST_F(QtStatusItemClicks, OneForTheMenuIsTakenAtOnce) {
    pressOutside();
    item.activated(QSystemTrayIcon::Context);
    EXPECT_THAT(kinds, ElementsAre(ClickKind::rightMouseUp));
}

std::vector<std::string> textsOf(const QMenu& menu) {
    std::vector<std::string> texts;
    for (const QAction* action : menu.actions()) texts.push_back(action->text().toStdString());
    return texts;
}

TEST(QtMenu, HasItsRowsInOrder) {
    const auto menu =
        makeMenu({{.title = "One"}, MenuItem::separator(), {.title = "Two"}}, [](std::size_t) {});
    EXPECT_THAT(textsOf(*menu), ElementsAre("One", "", "Two"));
    EXPECT_TRUE(menu->actions().at(1)->isSeparator());
}

TEST(QtMenu, TellsThePlaceOfWhatIsChosen) {
    std::vector<std::size_t> chosen;
    const auto menu = makeMenu({{.title = "One"}, MenuItem::separator(), {.title = "Two"}},
                               [&](std::size_t index) { chosen.push_back(index); });
    menu->actions().at(2)->trigger();
    EXPECT_THAT(chosen, ElementsAre(2));
}

TEST(QtMenu, RowThatIsOffCannotBeChosen) {
    std::vector<std::size_t> chosen;
    const auto menu = makeMenu({{.title = "One", .isEnabled = false}},
                               [&](std::size_t index) { chosen.push_back(index); });
    menu->actions().at(0)->trigger();
    EXPECT_TRUE(chosen.empty());
}

TEST(QtMenu, ShowsChecksAndKeys) {
    const auto menu = makeMenu({{.title = "On", .isChecked = true},
                                {.title = "Off", .isChecked = false},
                                {.title = "Scan", .key = "r"}},
                               [](std::size_t) {});
    EXPECT_TRUE(menu->actions().at(0)->isChecked());
    EXPECT_TRUE(menu->actions().at(1)->isCheckable());
    EXPECT_FALSE(menu->actions().at(1)->isChecked());
    EXPECT_FALSE(menu->actions().at(2)->isCheckable());
    EXPECT_EQ(menu->actions().at(2)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_R));
}

TEST(QtMenu, AmpersandOfANameIsShown) {
    const auto menu = makeMenu({{.title = "salt&pepper"}}, [](std::size_t) {});
    EXPECT_THAT(textsOf(*menu), ElementsAre("salt&&pepper"));
}

}  // namespace
}  // namespace tarnbeck
