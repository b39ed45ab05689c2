// How long the package index is asked for the latest release of 200 packages, when it takes 100 ms
// for each answer: ten at a time, so that two seconds are the least.
#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <unistd.h>

#include "AtomicFile.h"
#include "DependencyCommandRunner.h"
#include "FileSystem.h"
#include "Fixture.h"
#include "Json.h"
#include "PythonPrograms.h"
#include "Report.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;
using namespace std::chrono_literals;

namespace {

constexpr int packageCount = 200;
constexpr int lookupsAtATime = 10;
constexpr double secondsAnAnswer = 0.1;
constexpr int rounds = 3;

std::string python() {
    for (const char* path : {"/opt/homebrew/bin/python3", "/usr/local/bin/python3"}) {
        if (isExecutableFile(path)) return path;
    }
    return "/usr/bin/python3";
}

// What the server shall serve, and what the program is asked.
std::string servedPackages() {
    std::string text = "{";
    for (int number = 0; number < packageCount; ++number) {
        text += fmt::format(R"({}"package-{}": {{"releases": {{"2.0": []}}, "delay": {:.0f}}})",
                            number == 0 ? "" : ", ", number, secondsAnAnswer * 1000);
    }
    return text + "}";
}

std::string installedPackages() {
    std::string text = "[";
    for (int number = 0; number < packageCount; ++number) {
        text += fmt::format(R"({}{{"name": "package-{}", "version": "1.0"}})",
                            number == 0 ? "" : ", ", number);
    }
    return text + "]";
}

std::string firstLine(int descriptor) {
    std::string line;
    char character = 0;
    while (read(descriptor, &character, 1) == 1 && character != '\n') line += character;
    return line;
}

// A package index on loopback, over TLS.
class Index {
  public:
    explicit Index(const std::string& folder) {
        const std::string certificate =
            "cd '" + folder +
            "' && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
            "-keyout key.pem -out certificate.pem -days 2 -subj /CN=localhost "
            "-addext subjectAltName=DNS:localhost "
            "-addext keyUsage=critical,digitalSignature,keyCertSign 2>/dev/null";
        if (std::system(certificate.c_str()) != 0) std::abort();
        writeFileAtomically(folder + "/packages.json", servedPackages(), 0600);
        auto launched =
            launcher_.launch({.executable = python(),
                              .arguments = {PACKAGE_INDEX, folder, folder + "/certificate.pem",
                                            folder + "/key.pem"}});
        if (!launched) std::abort();
        server_ = *std::move(launched);
        output_ = server_->takeStandardOutput();
        createDirectories(folder + "/.config/pip", 0700);
        writeFileAtomically(folder + "/.config/pip/pip.conf",
                            "[global]\nindex-url = https://localhost:" + firstLine(output_.get()) +
                                "/simple\ncert = " + folder + "/certificate.pem\n",
                            0600);
    }
    ~Index() { server_->kill(); }
    Index(const Index&) = delete;
    Index& operator=(const Index&) = delete;

  private:
    PosixProcessLauncher launcher_;
    std::unique_ptr<ChildProcess> server_;
    FileDescriptor output_;
};

}  // namespace

int main() {
    const Folder folder;
    const Index index(folder.path());
    PosixProcessLauncher launcher;
    const DependencyCommandRunner runner(folder.path(), launcher);
    double calmest = 1e9;
    std::size_t found = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        const auto result = runner.runCommand(
            {.executable = python(),
             .args = {"-c", std::string(PythonPrograms::pypi), installedPackages()},
             .timeout = 120s});
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        const auto answer = parsedJson(result.stdout);
        found = answer && answer->is_array() ? answer->get_array().size() : 0;
        calmest = std::min(calmest, took.count());
    }
    const double ideal = secondsAnAnswer * packageCount / lookupsAtATime;
    Report report;
    report.note(fmt::format("{} packages in {:.2f} s", found, calmest));
    report.atLeast("packages found / asked for", static_cast<double>(found) / packageCount, 1);
    report.atMost("lookup of 200 packages / answers ten at a time", calmest / ideal, 1.5);
    return report.exitStatus();
}
