#include "DependencyScanner+PythonClassification.h"
#include "Json.h"
#include "PythonPrograms.h"
#include "PythonUpdates.h"
#include "RecordedCommands.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::Pair;
using ::testing::SizeIs;

constexpr auto direct = DependencyUpdateOrigin::manifestDirect;
constexpr auto transitive = DependencyUpdateOrigin::manifestTransitive;
constexpr auto venvOnly = DependencyUpdateOrigin::venvOnly;

class PythonClassification : public ::testing::Test {
  protected:
    DependencyTools tools() { return {.runCommand = commands.runner()}; }
    PythonEnvironment environment() const {
        return {.pythonExecutable = "/r/venv/bin/python", .projectPath = project.path()};
    }

    TemporaryFolder project;
    RecordedCommands commands;
};

class PythonClassification_Blocked : public PythonClassification {
  protected:
    MarkedPythonUpdates marked(std::vector<DependencyUpdate> updates) {
        return markBlockedPythonUpdates(tools(), std::move(updates), environment());
    }
    MarkedPythonUpdates markedAfter(const CommandResult& answer) {
        commands.answer(" -c ", answer);
        return marked({pythonUpdate("b", "1.0", "2.1")});
    }
    void expectUnchanged(const MarkedPythonUpdates& result) {
        EXPECT_THAT(result.updates, ElementsAre(pythonUpdate("b", "1.0", "2.1")));
        EXPECT_THAT(result.blockedReasons, IsEmpty());
    }
};

class PythonClassification_Origins : public PythonClassification {
  protected:
    PythonOriginMap originsAfter(const CommandResult& answer) {
        project.write("requirements.txt", "");
        commands.answer(" -c ", answer);
        return classifyPythonUpdateOrigins(tools(), {pythonUpdate("b", "1.0", "2.1")},
                                           environment());
    }
};

TEST_F(PythonClassification, ConstraintFilesHaveAnOrderAndExist) {
    project.write("requirements-housekeeping.txt", "");
    project.write("requirements.txt", "");
    EXPECT_THAT(
        pythonConstraintFiles(project.path()),
        ElementsAre(project / "requirements.txt", project / "requirements-housekeeping.txt"));
    project.write("requirements-dev.txt", "");
    EXPECT_THAT(pythonConstraintFiles(project.path()),
                ElementsAre(project / "requirements.txt", project / "requirements-dev.txt",
                            project / "requirements-housekeeping.txt"));
}

TEST_F(PythonClassification_Blocked, WithoutUpdatesNothingIsRun) {
    EXPECT_THAT(marked({}).updates, IsEmpty());
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST_F(PythonClassification_Blocked, ProgramGetsTheUpdatesInTheProjectForTwentyFiveSeconds) {
    marked({pythonUpdate("B\"", "1.0", "2.1")});
    ASSERT_THAT(commands.commands(), SizeIs(1));
    const Command& command = commands.commands().front();
    EXPECT_EQ(command.executable, "/r/venv/bin/python");
    EXPECT_THAT(command.args, ElementsAre("-c", PythonPrograms::blocking,
                                          R"([{"package":"B\"","latest":"2.1"}])"));
    EXPECT_EQ(command.cwd, project.path());
    EXPECT_EQ(command.timeout, 25s);
}

TEST_F(PythonClassification_Blocked, ProgramGetsTheRequirementFilesToo) {
    project.write("requirements-dev.txt", "");
    marked({pythonUpdate("b", "1.0", "2.1")});
    ASSERT_THAT(commands.commands(), SizeIs(1));
    EXPECT_EQ(commands.commands().front().args.back(),
              "[\"" + (project / "requirements-dev.txt") + "\"]");
}

TEST_F(PythonClassification_Blocked, UpdateThatIsNamedChangesItsTypeAlone) {
    commands.answer(" -c ", printed(R"({"blocked": [{"package": "B", "latest": "2.1",
                                       "reason": "A 1.0 (installed) requires B<2"}]})"));
    const auto result =
        marked({pythonUpdate("b", "1.0", "2.1", direct), pythonUpdate("c", "1", "2")});
    DependencyUpdate blocked = pythonUpdate("b", "1.0", "2.1", direct);
    blocked.updateType = DependencyUpdateType::blocked;
    EXPECT_THAT(result.updates, ElementsAre(blocked, pythonUpdate("c", "1", "2")));
    EXPECT_THAT(result.blockedReasons,
                ElementsAre("B==2.1 blocked: A 1.0 (installed) requires B<2"));
}

