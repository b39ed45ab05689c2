#include <filesystem>

#include "GitFixture.h"
#include "Json.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
namespace fs = std::filesystem;

class ConfigurationEndToEnd : public ::testing::Test {
  protected:
    ProgramResult call(std::vector<std::string> arguments) {
        return run(
            {.arguments = std::move(arguments), .home = folder.path(), .folder = folder.path()});
    }
    std::string configurationFile() const { return folder / ".config/tarnbeck/config.json"; }
    std::vector<std::string> configuredRepositories() const {
        std::vector<std::string> paths;
        const auto json = parsedJson(contentOf(configurationFile()));
        for (const auto& path : json->at("repoPaths").as_array()) {
            paths.emplace_back(path.as_string());
        }
        return paths;
    }

    TemporaryFolder folder;
};

TEST_F(ConfigurationEndToEnd, AddKeepsARepositoryForGood) {
    const std::string repository = makeRepository(folder / "alpha");
    const auto result = call({"add", "alpha"});
    EXPECT_EQ(result.output, "Added " + repository + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(configuredRepositories(), ::testing::ElementsAre(repository));
    EXPECT_THAT(call({}).output, HasSubstr("✓ alpha"));
}

TEST_F(ConfigurationEndToEnd, AddOfAPathInsideAddsTheRepository) {
    const std::string repository = makeRepository(folder / "alpha");
    call({"add", "alpha/file.txt"});
    EXPECT_THAT(configuredRepositories(), ::testing::ElementsAre(repository));
}

TEST_F(ConfigurationEndToEnd, AddOfAKnownOneSaysSoAndWritesNothing) {
    const std::string repository = makeRepository(folder / "alpha");
    const std::string before = R"({"repoPaths":["~/alpha"]})";
    folder.write(".config/tarnbeck/config.json", before);
    const auto result = call({"add", repository + "/"});
    EXPECT_EQ(result.output, "Already there: " + repository + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(contentOf(configurationFile()), before);
}

TEST_F(ConfigurationEndToEnd, AddTakesWhatItCanAndNamesTheRest) {
    const std::string repository = makeRepository(folder / "alpha");
    folder.makeFolder("plain");
    const auto result = call({"add", "missing", "plain", "alpha"});
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: missing: does not exist\n"
              "tarnbeck-cli: plain: is neither a git repository nor inside one\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(configuredRepositories(), ::testing::ElementsAre(repository));
}

TEST_F(ConfigurationEndToEnd, AddRefusesAPathThatTheFileCantHold) {
    makeRepository(folder / "a\xFF");
    const auto result = call({"add", "a\xFF"});
    EXPECT_THAT(result.errors, HasSubstr("its path is not valid UTF-8"));
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(fs::exists(configurationFile()));
}

TEST_F(ConfigurationEndToEnd, AddToACorruptFileKeepsThatOneBeside) {
    folder.write(".config/tarnbeck/config.json", "{ broken");
    makeRepository(folder / "alpha");
    const auto result = call({"add", "alpha"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, HasSubstr("Failed to load config: "));
    EXPECT_EQ(contentOf(configurationFile() + ".broken"), "{ broken");
}

TEST_F(ConfigurationEndToEnd, AddThatCantBeSavedGivesOneAndSaysWhy) {
    folder.write(".config", "a file where the folder should be");
    makeRepository(folder / "alpha");
    const auto result = call({"add", "alpha"});
    EXPECT_THAT(result.errors, HasSubstr("tarnbeck-cli: Failed to save config: "));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 1);
}

TEST_F(ConfigurationEndToEnd, RemoveForgetsARepositoryAndLeavesItsFiles) {
    const std::string alpha = makeRepository(folder / "alpha");
    const std::string beta = makeRepository(folder / "beta");
    call({"add", "alpha", "beta"});
    const auto result = call({"remove", "alpha"});
    EXPECT_EQ(result.output, "Removed " + alpha + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(configuredRepositories(), ::testing::ElementsAre(beta));
    EXPECT_TRUE(fs::exists(alpha + "/.git"));
}

TEST_F(ConfigurationEndToEnd, RemoveFindsWhatIsWrittenWithATilde) {
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["~/gone/","/other"]})");
    EXPECT_EQ(call({"remove", "gone"}).status, 0);
    EXPECT_THAT(configuredRepositories(), ::testing::ElementsAre("/other"));
}

TEST_F(ConfigurationEndToEnd, RemoveOfTheLastOneTellsWhatComesNext) {
    makeRepository(folder / "alpha");
    call({"add", "alpha"});
    EXPECT_THAT(call({"remove", "alpha"}).output, HasSubstr("No repository is left"));
}

TEST_F(ConfigurationEndToEnd, RemoveOfAnUnknownOneGivesOneAndWritesNothing) {
    const auto result = call({"remove", "alpha"});
    EXPECT_EQ(result.errors, "tarnbeck-cli: alpha: is not in the configuration\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(fs::exists(configurationFile()));
}

TEST_F(ConfigurationEndToEnd, DiscoverPrintsWhatItFindsSortedAndWritesNothing) {
    const std::string b = makeRepository(folder / "projects/b");
    const std::string a = makeRepository(folder / "projects/deep/a");
    const auto result = call({"discover"});
    EXPECT_EQ(result.output, b + "\n" + a + "\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(fs::exists(configurationFile()));
}

TEST_F(ConfigurationEndToEnd, DiscoverSearchesTheNamedFolders) {
    const std::string a = makeRepository(folder / "one/a");
    const std::string b = makeRepository(folder / "two/b");
    EXPECT_EQ(call({"discover", "two", "~/one"}).output, a + "\n" + b + "\n");
}

TEST_F(ConfigurationEndToEnd, DiscoverLeavesOutIgnoredFolders) {
    folder.write(".config/tarnbeck/config.json", R"({"discoveryIgnorePaths":["~/one/skip"]})");
    const std::string a = makeRepository(folder / "one/a");
    makeRepository(folder / "one/skip/b");
    EXPECT_EQ(call({"discover", "one"}).output, a + "\n");
}

TEST_F(ConfigurationEndToEnd, DiscoverJsonIsAnArrayOfPaths) {
    const std::string a = makeRepository(folder / "one/a \"quoted\"");
    const auto json = parsedJson(call({"discover", "--json", "one"}).output);
    ASSERT_TRUE(json);
    ASSERT_EQ(json->as_array().size(), 1U);
    EXPECT_EQ(json->at(0).as_string(), a);
}

TEST_F(ConfigurationEndToEnd, DiscoverThatFindsNothingIsAWordAndStatusZero) {
    folder.makeFolder("empty");
    const auto result = call({"discover", "empty"});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "tarnbeck-cli: no repository found below empty\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ConfigurationEndToEnd, DiscoverNamesAFolderThatIsMissingAndSearchesTheOthers) {
    const std::string a = makeRepository(folder / "one/a");
    const auto result = call({"discover", "missing", "one/a/file.txt", "one"});
    EXPECT_EQ(result.output, a + "\n");
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: missing: does not exist\n"
              "tarnbeck-cli: one/a/file.txt: is not a folder\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(ConfigurationEndToEnd, DiscoverKeepsAFileNameAsItIsForOtherPrograms) {
    const std::string a = makeRepository(folder / "one/a\033\xFF");
    EXPECT_EQ(call({"discover", "one"}).output, a + "\n");
}

TEST_F(ConfigurationEndToEnd, ConfigShowsTheFilesAndEachValue) {
    folder.write(".config/tarnbeck/config.json",
                 R"({"repoPaths":["/a","/b"],"appBackdropOpacity":1.5,"runnerNamePrefix":""})");
    const std::string output = call({"config"}).output;
    EXPECT_THAT(output, StartsWith("configuration                 " + configurationFile() + "\n"));
    EXPECT_THAT(output, HasSubstr("\nlog                           " +
                                  (folder / ".config/tarnbeck/scan.log") + " (not there yet)\n"));
    EXPECT_THAT(output, HasSubstr("\nrepoPaths                     /a\n"
                                  "                              /b\n"));
    EXPECT_THAT(output, HasSubstr("\ndiscoveryIgnorePaths          (none)\n"));
    EXPECT_THAT(output, HasSubstr("\nrunnerNamePrefix              (empty)\n"));
    EXPECT_THAT(output, HasSubstr("\nappMode                       menuBarOnly\n"));
    EXPECT_THAT(output, HasSubstr("\nappBackdropOpacity            1\n"));
}

TEST_F(ConfigurationEndToEnd, ConfigJsonHasTheFilesAndTheValuesInDeclaredOrder) {
    EXPECT_EQ(call({"config", "--json"}).output,
              R"({"files":{"configuration":")" + configurationFile() + R"(","log":")" +
                  (folder / ".config/tarnbeck/scan.log") +
                  R"("},"values":{"repoPaths":[],"scanDirectories":["~/projects"],)"
                  R"("discoveryIgnorePaths":[],"scanIntervalMinutes":30,"showRemoteBranches":true,)"
                  R"("showTags":true,"showDirtyCountInMenuBar":true,"showIssues":true,)"
                  R"("keepAwakeOnLaunch":true,"gitHubBridgeMonitoringEnabled":false,)"
                  R"("showRunnerMonitoring":true,"runnerRepoSlugs":[],"runnerNamePrefix":"",)"
                  R"("runnerRefreshIntervalSeconds":10,"appMode":"menuBarOnly",)"
                  R"("appBackdropOpacity":0.78,"popoverBackdropOpacity":0.55}})"
                  "\n");
}

TEST_F(ConfigurationEndToEnd, ConfigOfACorruptFileShowsTheDefaultsAndSaysWhyElsewhere) {
    folder.write(".config/tarnbeck/config.json", R"({"showTags":1})");
    const auto result = call({"config", "--json"});
    ASSERT_TRUE(parsedJson(result.output));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: Failed to load config: showTags: expected true or false\n");
    EXPECT_EQ(contentOf(configurationFile()), R"({"showTags":1})");
}

TEST_F(ConfigurationEndToEnd, UnreadableFolderIsNamedAndTheRepositoriesAreShown) {
    folder.write(".config/tarnbeck/config.json", "{}");
    const std::string repository = makeRepository(folder / "alpha");
    fs::permissions(folder / ".config/tarnbeck/config.json", fs::perms::none);
    const auto result = run(
        {.arguments = {"status", repository}, .home = folder.path(), .withoutPrivileges = true});
    EXPECT_EQ(result.errors, "tarnbeck-cli: Failed to load config: Permission denied\n");
    EXPECT_THAT(result.output, HasSubstr("✓ alpha"));
    EXPECT_EQ(result.status, 0);
}

TEST_F(ConfigurationEndToEnd, FileThatCantBeReadIsNeverReplaced) {
    makeRepository(folder / "projects/alpha");
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["/x"]})");
    fs::permissions(folder / ".config/tarnbeck/config.json", fs::perms::none);
    const auto result = run({.arguments = {}, .home = folder.path(), .withoutPrivileges = true});
    EXPECT_THAT(result.errors, HasSubstr("Failed to save config: "));
    fs::permissions(folder / ".config/tarnbeck/config.json", fs::perms::owner_all);
    EXPECT_EQ(contentOf(configurationFile()), R"({"repoPaths":["/x"]})");
}

TEST_F(ConfigurationEndToEnd, UnwritableFolderCostsTheLogAndTheFirstFindingsOnly) {
    folder.makeFolder(".config/tarnbeck");
    makeRepository(folder / "projects/alpha");
    fs::permissions(folder / ".config/tarnbeck", fs::perms::owner_read | fs::perms::owner_exec);
    const auto result = run({.arguments = {}, .home = folder.path(), .withoutPrivileges = true});
    EXPECT_THAT(result.output, HasSubstr("✓ alpha"));
    EXPECT_THAT(result.errors, HasSubstr("Failed to save config: Permission denied"));
    EXPECT_EQ(result.status, 0);
}

TEST_F(ConfigurationEndToEnd, WithoutHomeVariableTheAccountsHomeIsTaken) {
    const std::string a = makeRepository(folder / "one/a");
    const auto result = run({.arguments = {"discover", "one"}, .folder = folder.path()});
    EXPECT_EQ(result.output, a + "\n");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
}  // namespace tarnbeck::testing
