#include <filesystem>

#include "DependencyScanner+Python.h"
#include "DependencyScanner+PythonEnvironment.h"
#include "RecordedCommands.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(PythonEnvironment_SearchPaths, LeadUpToTheRoot) {
    EXPECT_THAT(pythonEnvironmentSearchPaths({.projectPath = "/r/a/b", .repoPath = "/r"}),
                ElementsAre("/r/a/b", "/r/a", "/r"));
}

TEST(PythonEnvironment_SearchPaths, AreTheRootAloneInTheRoot) {
    EXPECT_THAT(pythonEnvironmentSearchPaths({.projectPath = "/r/", .repoPath = "/r"}),
                ElementsAre("/r"));
}

TEST(PythonEnvironment_SearchPaths, AreTheProjectAloneOutsideTheRoot) {
    EXPECT_THAT(pythonEnvironmentSearchPaths({.projectPath = "/other/a", .repoPath = "/r"}),
                ElementsAre("/other/a"));
}

TEST(PythonEnvironment_SearchPaths, SiblingWhoseNameBeginsAlikeIsOutside) {
    EXPECT_THAT(pythonEnvironmentSearchPaths({.projectPath = "/root/a", .repoPath = "/r"}),
                ElementsAre("/root/a"));
}

TEST(PythonEnvironment_SearchPaths, AreStandardized) {
    EXPECT_THAT(pythonEnvironmentSearchPaths({.projectPath = "/r/x/../a/", .repoPath = "/r/./"}),
                ElementsAre("/r/a", "/r"));
}

TEST(PythonEnvironment_SearchPaths, EndAtTheTopmostFolder) {
    EXPECT_THAT(pythonEnvironmentSearchPaths({.projectPath = "/a/b", .repoPath = "/"}),
                ElementsAre("/a/b", "/a", "/"));
}

std::size_t distanceToProject(const std::string& executable, const std::string& project) {
    return pythonExecutableDistanceToProject({.executable = executable, .projectPath = project});
}

TEST(PythonEnvironment_Distance, OfTheProjectsOwnIsNothing) {
    EXPECT_EQ(distanceToProject("/r/a/b/.venv/bin/python3", "/r/a/b"), 0);
    EXPECT_EQ(distanceToProject("/r/a/b/venv/bin/python", "/r/a/b"), 0);
}

TEST(PythonEnvironment_Distance, OfTheParentsIsOneAndGrowsUpwards) {
    EXPECT_EQ(distanceToProject("/r/a/.venv/bin/python3", "/r/a/b"), 1);
    EXPECT_EQ(distanceToProject("/r/.venv/bin/python3", "/r/a/b"), 2);
    EXPECT_EQ(distanceToProject("/.venv/bin/python3", "/r/a/b"), 3);
}

TEST(PythonEnvironment_Distance, OfOneThatLiesDeeperHasNoSign) {
    EXPECT_EQ(distanceToProject("/r/a/venv/bin/python", "/r"), 1);
    EXPECT_EQ(distanceToProject("/r/a/b/c/venv/bin/python", "/r"), 3);
    EXPECT_EQ(distanceToProject("/r/venv/bin/python", "/"), 1);
}

TEST(PythonEnvironment_Distance, SlashAtTheEndAndDotsCountForNothing) {
    EXPECT_EQ(distanceToProject("/r/a/b/venv/bin/python3", "/r/a/b/"), 0);
    EXPECT_EQ(distanceToProject("/r/a/venv/bin/python3", "/r/a/./x/../b/"), 1);
    EXPECT_EQ(distanceToProject("/r/./x/../a/venv/bin/python3", "/r/a"), 0);
}

TEST(PythonEnvironment_Distance, ComparesDepthsAndNotNames) {
    EXPECT_EQ(distanceToProject("/other/venv/bin/python3", "/r"), 0);
}

