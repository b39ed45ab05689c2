#include "DependencyScanner+PythonRequirements.h"
#include "PythonUpdates.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

// What stands for `line`, as "name version"; empty for nothing.
std::string requirementOf(std::string_view line) {
    const auto parsed = parsePythonRequirement(line);
    return parsed ? parsed->package + " " + parsed->minimumVersion : "";
}

TEST(PythonRequirement_Line, PinIsUnderstood) {
    EXPECT_EQ(requirementOf("Django==4.2"), "Django 4.2");
}

TEST(PythonRequirement_Line, MinimumIsUnderstood) {
    EXPECT_EQ(requirementOf("Django>=4.2"), "Django 4.2");
}

TEST(PythonRequirement_Line, ExtrasAreIgnored) {
    EXPECT_EQ(requirementOf("Django[argon2,bcrypt]>=4.2"), "Django 4.2");
}

TEST(PythonRequirement_Line, BlankBehindTheOperatorIsAllowed) {
    EXPECT_EQ(requirementOf("django== \t\u00A04.2"), "django 4.2");
}

TEST(PythonRequirement_Line, BlankBeforeTheOperatorIsNotUnderstood) {
    EXPECT_EQ(requirementOf("django ==4.2"), "");
}

TEST(PythonRequirement_Line, EverythingBehindTheVersionIsIgnored) {
    EXPECT_EQ(requirementOf("django>=4.2,<5"), "django 4.2");
    EXPECT_EQ(requirementOf("django==4.2 ; python_version >= '3.8'"), "django 4.2");
    EXPECT_EQ(requirementOf("django==4.2 --hash=sha256:0a1b \\"), "django 4.2");
    EXPECT_EQ(requirementOf("django==4.*"), "django 4.");
}

TEST(PythonRequirement_Line, OnlyTheFirstClauseCounts) {
    EXPECT_EQ(requirementOf("django<5,>=4.2"), "");
}

TEST(PythonRequirement_Line, VersionMayHoldLettersAndSigns) {
    EXPECT_EQ(requirementOf("torch==2.1.0+cu118-rc_1"), "torch 2.1.0+cu118-rc_1");
}

TEST(PythonRequirement_Line, NameMayHoldDotsCapitalsAndUnderscores) {
    EXPECT_EQ(requirementOf("Zope.Interface_x-y==5"), "Zope.Interface_x-y 5");
}

TEST(PythonRequirement_Line, CommentIsCutOff) {
    EXPECT_EQ(requirementOf("django==4.2# the last with it"), "django 4.2");
    EXPECT_EQ(requirementOf("# django==4.2"), "");
    EXPECT_EQ(requirementOf("  # django==4.2"), "");
}

TEST(PythonRequirement_Line, OtherOperatorsAreNotUnderstood) {
    for (const char* line : {"django~=4.2", "django<5", "django<=5", "django>4", "django!=4.1"}) {
        EXPECT_EQ(requirementOf(line), "") << line;
    }
}

TEST(PythonRequirement_Line, TripleEqualsIsNotAVersionBehindTwo) {
    EXPECT_EQ(requirementOf("django===4.2"), "");
}

TEST(PythonRequirement_Line, WhatIsNoPackageWithAVersionIsNotUnderstood) {
    for (const char* line :
         {"", "   ", "django", "-r base.txt", "-e .", "--index-url=https://localhost/simple",
          "-c constraints.txt", "./wheels/django-4.2.whl", "https://localhost/django.zip#egg=x==1",
          "django @ https://localhost/django==4.2.zip", "git+https://localhost/x.git@v1==2",
          "\"django\"==4.2", "django[]==4.2", "[argon2]==4.2", "==4.2", "django==", "\\"}) {
        EXPECT_EQ(requirementOf(line), "") << line;
    }
}

TEST(PythonRequirement_Name, IsTrimmedLowercasedAndHasHyphens) {
    EXPECT_EQ(normalizedPythonName(" \tFoo_Bar__Baz\n"), "foo-bar--baz");
}

TEST(PythonRequirement_Name, KeepsItsDots) {
    EXPECT_EQ(normalizedPythonName("Zope.Interface"), "zope.interface");
}

class PythonRequirements_Files : public ::testing::Test {
  protected:
    // The lowest versions in the project's files, as "key name version".
    std::vector<std::string> found() const {
        std::vector<std::string> lines;
        for (const auto& [key, constraint] : pythonRequirements(project.path())) {
            lines.push_back(key + " " + constraint.package + " " + constraint.minimumVersion);
        }
        return lines;
    }

