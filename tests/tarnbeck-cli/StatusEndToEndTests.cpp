#include <filesystem>
#include <fstream>

#include "GitFixture.h"
#include "Json.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
namespace fs = std::filesystem;

class StatusEndToEnd : public ::testing::Test {
  protected:
    ProgramResult status(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "status");
        return run({.arguments = std::move(arguments), .home = home()});
    }
    std::string home() const { return folder.path(); }
    std::string configurationFile() const { return folder / ".config/tarnbeck/config.json"; }

    TemporaryFolder folder;
};

TEST_F(StatusEndToEnd, OfOneRepositoryIsOneLineAndTheCounts) {
    const std::string repository = makeRepository(folder / "alpha");
    const auto result = status({repository});
    EXPECT_EQ(result.output, "✓ alpha  main  No upstream\n1 repository · 1 clean\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(StatusEndToEnd, ShowsWhatNeedsWorkFirst) {
    makeRepository(folder / "group/alpha");
    makeRepository(folder / "group/beta");
    folder.write("group/beta/file.txt", "other\n");
    const auto result = status({folder / "group"});
    EXPECT_EQ(result.output,
              "✎ beta   main  No upstream  1 change\n"
              "✓ alpha  main  No upstream\n"
              "2 repositories · 1 needs work · 1 clean\n");
}

TEST_F(StatusEndToEnd, OfAFolderInsideAWorkTreeShowsTheRepository) {
    makeRepository(folder / "alpha");
    folder.makeFolder("alpha/src");
    EXPECT_THAT(status({folder / "alpha/src"}).output, HasSubstr("✓ alpha  main"));
}

TEST_F(StatusEndToEnd, WithoutPathDiscoversAndKeepsWhatItFound) {
    const std::string repository = makeRepository(folder / "projects/alpha");
    const auto result = status({});
    EXPECT_THAT(result.output, HasSubstr("✓ alpha"));
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(contentOf(configurationFile()), HasSubstr("\"" + repository + "\""));
}

TEST_F(StatusEndToEnd, WithoutPathShowsTheConfiguredOnes) {
    makeRepository(folder / "projects/alpha");
    makeRepository(folder / "elsewhere/beta");
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["~/elsewhere/beta"]})");
    const auto result = status({});
    EXPECT_THAT(result.output, HasSubstr("beta"));
    EXPECT_THAT(result.output, Not(HasSubstr("alpha")));
}

TEST_F(StatusEndToEnd, WithoutPathShowsARepositoryOnceThatIsConfiguredTwice) {
    const std::string repository = makeRepository(folder / "alpha");
    folder.write(".config/tarnbeck/config.json",
                 R"({"repoPaths":["~/alpha","~/alpha/",")" + repository + R"("]})");
    EXPECT_THAT(status({}).output, HasSubstr("1 repository ·"));
}

TEST_F(StatusEndToEnd, WithoutAnythingToShowTellsTheWayOn) {
    const auto result = status({});
    EXPECT_THAT(result.output, HasSubstr("No repositories found below ~/projects."));
    EXPECT_EQ(result.status, 0);
}

TEST_F(StatusEndToEnd, OfPathsNeverWritesTheConfiguration) {
    status({makeRepository(folder / "alpha"), folder / "missing"});
    EXPECT_FALSE(fs::exists(configurationFile()));
}

TEST_F(StatusEndToEnd, OfPathsLeavesACorruptConfigurationAsItIs) {
    folder.write(".config/tarnbeck/config.json", "{ broken");
    const auto result = status({makeRepository(folder / "alpha")});
    EXPECT_EQ(contentOf(configurationFile()), "{ broken");
    EXPECT_FALSE(fs::exists(configurationFile() + ".broken"));
    EXPECT_THAT(result.errors, HasSubstr("tarnbeck-cli: Failed to load config: line 1: "));
    EXPECT_EQ(result.status, 0);
}

TEST_F(StatusEndToEnd, WithoutPathKeepsACorruptConfigurationBesideTheNewOne) {
    folder.write(".config/tarnbeck/config.json", R"({"appMode":"nope"})");
    makeRepository(folder / "projects/alpha");
    EXPECT_THAT(status({}).output, HasSubstr("✓ alpha"));
    EXPECT_EQ(contentOf(configurationFile() + ".broken"), R"({"appMode":"nope"})");
}

TEST_F(StatusEndToEnd, NothingBelowAFolderIsAWordAndStatusZero) {
    const auto result = status({folder.makeFolder("empty")});
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: " + (folder / "empty") + ": no repository found below it\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(StatusEndToEnd, MissingPathIsNamedWithTheReasonAndGivesOne) {
    const auto result = status({folder / "missing", makeRepository(folder / "alpha")});
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + (folder / "missing") + ": does not exist\n");
    EXPECT_THAT(result.output, HasSubstr("1 repository · 1 clean · 1 could not be scanned"));
    EXPECT_EQ(result.status, 1);
}