TEST_F(PythonClassification_Blocked, ReasonsThatReadAlikeAreToldOnceAndThoseOfAnotherCaseApart) {
    // Three packages whose reasons come to one text, the last in another case.
    const auto result = markedAfter(printed(R"({"blocked": [
        {"package": "x", "latest": "y==z==1", "reason": "r"},
        {"package": "x==y", "latest": "z==1", "reason": "r"},
        {"package": "X==y==z", "latest": "1", "reason": "r"}]})"));
    EXPECT_THAT(result.blockedReasons,
                ElementsAre("X==y==z==1 blocked: r", "x==y==z==1 blocked: r"));
}

TEST_F(PythonClassification_Blocked, UpdateIsFoundByItsNormalizedName) {
    commands.answer(" -c ", printed(R"({"blocked": [{"package": "foo-bar", "latest": "2",
                                       "reason": "r"}]})"));
    const auto result = marked({pythonUpdate("Foo_Bar", "1", "2")});
    EXPECT_EQ(result.updates.front().updateType, DependencyUpdateType::blocked);
    EXPECT_THAT(result.blockedReasons, ElementsAre("foo-bar==2 blocked: r"));
}

TEST_F(PythonClassification_Blocked, ReasonForAPackageThatIsNoUpdateStands) {
    const auto result =
        markedAfter(printed(R"({"blocked": [{"package": "x", "latest": "2", "reason": "r"}]})"));
    EXPECT_THAT(result.updates, ElementsAre(pythonUpdate("b", "1.0", "2.1")));
    EXPECT_THAT(result.blockedReasons, ElementsAre("x==2 blocked: r"));
}

TEST_F(PythonClassification_Blocked, ReasonsAreSortedByBytes) {
    const auto result =
        markedAfter(printed(R"({"blocked": [{"package": "b", "latest": "2", "reason": "r"},
                                {"package": "Z", "latest": "2", "reason": "r"},
                                {"package": "a", "latest": "2", "reason": "r"}]})"));
    EXPECT_THAT(result.blockedReasons,
                ElementsAre("Z==2 blocked: r", "a==2 blocked: r", "b==2 blocked: r"));
}

TEST_F(PythonClassification_Blocked, FailedProgramChangesNothing) {
    expectUnchanged(markedAfter(
        printed(R"({"blocked": [{"package": "b", "latest": "2", "reason": "r"}]})", 1)));
}

TEST_F(PythonClassification_Blocked, SilentProgramChangesNothing) {
    expectUnchanged(markedAfter(printed("")));
}

TEST_F(PythonClassification_Blocked, TimeoutChangesNothing) {
    expectUnchanged(markedAfter({.terminationStatus = 15, .timedOut = true}));
}

TEST_F(PythonClassification_Blocked, UnreadableAnswerChangesNothing) {
    expectUnchanged(markedAfter(printed("no json")));
}

TEST_F(PythonClassification_Blocked, ProjectWhosePathIsNotUtf8ChangesNothing) {
    const std::string folder = project.makeFolder("caf\xE9");
    project.write("caf\xE9/requirements.txt", "");
    commands.answer(" -c ", printed(R"({"blocked": []})"));
    expectUnchanged(markBlockedPythonUpdates(
        tools(), {pythonUpdate("b", "1.0", "2.1")},
        {.pythonExecutable = "/r/venv/bin/python", .projectPath = folder}));
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST(PythonClassification_BlockedAnswer, EntryWithoutItsTextsIsLeftOut) {
    EXPECT_THAT(parsePythonBlockedPackagesJSON(
                    R"({"blocked": [{"latest": "2", "reason": "r"}, {"package": "a", "reason": "r"},
                        {"package": "a", "latest": "2"}, {"package": 1, "latest": "2",
                        "reason": "r"}, {"package": "Ok_", "latest": "2", "reason": "r"}]})"),
                Optional(ElementsAre(Pair("ok-", "Ok_==2 blocked: r"))));
}

