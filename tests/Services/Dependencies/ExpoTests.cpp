#include <chrono>

#include "DependencyScanner+Expo.h"
#include "NodeProjectFixture.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

DependencyUpdate expoUpdate(const std::string& package, const std::string& current,
                            const std::string& latest) {
    return {.ecosystem = DependencyEcosystem::node,
            .package = package,
            .currentVersion = current,
            .latestVersion = latest,
            .updateType = DependencyUpdateType::major};
}

DependencyUpdate blockedByExpo(DependencyUpdate update) {
    update.updateType = DependencyUpdateType::blocked;
    return update;
}

class Expo : public NodeProjectFixture {
  protected:
    Expo() { declare(R"("dependencies": {"expo": "~52.0.0"})"); }

    void declare(const std::string& sections) { repo.write("package.json", "{" + sections + "}"); }

    // The updates as the SDK leaves them, when its tool says this to standard error.
    ExpoMarkedUpdates marked(std::vector<DependencyUpdate> updates, const std::string& words = "") {
        commands.answer("npx expo", failed(1, words));
        return mark(std::move(updates));
    }
    ExpoMarkedUpdates mark(std::vector<DependencyUpdate> updates, std::string manager = "npm") {
        return markBlockedNodeUpdatesForExpo(tools(), {.updates = std::move(updates),
                                                       .projectPath = repo.path(),
                                                       .manager = std::move(manager)});
    }
    bool runsWith(const std::string& sections) {
        declare(sections);
        commands.forget();
        mark({});
        return !commands.commands().empty();
    }

    const DependencyUpdate router = expoUpdate("expo-router", "1.0.0", "2.0.0");
};

using Expo_Declaration = Expo;
using Expo_Command = Expo;
using Expo_Blocked = Expo;
using Expo_Failure = Expo;
using Expo_Verdict = Expo;

TEST_F(Expo_Declaration, ProjectWithoutItRunsNothingAndKeepsItsUpdates) {
    declare(R"("dependencies": {"react": "18"}, "expo": "52")");
    EXPECT_EQ(mark({router}), (ExpoMarkedUpdates{.updates = {router}}));
    EXPECT_THAT(commands.commands(), IsEmpty());
}

TEST_F(Expo_Declaration, EachOfTheThreeSectionsCounts) {
    EXPECT_TRUE(runsWith(R"("dependencies": {"expo": "52"})"));
    EXPECT_TRUE(runsWith(R"("devDependencies": {"expo": "52"})"));
    EXPECT_TRUE(runsWith(R"("peerDependencies": {"expo": "52"})"));
}

TEST_F(Expo_Declaration, OtherSectionsDoNotCount) {
    EXPECT_FALSE(runsWith(R"("optionalDependencies": {"expo": "52"})"));
}

TEST_F(Expo_Declaration, OnlyATextThatIsNotEmptyCounts) {
    EXPECT_FALSE(runsWith(R"("devDependencies": {"expo": ""})"));
    EXPECT_FALSE(runsWith(R"("dependencies": {"expo": 52})"));
    EXPECT_FALSE(runsWith(R"("dependencies": {"expo": null})"));
    EXPECT_FALSE(runsWith(R"("dependencies": ["expo"])"));
}

TEST_F(Expo_Declaration, EmptyTextInOneSectionLeavesTheWordToTheNext) {
    EXPECT_TRUE(runsWith(R"("dependencies": {"expo": ""}, "peerDependencies": {"expo": "*"})"));
}

TEST_F(Expo_Declaration, ManifestThatCannotBeReadKeepsTheUpdates) {
    for (const auto* manifest : {"", "[]", "{", "{\"dependencies\": {\"expo\": \"\xFF\"}}"}) {
        repo.write("package.json", manifest);
        EXPECT_EQ(mark({router}), (ExpoMarkedUpdates{.updates = {router}}));
    }
    EXPECT_THAT(commands.commands(), IsEmpty());
}

TEST_F(Expo_Command, CheckRunsThroughEnvInTheProjectFor120Seconds) {
    mark({}, "pnpm");
    ASSERT_EQ(commands.commands().size(), 1U);
    const Command& command = commands.commands().front();
    EXPECT_EQ(command.executable, "/usr/bin/env");
    EXPECT_THAT(command.args, ElementsAre("npx", "expo", "install", "--check", "--pnpm"));
    EXPECT_EQ(command.cwd, repo.path());
    EXPECT_EQ(command.timeout, 120s);
}

