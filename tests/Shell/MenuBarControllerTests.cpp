#include "MenuBarController.h"
#include "ShellHarness.h"

namespace tarnbeck {
namespace {

using enum AppConfiguration::AppMode;
using testing::dirtyRepositoryAt;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::repositoryAt;
using testing::ShellHarness;
using ::testing::SizeIs;

class MenuBar : public ::testing::Test {
  protected:
    MenuBar() {
        shell.launch();
        shell.takeEvents();
    }
    MenuBarController& controller() { return shell.app->menuBarController(); }
    // The words of the last icon.
    std::string toolTip() const { return shell.images().back().toolTip; }
    void configure(const std::function<void(AppConfiguration&)>& change) {
        AppConfiguration configuration = shell.app->scanner().configuration();
        change(configuration);
        shell.app->scanner().setConfiguration(configuration);
        shell.runUntilIdle();
    }
    void click(ClickEvent event) { shell.desktop.clickWith(event); }

    ShellHarness shell{menuBarOnly};
};

using MenuBar_Icon = MenuBar;

TEST_F(MenuBar_Icon, IsDrawnWhenTheItemIsInstalled) {
    ASSERT_THAT(shell.images(), SizeIs(1));
    EXPECT_EQ(shell.images()[0].menuBarImage.width, 18);
    EXPECT_EQ(toolTip(), "Tarnbeck");
}

TEST_F(MenuBar_Icon, CountsRepositoriesThatAreNotClean) {
    shell.show({dirtyRepositoryAt("/r/a"), repositoryAt("/r/b"), dirtyRepositoryAt("/r/c")});
    EXPECT_EQ(toolTip(), "Tarnbeck · 2 dirty repos");
    EXPECT_EQ(shell.images().back().menuBarImage.width, 18 + 3 + 10);
}

TEST_F(MenuBar_Icon, IsNotDrawnAgainForAChangeThatLeavesItsValues) {
    shell.show({dirtyRepositoryAt("/r/a")});
    const std::size_t before = shell.images().size();
    shell.show({dirtyRepositoryAt("/r/b")});
    configure([](AppConfiguration& configuration) { configuration.showTags = false; });
    controller().refreshIcon();
    EXPECT_EQ(shell.images().size(), before);
}

TEST_F(MenuBar_Icon, IsDrawnOnceForEachNewCount) {
    for (int count = 1; count <= 3; ++count) {
        std::vector<GitRepository> repositories;
        for (int index = 0; index < count; ++index) {
            repositories.push_back(dirtyRepositoryAt("/r/" + std::to_string(index)));
        }
        shell.show(std::move(repositories));
    }
    EXPECT_THAT(shell.images(), SizeIs(1 + 3));
}

TEST_F(MenuBar_Icon, FollowsAChangeInALaterTurnOfTheLoop) {
    shell.app->scanner().setRepositories(
        {std::make_shared<const GitRepository>(dirtyRepositoryAt("/r/a"))});
    EXPECT_THAT(shell.images(), SizeIs(1));
    shell.runUntilIdle();
    EXPECT_THAT(shell.images(), SizeIs(2));
}

TEST_F(MenuBar_Icon, ShowsTheGlyphAloneWhenCountsAreOff) {
    shell.show({dirtyRepositoryAt("/r/a")});
    configure([](AppConfiguration& configuration) {
        configuration.showDirtyCountInMenuBar = false;
        configuration.showRunnerMonitoring = true;
    });
    EXPECT_EQ(shell.images().back().menuBarImage.width, 18);
    EXPECT_EQ(toolTip(), "Tarnbeck");
}

TEST_F(MenuBar_Icon, TellsThatTheMachineIsKeptAwake) {
    controller().toggleCaffeinate();
    shell.runUntilIdle();
    EXPECT_EQ(toolTip(), "Tarnbeck · awake");
    EXPECT_FALSE(shell.images().back().menuBarImage.isTemplate);
}

TEST_F(MenuBar_Icon, NeedsAStatusItem) {
    ShellHarness other;
    other.make();
    other.app->menuBarController().refreshIcon();
    EXPECT_THAT(other.images(), IsEmpty());
}

TEST_F(MenuBar_Icon, IsDrawnForTheFirstTimeByAnInstallationThatFailedBefore) {
    ShellHarness other;
    other.make();
    const auto button = std::exchange(other.desktop.button, nullptr);
    other.app->menuBarController().installStatusItem();
    other.desktop.button = button;
    other.app->menuBarController().installStatusItem();
    EXPECT_THAT(other.images(), SizeIs(1));
}

TEST_F(MenuBar_Icon, IsLeftAloneWhenTheControllerHasGone) {
    shell.app->scanner().setRepositories(
        {std::make_shared<const GitRepository>(dirtyRepositoryAt("/r/a"))});
    shell.app.reset();
    shell.runUntilIdle();
    EXPECT_THAT(shell.images(), SizeIs(1));
}

using MenuBar_Click = MenuBar;

constexpr ClickEvent plain{ClickKind::leftMouseUp, false};
constexpr ClickEvent withControl{ClickKind::leftMouseUp, true};
constexpr ClickEvent right{ClickKind::rightMouseUp, false};

TEST_F(MenuBar_Click, IsAskedForWhenAButtonOfTheMouseGoesUp) {
    EXPECT_THAT(shell.desktop.button->kinds,
                ElementsAre(ClickKind::leftMouseUp, ClickKind::rightMouseUp));
}

TEST_F(MenuBar_Click, PlainOneOpensThePopover) {
    click(plain);
    EXPECT_TRUE(shell.desktop.popover->shown);
}

TEST_F(MenuBar_Click, OneWithoutAnEventOpensThePopover) {
    shell.desktop.clickWith(std::nullopt);
    EXPECT_TRUE(shell.desktop.popover->shown);
}

TEST_F(MenuBar_Click, RightOneOpensTheMenuAndNotThePopover) {
    click(right);
    EXPECT_THAT(shell.takeEvents(), ElementsAre("menu"));
}

TEST_F(MenuBar_Click, ControlClickOpensTheMenuAndNotThePopover) {
    click(withControl);
    EXPECT_THAT(shell.takeEvents(), ElementsAre("menu"));
}

TEST_F(MenuBar_Click, AfterAMenuPlainOnesReachThePopoverAgain) {
    click(right);
    shell.takeEvents();
    click(plain);
    EXPECT_TRUE(shell.desktop.popover->shown);
}

TEST_F(MenuBar_Click, OnTheButtonOfAnOpenPopoverClosesIt) {
    click(plain);
    click(plain);
    EXPECT_FALSE(shell.desktop.popover->shown);
}

using MenuBar_Popover = MenuBar;

TEST_F(MenuBar_Popover, HasANewViewAtEachOpeningInTheSameHost) {
    click(plain);
    click(plain);
    shell.runUntilIdle();
    click(plain);
    EXPECT_THAT(
        shell.takeEvents(),
        ElementsAre("host", "popover view with strip 1702x1015", "popover below", "popover closed",
                    "view dropped", "popover view with strip 1702x1015", "popover below"));
}

TEST_F(MenuBar_Popover, DropsItsViewByWhateverPathItCloses) {
    click(plain);
    shell.desktop.popover->close();
    shell.takeEvents();
    shell.runUntilIdle();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("view dropped"));
}

TEST_F(MenuBar_Popover, KeepsTheViewOfANewShowingThatCameFirst) {
    click(plain);
    click(plain);
    click(plain);
    shell.takeEvents();
    shell.runUntilIdle();
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
}

TEST_F(MenuBar_Popover, IsWatchedWhileItIsShown) {
    click(plain);
    EXPECT_FALSE(shell.desktop.localMonitor.expired());
    click(plain);
    shell.runUntilIdle();
    EXPECT_TRUE(shell.desktop.localMonitor.expired());
}

TEST_F(MenuBar_Popover, DoesNotActivateTheApplication) {
    click(plain);
    EXPECT_THAT(shell.takeEvents(),
                ::testing::Not(::testing::Contains("activate for the popover")));
}

using MenuBar_PopoverSize = MenuBar;

TEST_F(MenuBar_PopoverSize, LeavesAMarginOnASmallScreen) {
    EXPECT_EQ(controller().preferredPopoverSize(ScreenSize{800, 600}), (ScreenSize{788, 564}));
}

TEST_F(MenuBar_PopoverSize, IsNeverSmallerThanItsContent) {
    EXPECT_EQ(controller().preferredPopoverSize(ScreenSize{700, 500}), (ScreenSize{760, 560}));
}

TEST_F(MenuBar_PopoverSize, IsAShareOfALargeScreen) {
    EXPECT_EQ(controller().preferredPopoverSize(ScreenSize{1728, 1080}), (ScreenSize{1702, 1015}));
}

TEST_F(MenuBar_PopoverSize, IsRoundedDown) {
    EXPECT_EQ(controller().preferredPopoverSize(ScreenSize{1001.5, 801.5}), (ScreenSize{986, 753}));
}

TEST_F(MenuBar_PopoverSize, TakesTheMainScreenWhereNoneIsGiven) {
    EXPECT_EQ(controller().preferredPopoverSize(std::nullopt), (ScreenSize{985, 752}));
}

TEST_F(MenuBar_PopoverSize, IsFixedWithoutAnyScreen) {
    shell.desktop.mainScreen = std::nullopt;
    EXPECT_EQ(controller().preferredPopoverSize(std::nullopt), (ScreenSize{1400, 980}));
}

TEST_F(MenuBar_PopoverSize, IsThatOfTheScreenOfTheButton) {
    shell.desktop.button->screen = ScreenSize{800, 600};
    click(plain);
    EXPECT_THAT(shell.takeEvents(), ::testing::Contains("popover view with strip 788x564"));
}

}  // namespace
}  // namespace tarnbeck
