#include "RealGhFixture.h"

#include <filesystem>

#include <poll.h>
#include <unistd.h>

#include "FileSystem.h"
#include "MachineRights.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;

constexpr const char* trustedCertificates = "/etc/ssl/certs/ca-certificates.crt";

// Where a program is installed; empty when it is not.
std::string installed(const std::string& name) {
    for (const char* folder : {"/opt/homebrew/bin/", "/usr/local/bin/", "/usr/bin/"}) {
        if (isExecutableFile(folder + name)) return folder + name;
    }
    return {};
}

// The first line that is printed, without its line feed.
std::string firstLine(int descriptor) {
    std::string line;
    char character = 0;
    while (read(descriptor, &character, 1) == 1 && character != '\n') line += character;
    return line;
}

}  // namespace

void RealGhFixture::SetUp() {
    gh_ = installed("gh");
    python_ = installed("python3");
    openssl_ = installed("openssl");
    if (gh_.empty()) GTEST_SKIP() << "gh is not installed";
    if (python_.empty()) GTEST_SKIP() << "python3 is not installed";
    if (openssl_.empty()) GTEST_SKIP() << "openssl is not installed";
    serverHas("issues", {});
    serverHas("pullRequests", {});
}

void RealGhFixture::makeCertificate() {
    const auto made =
        DependencyCommandRunner(home_, launcher_)
            .runCommand({.executable = openssl_,
                         .args = {"req", "-x509", "-newkey", "ec", "-pkeyopt",
                                  "ec_paramgen_curve:prime256v1", "-nodes", "-keyout", "key.pem",
                                  "-out", "certificate.pem", "-days", "2", "-subj", "/CN=localhost",
                                  "-addext", "subjectAltName=DNS:localhost"},
                         .cwd = folder_.path(),
                         .timeout = 60s});
    ASSERT_EQ(made.terminationStatus, 0) << made.stderr;
}

void RealGhFixture::startServer(const std::string& role) {
    ASSERT_NO_FATAL_FAILURE(makeCertificate());
    const std::vector<std::string> arguments = {GITHUB_SERVER, folder_ / "certificate.pem",
                                                folder_ / "key.pem", folder_.path(), role};
    auto launched = launcher_.launch({.executable = python_, .arguments = arguments});
    ASSERT_TRUE(launched) << launched.error();
    server_ = *std::move(launched);
    serverOutput_ = server_->takeStandardOutput();
    const std::string port = firstLine(serverOutput_.get());
    ASSERT_NE(port, "") << "the server does not start";
    folder_.write("home/.config/gh/hosts.yml", "localhost:" + port +
                                                   ":\n    oauth_token: not-a-secret\n"
                                                   "    user: ann\n    git_protocol: https\n");
}

void RealGhFixture::stopServer() {
    if (!server_) return;
    server_->kill();
    pollfd exit{.fd = server_->exitDescriptor(), .events = POLLIN};
    poll(&exit, 1, 10'000);
    EXPECT_FALSE(server_->isRunning());
    server_.reset();
}

void RealGhFixture::trustingTheServer(const std::function<void()>& test) {
    std::vector<Mount> mounts = {{folder_ / "certificate.pem", trustedCertificates}};
    // What `gh` remembers of a server from run to run lies below /tmp.
    if (!folder_.path().starts_with("/tmp/")) mounts.push_back({folder_.makeFolder("tmp"), "/tmp"});
    const auto reason = runWithMounts(mounts, test);
    if (reason) GTEST_SKIP() << "This machine can't let gh alone trust a server: " << *reason;
}

GitHubRepoScanResult RealGhFixture::scan(const std::string& ownerRepo) {
    GitHubScanner scanner(
        {.home = home_, .ghCandidates = {gh_}, .timeouts = timeouts_},
        {.launcher = launcher_,
         .git = [&](const GitInvocation&) { return "https://github.com/" + ownerRepo; },
         .log = log_.log,
         .clock = simulation_.loop,
         .queues = simulation_.queues,
         .pause = [](std::chrono::nanoseconds) {}});
    return scanner.scan({.at = "/repo", .policy = GitHubIssueRefreshPolicy::forceRefresh});
}

}  // namespace tarnbeck::testing
