#include "AppConfiguration.h"
#include "ConfigurationFixture.h"
#include "JsonCoding.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AppConfiguration_Reading : public testing::ConfigurationFixture {};
class AppConfiguration_WrongTypes : public testing::ConfigurationFixture {};

TEST_F(AppConfiguration_Reading, MissingFileGivesTheDefaultsWithoutAWord) {
    EXPECT_EQ(load(), AppConfiguration{});
    EXPECT_THAT(messages_, IsEmpty());
}

TEST(AppConfiguration_Defaults, AreTheDocumentedOnes) {
    const AppConfiguration configuration;
    EXPECT_THAT(configuration.repoPaths, IsEmpty());
    EXPECT_THAT(configuration.scanDirectories, ElementsAre("~/projects"));
    EXPECT_THAT(configuration.discoveryIgnorePaths, IsEmpty());
    EXPECT_EQ(configuration.scanIntervalMinutes, 30);
    EXPECT_TRUE(configuration.showRemoteBranches);
    EXPECT_TRUE(configuration.showTags);
    EXPECT_TRUE(configuration.showDirtyCountInMenuBar);
    EXPECT_TRUE(configuration.showIssues);
    EXPECT_TRUE(configuration.keepAwakeOnLaunch);
    EXPECT_FALSE(configuration.gitHubBridgeMonitoringEnabled);
    EXPECT_TRUE(configuration.showRunnerMonitoring);
    EXPECT_THAT(configuration.runnerRepoSlugs, IsEmpty());
    EXPECT_EQ(configuration.runnerNamePrefix, "");
    EXPECT_EQ(configuration.runnerRefreshIntervalSeconds, 10);
    EXPECT_EQ(configuration.appMode, AppConfiguration::AppMode::menuBarOnly);
    EXPECT_EQ(configuration.appBackdropOpacity, 0.78);
    EXPECT_EQ(configuration.popoverBackdropOpacity, 0.55);
}

TEST(AppConfiguration_Keys, AreTheFieldNamesInTheirOrder) {
    std::vector<std::string> keys;
    forEachField<AppConfiguration>(
        [&](std::string_view name, auto /*member*/) { keys.emplace_back(name); });
    EXPECT_THAT(
        keys,
        ElementsAre("repoPaths", "scanDirectories", "discoveryIgnorePaths", "scanIntervalMinutes",
                    "showRemoteBranches", "showTags", "showDirtyCountInMenuBar", "showIssues",
                    "keepAwakeOnLaunch", "gitHubBridgeMonitoringEnabled", "showRunnerMonitoring",
                    "runnerRepoSlugs", "runnerNamePrefix", "runnerRefreshIntervalSeconds",
                    "appMode", "appBackdropOpacity", "popoverBackdropOpacity"));
}

TEST(AppConfiguration_AppMode, AllCasesAreListed) {
    using Mode = AppConfiguration::AppMode;
    EXPECT_THAT(rawValues(Mode{}),
                ElementsAre(std::pair{Mode::menuBarOnly, std::string_view("menuBarOnly")},
                            std::pair{Mode::regular, std::string_view("regular")}));
}