TEST(ExpoFixArguments, EachManagerHasItsFlag) {
    EXPECT_THAT(expoFixArguments("pnpm"), ElementsAre("npx", "expo", "install", "--fix", "--pnpm"));
    EXPECT_THAT(expoFixArguments("npm"), ElementsAre("npx", "expo", "install", "--fix", "--npm"));
    EXPECT_THAT(expoFixArguments("bun"), ElementsAre("npx", "expo", "install", "--fix", "--bun"));
}

TEST(ExpoFixArguments, OtherManagersHaveNone) {
    EXPECT_THAT(expoFixArguments("yarn"), ElementsAre("npx", "expo", "install", "--fix"));
    EXPECT_THAT(expoFixArguments(""), ElementsAre("npx", "expo", "install", "--fix"));
}

TEST(ParseExpoIssues, LineNamesThePackageItsVersionAndTheExpectedOne) {
    EXPECT_THAT(parseExpoInstallCheckIssues("  react@18.2.0 - expected version: 18.3.1"),
                ElementsAre(Pair("react", ExpoCompatibilityIssue{.package = "react",
                                                                 .installedVersion = "18.2.0",
                                                                 .expectedVersion = "18.3.1"})));
}

TEST(ParseExpoIssues, LinesAmongOtherWordsAreFound) {
    const auto issues = parseExpoInstallCheckIssues(
        "The following packages should be updated for best compatibility:\n"
        "  a@1 - expected version: 2\n\tb@1.0.0\t-\texpected version:\t~1.1.0 \n"
        "Your project may not work correctly.\nFound outdated dependencies\n");
    EXPECT_EQ(issues.size(), 2U);
    EXPECT_EQ(issues.at("a").expectedVersion, "2");
    EXPECT_EQ(issues.at("b").expectedVersion, "~1.1.0");
}

TEST(ParseExpoIssues, ScopeBelongsToTheName) {
    const auto issues =
        parseExpoInstallCheckIssues("@react-native/my.pkg_x@1.0.0 - expected version: 2.0.0");
    ASSERT_EQ(issues.size(), 1U);
    EXPECT_EQ(issues.begin()->second.package, "@react-native/my.pkg_x");
    EXPECT_EQ(issues.begin()->second.installedVersion, "1.0.0");
}

TEST(ParseExpoIssues, LastAtSignBeforeTheVersionEndsTheName) {
    const auto issues = parseExpoInstallCheckIssues("a@b@1 - expected version: 2");
    ASSERT_EQ(issues.size(), 1U);
    EXPECT_EQ(issues.begin()->second.package, "a@b");
}

TEST(ParseExpoIssues, ExpectedVersionMayContainBlanks) {
    EXPECT_EQ(parseExpoInstallCheckIssues("a@1 - expected version: >=1.0.0 <2.0.0\r\n")
                  .at("a")
                  .expectedVersion,
              ">=1.0.0 <2.0.0");
}

TEST(ParseExpoIssues, LaterOfTwoLinesForAPackageWins) {
    const auto issues =
        parseExpoInstallCheckIssues("React@1 - expected version: 2\nreact@3 - expected version: 4");
    ASSERT_EQ(issues.size(), 1U);
    EXPECT_EQ(issues.at("react"),
              (ExpoCompatibilityIssue{
                  .package = "react", .installedVersion = "3", .expectedVersion = "4"}));
}

TEST(ParseExpoIssues, UnderscoresAndDashesAreDifferentNames) {
    EXPECT_EQ(parseExpoInstallCheckIssues("a_b@1 - expected version: 2\n"
                                          "a-b@1 - expected version: 2")
                  .size(),
              2U);
}

TEST(ParseExpoIssues, OtherLinesAreIgnored) {
    for (const auto* line : {"", "react - expected version: 1", "react@1 expected version: 2",
                             "react@1 - expected version:", "react@1 - Expected version: 2",
                             "- react@1 - expected version: 2", "react@1 - actual version: 2"}) {
        EXPECT_THAT(parseExpoInstallCheckIssues(line), IsEmpty()) << line;
    }
}