    TemporaryFolder project;
};

TEST_F(PythonRequirements_Files, KeyIsTheNormalizedName) {
    project.write("requirements.txt", "foo_bar==1.0\nDjango[argon2]>=4.2\n");
    EXPECT_THAT(found(), ElementsAre("django Django 4.2", "foo-bar foo_bar 1.0"));
}

TEST_F(PythonRequirements_Files, AllThreeAreRead) {
    project.write("requirements.txt", "a==1");
    project.write("requirements-dev.txt", "b==2");
    project.write("requirements-housekeeping.txt", "c==3");
    project.write("requirements-test.txt", "d==4");
    EXPECT_THAT(found(), ElementsAre("a a 1", "b b 2", "c c 3"));
}

TEST_F(PythonRequirements_Files, LowestMinimumStands) {
    project.write("requirements.txt", "a>=2.0");
    project.write("requirements-dev.txt", "a>=2.5");
    EXPECT_THAT(found(), ElementsAre("a a 2.0"));
}

TEST_F(PythonRequirements_Files, LowestMinimumStandsInTheOtherOrderToo) {
    project.write("requirements.txt", "a>=2.5");
    project.write("requirements-dev.txt", "a>=2.0");
    EXPECT_THAT(found(), ElementsAre("a a 2.0"));
}

TEST_F(PythonRequirements_Files, LowestMinimumStandsWithinAFileToo) {
    project.write("requirements.txt", "a>=2.5\na>=2.0\na>=2.1\n");
    EXPECT_THAT(found(), ElementsAre("a a 2.0"));
}

TEST_F(PythonRequirements_Files, OfEqualMinimumsTheLaterEntryStands) {
    project.write("requirements.txt", "a>=2.0\nA>=2.0.0\n");
    EXPECT_THAT(found(), ElementsAre("a A 2.0.0"));
}

TEST_F(PythonRequirements_Files, UnreadableVersionIsReplacedAndReplaces) {
    project.write("requirements.txt", "a>=2.0\na==dev\nb==dev\nb>=3\n");
    EXPECT_THAT(found(), ElementsAre("a a dev", "b b 3"));
}

TEST_F(PythonRequirements_Files, HousekeepingIsReadBeforeDev) {
    project.write("requirements-dev.txt", "A==2");
    project.write("requirements-housekeeping.txt", "a==2");
    EXPECT_THAT(found(), ElementsAre("a A 2"));
}

TEST_F(PythonRequirements_Files, LinesMayEndInAnyWay) {
    project.write("requirements.txt", "a==1\r\nb==2\rc==3\u0085d==4\u2028e==5");
    EXPECT_THAT(found(), ElementsAre("a a 1", "b b 2", "c c 3", "d d 4", "e e 5"));
}

TEST_F(PythonRequirements_Files, LinesMayBeIndented) {
    project.write("requirements.txt", "\t  a==1  \n");
    EXPECT_THAT(found(), ElementsAre("a a 1"));
}

TEST_F(PythonRequirements_Files, ByteOrderMarkIsPassedOver) {
    project.write("requirements.txt",
                  "\xEF\xBB\xBF"
                  "a==1\n");
    EXPECT_THAT(found(), ElementsAre("a a 1"));
}

TEST_F(PythonRequirements_Files, FileThatIsNotUtf8IsPassedOver) {
    project.write("requirements.txt", "a==1\n# caf\xE9\n");
    project.write("requirements-dev.txt", "b==2\n");
    EXPECT_THAT(found(), ElementsAre("b b 2"));
}

TEST_F(PythonRequirements_Files, FolderOfThatNameIsPassedOver) {
    project.makeFolder("requirements.txt");
    project.write("requirements-dev.txt", "b==2\n");
    EXPECT_THAT(found(), ElementsAre("b b 2"));
}

TEST_F(PythonRequirements_Files, ContinuedLinesAreReadOneByOne) {
    project.write("requirements.txt", "a==1 \\\n    --hash=sha256:00==ff \\\n    b==2\n");
    EXPECT_THAT(found(), ElementsAre("a a 1", "b b 2"));
}

TEST_F(PythonRequirements_Files, FiftyMegabytesAreRead) {
    std::string text;
    while (text.size() < 50'000'000) text += "# nothing but words, many of them, in long lines\n";
    project.write("requirements.txt", text + "a==1\n");
    EXPECT_THAT(found(), ElementsAre("a a 1"));
}

