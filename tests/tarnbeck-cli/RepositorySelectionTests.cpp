#include <filesystem>

#include "NameCollator.h"
#include "RepositorySelection.h"
#include "TemporaryFolder.h"

namespace tarnbeck::cli {
namespace {

using namespace tarnbeck::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A selection looks for ".git" and never asks git.
class RepositorySelection_Paths : public ::testing::Test {
  protected:
    std::string repository(const std::string& name) {
        folder.makeFolder(name + "/.git");
        return folder / name;
    }
    RepositorySelection selected(const std::vector<std::string>& paths) {
        return selectedRepositories(paths, configuration, folder.path());
    }

    TemporaryFolder folder;
    AppConfiguration configuration;
};

TEST_F(RepositorySelection_Paths, RepositoryMeansItself) {
    const std::string path = repository("a");
    const auto selection = selected({path});
    EXPECT_THAT(selection.paths, ElementsAre(path));
    EXPECT_THAT(selection.problems, IsEmpty());
}

TEST_F(RepositorySelection_Paths, FolderInsideAWorkTreeMeansTheRepository) {
    const std::string path = repository("a");
    folder.makeFolder("a/src/deep");
    EXPECT_THAT(selected({path + "/src/deep"}).paths, ElementsAre(path));
}

TEST_F(RepositorySelection_Paths, FileInsideAWorkTreeMeansTheRepository) {
    const std::string path = repository("a");
    EXPECT_THAT(selected({folder.write("a/src/file.c", "x")}).paths, ElementsAre(path));
}

TEST_F(RepositorySelection_Paths, InnermostRepositoryIsMeant) {
    repository("a");
    const std::string inner = repository("a/vendor/b");
    EXPECT_THAT(selected({inner}).paths, ElementsAre(inner));
}

TEST_F(RepositorySelection_Paths, GitFileMakesARepositoryToo) {
    folder.write("linked/.git", "gitdir: /elsewhere\n");
    EXPECT_THAT(selected({folder / "linked"}).paths, ElementsAre(folder / "linked"));
}

TEST_F(RepositorySelection_Paths, OtherFolderMeansAllBelowIt) {
    const std::string b = repository("group/b");
    const std::string a = repository("group/deep/a");
    EXPECT_THAT(selected({folder / "group"}).paths, ElementsAre(b, a));
}

TEST_F(RepositorySelection_Paths, LeadingTildeMeansTheHome) {
    const std::string path = repository("a");
    EXPECT_THAT(selected({"~/a"}).paths, ElementsAre(path));
}

TEST_F(RepositorySelection_Paths, DotsAndSlashesAreTidiedUp) {
    const std::string path = repository("a");
    EXPECT_THAT(selected({folder.path() + "/x/..//a/./"}).paths, ElementsAre(path));
}

TEST_F(RepositorySelection_Paths, MissingPathIsAFailureUnderTheTypedName) {
    EXPECT_THAT(selected({"~/nothing"}).problems,
                ElementsAre(SelectionProblem{"~/nothing", "does not exist"}));
}

TEST_F(RepositorySelection_Paths, DanglingLinkIsMissing) {
    std::filesystem::create_symlink("/nonexistent", folder / "link");
    EXPECT_THAT(selected({folder / "link"}).problems,
                ElementsAre(SelectionProblem{folder / "link", "does not exist"}));
}

TEST_F(RepositorySelection_Paths, PathThroughAFileCantBeReached) {
    const std::string file = folder.write("file", "x");
    const auto selection = selected({file + "/below"});
    EXPECT_THAT(selection.problems, ElementsAre(SelectionProblem{
                                        file + "/below", "can't be reached: Not a directory"}));
}

TEST_F(RepositorySelection_Paths, FileOutsideOfAnyRepositoryIsAFailure) {
    const std::string file = folder.write("file", "x");
    EXPECT_THAT(selected({file}).problems, ElementsAre(SelectionProblem{file, "is not a folder"}));
}

TEST_F(RepositorySelection_Paths, NothingBelowAFolderIsAWordAndNoFailure) {
    const std::string empty = folder.makeFolder("empty");
    const auto selection = selected({empty});
    EXPECT_THAT(selection.paths, IsEmpty());
    EXPECT_THAT(selection.problems,
                ElementsAre(SelectionProblem{empty, "no repository found below it", false}));
}

TEST_F(RepositorySelection_Paths, IgnoredFolderBelowTheNamedOneIsLeftOut) {
    const std::string a = repository("group/a");
    repository("group/skip/b");
    configuration.discoveryIgnorePaths = {"~/group/skip"};
    EXPECT_THAT(selected({folder / "group"}).paths, ElementsAre(a));
}

TEST_F(RepositorySelection_Paths, IgnoredFolderThatIsNamedIsSearched) {
    const std::string b = repository("group/skip/b");
    configuration.discoveryIgnorePaths = {"~/group/skip"};
    EXPECT_THAT(selected({folder / "group/skip"}).paths, ElementsAre(b));
}

TEST_F(RepositorySelection_Paths, RepositoryNamedTwiceIsTakenOnce) {
    const std::string a = repository("group/a");
    const std::string b = repository("group/b");
    EXPECT_THAT(selected({b, a + "/", folder / "group", b + "/."}).paths, ElementsAre(b, a));
}

TEST_F(RepositorySelection_Paths, OneBadPathDoesNotSpoilTheOthers) {
    const std::string a = repository("a");
    const auto selection = selected({folder / "missing", a});
    EXPECT_THAT(selection.paths, ElementsAre(a));
    EXPECT_EQ(selection.problems.size(), 1U);
}

TEST_F(RepositorySelection_Paths, LinkToARepositoryStaysUnderItsOwnName) {
    repository("a");
    std::filesystem::create_directory_symlink(folder / "a", folder / "link");
    EXPECT_THAT(selected({folder / "link"}).paths, ElementsAre(folder / "link"));
}

TEST_F(RepositorySelection_Paths, LoopOfLinksIsNamed) {
    std::filesystem::create_symlink(folder / "one", folder / "two");
    std::filesystem::create_symlink(folder / "two", folder / "one");
    EXPECT_THAT(selected({folder / "one"}).problems,
                ElementsAre(::testing::Field(&SelectionProblem::reason,
                                             ::testing::StartsWith("can't be reached: "))));
}

TEST_F(RepositorySelection_Paths, RepositoryAroundAPathIsFound) {
    const std::string path = repository("a");
    folder.makeFolder("a/src/deep");
    EXPECT_EQ(*repositoryAround(path + "/src/deep", folder.path()), path);
    EXPECT_EQ(*repositoryAround("~/a/", folder.path()), path);
}

TEST_F(RepositorySelection_Paths, PathWithoutARepositoryAroundItHasTheReason) {
    EXPECT_EQ(repositoryAround(folder / "gone", folder.path()).error(), "does not exist");
    EXPECT_EQ(repositoryAround(folder.makeFolder("plain"), folder.path()).error(),
              "is neither a git repository nor inside one");
}

class RepositorySelection_Configured : public RepositorySelection_Paths {
  protected:
    RepositorySelection chosen(const std::vector<std::string>& paths = {}) {
        return selectedOrConfigured(
            paths, {.home = folder.path(), .report = [](std::string_view) {}}, collator);
    }

    NameCollator collator;
};

TEST_F(RepositorySelection_Configured, AreThoseOfTheConfigurationByName) {
    const std::string beta = repository("one/beta");
    const std::string alpha = repository("two/Alpha");
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["~/one/beta","~/two/Alpha"]})");
    EXPECT_THAT(chosen().paths, ElementsAre(alpha, beta));
}

TEST_F(RepositorySelection_Configured, ThoseThatAreNoRepositoriesAreFailures) {
    folder.makeFolder("plain");
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["~/gone","~/plain"]})");
    EXPECT_THAT(chosen().paths, IsEmpty());
    EXPECT_THAT(chosen().problems,
                ElementsAre(SelectionProblem{folder / "gone", "does not exist"},
                            SelectionProblem{folder / "plain",
                                             "is not a git repository (there is no .git)"}));
}

TEST_F(RepositorySelection_Configured, PathsOnTheCommandLineTakeTheirPlace) {
    const std::string path = repository("named");
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["~/gone"]})");
    EXPECT_THAT(chosen({path}).paths, ElementsAre(path));
    EXPECT_THAT(chosen({path}).problems, IsEmpty());
}

}  // namespace
}  // namespace tarnbeck::cli
