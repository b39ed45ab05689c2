#include "UITestLaunchMode.h"

namespace tarnbeck {

bool UITestLaunchMode::isEnabled(const LaunchInput& input) {
    if (input.contains("--ui-test-fixtures")) return true;
    const auto variable = input.environment.find("TARNBECK_UI_TEST_MODE");
    return variable != input.environment.end() && variable->second == "1";
}

}  // namespace tarnbeck