TEST_F(AppConfiguration_Reading, EmptyObjectGivesTheDefaults) {
    write("{}");
    EXPECT_EQ(load(), AppConfiguration{});
    EXPECT_THAT(load().scanDirectories, ElementsAre("~/projects"));
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(AppConfiguration_Reading, EveryKeyIsRead) {
    write(R"({
        "repoPaths": ["~/a", "/b"], "scanDirectories": ["/c"], "discoveryIgnorePaths": ["/d"],
        "scanIntervalMinutes": 5, "showRemoteBranches": false, "showTags": false,
        "showDirtyCountInMenuBar": false, "showIssues": false, "keepAwakeOnLaunch": false,
        "gitHubBridgeMonitoringEnabled": true, "showRunnerMonitoring": false,
        "runnerRepoSlugs": ["o/r"], "runnerNamePrefix": "mac-", "runnerRefreshIntervalSeconds": 60,
        "appMode": "regular", "appBackdropOpacity": 0.5, "popoverBackdropOpacity": 0.25})");
    const AppConfiguration expected{.repoPaths = {"~/a", "/b"},
                                    .scanDirectories = {"/c"},
                                    .discoveryIgnorePaths = {"/d"},
                                    .scanIntervalMinutes = 5,
                                    .showRemoteBranches = false,
                                    .showTags = false,
                                    .showDirtyCountInMenuBar = false,
                                    .showIssues = false,
                                    .keepAwakeOnLaunch = false,
                                    .gitHubBridgeMonitoringEnabled = true,
                                    .showRunnerMonitoring = false,
                                    .runnerRepoSlugs = {"o/r"},
                                    .runnerNamePrefix = "mac-",
                                    .runnerRefreshIntervalSeconds = 60,
                                    .appMode = AppConfiguration::AppMode::regular,
                                    .appBackdropOpacity = 0.5,
                                    .popoverBackdropOpacity = 0.25};
    EXPECT_EQ(load(), expected);
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(AppConfiguration_Reading, AbsentKeyTakesItsDefaultAndTheRestIsKept) {
    write(R"({"showTags": false, "repoPaths": ["/a"]})");
    EXPECT_EQ(load(), (AppConfiguration{.repoPaths = {"/a"}, .showTags = false}));
}

TEST_F(AppConfiguration_Reading, NullOfAnyKeyTakesItsDefault) {
    JsonObject object;
    forEachField<AppConfiguration>(
        [&](std::string_view name, auto /*member*/) { object[name] = nullptr; });
    write(jsonText(object));
    EXPECT_EQ(load(), AppConfiguration{});
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(AppConfiguration_Reading, EmptyListIsNotAnAbsentOne) {
    write(R"({"scanDirectories": []})");
    EXPECT_THAT(load().scanDirectories, IsEmpty());
}

TEST_F(AppConfiguration_Reading, UnknownKeysAreIgnored) {
    write(R"({"future": {"a": [1]}, "showTags": false})");
    EXPECT_EQ(load(), AppConfiguration{.showTags = false});
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(AppConfiguration_Reading, LastOfRepeatedKeysWins) {
    write(R"({"scanIntervalMinutes": 1, "scanIntervalMinutes": 2})");
    EXPECT_EQ(load().scanIntervalMinutes, 2);
}

TEST_F(AppConfiguration_Reading, ByteOrderMarkIsPassedOver) {
    write("\xEF\xBB\xBF{\"showTags\": false}");
    EXPECT_FALSE(load().showTags);
}

TEST_F(AppConfiguration_Reading, WholeNumberWithAPointIsAnInteger) {
    write(R"({"scanIntervalMinutes": 45.0})");
    EXPECT_EQ(load().scanIntervalMinutes, 45);
}

TEST_F(AppConfiguration_Reading, IntegerServesAsAnOpacity) {
    write(R"({"appBackdropOpacity": 1, "popoverBackdropOpacity": 0})");
    EXPECT_EQ(load().appBackdropOpacity, 1);
    EXPECT_EQ(load().popoverBackdropOpacity, 0);
}

TEST_F(AppConfiguration_Reading, OpacityAboveOneIsOne) {
    write(R"({"appBackdropOpacity": 1.5, "popoverBackdropOpacity": 2})");
    EXPECT_EQ(load().appBackdropOpacity, 1);
    EXPECT_EQ(load().popoverBackdropOpacity, 1);
}

TEST_F(AppConfiguration_Reading, OpacityBelowZeroIsZero) {
    write(R"({"appBackdropOpacity": -1, "popoverBackdropOpacity": -0.01})");
    EXPECT_EQ(load().appBackdropOpacity, 0);
    EXPECT_EQ(load().popoverBackdropOpacity, 0);
}

TEST_F(AppConfiguration_Reading, OtherNumbersAreNotLimited) {
    write(R"({"scanIntervalMinutes": -5, "runnerRefreshIntervalSeconds": 0})");
    EXPECT_EQ(load().scanIntervalMinutes, -5);
    EXPECT_EQ(load().runnerRefreshIntervalSeconds, 0);
}

TEST_F(AppConfiguration_Reading, RepositoriesKeepTheirSpelling) {
    write(R"({"repoPaths": ["~/a/", "/b/../c"]})");
    EXPECT_THAT(load().repoPaths, ElementsAre("~/a/", "/b/../c"));
}

struct WrongValue {
    const char* key;
    const char* value;
    const char* error;
};

TEST_F(AppConfiguration_WrongTypes, OneFailsTheWholeDecodingAndSaysWhere) {
    for (const auto& [key, value, error] :
         std::vector<WrongValue>{{"repoPaths", "\"/a\"", ": expected an array"},
                                 {"scanDirectories", "[1]", "[0]: expected a text"},
                                 {"discoveryIgnorePaths", "[\"/a\", null]", "[1]: expected a text"},
                                 {"scanIntervalMinutes", "30.5", ": expected an integer"},
                                 {"scanIntervalMinutes", "\"30\"", ": expected an integer"},
                                 {"scanIntervalMinutes", "true", ": expected an integer"},
                                 {"scanIntervalMinutes", "1e30", ": expected an integer"},
                                 {"showTags", "1", ": expected true or false"},
                                 {"showTags", "\"true\"", ": expected true or false"},
                                 {"runnerNamePrefix", "7", ": expected a text"},
                                 {"appBackdropOpacity", "\"0.5\"", ": expected a number"},
                                 {"popoverBackdropOpacity", "false", ": expected a number"},
                                 {"appMode", "\"dock\"", ": expected one of the known words"},
                                 {"appMode", "0", ": expected one of the known words"}}) {
        write(std::string("{\"showIssues\": false, \"") + key + "\": " + value + "}");
        messages_.clear();
        EXPECT_EQ(load(), AppConfiguration{}) << key;
        EXPECT_THAT(messages_, ElementsAre(std::string("Failed to load config: ") + key + error));
    }
}

TEST_F(AppConfiguration_WrongTypes, WhatIsNoObjectGivesTheDefaults) {
    for (const char* content : {"[]", "null", "3", "\"text\""}) {
        write(content);
        messages_.clear();
        EXPECT_EQ(load(), AppConfiguration{});
        EXPECT_THAT(messages_, ElementsAre("Failed to load config: expected an object"));
    }
}

TEST(AppConfiguration_RepeatedRepositories, AreDroppedBehindTheFirst) {
    AppConfiguration configuration{.repoPaths = {"/a", "~/b", "/a", "/home/ann/b", "~/b/", "/c"}};
    configuration.dropRepeatedRepoPaths("/home/ann");
    EXPECT_THAT(configuration.repoPaths, ElementsAre("/a", "~/b", "/c"));
}

TEST(AppConfiguration_RepeatedRepositories, PathsThatDifferInCaseStay) {
    AppConfiguration configuration{.repoPaths = {"/a", "/A"}};
    configuration.dropRepeatedRepoPaths("/home/ann");
    EXPECT_THAT(configuration.repoPaths, ElementsAre("/a", "/A"));
}

}  // namespace
}  // namespace tarnbeck
