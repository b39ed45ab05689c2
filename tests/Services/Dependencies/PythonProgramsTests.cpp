#include <csignal>

#include <poll.h>
#include <sys/stat.h>

#include "PythonProgramFixture.h"

namespace tarnbeck::testing {
namespace {

class PythonProgram_Blocking : public PythonProgram {
  protected:
    CommandResult blocking(const std::string& updates, const std::vector<std::string>& files = {}) {
        std::vector<std::string> args = {updates};
        if (!files.empty()) args.push_back(list(files));
        return runProgram(python, PythonPrograms::blocking, std::move(args));
    }
    void expectNothingBlocked(const CommandResult& result) {
        expectJson(result, R"({"blocked": []})");
    }

    const std::string updateOfB = R"([{"package": "B", "latest": "2.1"}])";
};

TEST_F(PythonProgram_Blocking, InstalledPackageForbidsAnUpdate) {
    installed("A", "1.0", {"B<2"});
    expectJson(blocking(updateOfB), R"({"blocked": [{"package": "B", "latest": "2.1",
                                        "reason": "A 1.0 (installed) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, PinNamesItsFile) {
    installed("A", "1.0", {"B<2"});
    expectJson(blocking(updateOfB, {file("requirements.txt", "a==1.0  # why\n")}),
               R"({"blocked": [{"package": "B", "latest": "2.1",
                   "reason": "A 1.0 (pinned in requirements.txt) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, FirstPinOfAPackageCounts) {
    installed("A", "1.0", {"B<2"});
    expectJson(blocking(updateOfB, {file("requirements.txt", "a==1.0\n"),
                                    file("requirements-dev.txt", "A==9\n")}),
               R"({"blocked": [{"package": "B", "latest": "2.1",
                   "reason": "A 1.0 (pinned in requirements.txt) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, FirstPinOfALineCounts) {
    const std::string requirements = file("requirements.txt", "A >= 0.1, == 1.0.1, ==1.0,==0.9\n");
    installed("A", "1.0.1", {"B<2"});
    expectJson(blocking(updateOfB, {requirements}),
               R"({"blocked": [{"package": "B", "latest": "2.1",
                   "reason": "A 1.0.1 (pinned in requirements.txt) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, LaterPinsOfALineDoNotCount) {
    const std::string requirements = file("requirements.txt", "A == 1.0.1, ==1.0,==0.9\n");
    pipInspects(R"({"installed": [
        {"metadata": {"name": "A", "version": "1.0", "requires_dist": ["B<2"]}},
        {"metadata": {"name": "A", "version": "0.9", "requires_dist": ["B<2"]}}]})");
    expectNothingBlocked(blocking(updateOfB, {requirements}));
}

TEST_F(PythonProgram_Blocking, PackageThatIsNotThePinnedOneForbidsNothing) {
    installed("A", "0.9", {"B<2"});
    expectNothingBlocked(blocking(updateOfB, {file("requirements.txt", "a==1.0\n")}));
}

TEST_F(PythonProgram_Blocking, RangeIsNoPin) {
    installed("A", "0.9", {"B<2"});
    expectJson(blocking(updateOfB, {file("requirements.txt", "a>=1.0\n")}),
               R"({"blocked": [{"package": "B", "latest": "2.1",
                   "reason": "A 0.9 (installed) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, TwoPackagesThatAreUpdatedTogetherAreNoConflict) {
    installed("A", "1.0", {"B<2"});
    expectNothingBlocked(
        blocking(R"([{"package": "B", "latest": "2.1"}, {"package": "a", "latest": "2.0"}])"));
}

TEST_F(PythonProgram_Blocking, RequirementOfAnExtraForbidsNothing) {
    installed("A", "1.0", {"B<2 ; extra == 'x'", "b (<2) ; extra == \"x\""});
    expectNothingBlocked(blocking(updateOfB));
}

TEST_F(PythonProgram_Blocking, MarkerOfAnotherSystemForbidsNothing) {
    installed("A", "1.0", {"B<2 ; sys_platform == 'win32'"});
    expectNothingBlocked(blocking(updateOfB));
}

TEST_F(PythonProgram_Blocking, MarkerOfThisSystemForbids) {
    installed("A", "1.0", {"B<2,>=1 ; python_version >= '3' and extra != 'x'"});
    expectJson(blocking(updateOfB), R"({"blocked": [{"package": "B", "latest": "2.1",
                                        "reason": "A 1.0 (installed) requires B<2,>=1"}]})");
}

TEST_F(PythonProgram_Blocking, LatestThatSatisfiesIsNotBlocked) {
    installed("A", "1.0", {"B>=2", "B", "B!=2.0", "not a requirement"});
    expectNothingBlocked(blocking(updateOfB));
}

TEST_F(PythonProgram_Blocking, PrereleaseMaySatisfy) {
    installed("A", "1.0", {"B>=2"});
    expectNothingBlocked(blocking(R"([{"package": "B", "latest": "3.0rc1"}])"));
}

TEST_F(PythonProgram_Blocking, LatestThatIsNoVersionIsNotBlocked) {
    installed("A", "1.0", {"B<2"});
    expectNothingBlocked(blocking(R"([{"package": "B", "latest": "newest"}])"));
}

TEST_F(PythonProgram_Blocking, OnlyOneReasonIsTold) {
    installed("A", "1.0", {"B<2"});
    installed("C", "1.0", {"B<2"});
    const auto result = parsedJson(blocking(updateOfB).stdout);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->at("blocked").get_array().size(), 1);
}

TEST_F(PythonProgram_Blocking, NamesAreComparedNormalizedAndToldAsTheyAre) {
    installed("A_b", "1.0", {"Foo_Bar<2"});
    expectJson(blocking(R"([{"package": "foo-bar", "latest": "2"}])",
                        {file("requirements.txt", "a-B==1.0")}),
               R"({"blocked": [{"package": "foo-bar", "latest": "2",
                   "reason": "A_b 1.0 (pinned in requirements.txt) requires Foo_Bar<2"}]})");
}

