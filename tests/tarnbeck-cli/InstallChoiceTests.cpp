#include "InstallChoice.h"
#include "Verdicts.h"

namespace tarnbeck::cli {
namespace {

using namespace tarnbeck::testing;
using namespace std::chrono_literals;
using ::testing::HasSubstr;

struct Asked {
    std::vector<DependencyEcosystemResult> results;
    std::string folder = "/r";
    std::optional<std::string> named = {};
};

auto choice(Asked asked) {
    return chosenProject({.summary = {.ecosystems = std::move(asked.results)},
                          .repoPath = "/r",
                          .folder = std::move(asked.folder),
                          .named = std::move(asked.named)});
}

// "Node web", one each.
std::vector<std::string> chosen(Asked asked) {
    std::vector<std::string> names;
    const auto results = choice(std::move(asked));
    if (!results) return {"none: " + results.error()};
    for (const auto& each : *results) {
        names.push_back(std::string(rawValue(each.ecosystem)) + " " + each.project.value_or("-"));
    }
    return names;
}

using ::testing::ElementsAre;

TEST(InstallChoice_Named, IsTheProjectOfThatName) {
    EXPECT_THAT(chosen({.results = {nodeResult("."), nodeResult("web")}, .named = "web"}),
                ElementsAre("Node web"));
    EXPECT_THAT(chosen({.results = {nodeResult("."), nodeResult("web")}, .named = "."}),
                ElementsAre("Node ."));
}

TEST(InstallChoice_Named, MayBeWrittenAsAPathOfTheRepository) {
    for (const char* name : {"./web", "web/", "/r/web", "api/../web"}) {
        EXPECT_THAT(chosen({.results = {nodeResult("."), nodeResult("web")}, .named = name}),
                    ElementsAre("Node web"))
            << name;
    }
}

TEST(InstallChoice_Named, DotMeansAResultWithoutAProjectToo) {
    EXPECT_THAT(chosen({.results = {pythonResult(std::nullopt)}, .named = "."}),
                ElementsAre("Python -"));
    EXPECT_THAT(chosen({.results = {pythonResult("")}, .named = "."}), ElementsAre("Python "));
}

TEST(InstallChoice_Named, OutweighsTheFolder) {
    EXPECT_THAT(chosen({.results = {nodeResult("api"), nodeResult("web")},
                        .folder = "/r/api",
                        .named = "web"}),
                ElementsAre("Node web"));
}

TEST(InstallChoice_Named, IsNoPrefixAndNoPattern) {
    for (const char* name : {"we", "web/src", "*", "WEB"}) {
        EXPECT_FALSE(choice({.results = {nodeResult("web")}, .named = name})) << name;
    }
}

TEST(InstallChoice_Named, UnknownOneGivesTheListOfAll) {
    EXPECT_EQ(choice({.results = {nodeResult("."), pythonResult("api")}, .named = "web"}).error(),
              "there is no project \"web\" in it; there are:\n.  Node, npm\napi  Python, pip");
}

TEST(InstallChoice_Unnamed, IsTheProjectInTheFolder) {
    EXPECT_THAT(chosen({.results = {nodeResult("."), nodeResult("web")}, .folder = "/r/web"}),
                ElementsAre("Node web"));
    EXPECT_THAT(chosen({.results = {nodeResult("."), nodeResult("web")}, .folder = "/r"}),
                ElementsAre("Node ."));
}

TEST(InstallChoice_Unnamed, IsTheOnlyProjectFromAnyFolder) {
    EXPECT_THAT(chosen({.results = {nodeResult("web")}, .folder = "/r/docs"}),
                ElementsAre("Node web"));
}

TEST(InstallChoice_Unnamed, OfSeveralIsNoneAndTheListTellsThem) {
    EXPECT_EQ(choice({.results = {nodeResult("web"), nodeResult("api")}}).error(),
              "more than one project is in it; name one behind the path:\n"
              "web  Node, npm\napi  Node, npm");
}

TEST(InstallChoice_Unnamed, ProjectOfTheRootIsNotMeantByAFolderBelowIt) {
    EXPECT_FALSE(choice({.results = {nodeResult("."), nodeResult("web")}, .folder = "/r/docs"}));
}

TEST(InstallChoice, FolderThatIsBothKindsGivesBothNodeFirst) {
    EXPECT_THAT(chosen({.results = {pythonResult("api"), nodeResult("api")}, .folder = "/r/docs"}),
                ElementsAre("Node api", "Python api"));
}

TEST(InstallChoice, OfARepositoryWithoutProjectsIsNone) {
    EXPECT_EQ(choice({.results = {}}).error(), "there is no Node or Python project in it");
}

TEST(InstallChoice, ListIsFreeOfControlCharacters) {
    const std::string words =
        choice({.results = {nodeResult("a\033"), nodeResult("b")}, .named = "\033"}).error();
    EXPECT_THAT(words, ::testing::Not(HasSubstr("\033")));
}

DependencyInstallStep step(std::string displayCommand, std::string cwd = "/r") {
    return {.executable = "/usr/bin/env",
            .args = {"npm", "update"},
            .cwd = std::move(cwd),
            .displayCommand = std::move(displayCommand)};
}

TEST(InstallPlanText, HasTheSummaryAndTheCommandsByFolder) {
    EXPECT_EQ(planText({.summary = "Update Node dependencies (pnpm, web)",
                        .steps = {step("pnpm install"), step("pnpm update a"),
                                  step("npx expo install --fix", "/r/web")}}),
              "Update Node dependencies (pnpm, web)\n"
              "  in /r:\n"
              "    $ pnpm install\n"
              "    $ pnpm update a\n"
              "  in /r/web:\n"
              "    $ npx expo install --fix\n");
}

TEST(InstallPlanText, ForeignControlCharactersAreMadeHarmless) {
    EXPECT_EQ(planText({.summary = "a\nb", .steps = {step("npm update x\033[2J", "/r\a")}}),
              "a\uFFFDb\n  in /r\uFFFD:\n    $ npm update x\uFFFD[2J\n");
}

TEST(InstallDoneInWords, TurnsThePlansVerbs) {
    EXPECT_EQ(doneInWords("Update Node dependencies (npm, web)"),
              "Updated Node dependencies (npm, web)");
    EXPECT_EQ(doneInWords("Align Expo-compatible Node dependencies (pnpm, .)"),
              "Aligned Expo-compatible Node dependencies (pnpm, .)");
    EXPECT_EQ(doneInWords("Sync Python dependencies"), "Synced Python dependencies");
    EXPECT_EQ(doneInWords("Sync Python dependencies + upgrade 2 venv packages"),
              "Synced Python dependencies + upgraded 2 venv packages");
}

TEST(InstallDoneInWords, LeavesOtherWordsAsTheyAre) {
    EXPECT_EQ(doneInWords("Rewrite all"), "Rewrite all");
}

std::optional<std::string> words(CommandResult result) {
    return stepFailureInWords(
        {.step = step("npm update a"), .result = std::move(result), .timeout = 900s});
}

TEST(InstallStepFailure, IsAbsentOnSuccess) {
    EXPECT_EQ(words({.terminationStatus = 0}), std::nullopt);
}

TEST(InstallStepFailure, HasTheCommandAndItsExitStatus) {
    EXPECT_EQ(words({.terminationStatus = 1}), "npm update a failed (exit status 1)");
}

TEST(InstallStepFailure, OfATimeOutSaysHowLongItTook) {
    EXPECT_EQ(words({.terminationStatus = 15, .timedOut = true}),
              "npm update a was ended: it took longer than 15 minutes");
}

TEST(InstallStepFailure, OfATimeOutIsOneEvenWhenTheCommandEndedWell) {
    EXPECT_NE(words({.terminationStatus = 0, .timedOut = true}), std::nullopt);
}

TEST(InstallStepFailure, OfALaunchHasTheSystemsWords) {
    EXPECT_EQ(words({.launchError = "Failed to launch command: No such file or directory"}),
              "npm update a: Failed to launch command: No such file or directory");
}

TEST(InstallStepFailure, OfAMissingManagerSaysWhereItIsLookedFor) {
    EXPECT_EQ(words({.terminationStatus = 127}),
              "npm update a: npm, or what it runs on, is not found in /opt/homebrew/bin:"
              "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin");
}

TEST(InstallStepFailure, OfAProgramThatIsThereKeepsItsStatus) {
    DependencyInstallStep python = step("/r/.venv/bin/python3 -m pip install -e .");
    python.executable = "/r/.venv/bin/python3";
    EXPECT_EQ(
        stepFailureInWords({.step = python, .result = {.terminationStatus = 127}, .timeout = 900s}),
        "/r/.venv/bin/python3 -m pip install -e . failed (exit status 127)");
}

}  // namespace
}  // namespace tarnbeck::cli