class PythonEnvironment_Score : public ::testing::Test {
  protected:
    int score(const CommandResult& listing, const std::vector<std::string>& requirements) {
        commands.answer("-m pip list --format=json", listing);
        return pythonRequirementMatchScore({.runCommand = commands.runner()},
                                           {.pythonExecutable = "/r/venv/bin/python",
                                            .constraints = lowestPythonRequirements(requirements),
                                            .cwd = "/r/a"});
    }

    RecordedCommands commands;
};

TEST_F(PythonEnvironment_Score, AsksPipInTheGivenFolderForTwentySeconds) {
    score(printed("[]"), {"a==1"});
    ASSERT_THAT(commands.lines(), ElementsAre("/r/venv/bin/python -m pip list --format=json"));
    EXPECT_EQ(commands.commands().front().cwd, "/r/a");
    EXPECT_EQ(commands.commands().front().timeout, 20s);
}

TEST_F(PythonEnvironment_Score, CountsSatisfiedMinimums) {
    EXPECT_EQ(score(printed(R"([{"name": "A", "version": "1.0"}, {"name": "b_c", "version": "2"},
                                {"name": "d", "version": "0.9"}])"),
                    {"a>=1.0\nb-c==1\nd>=1\ne>=1\n"}),
              2);
}

TEST_F(PythonEnvironment_Score, CountsVersionsThatCanNotBeCompared) {
    EXPECT_EQ(score(printed(R"([{"name": "a", "version": "head"}, {"name": "b", "version": "1"}])"),
                    {"a>=1\nb==dev\n"}),
              2);
}

TEST_F(PythonEnvironment_Score, PassesOverElementsWithoutTexts) {
    EXPECT_EQ(score(printed(R"([{"name": "a", "version": 1}, {"version": "1"}, {},
                                {"name": "b", "version": "1"}])"),
                    {"a>=1\nb>=1\n"}),
              1);
}

TEST_F(PythonEnvironment_Score, IsNothingWhenPipFails) {
    EXPECT_EQ(score(printed(R"([{"name": "a", "version": "1"}])", 1), {"a>=1"}), 0);
}

TEST_F(PythonEnvironment_Score, IsNothingAfterATimeout) {
    EXPECT_EQ(score({.terminationStatus = 0,
                     .stdout = R"([{"name": "a", "version": "1"}])",
                     .timedOut = true},
                    {"a>=1"}),
              0);
}

TEST_F(PythonEnvironment_Score, IsNothingWithoutAnArrayOfObjects) {
    for (const char* text : {"", "no json", "{}", R"([{"name": "a", "version": "1"}, 1])"}) {
        EXPECT_EQ(score(printed(text), {"a>=1"}), 0) << text;
    }
}

