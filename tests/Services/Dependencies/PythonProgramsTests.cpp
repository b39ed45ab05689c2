#include <csignal>

#include <fmt/format.h>
#include <poll.h>
#include <sys/stat.h>

#include "Json.h"
#include "PythonPrograms.h"
#include "RealPythonFixture.h"
#include "Text.h"

namespace tarnbeck::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

// Compared as JSON: order of keys and blanks count for nothing.
void expectJson(const CommandResult& result, std::string_view expected) {
    EXPECT_EQ(result.terminationStatus, 0) << result.stderr;
    const auto printed = parsedJson(result.stdout);
    ASSERT_TRUE(printed) << result.stdout;
    EXPECT_EQ(*printed, *parsedJson(expected)) << result.stdout;
}

void expectFailure(const CommandResult& result) {
    EXPECT_NE(result.terminationStatus, 0);
    EXPECT_EQ(result.stdout, "");
}

class PythonProgram : public RealPythonFixture {
  protected:
    void SetUp() override {
        RealPythonFixture::SetUp();
        if (!IsSkipped()) python = needsPip() ? makeEnvironment() : makeEnvironmentWithoutPip();
    }
    virtual bool needsPip() const { return true; }

    // An installed package, as its metadata alone.
    void installed(const std::string& name, const std::string& version,
                   const std::vector<std::string>& requires_ = {}) {
        std::string metadata = "Metadata-Version: 2.1\nName: " + name + "\nVersion: " + version +
                               "\nProvides-Extra: x\n";
        for (const std::string& requirement : requires_) {
            metadata += "Requires-Dist: " + requirement + "\n";
        }
        folder_.write(sitePackages() + "/" + name + "-" + version + ".dist-info/METADATA",
                      metadata);
    }
    std::string sitePackages() {
        const auto told =
            run(python, {"-c", "import sysconfig; print(sysconfig.get_path('purelib'))"});
        return told.stdout.substr(folder_.path().size() + 1);
    }
    // A requirement file of the project, as the programs are told of it.
    std::string file(const std::string& name, const std::string& content) {
        return folder_.write("repo/" + name, content);
    }
    std::string list(const std::vector<std::string>& texts) {
        JsonArray array;
        for (const std::string& text : texts) array.emplace_back(text);
        return jsonText(array);
    }

    std::string python;
};

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
    // As after an installation in place.
    folder_.write(sitePackages() + "/project.pth", project_ + "\n");
    expectJson(blocking(updateOfB), R"({"blocked": [{"package": "B", "latest": "2.1",
                                        "reason": "A 1.0 (installed) requires B<2"}]})");
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

class PythonProgram_Index : public PythonProgram {
  protected:
    bool needsPip() const override { return false; }
    CommandResult index(const std::string& packages) {
        return runProgram(python, PythonPrograms::pypi, {packages});
    }
};

TEST_F(PythonProgram_Index, TellsThoseWhoseLatestReleaseIsAnotherInTheirOrder) {
    serve(R"({"a": {"releases": {"1.0": [], "2.0": []}, "delay": 200},
              "b": {"releases": {"1.0": []}}, "c": {"releases": {"3.0": [], "2.0": []}}})");
    expectJson(index(R"([{"name": "a", "version": "1.0"}, {"name": "b", "version": "1.0"},
                         {"name": "c", "version": "3.0"}])"),
               R"([{"name": "a", "version": "1.0", "latest_version": "2.0"},
                   {"name": "c", "version": "3.0", "latest_version": "2.0"}])");
}

TEST_F(PythonProgram_Index, AsksForJsonAtTheToldPath) {
    serve(R"({"Foo_Bar": {"releases": {"1.0": []}}})");
    expectJson(index(R"([{"name": "Foo_Bar", "version": "1.0"}])"), "[]");
    EXPECT_EQ(requests(), "/pypi/Foo_Bar/json application/json\n");
}

TEST_F(PythonProgram_Index, NastyNameIsQuoted) {
    serve("{}");
    expectJson(index(R"([{"name": "../a?b#c\"d' é", "version": "1.0"}])"), "[]");
    EXPECT_EQ(requests(), "/pypi/..%2Fa%3Fb%23c%22d%27%20%C3%A9/json application/json\n");
}

TEST_F(PythonProgram_Index, FailedLookupLosesItsPackageAlone) {
    serve(R"({"a": {"releases": {"2.0": []}}, "missing": {"fault": "404"},
              "broken": {"fault": "500"}, "odd": {"fault": "garbage"}})");
    expectJson(index(R"([{"name": "missing", "version": "1"}, {"name": "broken", "version": "1"},
                         {"name": "odd", "version": "1"},
                         {"name": "unknown", "version": "1"}, {"name": "a"}, {"version": "1"}, 7,
                         {"name": "a", "version": "1.0"}])"),
               R"([{"name": "a", "version": "1.0", "latest_version": "2.0"}])");
}

TEST_F(PythonProgram_Index, DeadIndexLosesAll) {
    serve(R"({"a": {"releases": {"2.0": []}}})");
    stopServer();
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"), "[]");
}