TEST_F(StatusEndToEnd, ConfiguredFolderWithoutGitIsNamedWithTheReason) {
    const std::string plain = folder.makeFolder("plain");
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["~/plain","~/gone"]})");
    const auto result = status({});
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + plain +
                                 ": is not a git repository (there is no .git)\n"
                                 "tarnbeck-cli: " +
                                 (folder / "gone") + ": does not exist\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(StatusEndToEnd, RepositoryWithoutCommitIsNamedWithTheReason) {
    git("/", {"init", "-q", "--", folder / "fresh"});
    const auto result = status({folder / "fresh"});
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + (folder / "fresh") +
                                 ": has no commit yet on its current branch\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(StatusEndToEnd, CorruptHeadIsNamedWithWhatGitSaid) {
    const std::string repository = makeRepository(folder / "alpha");
    std::ofstream(repository + "/.git/HEAD") << "garbage\n";
    const auto result = status({repository});
    EXPECT_THAT(result.errors, HasSubstr(repository + ": its .git is damaged, git says: fatal: "));
    EXPECT_EQ(result.status, 1);
}

TEST_F(StatusEndToEnd, WrongUsageGivesTwoAndScansNothing) {
    const auto result = status({"--frobnicate"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_FALSE(fs::exists(folder / ".config"));
}

TEST_F(StatusEndToEnd, JsonIsOneArrayByName) {
    makeRepository(folder / "group/beta");
    makeRepository(folder / "group/Alpha");
    folder.write("group/beta/file.txt", "other\n");
    const auto result = status({"--json", folder / "group"});
    const auto json = parsedJson(result.output);
    ASSERT_TRUE(json) << result.output;
    ASSERT_EQ(json->as_array().size(), 2U);
    EXPECT_EQ(json->at(0).at("name").as_string(), "Alpha");
    EXPECT_EQ(json->at(1).at("uncommittedChanges").at(0).at("filePath").as_string(), "file.txt");
}

TEST_F(StatusEndToEnd, JsonOfNothingIsAnEmptyArray) {
    EXPECT_EQ(status({"--json"}).output, "[]\n");
}

TEST_F(StatusEndToEnd, JsonStaysPureWhenTheConfigurationIsCorrupt) {
    folder.write(".config/tarnbeck/config.json", "\xFF");
    makeRepository(folder / "projects/alpha");
    const auto result = status({"--json"});
    const auto json = parsedJson(result.output);
    ASSERT_TRUE(json) << result.output;
    EXPECT_EQ(json->as_array().size(), 1U);
    EXPECT_THAT(result.errors, HasSubstr("Failed to load config: "));
}

TEST_F(StatusEndToEnd, JsonStaysPureWhenARepositoryFails) {
    const auto result = status({"--json", folder / "missing", makeRepository(folder / "alpha")});
    const auto json = parsedJson(result.output);
    ASSERT_TRUE(json) << result.output;
    EXPECT_EQ(json->as_array().size(), 1U);
    EXPECT_EQ(result.status, 1);
}

class StatusEndToEnd_Fetch : public StatusEndToEnd {
  protected:
    StatusEndToEnd_Fetch() {
        origin = makeRepository(folder / "origin");
        clone = folder / "clone";
        git("/", {"clone", "-q", origin, clone});
        commitFile(origin, "new.txt", "new\n");
    }
    std::string origin;
    std::string clone;
};

TEST_F(StatusEndToEnd_Fetch, WithoutItTheRemoteIsNotAsked) {
    EXPECT_THAT(status({clone}).output, HasSubstr("✓ clone  main  Up to date"));
}

TEST_F(StatusEndToEnd_Fetch, ShowsWhatTheRemoteHasNow) {
    const auto result = status({"--fetch", clone});
    EXPECT_THAT(result.output, HasSubstr("↓ clone  main  Behind 1  behind 1"));
    EXPECT_EQ(result.status, 0);
}

TEST_F(StatusEndToEnd_Fetch, RemoteThatCantBeReachedIsNamedAndNoFailure) {
    fs::remove_all(origin);
    const auto result = status({"--fetch", clone});
    EXPECT_THAT(result.errors, HasSubstr(clone + ": could not be fetched: fatal: "));
    EXPECT_THAT(result.output, HasSubstr("✓ clone"));
    EXPECT_EQ(result.status, 0);
}

}  // namespace
}  // namespace tarnbeck::testing