TEST(PythonClassification_BlockedAnswer, EmptyArrayIsAnEmptyAnswer) {
    EXPECT_THAT(parsePythonBlockedPackagesJSON(R"({"blocked": []})"), Optional(IsEmpty()));
}

TEST(PythonClassification_BlockedAnswer, OtherFormsAreNone) {
    for (const char* text : {"", "[]", "{}", R"({"blocked": {}})", R"({"blocked": [1]})",
                             R"({"blocked": []} {})", R"({"Blocked": []})"}) {
        EXPECT_FALSE(parsePythonBlockedPackagesJSON(text)) << text;
    }
}

TEST_F(PythonClassification_Origins, WithoutUpdatesNothingIsRun) {
    project.write("requirements.txt", "");
    EXPECT_THAT(classifyPythonUpdateOrigins(tools(), {}, environment()), IsEmpty());
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST_F(PythonClassification_Origins, WithoutRequirementFilesAllAreOfTheEnvironmentAndNothingIsRun) {
    EXPECT_THAT(classifyPythonUpdateOrigins(
                    tools(), {pythonUpdate("Foo_Bar", "1", "2"), pythonUpdate("a", "1", "2")},
                    environment()),
                ElementsAre(Pair("a", venvOnly), Pair("foo-bar", venvOnly)));
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST_F(PythonClassification_Origins, ProgramGetsNamesAndFilesInTheProjectForTwentySeconds) {
    originsAfter(printed("{}"));
    ASSERT_THAT(commands.commands(), SizeIs(1));
    const Command& command = commands.commands().front();
    EXPECT_EQ(command.executable, "/r/venv/bin/python");
    EXPECT_THAT(command.args, ElementsAre("-c", PythonPrograms::origins, R"(["b"])",
                                          "[\"" + (project / "requirements.txt") + "\"]"));
    EXPECT_EQ(command.cwd, project.path());
    EXPECT_EQ(command.timeout, 20s);
}

TEST_F(PythonClassification_Origins, AnswerIsTaken) {
    EXPECT_THAT(originsAfter(printed(R"({"b": "manifestTransitive"})")),
                ElementsAre(Pair("b", transitive)));
}

TEST_F(PythonClassification_Origins, FailureLeavesThemUnknown) {
    EXPECT_THAT(originsAfter(printed(R"({"b": "manifestDirect"})", 1)), IsEmpty());
    EXPECT_THAT(originsAfter({.terminationStatus = 15, .timedOut = true}), IsEmpty());
    EXPECT_THAT(originsAfter(printed("no json")), IsEmpty());
}

TEST(PythonClassification_OriginAnswer, EachTextHasItsCase) {
    EXPECT_THAT(parsePythonOriginMapJSON(
                    R"({"a": "manifestDirect", "b": "manifestTransitive", "c": "venvOnly",
                        "d": "something else"})"),
                Optional(ElementsAre(Pair("a", direct), Pair("b", transitive), Pair("c", venvOnly),
                                     Pair("d", DependencyUpdateOrigin::unknown))));
}

TEST(PythonClassification_OriginAnswer, KeysStayAsTheyAre) {
    EXPECT_THAT(parsePythonOriginMapJSON(R"({" Foo_": "venvOnly"})"),
                Optional(ElementsAre(Pair(" Foo_", venvOnly))));
}

TEST(PythonClassification_OriginAnswer, OtherFormsAreNone) {
    for (const char* text : {"", "[]", R"({"a": 1})", R"({"a": "venvOnly", "b": null})"}) {
        EXPECT_FALSE(parsePythonOriginMapJSON(text)) << text;
    }
}

TEST(PythonClassification_OriginAnswer, IsAppliedByNormalizedName) {
    EXPECT_THAT(
        applyPythonUpdateOrigins(
            {pythonUpdate("Foo_Bar", "1", "2"), pythonUpdate("x", "1", "2", direct)},
            {{"foo-bar", transitive}}),
        ElementsAre(pythonUpdate("Foo_Bar", "1", "2", transitive), pythonUpdate("x", "1", "2")));
}

// The label of the drift message that stands for updates of these origins.
std::string labelOf(const std::vector<DependencyUpdateOrigin>& origins) {
    std::vector<DependencyUpdate> updates;
    for (const auto origin : origins) updates.push_back(pythonUpdate("a", "1", "2", origin));
    const std::string message = pythonManifestDriftMessage(2, updates).value_or("");
    const std::string beginning =
        "Local virtualenv lags behind requirements for 2 package(s); showing ";
    EXPECT_TRUE(message.starts_with(beginning)) << message;
    return message.substr(beginning.size());
}

TEST(PythonClassification_Drift, LabelTellsTheOrigins) {
    EXPECT_EQ(labelOf({direct, venvOnly}), "manifest + venv sources");
    EXPECT_EQ(labelOf({transitive, venvOnly}), "manifest + venv sources");
    EXPECT_EQ(labelOf({direct}), "manifest-based versions");
    EXPECT_EQ(labelOf({transitive}), "manifest-based versions");
    EXPECT_EQ(labelOf({venvOnly}), "venv-based versions");
    EXPECT_EQ(labelOf({DependencyUpdateOrigin::unknown}), "resolved sources");
    EXPECT_EQ(labelOf({}), "resolved sources");
}

TEST(PythonClassification_Drift, WithoutItThereIsNoMessage) {
    EXPECT_EQ(pythonManifestDriftMessage(0, {pythonUpdate("a", "1", "2", venvOnly)}), std::nullopt);
}

TEST(PythonClassification_Drift, DoesNotAskForAnInstall) {
    const DependencyEcosystemResult result{.status = DependencyHealth::upToDate,
                                           .message = pythonManifestDriftMessage(1, {})};
    EXPECT_FALSE((DependencySummary{.ecosystems = {result}}.hasSyncNeeded()));
}

TEST(PythonClassification_BlockedMessage, NamesOneOrTwoReasons) {
    EXPECT_EQ(pythonBlockedUpdatesMessage({"a"}), "1 update(s) blocked by constraints: a");
    EXPECT_EQ(pythonBlockedUpdatesMessage({"a", "b"}), "2 update(s) blocked by constraints: a | b");
}

TEST(PythonClassification_BlockedMessage, CountsThoseBehindTheSecond) {
    EXPECT_EQ(pythonBlockedUpdatesMessage({"a", "b", "c"}),
              "3 update(s) blocked by constraints: a | b | +1 more");
}

TEST(PythonClassification_BlockedMessage, IsAbsentWithoutReasons) {
    EXPECT_EQ(pythonBlockedUpdatesMessage({}), std::nullopt);
}

TEST(PythonClassification_Message, TellsTheDriftFirst) {
    EXPECT_EQ(pythonCompositeMessage(1, {"a"}, {}),
              "Local virtualenv lags behind requirements for 1 package(s); showing resolved sources"
              " • 1 update(s) blocked by constraints: a");
}

TEST(PythonClassification_Message, IsAbsentWithoutEither) {
    EXPECT_EQ(pythonCompositeMessage(0, {}, {pythonUpdate("a", "1", "2")}), std::nullopt);
}

TEST(PythonPrograms_Texts, AreTheFiles) {
    EXPECT_EQ(PythonPrograms::blocking, contentOf(PYTHON_PROGRAMS "/blocking.py"));
    EXPECT_EQ(PythonPrograms::origins, contentOf(PYTHON_PROGRAMS "/origins.py"));
    EXPECT_EQ(PythonPrograms::pypi, contentOf(PYTHON_PROGRAMS "/pypi.py"));
}

TEST(PythonPrograms_Texts, NameNoHost) {
    for (const auto text :
         {PythonPrograms::blocking, PythonPrograms::origins, PythonPrograms::pypi}) {
        EXPECT_EQ(text.find(".org"), std::string_view::npos);
        EXPECT_EQ(text.find(".com"), std::string_view::npos);
    }
}

}  // namespace
}  // namespace tarnbeck::testing
