#include "RealPythonFixture.h"

#include <iterator>
#include <utility>

#include "FileSystem.h"

namespace tarnbeck::testing {
namespace {

// Puts the pip that Python carries into the environment of the interpreter that runs this: what
// `venv` does too, and takes twenty times as long for.
constexpr const char* unpackPip = R"(
import glob, sysconfig, zipfile
wheels = glob.glob(sysconfig.get_path("stdlib") + "/ensurepip/_bundled/pip-*.whl")
wheels += glob.glob("/usr/share/python-wheels/pip-*.whl")
zipfile.ZipFile(wheels[0]).extractall(sysconfig.get_path("purelib"))
)";

}  // namespace

void RealPythonFixture::SetUp() {
    for (const char* program : {"python3", "openssl"}) {
        if (installedProgram(program).empty()) GTEST_SKIP() << program << " is not installed";
    }
    if (run(installedProgram("python3"), {"-c", "import ensurepip, venv"}).terminationStatus != 0) {
        GTEST_SKIP() << "python3 can't make virtual environments";
    }
}

void RealPythonFixture::serve(const std::string& packages, const std::string& settings) {
    folder_.write("packages.json", packages);
    folder_.write("requests.txt", "");
    if (!exists(folder_ / "certificate.pem")) {
        ASSERT_NO_FATAL_FAILURE(makeCertificate(folder_.path()));
    }
    ASSERT_NO_FATAL_FAILURE(server_.start(
        {PACKAGE_INDEX, folder_.path(), folder_ / "certificate.pem", folder_ / "key.pem"}));
    folder_.write("home/.config/pip/pip.conf",
                  "[global]\nindex-url = https://localhost:" + server_.port() + "/simple\ncert = " +
                      (folder_ / "certificate.pem") + "\nretries = 0\ntimeout = 5\n" + settings);
}

std::string RealPythonFixture::makeEnvironment(const std::string& name) {
    std::string python = makeEnvironmentWithoutPip(name);
    const auto unpacked = run(python, {"-c", unpackPip});
    EXPECT_EQ(unpacked.terminationStatus, 0) << unpacked.stderr;
    return python;
}

std::string RealPythonFixture::makeEnvironmentWithoutPip(const std::string& name) {
    const auto made =
        run(installedProgram("python3"), {"-m", "venv", "--without-pip", folder_ / name});
    EXPECT_EQ(made.terminationStatus, 0) << made.stderr;
    return folder_ / (name + "/bin/python3");
}

void RealPythonFixture::install(const std::string& python,
                                const std::vector<std::string>& requirements) {
    std::vector<std::string> args = {"-m", "pip", "install", "--no-deps", "--no-compile"};
    std::ranges::copy(requirements, std::back_inserter(args));
    const auto installed = run(python, std::move(args));
    ASSERT_EQ(installed.terminationStatus, 0) << installed.stderr;
}

CommandResult RealPythonFixture::run(const std::string& executable, std::vector<std::string> args) {
    return runner_.runCommand({.executable = executable,
                               .args = std::move(args),
                               .cwd = folder_.path(),
                               .timeout = longest});
}

CommandResult RealPythonFixture::runProgram(const std::string& python, std::string_view program,
                                            std::vector<std::string> args) {
    args.insert(args.begin(), {"-c", std::string(program)});
    return runner_.runCommand(
        {.executable = python, .args = std::move(args), .cwd = project_, .timeout = longest});
}

}  // namespace tarnbeck::testing
