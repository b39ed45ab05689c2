#include <filesystem>

#include <sys/stat.h>

#include "DependencyScanner+Discovery.h"
#include "MachineRights.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

class Discovery : public ::testing::Test {
  protected:
    std::vector<std::string> nodeProjects() const {
        return discoverProjects(folder.path(), nodeManifestNames());
    }
    std::vector<std::string> pythonProjects() const {
        return discoverProjects(folder.path(), pythonManifestNames());
    }

    TemporaryFolder folder;
};

TEST_F(Discovery, ManifestSixFoldersDownIsFound) {
    folder.write("a/b/c/d/e/f/package.json", "{}");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder / "a/b/c/d/e/f"));
}

TEST_F(Discovery, ProjectsAreSortedByBytesAndStandOnce) {
    folder.write("b/requirements.txt", "");
    folder.write("b/poetry.lock", "");
    folder.write("B/uv.lock", "");
    folder.write("a-b/Pipfile", "");
    folder.write("a/b/pyproject.toml", "");
    folder.write("requirements-dev.txt", "");
    EXPECT_THAT(pythonProjects(), ElementsAre(folder.path(), folder / "B", folder / "a-b",
                                              folder / "a/b", folder / "b"));
}

TEST_F(Discovery, EachManifestNameMakesAProject) {
    for (const std::string& name : pythonManifestNames()) folder.write(name + ".d/" + name, "");
    EXPECT_EQ(pythonProjects().size(), 6);
    EXPECT_THAT(nodeProjects(), IsEmpty());
}

TEST_F(Discovery, ExcludedFoldersAreNotLookedIntoAtAnyDepth) {
    for (const auto* name : {"node_modules", "dist", ".git", "build"}) {
        folder.write(std::string(name) + "/package.json", "{}");
        folder.write(std::string("deep/er/") + name + "/in/package.json", "{}");
    }
    EXPECT_THAT(nodeProjects(), IsEmpty());
}

TEST_F(Discovery, ExcludedNameOfAFileMeansNothing) {
    folder.write("app/build", "a script");
    folder.write("app/package.json", "{}");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder / "app"));
}

TEST_F(Discovery, HiddenFoldersAreWalked) {
    folder.write(".tools/package.json", "{}");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder / ".tools"));
}

TEST_F(Discovery, FolderOfTheRootThatIsCalledLikeAManifestCountsAsOne) {
    folder.makeFolder("package.json");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder.path()));
}

TEST_F(Discovery, FolderFurtherDownThatIsCalledLikeAManifestIsWalkedAndDoesNotCount) {
    folder.write("app/package.json/lib/package.json", "{}");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder / "app/package.json/lib"));
}

TEST_F(Discovery, LinkToAFolderIsNotEntered) {
    folder.write("real/package.json", "{}");
    fs::create_directory_symlink(folder / "real", folder / "link");
    fs::create_directory_symlink(folder.path(), folder / "loop");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder / "real"));
}

TEST_F(Discovery, LinkCountsAsAManifestByItsName) {
    folder.makeFolder("app");
    fs::create_symlink(folder / "nowhere", folder / "app/package.json");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder / "app"));
}

TEST_F(Discovery, DanglingManifestOfTheRootCountsByItsNameToo) {
    fs::create_symlink(folder / "nowhere", folder / "package.json");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder.path()));
}

TEST_F(Discovery, UnreadableFolderIsPassedOver) {
    folder.write("locked/package.json", "{}");
    folder.write("open/package.json", "{}");
    chmod((folder / "locked").c_str(), 0);
    {
        const WithoutRootRights ordinaryUser;
        EXPECT_THAT(nodeProjects(), ElementsAre(folder / "open"));
    }
    chmod((folder / "locked").c_str(), 0700);
}

TEST_F(Discovery, RootThatCannotBeListedIsStillAProjectByItsManifest) {
    folder.write("package.json", "{}");
    folder.write("web/package.json", "{}");
    chmod(folder.path().c_str(), 0111);
    {
        const WithoutRootRights ordinaryUser;
        EXPECT_THAT(nodeProjects(), ElementsAre(folder.path()));
    }
    chmod(folder.path().c_str(), 0700);
}

TEST_F(Discovery, FolderThatIsNotThereHasNoProjects) {
    EXPECT_THAT(discoverProjects(folder / "gone", nodeManifestNames()), IsEmpty());
}

TEST_F(Discovery, PathWithDotsAndTrailingSlashGivesStandardizedProjects) {
    folder.write("web/package.json", "{}");
    EXPECT_THAT(discoverProjects(folder.path() + "/x/..//", nodeManifestNames()),
                ElementsAre(folder / "web"));
}

TEST_F(Discovery, NamesThatAreNotUtf8AreFoundToo) {
    folder.write("caf\xe9/package.json", "{}");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder / "caf\xe9"));
}

TEST_F(Discovery, FolderMayBeAProjectOfBothKinds) {
    folder.write("app/package.json", "{}");
    folder.write("app/requirements.txt", "");
    const auto markers = discoverMarkers(folder.path());
    EXPECT_THAT(markers.nodeProjects, ElementsAre(folder / "app"));
    EXPECT_THAT(markers.pythonProjects, ElementsAre(folder / "app"));
}

TEST_F(Discovery, MarkersHoldTheWorkspacesMembersAlone) {
    folder.write("pnpm-workspace.yaml", "packages:\n  - packages/*\n");
    folder.write("package.json", "{}");
    folder.write("packages/ui/package.json", "{}");
    folder.write("examples/demo/package.json", "{}");
    folder.write("examples/demo/requirements.txt", "");
    const auto markers = discoverMarkers(folder.path());
    EXPECT_THAT(markers.nodeProjects, ElementsAre(folder.path(), folder / "packages/ui"));
    EXPECT_THAT(markers.pythonProjects, ElementsAre(folder / "examples/demo"));
}

TEST_F(Discovery, ThreeHundredProjectsAreFound) {
    for (int number = 0; number < 300; ++number) {
        folder.write("p" + std::to_string(number) + "/package.json", "{}");
    }
    EXPECT_EQ(nodeProjects().size(), 300);
}

TEST(RelativeProjectPath, OfTheRootIsADot) {
    EXPECT_EQ(relativeProjectPath({.projectPath = "/r/./a/", .repoPath = "/r/a"}), ".");
}

TEST(RelativeProjectPath, BelowTheRootIsTheRest) {
    EXPECT_EQ(relativeProjectPath({.projectPath = "/r/a/web/ui", .repoPath = "/r/a/"}), "web/ui");
}

TEST(RelativeProjectPath, ElsewhereIsTheProjectsOwnPath) {
    EXPECT_EQ(relativeProjectPath({.projectPath = "/r/ab/../ab", .repoPath = "/r/a"}), "/r/ab");
}

}  // namespace
}  // namespace tarnbeck::testing