TEST_F(PythonRequirements_Files, LineOfFiftyMegabytesIsRead) {
    project.write("requirements.txt", "a==1\n" + std::string(50'000'000, 'x') + "==1 a\n");
    EXPECT_EQ(pythonRequirements(project.path()).size(), 2);
}

TEST_F(PythonRequirements_Files, WithoutAnyThereAreNone) {
    EXPECT_THAT(found(), IsEmpty());
}

class PythonRequirements_Reconciliation : public ::testing::Test {
  protected:
    ReconciledPythonUpdates reconciled(std::vector<DependencyUpdate> updates) const {
        return reconcilePythonUpdates(std::move(updates), project.path());
    }

    TemporaryFolder project;
};

TEST_F(PythonRequirements_Reconciliation, WithoutRequirementsUpdatesStay) {
    const auto result = reconciled({pythonUpdate("a", "1.0", "2.0")});
    EXPECT_THAT(result.updates, ElementsAre(pythonUpdate("a", "1.0", "2.0")));
    EXPECT_EQ(result.driftedPackages, 0);
}

TEST_F(PythonRequirements_Reconciliation, UpdateToWhatIsRequiredAlreadyDisappearsAndCounts) {
    project.write("requirements.txt", "a>=2.0\n");
    const auto result = reconciled({pythonUpdate("A", "1.0", "2.0")});
    EXPECT_THAT(result.updates, IsEmpty());
    EXPECT_EQ(result.driftedPackages, 1);
}

TEST_F(PythonRequirements_Reconciliation, UpdateBeginsAtWhatIsRequired) {
    project.write("requirements.txt", "a==2.0\n");
    const auto result = reconciled({pythonUpdate("a", "1.0", "3.0")});
    EXPECT_THAT(result.updates, ElementsAre(pythonUpdate("a", "2.0", "3.0")));
    EXPECT_EQ(result.updates.front().updateType, DependencyUpdateType::major);
    EXPECT_EQ(result.driftedPackages, 1);
}

TEST_F(PythonRequirements_Reconciliation, TypeIsThatOfTheShorterStep) {
    project.write("requirements.txt", "a==3.1\n");
    EXPECT_EQ(reconciled({pythonUpdate("a", "1.0", "3.2")}).updates.front().updateType,
              DependencyUpdateType::minor);
}

TEST_F(PythonRequirements_Reconciliation, MinimumIsComparedWithTheLatestAsText) {
    project.write("requirements.txt", "a>=2.0.0\n");
    EXPECT_THAT(reconciled({pythonUpdate("a", "1.0", "2.0")}).updates,
                ElementsAre(pythonUpdate("a", "2.0.0", "2.0")));
}

TEST_F(PythonRequirements_Reconciliation, EnvironmentThatIsFarEnoughStays) {
    project.write("requirements.txt", "a>=1.0.0\nb>=1\n");
    const auto result = reconciled({pythonUpdate("a", "1.0", "2.0"), pythonUpdate("b", "2", "3")});
    EXPECT_THAT(result.updates,
                ElementsAre(pythonUpdate("a", "1.0", "2.0"), pythonUpdate("b", "2", "3")));
    EXPECT_EQ(result.driftedPackages, 0);
}

TEST_F(PythonRequirements_Reconciliation, VersionsThatCanNotBeComparedStay) {
    project.write("requirements.txt", "a==dev\nb==2\n");
    const auto result =
        reconciled({pythonUpdate("a", "1.0", "2.0"), pythonUpdate("b", "head", "3")});
    EXPECT_THAT(result.updates,
                ElementsAre(pythonUpdate("a", "1.0", "2.0"), pythonUpdate("b", "head", "3")));
    EXPECT_EQ(result.driftedPackages, 0);
}

TEST_F(PythonRequirements_Reconciliation, OrderAndOriginAreKept) {
    project.write("requirements.txt", "b==2\n");
    const auto direct = DependencyUpdateOrigin::manifestDirect;
    EXPECT_THAT(
        reconciled({pythonUpdate("c", "1", "2"), pythonUpdate("b", "1", "3", direct)}).updates,
        ElementsAre(pythonUpdate("c", "1", "2"), pythonUpdate("b", "2", "3", direct)));
}

}  // namespace
}  // namespace tarnbeck::testing
