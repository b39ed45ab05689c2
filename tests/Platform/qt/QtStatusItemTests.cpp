#include <QAction>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    QtPopover popover;
    QtStatusItem item(popover);
    item.button()->setImage(imageOf({}));
    EXPECT_EQ(item.drawnImages(), 1);
    item.button()->setImage(imageOf({.gitBadgeCount = 1}));
    EXPECT_EQ(item.drawnImages(), 2);
}

TEST(QtStatusItem, IsDrawnAgainWhenTheAppearanceChanges) {
    QtPopover popover;
    QtStatusItem item(popover);
    item.button()->setImage(imageOf({}));
    QEvent change(QEvent::ApplicationPaletteChange);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
    EXPECT_EQ(item.drawnImages(), 2);
}

TEST(QtStatusItem, DrawsNothingBeforeItHasAPicture) {
    QtPopover popover;
    const QtStatusItem item(popover);
    QEvent change(QEvent::ApplicationPaletteChange);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
    EXPECT_EQ(item.drawnImages(), 0);
}

TEST(QtStatusItem, HasNoPlaceOnTheScreenWithoutATray) {
    QtPopover popover;
    const QtStatusItem item(popover);
    EXPECT_EQ(item.button()->screenFrame(), std::nullopt);
}

TEST(QtStatusItem, KnowsTheScreenThatItsPopoverWouldBeOn) {
    QtPopover popover;
    const QtStatusItem item(popover);
    const QSize available = QGuiApplication::primaryScreen()->availableGeometry().size();
    EXPECT_EQ(item.button()->screenVisibleFrame(),
              (ScreenSize{static_cast<double>(available.width()),
                          static_cast<double>(available.height())}));
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
