#include <fmt/format.h>

#include "PythonProgramFixture.h"
#include "Text.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class PythonProgram_Index : public PythonProgram {
  protected:
    bool needsPip() const override { return false; }
    CommandResult index(const std::string& packages) {
        return runProgram(python, PythonPrograms::pypi, {packages});
    }
    // The program with other last lines: all is defined, and nothing done yet.
    static std::string instead(const std::string& lines) {
        const std::string text(PythonPrograms::pypi);
        return text.substr(0, text.rfind("main()")) + lines + "\n";
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
    const std::string headers = contentOf(folder_ / "headers.txt");
    EXPECT_THAT(headers, HasSubstr("Accept: application/json\n"));
    EXPECT_THAT(headers, Not(HasSubstr("Authorization")));
    EXPECT_THAT(headers, Not(HasSubstr("ann")));
}

TEST_F(PythonProgram_Index, IndexWithoutAHostLosesAll) {
    folder_.write("home/.config/pip/pip.conf", "[global]\nindex-url = https:///simple\n");
    expectJson(index(R"([{"name": "a", "version": "1.0"}])"), "[]");
}

TEST_F(PythonProgram_Index, IndexOfTheSettingsCountsOnlyOverTls) {
    serve(R"({"a": {"releases": {"2.0": []}}})");
    const std::string settings = contentOf(home_ + "/.config/pip/pip.conf");
    const auto address = settings.find("https://");
    const auto end = settings.find('\n', address);
    // Our own server stands in for pip's own index.
    const std::string program = instead("default_index = lambda: '" +
                                        settings.substr(address, end - address) + "'\nmain()");
    for (const char* index : {"http://localhost:1/simple", "file:///srv/simple",
                              "ftp://localhost:1/simple", "localhost:1/simple", ""}) {
        folder_.write("home/.config/pip/pip.conf",
                      "[global]\nindex-url = " + std::string(index) + settings.substr(end));
        expectJson(runProgram(python, program, {R"([{"name": "a", "version": "1.0"}])"}),
                   R"([{"name": "a", "version": "1.0", "latest_version": "2.0"}])");
    }
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
    const std::string program = instead("print(default_index().partition('/')[0])");
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

TEST_F(PythonProgram_Index, NothingOfAFolderThatIsInstalledInPlaceIsImported) {
    installInPlace("repo/src");
    file("src/pip/__init__.py", "print('imported'); raise SystemExit(3)");
    EXPECT_EQ(runProgram(python, instead("print(default_index().partition('/')[0])"), {}).stdout,
              "https:");
}

TEST_F(PythonProgram_Index, LookupsRunTenAtATime) {
    std::vector<std::string> served;
    std::vector<std::string> asked;
    for (int number = 0; number < 20; ++number) {
        served.push_back(fmt::format(R"("p{}": {{"releases": {{"2": []}}, "among": 10}})", number));
        asked.push_back(fmt::format(R"({{"name": "p{}", "version": "1"}})", number));
    }
    serve("{" + joined(served, ",") + "}");
    const auto result = index("[" + joined(asked, ",") + "]");
    const auto found = parsedJson(result.stdout);
    ASSERT_TRUE(found) << result.stderr;
    EXPECT_EQ(found->get_array().size(), 20);  // with fewer at a time the first ones are lost
    EXPECT_EQ(contentOf(folder_ / "at-the-gate.txt"), "10");
}

}  // namespace
}  // namespace tarnbeck::testing
