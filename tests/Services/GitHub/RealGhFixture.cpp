#include "RealGhFixture.h"

#include <filesystem>

#include "MachineRights.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;

constexpr const char* trustedCertificates = "/etc/ssl/certs/ca-certificates.crt";

}  // namespace

void RealGhFixture::SetUp() {
    gh_ = installedProgram("gh");
    openssl_ = installedProgram("openssl");
    if (gh_.empty()) GTEST_SKIP() << "gh is not installed";
    if (installedProgram("python3").empty()) GTEST_SKIP() << "python3 is not installed";
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
    const std::string port = server_.start(
        {GITHUB_SERVER, folder_ / "certificate.pem", folder_ / "key.pem", folder_.path(), role});
    ASSERT_NE(port, "");
    folder_.write("home/.config/gh/hosts.yml", "localhost:" + port +
                                                   ":\n    oauth_token: not-a-secret\n"
                                                   "    user: ann\n    git_protocol: https\n");
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
