#include <filesystem>

#include "GitFixture.h"
#include "Json.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;

class OddPathsEndToEnd : public ::testing::Test {
  protected:
    // Run inside the folder that the repositories are in.
    ProgramResult call(std::vector<std::string> arguments) {
        return run(
            {.arguments = std::move(arguments), .home = folder / "home", .folder = folder.path()});
    }
    void expectShown(const std::string& name, std::vector<std::string> arguments) {
        makeRepository(folder / name);
        const auto result = call(std::move(arguments));
        EXPECT_THAT(result.output, HasSubstr("✓ " + name + "  main"));
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.status, 0);
    }

    TemporaryFolder folder;
};

TEST_F(OddPathsEndToEnd, RelativePathIsTakenFromTheCurrentFolder) {
    expectShown("alpha", {"status", "alpha"});
}

TEST_F(OddPathsEndToEnd, PathAloneNeedsNoCommand) {
    expectShown("alpha", {"alpha"});
}

TEST_F(OddPathsEndToEnd, DotsLeadWhereTheyLead) {
    expectShown("alpha", {"status", "home/../alpha/."});
}

TEST_F(OddPathsEndToEnd, TildeIsTheHome) {
    makeRepository(folder / "home/alpha");
    EXPECT_THAT(call({"status", "~/alpha"}).output, HasSubstr("✓ alpha"));
}

TEST_F(OddPathsEndToEnd, UnknownUsersTildeIsAPlainName) {
    const auto result = call({"status", "~no-such-user-here/x"});
    EXPECT_EQ(result.errors, "tarnbeck-cli: ~no-such-user-here/x: does not exist\n");
}

TEST_F(OddPathsEndToEnd, LeadingDashWorksBehindItsFolder) {
    expectShown("-x", {"status", "./-x"});
}

TEST_F(OddPathsEndToEnd, LeadingDashWorksBehindTwoDashes) {
    expectShown("-x", {"status", "--", "-x"});
}

TEST_F(OddPathsEndToEnd, LeadingDashWorksBehindTwoDashesWithoutCommand) {
    expectShown("--json", {"--", "--json"});
}

TEST_F(OddPathsEndToEnd, NameOfACommandWorksBehindItsFolder) {
    expectShown("config", {"./config"});
}

TEST_F(OddPathsEndToEnd, NameOfACommandWorksBehindStatus) {
    expectShown("watch", {"status", "watch"});
}

TEST_F(OddPathsEndToEnd, BracketsAreAName) {
    expectShown("[a]", {"[a]"});
}

TEST_F(OddPathsEndToEnd, BlanksAndQuotesAreAName) {
    expectShown("a 'b' \"c\" $d", {"a 'b' \"c\" $d"});
}

TEST_F(OddPathsEndToEnd, NonAsciiIsAName) {
    expectShown("名前 é", {"名前 é"});
}

TEST_F(OddPathsEndToEnd, NameOfTwoHundredCharactersIsCutInTheTableOnly) {
    const std::string name(200, 'n');
    makeRepository(folder / name);
    EXPECT_THAT(call({name}).output, HasSubstr("✓ " + std::string(31, 'n') + "…  main"));
    EXPECT_THAT(call({"--json", name}).output, HasSubstr("\"name\":\"" + name + "\""));
}

TEST_F(OddPathsEndToEnd, BrokenUtf8IsScannedAndShownHarmlessly) {
    makeRepository(folder / "a\xFF");
    const auto result = call({"a\xFF"});
    EXPECT_THAT(result.output, HasSubstr("✓ a\uFFFD  main"));
    EXPECT_EQ(result.status, 0);
}

TEST_F(OddPathsEndToEnd, LineFeedInANameBreaksNoLine) {
    makeRepository(folder / "a\nb");
    EXPECT_EQ(call({"a\nb"}).output, "✓ a\uFFFDb  main  No upstream\n1 repository · 1 clean\n");
}

TEST_F(OddPathsEndToEnd, LinkedWorkTreeIsARepositoryToo) {
    makeRepository(folder / "alpha");
    git(folder / "alpha", {"worktree", "add", "-q", "-b", "side", folder / "linked"});
    EXPECT_THAT(call({"linked"}).output, HasSubstr("linked  side"));
}

TEST_F(OddPathsEndToEnd, LoopOfLinksBelowAFolderIsNotEntered) {
    makeRepository(folder / "group/alpha");
    std::filesystem::create_directory_symlink(folder / "group", folder / "group/loop");
    EXPECT_THAT(call({"group"}).output, HasSubstr("1 repository ·"));
}

TEST_F(OddPathsEndToEnd, UnreadableFolderIsNamedWithTheReason) {
    folder.makeFolder("closed");
    std::filesystem::permissions(folder / "closed", std::filesystem::perms::none);
    const auto result = run({.arguments = {"status", folder / "closed"},
                             .home = folder / "home",
                             .withoutPrivileges = true});
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: " + (folder / "closed") + ": can't be read: Permission denied\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(OddPathsEndToEnd, HundredsOfRepositoriesAreAllShown) {
    makeRepository(folder / "model");
    folder.makeFolder("many");
    for (int number = 0; number < 100; ++number) {
        std::filesystem::copy(folder / "model", folder / ("many/r" + std::to_string(number)),
                              std::filesystem::copy_options::recursive);
    }
    EXPECT_THAT(call({"many"}).output, HasSubstr("\n100 repositories · 100 clean\n"));
}

}  // namespace
}  // namespace tarnbeck::testing
