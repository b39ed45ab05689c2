#include "MenuBarPopoverController.h"
#include "PlayedPopover.h"

namespace menubar_popover::testing {
namespace {

using ::testing::ElementsAre;

class MenuBarPopoverController_Toggle : public ::testing::Test {
  protected:
    bool toggle(bool activates = false, const void* sender = nullptr) {
        return MenuBarPopoverController::toggle(
            {.popover = popover_,
             .sender = sender,
             .button = button_,
             .activateAppOnShow = activates,
             .onWillShow = [this] { steps_.emplace_back("will show"); }},
            monitor_, platform_);
    }

    Steps steps_;
    PlayedPlatform platform_{steps_};
    std::shared_ptr<PlayedPopover> played_ = std::make_shared<PlayedPopover>(steps_);
    std::shared_ptr<Popover> popover_ = played_;
    std::shared_ptr<StatusBarButton> button_ = std::make_shared<PlayedButton>();
    MenuBarPopoverCloseMonitor monitor_{platform_};
};

TEST_F(MenuBarPopoverController_Toggle, PreparesAndShowsAClosedPopover) {
    EXPECT_TRUE(toggle());
    EXPECT_THAT(steps_, ElementsAre("will show", "show at the bottom"));
}

TEST_F(MenuBarPopoverController_Toggle, ClosesAPopoverThatIsShown) {
    toggle();
    steps_.clear();
    EXPECT_FALSE(toggle());
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverController_Toggle, HandsTheSenderOn) {
    toggle();
    steps_.clear();
    toggle(false, this);
    EXPECT_THAT(steps_, ElementsAre("close for a sender"));
}

TEST_F(MenuBarPopoverController_Toggle, ActivatesTheApplicationLastWhereAsked) {
    toggle(true);
    EXPECT_THAT(steps_, ElementsAre("will show", "show at the bottom", "activate"));
}

TEST_F(MenuBarPopoverController_Toggle, DoesNotActivateTheApplicationForAClose) {
    toggle(true);
    steps_.clear();
    toggle(true);
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverController_Toggle, WatchesForClicksFromTheShowingOn) {
    EXPECT_EQ(platform_.monitorCount(), 0);
    toggle();
    EXPECT_TRUE(monitor_.hasSession(*popover_));
    EXPECT_EQ(platform_.monitorCount(), 2);
}

TEST_F(MenuBarPopoverController_Toggle, WatchesNoMoreWhenTheCloseWasTold) {
    toggle();
    toggle();
    played_->tellDidClose();
    platform_.runPosted();
    EXPECT_FALSE(monitor_.hasSession(*popover_));
    EXPECT_EQ(platform_.monitorCount(), 0);
}

TEST_F(MenuBarPopoverController_Toggle, CanDoWithoutPreparation) {
    EXPECT_TRUE(MenuBarPopoverController::toggle({.popover = popover_, .button = button_}, monitor_,
                                                 platform_));
    EXPECT_THAT(steps_, ElementsAre("show at the bottom"));
}

// A plain click on the status button while the popover is shown arrives twice: as an event, and
// then as the button's action.
TEST_F(MenuBarPopoverController_Toggle, ClickOnTheButtonClosesThePopoverOnce) {
    toggle();
    steps_.clear();
    EXPECT_EQ(platform_.click({110, 10}), EventFate::goesOn);
    EXPECT_FALSE(toggle());
    EXPECT_THAT(steps_, ElementsAre("close"));
}

TEST_F(MenuBarPopoverController_Toggle, EndsTheSessionWhoseCloseWasNotToldYet) {
    toggle();
    toggle();
    played_->tellDidClose();
    EXPECT_TRUE(toggle());
    platform_.runPosted();
    EXPECT_TRUE(monitor_.hasSession(*popover_));
    EXPECT_EQ(platform_.monitorCount(), 2);
    EXPECT_EQ(played_->observerCount(), 1);
}

}  // namespace
}  // namespace menubar_popover::testing
