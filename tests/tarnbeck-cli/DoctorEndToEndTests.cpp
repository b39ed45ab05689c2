#include <algorithm>
#include <filesystem>

#include "FileSystem.h"
#include "GitFixture.h"
#include "Json.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
namespace fs = std::filesystem;

class DoctorEndToEnd : public ::testing::Test {
  protected:
    ProgramResult doctor(std::vector<std::string> environment = {}) const {
        return run({.arguments = {"doctor"},
                    .home = folder.path(),
                    .environment = std::move(environment)});
    }
    std::string configurationFile() const { return folder / ".config/tarnbeck/config.json"; }
    void configure(const std::string& json) const {
        folder.write(".config/tarnbeck/config.json", json);
    }

    TemporaryFolder folder;
};

TEST_F(DoctorEndToEnd, ReportsAndGivesZeroAndChangesNothing) {
    const auto result = doctor();
    EXPECT_THAT(result.output, ::testing::StartsWith("Tools\n  ✓ git 2."));
    EXPECT_THAT(result.output, HasSubstr(" at /usr/bin/git\n"));
    for (const char* section : {"GitHub", "Environment", "Watching", "Repositories", "Files"}) {
        EXPECT_THAT(result.output, HasSubstr("\n\n" + std::string(section) + "\n  "));
    }
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(fs::exists(folder / ".config/tarnbeck"));
}

TEST_F(DoctorEndToEnd, JsonIsAnArrayOfFindings) {
    const auto result = run({.arguments = {"doctor", "--json"}, .home = folder.path()});
    const auto json = parsedJson(result.output);
    ASSERT_TRUE(json) << result.output;
    const auto& first = json->as_array().at(0).as_object();
    EXPECT_EQ(first.at("section").as_string(), "Tools");
    EXPECT_TRUE(first.at("isOk").as_bool());
    EXPECT_THAT(std::string(first.at("finding").as_string()), HasSubstr("at /usr/bin/git"));
    EXPECT_TRUE(first.at("advice").is_null());
}

TEST_F(DoctorEndToEnd, SeesWhatTheUsersEnvironmentHasBesides) {
    const auto plain = doctor();
    EXPECT_THAT(plain.output, HasSubstr("✓ there is no ssh agent"));
    EXPECT_THAT(plain.output, HasSubstr("✓ there is no proxy"));
    const auto result = doctor({"SSH_AUTH_SOCK=/run/agent", "https_proxy=http://proxy:3128"});
    EXPECT_THAT(result.output, HasSubstr("! git does not see your ssh agent (SSH_AUTH_SOCK)\n"));
    EXPECT_THAT(result.output, HasSubstr("! the tools do not see your proxy (https_proxy)\n"));
}

TEST_F(DoctorEndToEnd, SeesAManagerThatOnlyTheUsersSearchPathLeadsTo) {
    const std::vector<std::string> managers = {"uv", "pnpm", "npx", "npm", "python3"};
    const auto missing = std::ranges::find_if(managers, [](const std::string& name) {
        const std::vector<std::string> folders = {
            "/opt/homebrew/bin", "/usr/local/bin", "/usr/bin", "/bin", "/usr/sbin", "/sbin"};
        return std::ranges::none_of(
            folders, [&](const std::string& each) { return isExecutableFile(each + "/" + name); });
    });
    if (missing == managers.end()) {
        GTEST_SKIP() << "this machine has every manager where it is looked for";
    }
    const std::string tool = folder.write("bin/" + *missing, "#!/bin/sh\n");
    fs::permissions(tool, fs::perms::owner_all);
    EXPECT_THAT(doctor({"PATH=relative:" + (folder / "bin")}).output,
                HasSubstr("! " + *missing + " is not seen at " + tool + "\n"));
}

