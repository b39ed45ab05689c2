#include <cstdlib>

#include "SingleInstanceConfiguration.h"
#include "UserSurroundings.h"

namespace single_instance {
namespace {

SingleInstanceLockLocation below(const std::string& folder) {
    return {SingleInstanceLockLocation::Directory{folder}};
}

TEST(SingleInstanceConfiguration_Names, FollowFromTheBundle) {
    const SingleInstanceConfiguration configuration({.bundleIdentifier = "org.example.App"});
    EXPECT_EQ(configuration.bundleIdentifier, "org.example.App");
    EXPECT_EQ(configuration.lockFileName, "org.example.App.lock");
    EXPECT_EQ(configuration.activationSignalName, "org.example.App.single-instance.activate");
}

TEST(SingleInstanceConfiguration_Names, GivenOnesCount) {
    const SingleInstanceConfiguration configuration({.bundleIdentifier = "org.example.App",
                                                     .lockFileName = "one",
                                                     .activationSignalName = "wake"});
    EXPECT_EQ(configuration.lockFileName, "one");
    EXPECT_EQ(configuration.activationSignalName, "wake");
}

TEST(SingleInstanceConfiguration_Names, WithoutABundleFollowFromTheProcess) {
    const SingleInstanceConfiguration configuration({});
    EXPECT_EQ(configuration.bundleIdentifier, "single_instance_tests");
    EXPECT_EQ(configuration.lockFileName, "single_instance_tests.lock");
    EXPECT_EQ(configuration.activationSignalName, "single_instance_tests.single-instance.activate");
}

TEST(SingleInstanceConfiguration_Paths, HaveAFolderOfTheBundleBelowAGivenDirectory) {
    const SingleInstanceConfiguration configuration({.bundleIdentifier = "org.example.App",
                                                     .lockLocation = below("/base"),
                                                     .lockFileName = "one"});
    EXPECT_EQ(configuration.lockURL(), "/base/org.example.App/one");
    EXPECT_EQ(configuration.duplicateLaunchRequestsURL(),
              "/base/org.example.App/DuplicateLaunchRequests");
}

TEST(SingleInstanceConfiguration_Paths, HaveAFolderOfTheBundleInApplicationSupportToo) {
    const SingleInstanceConfiguration configuration({.bundleIdentifier = "org.example.App"});
    EXPECT_EQ(configuration.lockURL(),
              applicationSupportFolder() + "/org.example.App/org.example.App.lock");
}

TEST(SingleInstanceConfiguration_Policy, AlwaysSingleAllowsNoOther) {
    EXPECT_FALSE(SingleInstancePolicy{}.allowsMultipleInstances());
}

TEST(SingleInstanceConfiguration_Policy, UserDefaultsDecideByTheKey) {
    const auto boolean = [](const std::string& key) { return key == "allow"; };
    EXPECT_TRUE((SingleInstancePolicy{SingleInstancePolicy::UserDefaults{boolean, "allow"}}
                     .allowsMultipleInstances()));
    EXPECT_FALSE((SingleInstancePolicy{SingleInstancePolicy::UserDefaults{boolean, "other"}}
                      .allowsMultipleInstances()));
}

TEST(UserSurroundings_Home, HasNoTrailingSlash) {
    setenv("HOME", "/home/somebody//", 1);
    EXPECT_EQ(userHome(), "/home/somebody");
}

TEST(UserSurroundings_Home, IsTheOneOfTheUserDatabaseWithoutTheVariable) {
    unsetenv("HOME");
    EXPECT_TRUE(userHome().starts_with('/'));
}

}  // namespace
}  // namespace single_instance