TEST_F(PythonProgram_Blocking, FilesOfEveryKindOfLineAreRead) {
    installed("A", "1.0", {"B<2"});
    const std::string lines =
        "\xEF\xBB\xBF"
        "# comment\r\n-r other.txt\r\n-e .\r\n--index-url https://localhost/x\r\n"
        "git+https://localhost/x.git\r\nz @ https://localhost/z.zip#egg=z\r\nq==1 \\\r\n"
        "   --hash=sha256:00\r\nw[x] == 1 ; python_version < '3'\r\nA == 1.0\r\n";
    expectJson(blocking(updateOfB, {file("requirements.txt", lines)}),
               R"({"blocked": [{"package": "B", "latest": "2.1",
                   "reason": "A 1.0 (pinned in requirements.txt) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, FilesThatCanNotBeReadArePassedOver) {
    installed("A", "1.0", {"B<2"});
    expectJson(blocking(updateOfB, {file("requirements.txt", "a==2 # caf\xE9"),
                                    folder_.makeFolder("repo/requirements-dev.txt"),
                                    folder_ / "repo/gone.txt"}),
               R"({"blocked": [{"package": "B", "latest": "2.1",
                   "reason": "A 1.0 (installed) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, NameAndVersionBesideTheMetadataStandInForMissingOnes) {
    pipInspects(R"({"installed": [
        {"name": "Own", "version": "3.0", "metadata": {"requires_dist": ["B<2"]}}]})");
    expectJson(blocking(updateOfB), R"({"blocked": [{"package": "B", "latest": "2.1",
                                        "reason": "Own 3.0 (installed) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, NameAndVersionOfTheMetadataOutweighThoseBesideIt) {
    pipInspects(R"({"installed": [{"name": "Own", "version": "3.0",
        "metadata": {"name": "A", "version": "1.0", "requires_dist": ["B<2"]}}]})");
    expectJson(blocking(updateOfB), R"({"blocked": [{"package": "B", "latest": "2.1",
                                        "reason": "A 1.0 (installed) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, PackageWithoutAnyNameIsUnknownAndItsMissingVersionEmpty) {
    pipInspects(R"({"installed": [{}, {"metadata": {"requires_dist": ["B<2"]}}]})");
    expectJson(blocking(updateOfB), R"({"blocked": [{"package": "B", "latest": "2.1",
                                        "reason": "unknown  (installed) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, WithoutTargetsNothingIsBlocked) {
    expectNothingBlocked(blocking("[]"));
    expectNothingBlocked(blocking(R"([{"package": "", "latest": "1"}, {"package": "a"}])"));
}

TEST_F(PythonProgram_Blocking, WithoutPackagingItFailsSilently) {
    python = makeEnvironmentWithoutPip("repo/venv");
    expectFailure(blocking(updateOfB));
}

TEST_F(PythonProgram_Blocking, WithoutInspectItFailsSilently) {
    folder_.write(sitePackages() + "/pip/__main__.py", "import sys; sys.exit('no such command')");
    expectFailure(blocking(updateOfB));
}

TEST_F(PythonProgram_Blocking, EndsPipWhenItIsEnded) {
    const std::string fifo = folder_ / "pid";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    folder_.write(
        sitePackages() + "/pip/__main__.py",
        "import os, time\nopen('" + fifo + "', 'w').write(str(os.getpid()))\ntime.sleep(600)\n");
    const auto program =
        launcher_.launch({.executable = python,
                          .arguments = {"-c", std::string(PythonPrograms::blocking), updateOfB}});
    ASSERT_TRUE(program) << program.error();
    const pid_t pip = std::stoi(contentOf(fifo));  // waits until pip writes it
    (*program)->terminate();
    pollfd exit{.fd = (*program)->exitDescriptor(), .events = POLLIN};
    ASSERT_EQ(poll(&exit, 1, 60'000), 1);
    EXPECT_FALSE((*program)->isRunning());
    EXPECT_EQ(kill(pip, 0), -1);
}

TEST_F(PythonProgram_Blocking, NothingOfTheProjectIsImported) {
    installed("A", "1.0", {"B<2"});
    for (const char* name : {"json.py", "signal.py", "subprocess.py", "packaging/__init__.py",
                             "packaging/requirements.py", "pip/__init__.py", "pip/__main__.py"}) {
        file(name, "print('imported'); raise SystemExit(3)");
    }
    installInPlace("repo");
    expectJson(blocking(updateOfB), R"({"blocked": [{"package": "B", "latest": "2.1",
                                        "reason": "A 1.0 (installed) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, NothingOfAFolderThatIsInstalledInPlaceIsImported) {
    installed("A", "1.0", {"B<2"});
    installInPlace("repo/src");
    file("src/packaging/__init__.py", "print('imported'); raise SystemExit(3)");
    expectJson(blocking(updateOfB), R"({"blocked": [{"package": "B", "latest": "2.1",
                                        "reason": "A 1.0 (installed) requires B<2"}]})");
}

TEST_F(PythonProgram_Blocking, FolderOfTheProjectIsNotTakenForAPackagingThatIsMissing) {
    python = makeEnvironmentWithoutPip("repo/venv");
    installInPlace("repo/src");
    file("src/packaging/__init__.py", "raise SystemExit(3)");
    EXPECT_EQ(blocking(updateOfB).terminationStatus, 1);
}

TEST_F(PythonProgram_Blocking, WhatIsInstalledOfPackagingComesBeforePipsOwn) {
    folder_.write(sitePackages() + "/packaging/__init__.py", "raise SystemExit(3)");
    EXPECT_EQ(blocking(updateOfB).terminationStatus, 3);
}

class PythonProgram_Origins : public PythonProgram {
  protected:
    CommandResult origins(const std::vector<std::string>& packages,
                          const std::vector<std::string>& files) {
        return runProgram(python, PythonPrograms::origins, {list(packages), list(files)});
    }
};

TEST_F(PythonProgram_Origins, PackageIsNamedNeededOrMerelyThere) {
    installed("A", "1.0", {"Needed_one<2", "extra_one ; extra == 'x'"});
    installed("Needed_one", "1.0", {"deeper"});
    expectJson(
        origins({"A", "needed-One", "deeper", "extra_one"}, {file("requirements.txt", "a>=1\n")}),
        R"({"a": "manifestDirect", "needed-one": "manifestTransitive",
                   "deeper": "venvOnly", "extra-one": "venvOnly"})");
}