TEST_F(Expo_Blocked, UpdateToAnotherVersionThanTheSdkExpectsIsBlocked) {
    EXPECT_EQ(marked({router}, "expo-router@1.0.0 - expected version: 1.9.0"),
              (ExpoMarkedUpdates{
                  .updates = {blockedByExpo(router)},
                  .blockedReasons = {"expo-router@2.0.0 blocked: Expo SDK expects 1.9.0"}}));
}

TEST_F(Expo_Blocked, UpdateToTheExpectedVersionStays) {
    EXPECT_EQ(marked({router}, "expo-router@1.0.0 - expected version: 2.0.0"),
              (ExpoMarkedUpdates{.updates = {router}}));
}

TEST_F(Expo_Blocked, UpdateThatItsRangeHoldsBackIsBlockedAllTheSame) {
    DependencyUpdate constrained = router;
    constrained.updateType = DependencyUpdateType::constrained;
    const std::string words = "  expo-router@1.0.0 - expected version: ";
    EXPECT_THAT(marked({constrained}, words + "~1.1.0").updates,
                ElementsAre(blockedByExpo(constrained)));
    EXPECT_THAT(marked({constrained}, words + "2.0.0").updates, ElementsAre(constrained));
}

TEST_F(Expo_Blocked, NamesAreComparedWithoutCaseAndOuterWhiteSpace) {
    const auto update = expoUpdate(" Expo-Router", "1.0.0", "2.0.0");
    EXPECT_THAT(marked({update}, "expo-router@1.0.0 - expected version: 1.9.0").updates,
                ElementsAre(blockedByExpo(update)));
}

TEST_F(Expo_Blocked, UpdateWithoutAnIssueStays) {
    EXPECT_EQ(marked({router, expoUpdate("a", "1.0.0", "2.0.0")},
                     "expo-router@1.0.0 - expected version: 1.9.0")
                  .updates,
              (std::vector{blockedByExpo(router), expoUpdate("a", "1.0.0", "2.0.0")}));
}

TEST_F(Expo_Blocked, PackageThatIsNotOutdatedAndNotAsExpectedIsANewBlockedUpdate) {
    EXPECT_EQ(marked({}, "p@1.2.0 - expected version: ~1.3.0"),
              (ExpoMarkedUpdates{.updates = {blockedByExpo(expoUpdate("p", "1.2.0", "~1.3.0"))},
                                 .blockedReasons = {"p==1.2.0 blocked: Expo SDK expects ~1.3.0"}}));
}

TEST_F(Expo_Blocked, PackageThatIsNewerThanExpectedIsABlockedUpdateToo) {
    EXPECT_THAT(marked({}, "p@2.0.0 - expected version: 1.0.0").updates,
                ElementsAre(blockedByExpo(expoUpdate("p", "2.0.0", "1.0.0"))));
}

TEST_F(Expo_Blocked, IssueWithTheSameTextsAddsNothing) {
    EXPECT_EQ(marked({router}, "p@1.2.0 - expected version: 1.2.0"),
              (ExpoMarkedUpdates{.updates = {router}}));
}

TEST_F(Expo_Blocked, NewUpdatesComeBehindTheOthersSortedByName) {
    const auto all = marked({router},
                            "b@1 - expected version: 2\na@1 - expected version: 2\n"
                            "B@1 - expected version: 2\nC@1 - expected version: 2");
    std::vector<std::string> names;
    for (const auto& update : all.updates) names.push_back(update.package);
    EXPECT_THAT(names, ElementsAre("expo-router", "B", "C", "a"));
}

TEST_F(Expo_Blocked, ReasonsAreSortedAndEachOnce) {
    EXPECT_THAT(marked({router, router, expoUpdate("b", "1", "2")},
                       "expo-router@1 - expected version: 1.5\nb@1 - expected version: 1.5\n"
                       "a@1 - expected version: 2")
                    .blockedReasons,
                ElementsAre("a==1 blocked: Expo SDK expects 2", "b@2 blocked: Expo SDK expects 1.5",
                            "expo-router@2.0.0 blocked: Expo SDK expects 1.5"));
}

TEST_F(Expo_Blocked, BothStreamsAreRead) {
    commands.answer("npx expo", {.terminationStatus = 1,
                                 .stdout = "a@1 - expected version: 2",
                                 .stderr = "b@1 - expected version: 2"});
    EXPECT_EQ(mark({}).updates.size(), 2U);
}

