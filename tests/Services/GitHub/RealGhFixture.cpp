#include "RealGhFixture.h"

#include "MachineRights.h"

namespace tarnbeck::testing {
namespace {

constexpr const char* trustedCertificates = "/etc/ssl/certs/ca-certificates.crt";

}  // namespace

void RealGhFixture::SetUp() {
    gh_ = installedProgram("gh");
    for (const char* program : {"gh", "python3", "openssl"}) {
        if (installedProgram(program).empty()) GTEST_SKIP() << program << " is not installed";
    }
    serverHas("issues", {});
    serverHas("pullRequests", {});
}

void RealGhFixture::startServer(const std::string& role) {
    ASSERT_NO_FATAL_FAILURE(makeCertificate(folder_.path()));
    ASSERT_NO_FATAL_FAILURE(server_.start(
        {GITHUB_SERVER, folder_ / "certificate.pem", folder_ / "key.pem", folder_.path(), role}));
    folder_.write("home/.config/gh/hosts.yml", "localhost:" + server_.port() +
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
