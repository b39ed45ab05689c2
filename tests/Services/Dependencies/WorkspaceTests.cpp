#include <filesystem>

#include <fmt/format.h>

#include "DependencyScanner+Discovery.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Workspace : public ::testing::Test {
  protected:
    std::vector<std::string> patternsOf(std::string_view content) const {
        folder.write("pnpm-workspace.yaml", content);
        return pnpmWorkspacePackagePatterns(folder.path());
    }
    // The projects that remain of these, by relative path.
    std::vector<std::string> membersOf(std::string_view content,
                                       const std::vector<std::string>& relativePaths) const {
        folder.write("pnpm-workspace.yaml", content);
        std::vector<std::string> projects;
        for (const auto& path : relativePaths) {
            projects.push_back(path == "." ? folder.path() : folder / path);
        }
        std::vector<std::string> members;
        for (const auto& project : filterNodeProjectsToWorkspacePackages(projects, folder.path())) {
            members.push_back(
                relativeProjectPath({.projectPath = project, .repoPath = folder.path()}));
        }
        return members;
    }

    TemporaryFolder folder;
};

TEST_F(Workspace, WithoutItsFileHasNoPatternsAndFiltersNothing) {
    EXPECT_THAT(pnpmWorkspacePackagePatterns(folder.path()), IsEmpty());
    const std::vector<std::string> projects = {folder / "b", folder / "a"};
    EXPECT_EQ(filterNodeProjectsToWorkspacePackages(projects, folder.path()), projects);
}

TEST_F(Workspace, EntriesAreReadPastCommentsAndBlankLinesWithoutTheirQuotes) {
    EXPECT_THAT(patternsOf("packages:\n  # all apps\n\n  - 'apps/*'\n  - \"libs/**\"\n"),
                ElementsAre("apps/*", "libs/**"));
}

TEST_F(Workspace, EntriesOfAFollowingSectionAreNotRead) {
    EXPECT_THAT(patternsOf("packages:\n  - apps/*\ncatalog:\n  - libs/*\n"), ElementsAre("apps/*"));
}

TEST_F(Workspace, EntriesOfAnEarlierSectionAreNotRead) {
    EXPECT_THAT(patternsOf("allowed:\n  - libs/*\npackages:\n- apps/*\n"), ElementsAre("apps/*"));
}

TEST_F(Workspace, RepeatedHeadingGoesOnWithTheList) {
    EXPECT_THAT(patternsOf("packages:\n- a\npackages:\n- b\n"), ElementsAre("a", "b"));
}

TEST_F(Workspace, LinesEndAtAnyNewlineCharacterAndAreTrimmedOfBlanksAndTabs) {
    EXPECT_THAT(patternsOf("packages:\r\n\t- a \t\r\n- b\xe2\x80\xa8- c\n"),
                ElementsAre("a", "b", "c"));
}

TEST_F(Workspace, EmptyEntryIsLeftOut) {
    EXPECT_THAT(patternsOf("packages:\n- ''\n- a\n"), ElementsAre("a"));
}

TEST_F(Workspace, DashWithoutABlankEndsTheList) {
    EXPECT_THAT(patternsOf("packages:\n- a\n-b\n- c\n"), ElementsAre("a"));
}

TEST_F(Workspace, HeadingWithAValueBehindItIsNone) {
    EXPECT_THAT(patternsOf("packages: [a]\n- b\n"), IsEmpty());
}

TEST_F(Workspace, FileThatIsNotUtf8HasNoPatterns) {
    EXPECT_THAT(patternsOf("packages:\n- caf\xe9\n"), IsEmpty());
}

TEST_F(Workspace, FileThatIsAFolderFiltersNothing) {
    folder.makeFolder("pnpm-workspace.yaml");
    const std::vector<std::string> projects = {folder / "a"};
    EXPECT_EQ(filterNodeProjectsToWorkspacePackages(projects, folder.path()), projects);
}

TEST_F(Workspace, WithoutAPackagesLineFiltersNothing) {
    EXPECT_THAT(membersOf("catalog:\n  react: ^18\n", {".", "anything"}),
                ElementsAre(".", "anything"));
}

TEST_F(Workspace, RootIsAlwaysAMember) {
    EXPECT_THAT(membersOf("packages:\n- apps/*\n- '!**'\n", {".", "apps/web"}), ElementsAre("."));
}

TEST_F(Workspace, LastPatternThatMatchesWins) {
    const std::vector<std::string> projects = {"packages/legacy", "packages/ui"};
    EXPECT_THAT(membersOf("packages:\n- packages/*\n- '!packages/legacy'\n", projects),
                ElementsAre("packages/ui"));
    EXPECT_THAT(membersOf("packages:\n- '!packages/legacy'\n- packages/*\n", projects),
                ElementsAre("packages/legacy", "packages/ui"));
}

TEST_F(Workspace, BareNegationIsPassedOver) {
    EXPECT_THAT(membersOf("packages:\n- a\n- '!'\n", {"a"}), ElementsAre("a"));
}

