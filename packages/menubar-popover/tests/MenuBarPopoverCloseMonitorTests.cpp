#include "MenuBarPopoverCloseMonitor.h"
#include "PlayedPopover.h"

namespace menubar_popover::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Point onTheButton{110, 10};
constexpr Point inThePopover{60, 100};
constexpr Point elsewhere{900, 500};

class MenuBarPopoverCloseMonitor_Session : public ::testing::Test {
  protected:
    MenuBarPopoverCloseMonitor_Session() { install(); }

    void install() {
        popover_->shown = true;
        monitor_->install(popover_, button_);
    }
    void tellDidClose() {
        popover_->shown = false;
        popover_->tellDidClose();
        platform_.runPosted();
    }

    Steps steps_;
    PlayedPlatform platform_{steps_};
    std::shared_ptr<PlayedPopover> popover_ = std::make_shared<PlayedPopover>(steps_);
    std::shared_ptr<PlayedButton> button_ = std::make_shared<PlayedButton>();
    std::unique_ptr<MenuBarPopoverCloseMonitor> monitor_ =
        std::make_unique<MenuBarPopoverCloseMonitor>(platform_);
};

TEST_F(MenuBarPopoverCloseMonitor_Session, WatchesClicksAndKeysHereAndClicksElsewhere) {
    using enum EventKind;
    EXPECT_THAT(platform_.localKinds, ElementsAre(leftMouseDown, rightMouseDown, keyDown));
    EXPECT_THAT(platform_.globalKinds, ElementsAre(leftMouseDown, rightMouseDown));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, EscapeClosesAndGoesNoFurther) {
    EXPECT_EQ(platform_.press(escapeKeyCode), EventFate::isSwallowed);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, OtherKeysGoOn) {
    EXPECT_EQ(platform_.press(0), EventFate::goesOn);
    EXPECT_THAT(steps_, IsEmpty());
}

TEST_F(MenuBarPopoverCloseMonitor_Session, ClickElsewhereInThisApplicationClosesAndGoesOn) {
    EXPECT_EQ(platform_.click(elsewhere), EventFate::goesOn);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, RightClickElsewhereClosesToo) {
    EXPECT_EQ(platform_.click(elsewhere, EventKind::rightMouseDown), EventFate::goesOn);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, ClickInsideLeavesItOpen) {
    EXPECT_EQ(platform_.click(inThePopover), EventFate::goesOn);
    EXPECT_THAT(steps_, IsEmpty());
}

TEST_F(MenuBarPopoverCloseMonitor_Session, ClickOnTheButtonIsTheTogglesBusiness) {
    EXPECT_EQ(platform_.click(onTheButton), EventFate::goesOn);
    EXPECT_THAT(steps_, IsEmpty());
}

TEST_F(MenuBarPopoverCloseMonitor_Session, EdgesOfTheButtonCountAsMathematicsHasThem) {
    platform_.clickInAnotherApplication({100, 0});
    EXPECT_THAT(steps_, IsEmpty());
    platform_.clickInAnotherApplication({130, 0});
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, ClickInAnotherApplicationCloses) {
    platform_.clickInAnotherApplication(elsewhere);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, RightClickInAnotherApplicationClosesToo) {
    platform_.clickInAnotherApplication(elsewhere, EventKind::rightMouseDown);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, ClickIsNothingToAPopoverThatIsNotShown) {
    popover_->shown = false;
    platform_.click(elsewhere);
    platform_.clickInAnotherApplication(elsewhere);
    EXPECT_THAT(steps_, IsEmpty());
}

TEST_F(MenuBarPopoverCloseMonitor_Session, ClickIsNothingWhenThePopoverHasGone) {
    popover_.reset();
    platform_.clickInAnotherApplication(elsewhere);
    EXPECT_EQ(platform_.click(elsewhere), EventFate::goesOn);
    EXPECT_THAT(steps_, IsEmpty());
}

TEST_F(MenuBarPopoverCloseMonitor_Session, WithoutAFrameOfThePopoverEveryClickElsewhereCloses) {
    popover_->frame.reset();
    platform_.click(inThePopover);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, WithoutAFrameOfTheButtonThePopoversDecides) {
    button_->frame.reset();
    platform_.click(inThePopover);
    EXPECT_THAT(steps_, IsEmpty());
    platform_.click(onTheButton);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, ButtonThatHasGoneProtectsNothing) {
    button_.reset();
    platform_.click(onTheButton);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, EndsWithTheNotificationOfTheClose) {
    tellDidClose();
    EXPECT_FALSE(monitor_->hasSession(*popover_));
    EXPECT_EQ(platform_.monitorCount(), 0);
    EXPECT_EQ(popover_->observerCount(), 0);
}

TEST_F(MenuBarPopoverCloseMonitor_Session, EndsAfterTheNotificationAndNotWithinIt) {
    popover_->tellDidClose();
    EXPECT_EQ(platform_.monitorCount(), 2);
    platform_.runPosted();
    EXPECT_EQ(platform_.monitorCount(), 0);
}

TEST_F(MenuBarPopoverCloseMonitor_Session, CloseThatIsToldTwiceEndsItOnce) {
    popover_->tellDidClose();
    popover_->tellDidClose();
    platform_.runPosted();
    EXPECT_FALSE(monitor_->hasSession(*popover_));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, SecondShowingHasFreshMonitors) {
    tellDidClose();
    install();
    EXPECT_EQ(platform_.monitorCount(), 2);
    platform_.clickInAnotherApplication(elsewhere);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, NewSessionTakesThePlaceOfOneThatIsLeftOver) {
    install();
    EXPECT_EQ(platform_.monitorCount(), 2);
    EXPECT_EQ(popover_->observerCount(), 1);
    platform_.click(elsewhere);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, PopoversHaveSessionsOfTheirOwn) {
    const auto other = std::make_shared<PlayedPopover>(steps_);
    other->shown = true;
    monitor_->install(other, button_);
    tellDidClose();
    EXPECT_FALSE(monitor_->hasSession(*popover_));
    EXPECT_TRUE(monitor_->hasSession(*other));
}

TEST_F(MenuBarPopoverCloseMonitor_Session, MonitorsGoWithTheirOwner) {
    monitor_.reset();
    EXPECT_EQ(platform_.monitorCount(), 0);
    tellDidClose();
    EXPECT_THAT(steps_, IsEmpty());
}

}  // namespace
}  // namespace menubar_popover::testing