TEST_F(PythonProgram_Index, CertificateThatPipDoesNotTrustIsNotTrusted) {
    serve(R"({"a": {"releases": {"2.0": []}}})");
    const std::string settings = contentOf(home_ + "/.config/pip/pip.conf");
    const auto cert = settings.find("cert");
    folder_.write("home/.config/pip/pip.conf",
                  settings.substr(0, cert) +
                      "cert = " + folder_.write("none.pem", contentOf(folder_ / "key.pem")));
    expectFailure(index(R"([{"name": "a", "version": "1.0"}])"));
    EXPECT_EQ(requests(), "");
}

TEST_F(PythonProgram_Index, SettingsOfListingOutweighTheGlobalOnes) {
    serve(R"({"a": {"releases": {"2.0": []}}})", "[install]\nindex-url = https://localhost:1/x\n");
    const std::string settings = contentOf(home_ + "/.config/pip/pip.conf");
    const auto line = settings.substr(0, settings.find("cert")).substr(9);
    folder_.write("home/.pip/pip.conf",
                  "[global]\nindex_url = https://localhost:1/x\n[list]\n" + line);
    folder_.write(
        "home/.config/pip/pip.conf",
        "[global]\nindex-url = https://localhost:1/y\ncert = " + (folder_ / "certificate.pem"));
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"),
               R"([{"name": "a", "version": "1.0", "latest_version": "2.0"}])");
}

TEST_F(PythonProgram_Index, SettingsOfTheEnvironmentOutweighThoseOfTheUser) {
    serve(R"({"a": {"releases": {"2.0": []}}})");
    folder_.write("repo/.venv/pip.conf", "[global]\nindex-url = https://localhost:1/simple\n");
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"), "[]");
    EXPECT_EQ(requests(), "");
}

TEST_F(PythonProgram_Index, UserNameOfTheSettingsIsNotSent) {
    serve(R"({"a": {"releases": {"2.0": []}}})");
    std::string settings = contentOf(home_ + "/.config/pip/pip.conf");
    settings.replace(settings.find("localhost"), 0, "ann:secret@");
    folder_.write("home/.config/pip/pip.conf", settings);
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"),
               R"([{"name": "a", "version": "1.0", "latest_version": "2.0"}])");
}

TEST_F(PythonProgram_Index, IndexWithoutAHostLosesAll) {
    folder_.write("home/.config/pip/pip.conf", "[global]\nindex-url = file:///srv/simple\n");
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"), "[]");
}

TEST_F(PythonProgram_Index, RedirectionIsFollowed) {
    LoopbackServer other;
    folder_.write("packages.json", R"({"a": {"releases": {"2.0": []}}})");
    makeCertificate(folder_.path());
    other.start({PACKAGE_INDEX, folder_.path(), folder_ / "certificate.pem", folder_ / "key.pem"});
    serve(R"({"a": {"fault": "https://localhost:)" + other.port() + R"("}})");
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"),
               R"([{"name": "a", "version": "1.0", "latest_version": "2.0"}])");
}

TEST_F(PythonProgram_Index, RedirectionOutOfTlsIsNotFollowed) {
    LoopbackServer other;
    folder_.write("packages.json", R"({"a": {"releases": {"2.0": []}}})");
    other.start({PACKAGE_INDEX, folder_.path()});
    serve(R"({"a": {"fault": "http://localhost:)" + other.port() + R"("}})");
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"), "[]");
    EXPECT_EQ(requests(), "/pypi/a/json application/json\n");
}

TEST_F(PythonProgram_Index, WithoutSettingsItIsPipsOwn) {
    // What the program works with where nothing else is told, without asking it.
    const std::string text(PythonPrograms::pypi);
    const std::string program =
        text.substr(0, text.rfind("main()")) + "print(default_index().partition('/')[0])\n";
    for (const auto& interpreter : {python, makeEnvironment("repo/venv")}) {
        EXPECT_EQ(runProgram(interpreter, program, {}).stdout, "https:");
    }
}

TEST_F(PythonProgram_Index, ListingThatIsNoJsonFailsSilently) {
    expectFailure(index("Package Version"));
}

TEST_F(PythonProgram_Index, NothingOfTheProjectIsImported) {
    serve(R"({"a": {"releases": {"2.0": []}}})");
    for (const char* name : {"json.py", "ssl.py", "glob.py", "configparser.py", "pip/__init__.py",
                             "urllib/__init__.py", "concurrent/__init__.py"}) {
        file(name, "print('imported'); raise SystemExit(3)");
    }
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"),
               R"([{"name": "a", "version": "1.0", "latest_version": "2.0"}])");
}

TEST_F(PythonProgram_Index, LookupsRunTenAtATime) {
    std::vector<std::string> served;
    std::vector<std::string> asked;
    for (int number = 0; number < 40; ++number) {
        served.push_back(
            fmt::format(R"("p{}": {{"releases": {{"2": []}}, "delay": 500}})", number));
        asked.push_back(fmt::format(R"({{"name": "p{}", "version": "1"}})", number));
    }
    serve("{" + joined(served, ",") + "}");
    const auto start = std::chrono::steady_clock::now();
    const auto result = index("[" + joined(asked, ",") + "]");
    const auto took = std::chrono::steady_clock::now() - start;
    ASSERT_TRUE(parsedJson(result.stdout)) << result.stderr;
    EXPECT_EQ(parsedJson(result.stdout)->get_array().size(), 40);
    EXPECT_GE(took, std::chrono::seconds(2));   // four rounds of half a second
    EXPECT_LT(took, std::chrono::seconds(10));  // one by one they take twenty
}

}  // namespace
}  // namespace tarnbeck::testing
