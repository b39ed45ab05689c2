#include <chrono>
#include <filesystem>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include "DependencyScanner+Fingerprints.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
namespace fs = std::filesystem;

void setModified(const std::string& path, std::int64_t seconds, long nanoseconds = 0) {
    const std::array<timespec, 2> times = {timespec{seconds, nanoseconds},
                                           timespec{seconds, nanoseconds}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
}

class Fingerprint : public ::testing::Test {
  protected:
    // Writes a file that was changed at this second.
    void write(const std::string& name, std::int64_t seconds) {
        setModified(folder.write(name, "{}"), seconds);
    }
    std::string structure() const { return structureFingerprint(folder.path()); }
    std::string fingerprint(const std::vector<std::string>& node,
                            const std::vector<std::string>& python = {}) const {
        return buildFingerprint(folder.path(), {.nodeProjects = node, .pythonProjects = python});
    }
    std::vector<std::string> environmentTokens() const {
        return pythonEnvironmentFingerprintTokens(
            {.projectPaths = {folder.path()}, .repoPath = folder.path()});
    }

    TemporaryFolder folder;
};

using StructureFingerprint = Fingerprint;

TEST_F(StructureFingerprint, HoldsTheRootsAndTheFoldersTimesInMilliseconds) {
    folder.makeFolder("web");
    folder.makeFolder("app");
    setModified(folder / "web", 1700000000, 123'999'999);
    setModified(folder / "app", 1600000000);
    setModified(folder.path(), 1500000000, 1'000'000);
    EXPECT_EQ(structure(), "root:1500000000001|app:1600000000000|web:1700000000123");
}

TEST_F(StructureFingerprint, LeavesOutFilesLinksHiddenAndExcludedFolders) {
    folder.write("file", "");
    folder.makeFolder(".hidden");
    folder.makeFolder("node_modules");
    folder.makeFolder("build");
    folder.makeFolder("app");
    fs::create_directory_symlink(folder / "app", folder / "link");
    setModified(folder / "app", 1);
    setModified(folder.path(), 2);
    EXPECT_EQ(structure(), "root:2000|app:1000");
}

TEST_F(StructureFingerprint, OfAFolderThatIsNotThereIsTheRootsTokenAlone) {
    EXPECT_EQ(structureFingerprint(folder / "gone"), "root:0");
}

TEST_F(StructureFingerprint, DoesNotSeeWhatHappensBelowTheFirstLevel) {
    folder.makeFolder("app/deep");
    const auto before = structure();
    folder.write("app/deep/package.json", "{}");
    EXPECT_EQ(structure(), before);
}

TEST_F(StructureFingerprint, TimesBefore1970AreTruncatedTowardsZero) {
    setModified(folder.path(), -2, 1'500'000);  // 1.9985 seconds before
    EXPECT_EQ(structure(), "root:-1998");
}

TEST_F(Fingerprint, WithoutProjectsIsTheSchemeAlone) {
    EXPECT_EQ(fingerprint({}), "v17");
}

TEST_F(Fingerprint, OfNodeProjectsListsThemAndThenEachTrackedFileInItsOrder) {
    write("package.json", 1);
    write("web/pnpm-lock.yaml", 2);
    EXPECT_EQ(fingerprint({folder / "web", folder.path()}),
              "v17|node-projects:.,web"
              "|node:package.json:1000|node:pnpm-lock.yaml:missing|node:package-lock.json:missing"
              "|node:npm-shrinkwrap.json:missing|node:yarn.lock:missing|node:bun.lock:missing"
              "|node:bun.lockb:missing"
              "|node:web/package.json:missing|node:web/pnpm-lock.yaml:2000"
              "|node:web/package-lock.json:missing|node:web/npm-shrinkwrap.json:missing"
              "|node:web/yarn.lock:missing|node:web/bun.lock:missing|node:web/bun.lockb:missing");
}

TEST_F(Fingerprint, OfPythonProjectsListsTheirFilesAndThenTheirEnvironments) {
    write("api/requirements.txt", 3);
    EXPECT_EQ(fingerprint({}, {folder / "api"}),
              "v17|python-projects:api"
              "|python:api/pyproject.toml:missing|python:api/requirements.txt:3000"
              "|python:api/requirements-dev.txt:missing|python:api/Pipfile:missing"
              "|python:api/Pipfile.lock:missing|python:api/poetry.lock:missing"
              "|python:api/uv.lock:missing|python:api/.python-version:missing"
              "|python:api/.venv/pyvenv.cfg:missing|python:api/venv/pyvenv.cfg:missing"
              "|python:api/.venv/Lib/site-packages:missing"
              "|python:api/venv/Lib/site-packages:missing"
              "|python:api/.venv/lib:missing|python:api/venv/lib:missing");
}

TEST_F(Fingerprint, OfBothHasNodeFirst) {
    const auto both = fingerprint({folder.path()}, {folder.path()});
    EXPECT_THAT(both, StartsWith("v17|node-projects:.|"));
    EXPECT_LT(both.find("|node:bun.lockb"), both.find("|python-projects:.|"));
}

TEST_F(Fingerprint, TimesOfFilesAreRoundedDownToMilliseconds) {
    folder.write("package.json", "{}");
    setModified(folder / "package.json", 5, 999'999);
    EXPECT_THAT(fingerprint({folder.path()}), HasSubstr("|node:package.json:5000|"));
    setModified(folder / "package.json", -1, 500'000);  // 0.9995 seconds before 1970
    EXPECT_THAT(fingerprint({folder.path()}), HasSubstr("|node:package.json:-1000|"));
}

TEST_F(Fingerprint, OfALinkIsTheTimeOfWhatItLeadsTo) {
    write("elsewhere.json", 7);
    fs::create_symlink(folder / "elsewhere.json", folder / "package.json");
    EXPECT_THAT(fingerprint({folder.path()}), HasSubstr("|node:package.json:7000|"));
    fs::remove(folder / "elsewhere.json");
    EXPECT_THAT(fingerprint({folder.path()}), HasSubstr("|node:package.json:missing|"));
}

TEST_F(Fingerprint, ChangesWithEachTrackedFileOfPythonAndWithNoOther) {
    // The folders stand before the files, so that only the files change anything.
    folder.makeFolder(".venv");
    folder.makeFolder("venv");
    for (const auto name : trackedPythonFiles) {
        const auto before = fingerprint({}, {folder.path()});
        write(std::string(name), 9);
        const auto written = fingerprint({}, {folder.path()});
        EXPECT_NE(written, before) << name;
        write(std::string(name), 10);
        EXPECT_NE(fingerprint({}, {folder.path()}), written) << name;
    }
    const auto before = fingerprint({}, {folder.path()});
    write("setup.py", 9);
    EXPECT_EQ(fingerprint({}, {folder.path()}), before);
}

TEST_F(Fingerprint, ChangesWithEachTrackedFileOfNodeAndWithNoOther) {
    for (const auto name : trackedNodeFiles) {
        const auto before = fingerprint({folder.path()});
        write(std::string(name), 9);
        EXPECT_NE(fingerprint({folder.path()}), before) << name;
    }
    const auto before = fingerprint({folder.path()});
    write("README.md", 9);
    EXPECT_EQ(fingerprint({folder.path()}), before);
}

TEST_F(Fingerprint, ProjectOutsideTheRepositoryHasItsOwnPathAsKey) {
    const auto tokens = fingerprintTokens({.projectPaths = {"/none"}, .repoPath = folder.path()},
                                          {.names = trackedNodeFiles, .ecosystemPrefix = "node"});
    EXPECT_EQ(tokens.at(0), "node-projects:/none");
    EXPECT_EQ(tokens.at(1), "node:/none/package.json:missing");
}

using PythonEnvironmentTokens = Fingerprint;

TEST_F(PythonEnvironmentTokens, OfARootProjectWithoutEnvironmentsAreFourMissingOnes) {
    EXPECT_THAT(environmentTokens(),
                ElementsAre("python:.venv/Lib/site-packages:missing",
                            "python:venv/Lib/site-packages:missing", "python:.venv/lib:missing",
                            "python:venv/lib:missing"));
}

TEST_F(PythonEnvironmentTokens, OfAnEmptyLibraryFolderIsEmpty) {
    folder.makeFolder(".venv/lib");
    EXPECT_EQ(environmentTokens().at(2), "python:.venv/lib:empty");
}

TEST_F(PythonEnvironmentTokens, HoldTheTimeOfEachInterpretersPackagesWhateverTheEntryIsCalled) {
    folder.makeFolder("venv/lib/python3.9/site-packages");
    folder.makeFolder("venv/lib/python3.11/site-packages");
    folder.write("venv/lib/notes", "");
    setModified(folder / "venv/lib/python3.9/site-packages", 1);
    setModified(folder / "venv/lib/python3.11/site-packages", 2, 3'999'999);
    EXPECT_THAT(environmentTokens(),
                ElementsAre("python:.venv/Lib/site-packages:missing",
                            "python:venv/Lib/site-packages:missing", "python:.venv/lib:missing",
                            "python:venv/lib/notes/site-packages:missing",
                            "python:venv/lib/python3.11/site-packages:2003",
                            "python:venv/lib/python3.9/site-packages:1000"));
}

TEST_F(PythonEnvironmentTokens, ChangeWhenAPackageIsInstalled) {
    folder.makeFolder(".venv/lib/python3.11/site-packages");
    setModified(folder / ".venv/lib/python3.11/site-packages", 1);
    const auto before = fingerprint({}, {folder.path()});
    folder.makeFolder(".venv/lib/python3.11/site-packages/requests");
    EXPECT_NE(fingerprint({}, {folder.path()}), before);
}

TEST_F(PythonEnvironmentTokens, FileInTheFoldersPlaceIsMissing) {
    folder.write(".venv/Lib/site-packages", "");
    folder.write("venv/lib", "");
    EXPECT_THAT(environmentTokens(),
                ElementsAre("python:.venv/Lib/site-packages:missing",
                            "python:venv/Lib/site-packages:missing", "python:.venv/lib:missing",
                            "python:venv/lib:missing"));
}

TEST_F(PythonEnvironmentTokens, DirectoryTokenTellsTheKeyItWasGiven) {
    folder.makeFolder("some");
    setModified(folder / "some", 4, 700'000);
    EXPECT_EQ(pythonDirectoryToken({.absolutePath = folder / "some", .tokenKey = "a key"}),
              "python:a key:4000");
}

}  // namespace
}  // namespace tarnbeck::testing