TEST_F(PythonProgram_Origins, AllFilesCountAndSoDoBareNames) {
    expectJson(origins({"A", "b", "c"}, {file("requirements.txt", "a\n"),
                                         file("requirements-dev.txt", "B[x] >= 1, <2  # why")}),
               R"({"a": "manifestDirect", "b": "manifestDirect", "c": "venvOnly"})");
}

TEST_F(PythonProgram_Origins, PackageThatIsBothNamedAndNeededIsNamed) {
    installed("A", "1.0", {"b", "c"});
    expectJson(origins({"b", "c"}, {file("requirements.txt", "a\nb\n")}),
               R"({"b": "manifestDirect", "c": "manifestTransitive"})");
}

TEST_F(PythonProgram_Origins, NameBesideTheMetadataStandsInForAMissingOne) {
    pipInspects(R"({"installed": [{}, {"metadata": {"requires_dist": ["d"]}},
        {"name": "A", "metadata": {"requires_dist": ["b"]}},
        {"name": "A", "metadata": {"name": "other", "requires_dist": ["c"]}}]})");
    expectJson(origins({"b", "c", "d"}, {file("requirements.txt", "a\n")}),
               R"({"b": "manifestTransitive", "c": "venvOnly", "d": "venvOnly"})");
}

TEST_F(PythonProgram_Origins, LineWhoseMarkerIsFalseDoesNotCount) {
    expectJson(origins({"a", "b"}, {file("requirements.txt",
                                         "a ; sys_platform == 'win32'\n"
                                         "b ; extra == 'x'\n")}),
               R"({"a": "venvOnly", "b": "venvOnly"})");
}