TEST_F(Workspace, OrderOfTheProjectsStays) {
    EXPECT_THAT(membersOf("packages:\n- '*'\n", {"c", "a", "b"}), ElementsAre("c", "a", "b"));
}

TEST_F(Workspace, HundredsOfThousandsOfPatternsAndOfEmptyLinesAreNoTrouble) {
    std::string content = "packages:\n";
    for (int entry = 0; entry < 200'000; ++entry) {
        content += fmt::format("- a\n\n- group{}/*\n", entry);
    }
    std::vector<std::string> projects;
    for (int project = 0; project < 50; ++project) {
        projects.push_back(fmt::format("group{}/x", project * 4'000));
    }
    projects.emplace_back("elsewhere/x");
    const auto members = membersOf(content, projects);
    EXPECT_EQ(members.size(), 50);
}

TEST_F(Workspace, FileThatNobodyWritesIsNotReadToItsEnd) {
    folder.write("pnpm-workspace.yaml", "packages:\n- a\n");
    std::filesystem::resize_file(folder / "pnpm-workspace.yaml", std::uintmax_t{1} << 30);
    EXPECT_THAT(pnpmWorkspacePackagePatterns(folder.path()), IsEmpty());
}

TEST_F(Workspace, RepeatedPatternCountsWhereItStandsLast) {
    const std::vector<std::string> projects = {"a", "b"};
    EXPECT_THAT(membersOf("packages:\n- a\n- '!*'\n- a\n", projects), ElementsAre("a"));
    EXPECT_THAT(membersOf("packages:\n- a\n- '!a'\n- '!*'\n", projects), IsEmpty());
    EXPECT_THAT(membersOf("packages:\n- '!a'\n- a\n", projects), ElementsAre("a"));
}

TEST(GlobMatch, StarStandsForOnePart) {
    EXPECT_TRUE(globMatch({.path = "packages/ui", .pattern = "packages/*"}));
    EXPECT_FALSE(globMatch({.path = "packages/ui/web", .pattern = "packages/*"}));
    EXPECT_FALSE(globMatch({.path = "packages", .pattern = "packages/*"}));
}

TEST(GlobMatch, TwoStarsStandForAnyNumberOfParts) {
    EXPECT_TRUE(globMatch({.path = "packages/ui", .pattern = "packages/**"}));
    EXPECT_TRUE(globMatch({.path = "packages/ui/web", .pattern = "packages/**"}));
    EXPECT_TRUE(globMatch({.path = "packages", .pattern = "packages/**"}));
    EXPECT_TRUE(globMatch({.path = "a/b/c", .pattern = "**/c"}));
    EXPECT_FALSE(globMatch({.path = "a/b/c", .pattern = "**/b"}));
}

TEST(GlobMatch, StarMayStandForSomeOfAPart) {
    EXPECT_TRUE(globMatch({.path = "app-web", .pattern = "app-*"}));
    EXPECT_TRUE(globMatch({.path = "app-web", .pattern = "*-w*b"}));
    EXPECT_TRUE(globMatch({.path = "app-", .pattern = "app-*"}));
    EXPECT_FALSE(globMatch({.path = "my-app", .pattern = "app*"}));
}

TEST(GlobMatch, NoOtherCharacterIsSpecial) {
    EXPECT_TRUE(globMatch({.path = "a?[b]{c}.$", .pattern = "a?[b]{c}.$"}));
    EXPECT_FALSE(globMatch({.path = "ax", .pattern = "a?"}));
    EXPECT_FALSE(globMatch({.path = "ab", .pattern = "a."}));
    EXPECT_FALSE(globMatch({.path = "b", .pattern = "[ab]"}));
}

TEST(GlobMatch, LettersAreComparedWithTheirCase) {
    EXPECT_FALSE(globMatch({.path = "Packages/ui", .pattern = "packages/*"}));
}

TEST(GlobMatch, TrailingSlashIsAnEmptyLastPart) {
    EXPECT_FALSE(globMatch({.path = "packages", .pattern = "packages/"}));
    EXPECT_TRUE(globMatch({.path = "packages/", .pattern = "packages/"}));
}

TEST(GlobMatch, EmptyTextsAreOneEmptyPart) {
    EXPECT_TRUE(globMatch({.path = "", .pattern = ""}));
    EXPECT_TRUE(globMatch({.path = "", .pattern = "*"}));
    EXPECT_FALSE(globMatch({.path = "a", .pattern = ""}));
}

TEST(GlobMatch, ManyStarsTakeNoLongerThanFew) {
    std::string pattern;
    std::string path;
    for (int part = 0; part < 200; ++part) {
        pattern += "**/*a*a*a*a*b/";
        path += "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/";
    }
    EXPECT_FALSE(globMatch({.path = path, .pattern = pattern}));
}

}  // namespace
}  // namespace tarnbeck::testing
