#include <cstdlib>

#include "UserSurroundings.h"

namespace single_instance {
namespace {

class ApplicationSupportFolder_Linux : public ::testing::Test {
  protected:
    ApplicationSupportFolder_Linux() { setenv("HOME", "/home/somebody", 1); }
};

TEST_F(ApplicationSupportFolder_Linux, IsTheOneThatTheUserChose) {
    setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(applicationSupportFolder(), "/data");
}

TEST_F(ApplicationSupportFolder_Linux, LiesBelowTheHomeOtherwise) {
    unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(applicationSupportFolder(), "/home/somebody/.local/share");
}

TEST_F(ApplicationSupportFolder_Linux, IsNoRelativePath) {
    setenv("XDG_DATA_HOME", "data", 1);
    EXPECT_EQ(applicationSupportFolder(), "/home/somebody/.local/share");
    setenv("XDG_DATA_HOME", "", 1);
    EXPECT_EQ(applicationSupportFolder(), "/home/somebody/.local/share");
}

}  // namespace
}  // namespace single_instance
