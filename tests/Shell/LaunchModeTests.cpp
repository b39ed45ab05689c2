#include "TarnbeckApp.h"
#include "UITestLaunchMode.h"

namespace tarnbeck {
namespace {

using enum AppConfiguration::AppMode;

LaunchInput given(std::vector<std::string> arguments) {
    return {.arguments = std::move(arguments)};
}

LaunchInput testModeIs(const std::string& value) {
    return {.environment = {{"TARNBECK_UI_TEST_MODE", value}}};
}

TEST(UITestLaunchMode, IsEnabledByItsSwitchAnywhere) {
    EXPECT_TRUE(UITestLaunchMode::isEnabled(given({"x", "--ui-test-fixtures", "y"})));
}

TEST(UITestLaunchMode, IsEnabledByTheVariableAtOne) {
    EXPECT_TRUE(UITestLaunchMode::isEnabled(testModeIs("1")));
}

TEST(UITestLaunchMode, IsNotEnabledByAnyOtherValue) {
    EXPECT_FALSE(UITestLaunchMode::isEnabled(testModeIs("true")));
    EXPECT_FALSE(UITestLaunchMode::isEnabled(testModeIs("")));
    EXPECT_FALSE(UITestLaunchMode::isEnabled(testModeIs("11")));
}

TEST(UITestLaunchMode, IsNotEnabledByHalfASwitch) {
    EXPECT_FALSE(UITestLaunchMode::isEnabled(given({"--ui-test-fixtures=1", "-ui-test-fixtures"})));
}

TEST(LaunchMode, IsTheConfiguredOneWithoutASwitch) {
    EXPECT_EQ(TarnbeckApp::resolveLaunchMode(regular, {}), regular);
    EXPECT_EQ(TarnbeckApp::resolveLaunchMode(menuBarOnly, {}), menuBarOnly);
}

TEST(LaunchMode, FollowsItsSwitch) {
    EXPECT_EQ(TarnbeckApp::resolveLaunchMode(menuBarOnly, given({"--app-mode=regular"})), regular);
    EXPECT_EQ(TarnbeckApp::resolveLaunchMode(regular, given({"--app-mode=menubar"})), menuBarOnly);
}

TEST(LaunchMode, IsRegularWithBothSwitchesInEitherOrder) {
    const std::string bar = "--app-mode=menubar";
    const std::string window = "--app-mode=regular";
    EXPECT_EQ(TarnbeckApp::resolveLaunchMode(menuBarOnly, given({bar, window})), regular);
    EXPECT_EQ(TarnbeckApp::resolveLaunchMode(menuBarOnly, given({window, bar})), regular);
}

TEST(LaunchMode, IsRegularOnFixturesWhateverTheSwitch) {
    EXPECT_EQ(TarnbeckApp::resolveLaunchMode(menuBarOnly,
                                             given({"--app-mode=menubar", "--ui-test-fixtures"})),
              regular);
}

TEST(LaunchMode, DoesNotKnowSwitchesInOtherForms) {
    EXPECT_EQ(TarnbeckApp::resolveLaunchMode(
                  menuBarOnly, given({"--app-mode=Regular", "--app-mode", "regular"})),
              menuBarOnly);
}

}  // namespace
}  // namespace tarnbeck
