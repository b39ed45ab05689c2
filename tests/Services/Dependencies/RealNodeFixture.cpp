#include "RealNodeFixture.h"

#include <chrono>
#include <filesystem>

#include <fmt/format.h>

#include "TextEnumeration.h"

namespace tarnbeck::testing {

using namespace std::chrono_literals;

void RealNodeFixture::SetUp() {
    if (installedProgram("python3").empty()) GTEST_SKIP() << "python3 is not installed";
    const CommandResult version = runner_.runCommand({.executable = "/usr/bin/env",
                                                      .args = {manager_, "--version"},
                                                      .cwd = home_.path(),
                                                      .timeout = 60s});
    if (version.terminationStatus != 0) {
        GTEST_SKIP() << manager_ << " does not run here: " << version.stderr;
    }
    ASSERT_NO_FATAL_FAILURE(server_.start({NPM_REGISTRY, registry_.path()}));
    const std::string& port = server_.port();
    home_.write(".npmrc", "registry=http://127.0.0.1:" + port +
                              "/\nfund=false\naudit=false\nupdate-notifier=false\n"
                              "fetch-retries=0\n");
    home_.write(".config/pnpm/config.yaml", "fetchRetries: 0\n");  // where pnpm looks from 11 on
    home_.write("Library/Preferences/pnpm/config.yaml", "fetchRetries: 0\n");
}

void RealNodeFixture::forgetWhatManagersKeep() {
    for (const char* cache : {".npm", ".cache", "Library/Caches"}) {
        std::filesystem::remove_all(home_ / cache);
    }
}

void RealNodeFixture::install(const std::string& project) {
    const CommandResult result = runner_.runCommand({.executable = "/usr/bin/env",
                                                     .args = {manager_, "install"},
                                                     .cwd = place(project).projectPath,
                                                     .timeout = 120s});
    ASSERT_EQ(result.terminationStatus, 0) << result.stdout << result.stderr;
}

CommandResult RealNodeFixture::update(const DependencyEcosystemResult& result) {
    const auto plan = DependencyInstaller::nodePlan(result, place(result.project.value_or(".")));
    return DependencyInstaller::run(
        tools, {.plan = std::get<DependencyInstallPlan>(plan), .timeoutPerStep = 120s});
}

std::vector<std::string> updatesInWords(const DependencyEcosystemResult& result) {
    std::vector<std::string> words;
    for (const DependencyUpdate& update : result.updates) {
        words.push_back(fmt::format("{} {} > {} {}", update.package, update.currentVersion,
                                    update.latestVersion, rawValue(update.updateType)));
    }
    return words;
}

}  // namespace tarnbeck::testing