TEST_F(Expo_Blocked, IssuesCountWhateverTheStatusAndTheTimeOutSay) {
    for (const CommandResult& end : {CommandResult{.terminationStatus = 0},
                                     CommandResult{.terminationStatus = 9, .timedOut = true}}) {
        CommandResult answer = end;
        answer.stdout = "a@1 - expected version: 2";
        commands.answer("npx expo", answer);
        EXPECT_EQ(mark({}).updates.size(), 1U);
    }
}

TEST_F(Expo_Failure, ToolThatSaysNothingOfTheKindKeepsTheUpdates) {
    for (const CommandResult& answer :
         {failed(127, "env: 'npx': No such file or directory"),
          CommandResult{.terminationStatus = 15, .timedOut = true},
          CommandResult{.launchError = "Failed to launch command: Permission denied"},
          printed("Dependencies are up to date"), printed("")}) {
        commands.answer("npx expo", answer);
        EXPECT_EQ(mark({router}), (ExpoMarkedUpdates{.updates = {router}}));
    }
}

TEST_F(Expo_Failure, WithoutIssuesUpdatesAreNotNormalizedEither) {
    EXPECT_EQ(marked({router, router}), (ExpoMarkedUpdates{.updates = {router, router}}));
}

TEST(ExpoMessage, NoReasonsIsAbsent) {
    EXPECT_EQ(expoBlockedUpdatesMessage({}), std::nullopt);
}

TEST(ExpoMessage, TwoReasonsAreTold) {
    EXPECT_EQ(expoBlockedUpdatesMessage({"a", "b"}),
              "2 update(s) blocked by Expo SDK compatibility: a | b");
}

TEST(ExpoMessage, OfFourReasonsTwoAreToldAndTheRestIsCounted) {
    EXPECT_EQ(expoBlockedUpdatesMessage({"a", "b", "c", "d"}),
              "4 update(s) blocked by Expo SDK compatibility: a | b | +2 more");
}

TEST_F(Expo_Verdict, ProjectWithBlockedUpdatesOnlyHasConstraintsAndTheReason) {
    commands.answer("npx expo", failed(1, "p@1.0.0 - expected version: 1.9.0"));
    const auto result =
        scanWhenNpmAnswers(printed(R"({"p": {"current": "1.0.0", "latest": "2.0.0"}})", 1));
    EXPECT_EQ(result.status, DependencyHealth::constraints);
    EXPECT_EQ(result.message,
              "1 update(s) blocked by Expo SDK compatibility: p@2.0.0 blocked: Expo SDK expects "
              "1.9.0");
}

TEST_F(Expo_Verdict, MessagesOfSyncConstraintsAndExpoComeInThisOrder) {
    commands.answer("npx expo", failed(1, "c@1.0.0 - expected version: 1.9.0"));
    EXPECT_EQ(scanWhenNpmAnswers(printed(NodeReport()
                                             .with("a", {"1.0.0", "1.1.0", "1.1.0"})
                                             .with("b", {"1.0.0", "1.0.0", "2.0.0"})
                                             .text(),
                                         1))
                  .message,
              "Local install lags behind wanted versions for 1 package(s): a. Run install to "
              "sync. • 1 update(s) limited by current constraints: b@2.0.0 limited by current "
              "constraints (wanted 1.0.0) • 1 update(s) blocked by Expo SDK compatibility: "
              "c==1.0.0 blocked: Expo SDK expects 1.9.0");
}

TEST_F(Expo_Verdict, FailedReportAsksExpoNothing) {
    scanWhenNpmAnswers(failed(1, "broken"));
    EXPECT_THAT(commands.lines(), ElementsAre("/usr/bin/env npm outdated --json"));
}

TEST_F(Expo_Verdict, MemberOfAPnpmWorkspaceIsAskedInItsOwnFolderWithPnpmsFlag) {
    repo.write("pnpm-lock.yaml", "");
    repo.write("app/package.json", R"({"dependencies": {"expo": "52"}})");
    commands.answer("pnpm outdated", printed("{}"));
    scanProject("app");
    ASSERT_EQ(commands.commands().size(), 2U);
    EXPECT_EQ(commandLine(commands.commands()[1]), "/usr/bin/env npx expo install --check --pnpm");
    EXPECT_EQ(commands.commands()[1].cwd, repo / "app");
}

}  // namespace
}  // namespace tarnbeck::testing