TEST_F(DoctorEndToEnd, NamesConfiguredPathsThatAreNotAsTheyShouldBe) {
    makeRepository(folder / "good");
    makeRepository(folder / "build/hidden");
    folder.makeFolder("plain");
    configure(R"({"repoPaths":["~/good","~/build/hidden","~/plain","~/gone"]})");
    const std::string output = doctor().output;
    EXPECT_THAT(output, HasSubstr("! " + (folder / "build/hidden") + " lies below \"build\"\n"));
    EXPECT_THAT(output, HasSubstr("! " + (folder / "plain") + " is no repository\n"));
    EXPECT_THAT(output, HasSubstr("! " + (folder / "gone") + " does not exist\n"));
    EXPECT_THAT(output, HasSubstr("✓ 1 of 4 are there and watched\n"));
}

TEST_F(DoctorEndToEnd, TellsWhyTheConfigurationCantBeReadOnce) {
    configure("{\n  broken");
    const auto result = doctor();
    EXPECT_THAT(result.output,
                HasSubstr("! " + configurationFile() + " can't be read: line 2: syntax error\n"));
    EXPECT_EQ(result.errors, "");
}

TEST_F(DoctorEndToEnd, PointsOutAKeptBrokenConfiguration) {
    configure("{}");
    folder.write(".config/tarnbeck/config.json.broken", "{ broken");
    EXPECT_THAT(doctor().output, HasSubstr("is kept as " + configurationFile() + ".broken\n"));
}

TEST_F(DoctorEndToEnd, TellsThatTheFolderAndTheLogCantBeWritten) {
    configure("{}");
    folder.write(".config/tarnbeck/scan.log", "");
    fs::permissions(folder / ".config/tarnbeck/scan.log", fs::perms::owner_read);
    fs::permissions(folder / ".config/tarnbeck", fs::perms::owner_read | fs::perms::owner_exec);
    const auto result =
        run({.arguments = {"doctor"}, .home = folder.path(), .withoutPrivileges = true});
    EXPECT_THAT(result.output, HasSubstr("! " + (folder / ".config/tarnbeck") +
                                         " can't be written: Permission denied\n"));
    EXPECT_THAT(result.output, HasSubstr("! " + (folder / ".config/tarnbeck/scan.log") +
                                         " can't be written: Permission denied\n"));
}

TEST_F(DoctorEndToEnd, FileInPlaceOfTheFolderIsTold) {
    folder.write(".config", "a file");
    EXPECT_THAT(doctor().output,
                HasSubstr((folder / ".config/tarnbeck") + " can't be written: Not a directory\n"));
}

TEST_F(DoctorEndToEnd, GhThatIsNotLoggedInIsToldInItsOwnWords) {
    const std::vector<std::string> places = {"/opt/homebrew/bin/gh", "/usr/local/bin/gh",
                                             "/usr/bin/gh"};
    if (std::ranges::none_of(places, isExecutableFile)) {
        EXPECT_THAT(doctor().output, HasSubstr("✓ gh is not there to be asked\n"));
        return;
    }
    EXPECT_THAT(doctor().output, HasSubstr("! gh is not logged in: You are not logged in"));
}

TEST_F(DoctorEndToEnd, CountsTheFoldersThatHaveToBeWatched) {
    if (!exists("/proc/sys/fs/inotify/max_user_watches")) {
        EXPECT_THAT(doctor().output, HasSubstr("✓ this system has no limit\n"));
        return;
    }
    const auto needed = [&] {
        const std::string output = doctor().output;
        const std::string_view words = "repositories need about ";
        return std::stoi(output.substr(output.find(words) + words.size()));
    };
    makeRepository(folder / "good");
    configure(R"({"repoPaths":["~/good"]})");
    const int before = needed();
    folder.makeFolder("good/src/deep");
    folder.makeFolder("good/node_modules/not/watched");
    folder.makeFolder("good/.git/objects/ab");
    EXPECT_EQ(needed(), before + 2);
}

TEST_F(DoctorEndToEnd, ProgressShowsOnATerminalAndGoes) {
    ProgramCall call{.arguments = {"doctor"}, .home = folder.path()};
    call.errors = ProgramCall::Errors::terminal;
    EXPECT_THAT(run(call).errors, ::testing::EndsWith("\r\033[K"));
}

}  // namespace
}  // namespace tarnbeck::testing