class PythonEnvironment_Detection : public ::testing::Test {
  protected:
    std::string addExecutable(const std::string& name) {
        const std::string path = folder.write(name, "");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    void answer(const std::string& executable, const std::string& packages) {
        commands.answer(executable + " -m pip list", printed(packages));
    }
    std::optional<std::string> detected(const std::string& project) {
        return detectPythonExecutable({.runCommand = commands.runner()},
                                      {.projectPath = folder / project, .repoPath = folder.path()});
    }

    TemporaryFolder folder;
    RecordedCommands commands;
};

TEST_F(PythonEnvironment_Detection, OwnEnvironmentWinsWithoutAnyScoring) {
    const auto own = addExecutable("a/.venv/bin/python3");
    answer(addExecutable(".venv/bin/python3"), R"([{"name": "x", "version": "9"}])");
    folder.write("a/requirements.txt", "x>=1");
    EXPECT_EQ(detected("a"), own);
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST_F(PythonEnvironment_Detection, CandidatesHaveAnOrder) {
    for (const char* name :
         {"venv/bin/python", "venv/bin/python3", ".venv/bin/python", ".venv/bin/python3"}) {
        const auto executable = addExecutable(name);
        EXPECT_EQ(detected("."), executable);
    }
}

TEST_F(PythonEnvironment_Detection, WithoutAnEnvironmentThereIsNone) {
    folder.makeFolder("a/.venv/bin");
    EXPECT_EQ(detected("a"), std::nullopt);
}

TEST_F(PythonEnvironment_Detection, WhatCanNotBeExecutedIsNone) {
    folder.write(".venv/bin/python3", "");
    folder.makeFolder("venv/bin/python");
    EXPECT_EQ(detected("."), std::nullopt);
}

TEST_F(PythonEnvironment_Detection, DanglingLinkIsNone) {
    folder.makeFolder(".venv/bin");
    std::filesystem::create_symlink(folder / "gone", folder / ".venv/bin/python3");
    EXPECT_EQ(detected("."), std::nullopt);
}

TEST_F(PythonEnvironment_Detection, LinkIsNotResolved) {
    folder.makeFolder(".venv/bin");
    std::filesystem::create_symlink(addExecutable("elsewhere/python3.11"),
                                    folder / ".venv/bin/python3");
    EXPECT_EQ(detected("."), folder / ".venv/bin/python3");
}

TEST_F(PythonEnvironment_Detection, OnlyOneOfAParentIsTakenWithoutScoring) {
    const auto parent = addExecutable("venv/bin/python");
    folder.write("a/b/requirements.txt", "x>=1");
    EXPECT_EQ(detected("a/b"), parent);
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST_F(PythonEnvironment_Detection, WithoutRequirementsTheNearestIsTaken) {
    addExecutable("venv/bin/python");
    const auto nearest = addExecutable("a/venv/bin/python");
    EXPECT_EQ(detected("a/b"), nearest);
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST_F(PythonEnvironment_Detection, OfTwoParentsTheOneThatSatisfiesMoreIsTaken) {
    const auto root = addExecutable("venv/bin/python");
    answer(root, R"([{"name": "x", "version": "1"}, {"name": "y", "version": "1"}])");
    answer(addExecutable("a/venv/bin/python"), R"([{"name": "x", "version": "1"}])");
    folder.write("a/b/requirements.txt", "x>=1\ny>=1\n");
    EXPECT_EQ(detected("a/b"), root);
}

TEST_F(PythonEnvironment_Detection, ParentWithAnEqualScoreDoesNotReplaceANearerOne) {
    answer(addExecutable("venv/bin/python"), R"([{"name": "x", "version": "1"}])");
    const auto near = addExecutable("a/venv/bin/python");
    answer(near, R"([{"name": "x", "version": "2"}])");
    folder.write("a/b/requirements.txt", "x>=1\n");
    EXPECT_EQ(detected("a/b"), near);
}

TEST_F(PythonEnvironment_Detection, OfFullyEqualOnesTheEarlierIsTaken) {
    const auto hidden = addExecutable("a/.venv/bin/python3");
    addExecutable("a/venv/bin/python3");
    answer("/bin/python3", R"([{"name": "x", "version": "1"}])");
    folder.write("a/b/requirements.txt", "x>=1\n");
    EXPECT_EQ(detected("a/b"), hidden);
}

TEST_F(PythonEnvironment_Detection, EachOfSeveralIsAskedOnceInTheProjectsFolder) {
    addExecutable("venv/bin/python");
    addExecutable("a/venv/bin/python");
    folder.write("a/b/requirements.txt", "x>=1\n");
    detected("a/b");
    ASSERT_THAT(commands.commands(), SizeIs(2));
    for (const Command& command : commands.commands()) EXPECT_EQ(command.cwd, folder / "a/b");
}

TEST_F(PythonEnvironment_Detection, EnvironmentAboveTheRepositoryIsNotLookedFor) {
    addExecutable("venv/bin/python");
    EXPECT_EQ(
        detectPythonExecutable({.runCommand = commands.runner()},
                               {.projectPath = folder / "repo/a", .repoPath = folder / "repo"}),
        std::nullopt);
}

}  // namespace
}  // namespace tarnbeck::testing