TEST_F(PythonProgram_Origins, WithoutDirectNamesPipIsNotAsked) {
    folder_.write(sitePackages() + "/pip/__main__.py", "import sys; sys.exit('no such command')");
    expectJson(origins({"a"}, {file("requirements.txt", "-r other.txt\n"), folder_ / "gone"}),
               R"({"a": "venvOnly"})");
}

TEST_F(PythonProgram_Origins, WithoutInspectItFailsSilently) {
    folder_.write(sitePackages() + "/pip/__main__.py", "import sys; sys.exit('no such command')");
    expectFailure(origins({"a"}, {file("requirements.txt", "a\n")}));
}

TEST_F(PythonProgram_Origins, WithoutItsArgumentsItFailsSilently) {
    expectFailure(runProgram(python, PythonPrograms::origins, {"[]"}));
}

TEST_F(PythonProgram_Origins, NothingOfTheProjectIsImported) {
    for (const char* name : {"json.py", "subprocess.py", "packaging/requirements.py",
                             "pip/__init__.py", "pip/__main__.py"}) {
        file(name, "print('imported'); raise SystemExit(3)");
    }
    expectJson(origins({"a"}, {file("requirements.txt", "a\n")}), R"({"a": "manifestDirect"})");
}

TEST_F(PythonProgram_Origins, NothingOfAFolderThatIsInstalledInPlaceIsImported) {
    installInPlace("repo/src");
    file("src/packaging/__init__.py", "print('imported'); raise SystemExit(3)");
    expectJson(origins({"a"}, {file("requirements.txt", "a\n")}), R"({"a": "manifestDirect"})");
}

TEST_F(PythonProgram_Origins, FolderOfTheProjectIsNotTakenForAPackagingThatIsMissing) {
    python = makeEnvironmentWithoutPip("repo/venv");
    installInPlace("repo/src");
    file("src/packaging/__init__.py", "raise SystemExit(3)");
    EXPECT_EQ(origins({"a"}, {file("requirements.txt", "a\n")}).terminationStatus, 1);
}

}  // namespace
}  // namespace tarnbeck::testing
