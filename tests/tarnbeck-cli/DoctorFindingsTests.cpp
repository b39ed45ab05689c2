#include <algorithm>

#include "DoctorFindings.h"

namespace tarnbeck::cli {
namespace {

using ::testing::ElementsAre;

// Everything as it should be.
DoctorFacts healthy() {
    return {.tools = {{.name = "git", .path = "/usr/bin/git", .version = "2.39.5"}},
            .login = {.state = LoginFacts::State::holds},
            .environment = {},
            .watching = {.capacity = WatchCapacity{.limit = 1000, .used = 100}, .needed = 200},
            .repositories = {{.path = "/r/a", .exists = true, .isRepository = true}},
            .files = {.configuration = "/h/config.json",
                      .configurationExists = true,
                      .folder = "/h",
                      .log = "/h/scan.log"}};
}

std::vector<Finding> section(const std::string& name, const DoctorFacts& facts) {
    std::vector<Finding> findings = findingsOf(facts);
    std::erase_if(findings, [&](const Finding& each) { return each.section != name; });
    return findings;
}

Finding tool(const ToolFacts& facts) {
    return section("Tools", {.tools = {facts}}).at(0);
}
Finding login(const LoginFacts& facts) {
    DoctorFacts all = healthy();
    all.login = facts;
    return section("GitHub", all).at(0);
}
std::vector<Finding> environment(const EnvironmentFacts& facts) {
    DoctorFacts all = healthy();
    all.environment = facts;
    return section("Environment", all);
}
Finding watching(const WatchFacts& facts) {
    DoctorFacts all = healthy();
    all.watching = facts;
    return section("Watching", all).at(0);
}
std::vector<Finding> repositories(std::vector<ConfiguredPathFacts> facts) {
    DoctorFacts all = healthy();
    all.repositories = std::move(facts);
    return section("Repositories", all);
}

Finding ok(const std::string& section, const std::string& finding) {
    return {section, true, finding, std::nullopt};
}

TEST(Doctor_Text, OfAHealthyMachineHasNoAdvice) {
    EXPECT_EQ(doctorText(findingsOf(healthy())),
              "Tools\n"
              "  ✓ git 2.39.5 at /usr/bin/git\n"
              "\n"
              "GitHub\n"
              "  ✓ gh is logged in\n"
              "\n"
              "Environment\n"
              "  ✓ there is no ssh agent that git would not see\n"
              "  ✓ there is no proxy that the tools would not see\n"
              "\n"
              "Watching\n"
              "  ✓ 900 of 1000 watches are left; the configured repositories need about 200\n"
              "\n"
              "Repositories\n"
              "  ✓ 1 of 1 are there and watched\n"
              "\n"
              "Files\n"
              "  ✓ /h/config.json can be read\n"
              "  ✓ /h can be written\n"
              "  ✓ /h/scan.log can be written\n"
              "\n"
              "Nothing needs to be done.\n");
}

TEST(Doctor_Text, AdviceStandsBelowItsFindingAndIsCounted) {
    EXPECT_EQ(doctorText({{"A", false, "is wrong", "Do this."}, {"A", true, "is right", {}}}),
              "A\n"
              "  ! is wrong\n"
              "    Do this.\n"
              "  ✓ is right\n"
              "\n"
              "1 finding with advice.\n");
    EXPECT_THAT(doctorText({{"A", false, "x", "y"}, {"B", false, "x", "y"}}),
                ::testing::EndsWith("\n2 findings with advice.\n"));
}

TEST(Doctor_Text, NamesAreMadeHarmless) {
    EXPECT_THAT(doctorText({{"A", false, "a\033b", "c\nd"}}),
                ::testing::StartsWith("A\n  ! a\uFFFDb\n    c\uFFFDd\n"));
}

TEST(Doctor_Tools, OneThatWorksIsNamedWithVersionAndPlace) {
    EXPECT_EQ(tool({.name = "uv", .path = "/usr/local/bin/uv", .version = "0.4.1"}),
              ok("Tools", "uv 0.4.1 at /usr/local/bin/uv"));
}

TEST(Doctor_Tools, OneThatDoesNotWorkIsToldWithItsWords) {
    EXPECT_EQ(tool({.name = "npm", .path = "/usr/bin/npm", .trouble = "env: node: not there"}),
              (Finding{"Tools", false, "npm at /usr/bin/npm does not work: env: node: not there",
                       "Run `/usr/bin/npm --version` to see why."}));
}

TEST(Doctor_Tools, MissingGitIsAFault) {
    EXPECT_EQ(tool({.name = "git"}), (Finding{"Tools", false, "git is not at /usr/bin/git",
                                              "Install git: nothing works without it."}));
}

TEST(Doctor_Tools, GitAtAnotherPlaceIsNotSeen) {
    EXPECT_EQ(tool({.name = "git", .elsewhere = "/opt/bin/git"}),
              (Finding{"Tools", false, "git is not seen at /opt/bin/git",
                       "Install git where it is looked for: at /usr/bin/git."}));
}

TEST(Doctor_Tools, AnyOtherMissingOneIsNoFaultAndItsPurposeIsTold) {
    const std::vector<std::pair<std::string, std::string>> purposes = {
        {"gh", "issues, pull requests and runners"},
        {"npm", "the dependencies of npm projects"},
        {"pnpm", "the dependencies of pnpm projects"},
        {"npx", "the dependencies of Expo projects"},
        {"python3", "making the environments of Python projects"},
        {"uv", "Python environments without pip"}};
    for (const auto& [name, purpose] : purposes) {
        EXPECT_EQ(tool({.name = name}),
                  ok("Tools", name + " is not there (only needed for " + purpose + ")"));
    }
}

TEST(Doctor_Tools, GhAtAnotherPlaceIsToBeLinked) {
    EXPECT_EQ(tool({.name = "gh", .elsewhere = "/home/you/.local/bin/gh"}),
              (Finding{"Tools", false, "gh is not seen at /home/you/.local/bin/gh",
                       "Link it where it is looked for: sudo ln -s /home/you/.local/bin/gh "
                       "/usr/local/bin/gh"}));
}

TEST(Doctor_Tools, ManagersThatNeedNodeAreToBeLinkedWithIt) {
    for (const char* name : {"npm", "npx", "pnpm"}) {
        EXPECT_EQ(tool({.name = name, .elsewhere = "/home/you/.nvm/bin/x"}).advice,
                  "Link it, and node with it, into /usr/local/bin; only /opt/homebrew/bin:"
                  "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin is searched.")
            << name;
    }
}

TEST(Doctor_Tools, PythonIsToBeLinkedAlone) {
    EXPECT_EQ(tool({.name = "python3", .elsewhere = "/home/you/.pyenv/bin/python3"}).advice,
              "Link it into /usr/local/bin; only /opt/homebrew/bin:/usr/local/bin:/usr/bin:"
              "/bin:/usr/sbin:/sbin is searched.");
}

TEST(Doctor_Tools, UvIsToBeLinkedWhereItIsLookedFor) {
    EXPECT_EQ(tool({.name = "uv", .elsewhere = "/home/you/.cargo/bin/uv"}).advice,
              "Link it into ~/.local/bin or /usr/local/bin.");
}

TEST(Doctor_GitHub, WithoutGhNothingIsSaidOfALogin) {
    EXPECT_EQ(login({.state = LoginFacts::State::notAsked}),
              ok("GitHub", "gh is not there to be asked"));
}

TEST(Doctor_GitHub, NoAnswerInTimeIsSaid) {
    EXPECT_EQ(login({.state = LoginFacts::State::tookTooLong}),
              (Finding{"GitHub", false, "gh did not say in time whether it is logged in",
                       "Look whether the network is there: `gh auth status`."}));
}

TEST(Doctor_GitHub, NoLoginAtAllIsToldInGhsWords) {
    EXPECT_EQ(login({.state = LoginFacts::State::fails, .words = "You are not logged in"}),
              (Finding{"GitHub", false, "gh is not logged in: You are not logged in",
                       "For issues, pull requests and runners, run `gh auth login "
                       "--insecure-storage` (before gh 2.26 without the flag)."}));
}

TEST(Doctor_GitHub, LoginInAKeyringIsNotReached) {
    EXPECT_EQ(login({.state = LoginFacts::State::fails, .holdsForUser = true}).advice,
              "Your login is in a keyring that gh does not reach from here: run `gh auth login "
              "--insecure-storage` (before gh 2.26 without the flag).");
}

TEST(Doctor_GitHub, LoginByAVariableIsNotPassedOn) {
    EXPECT_EQ(login({.state = LoginFacts::State::fails,
                     .holdsForUser = true,
                     .tokenVariables = {"GH_TOKEN", "GITHUB_TOKEN"}})
                  .advice,
              "GH_TOKEN is not passed on to gh: unset it, and run `gh auth login "
              "--insecure-storage` (before gh 2.26 without the flag).");
}

TEST(Doctor_GitHub, LoginThatOnlyHoldsForTheUserIsToBeCompared) {
    EXPECT_EQ(
        login({.state = LoginFacts::State::fails, .holdsForUser = true, .tokenIsInFile = true})
            .advice,
        "It works in your own environment: compare with `env -i HOME=\"$HOME\" gh auth status`.");
}

TEST(Doctor_Environment, SshAgentIsNotSeen) {
    EXPECT_THAT(environment({.hasSshAgent = true}),
                ::testing::Contains(Finding{"Environment", false,
                                            "git does not see your ssh agent (SSH_AUTH_SOCK)",
                                            "For remotes over ssh, name the agent's socket as "
                                            "IdentityAgent in ~/.ssh/config."}));
}

TEST(Doctor_Environment, ProxiesAreNotSeenAndAreNamed) {
    EXPECT_THAT(
        environment({.proxyVariables = {"HTTPS_PROXY", "http_proxy"}}),
        ::testing::Contains(Finding{
            "Environment", false, "the tools do not see your proxy (HTTPS_PROXY, http_proxy)",
            "For git: `git config --global http.proxy URL`; for npm: `npm config "
            "set proxy URL`."}));
}

TEST(Doctor_Watching, SystemWithoutALimitIsWell) {
    EXPECT_EQ(watching({.capacity = std::nullopt, .needed = 5}),
              ok("Watching", "this system has no limit"));
}

TEST(Doctor_Watching, FewerThanNeededAreTooFew) {
    EXPECT_EQ(watching({.capacity = WatchCapacity{.limit = 8192, .used = 7000}, .needed = 4800}),
              (Finding{"Watching", false,
                       "1192 of 8192 watches are left; the configured repositories need about "
                       "4800",
                       "Raise the limit: sudo sysctl fs.inotify.max_user_watches=16384 (in "
                       "/etc/sysctl.d/ it stays)."}));
}

TEST(Doctor_Watching, LessThanATenthIsTooLittle) {
    EXPECT_FALSE(watching({.capacity = WatchCapacity{.limit = 1000, .used = 901}}).isOk);
    EXPECT_TRUE(watching({.capacity = WatchCapacity{.limit = 1000, .used = 900}}).isOk);
}

TEST(Doctor_Watching, ExactlyAsManyAsNeededAreEnough) {
    const WatchCapacity capacity{.limit = 1000, .used = 500};
    EXPECT_TRUE(watching({.capacity = capacity, .needed = 500}).isOk);
    EXPECT_FALSE(watching({.capacity = capacity, .needed = 501}).isOk);
}

TEST(Doctor_Watching, MoreThanAllowedInUseLeavesNone) {
    EXPECT_THAT(watching({.capacity = WatchCapacity{.limit = 10, .used = 12}}).finding,
                ::testing::StartsWith("0 of 10 watches are left"));
}

TEST(Doctor_Repositories, EachThatIsWrongIsNamedAndTheGoodOnesAreCounted) {
    EXPECT_THAT(
        repositories({{.path = "/r/gone"},
                      {.path = "/r/good", .exists = true, .isRepository = true},
                      {.path = "/r/plain", .exists = true},
                      {.path = "/r/build/x",
                       .exists = true,
                       .isRepository = true,
                       .excludedName = "build"}}),
        ElementsAre(
            Finding{"Repositories", false, "/r/gone does not exist",
                    "`tarnbeck-cli remove /r/gone` takes it off the list."},
            Finding{"Repositories", false, "/r/plain is no repository",
                    "`tarnbeck-cli remove /r/plain` takes it off the list."},
            Finding{"Repositories", false, "/r/build/x lies below \"build\"",
                    "Nothing is watched below such a name: its changes are seen by the periodic "
                    "scan only."},
            ok("Repositories", "1 of 4 are there and watched")));
}

TEST(Doctor_Repositories, NoneYetIsWellWhereSomeCanBeLookedFor) {
    DoctorFacts facts = healthy();
    facts.repositories = {};
    facts.scanDirectories = {{.path = "/missing"}, {.path = "/projects", .exists = true}};
    EXPECT_THAT(
        section("Repositories", facts),
        ElementsAre(ok("Repositories", "none is configured yet; the first start looks for some")));
}

TEST(Doctor_Repositories, NoneAndNowhereToLookIsToldWithTheWayOn) {
    EXPECT_THAT(
        repositories({}),
        ElementsAre(Finding{"Repositories", false,
                            "none is configured, and no folder is there to look for some in",
                            "Add one: `tarnbeck-cli add PATH`."}));
}

TEST(Doctor_Files, ConfigurationThatIsNotThereYetIsWell) {
    DoctorFacts facts = healthy();
    facts.files.configurationExists = false;
    EXPECT_EQ(section("Files", facts).at(0),
              ok("Files", "/h/config.json is not there yet; the defaults hold"));
}

TEST(Doctor_Files, ConfigurationThatCantBeReadIsToldWithTheReason) {
    DoctorFacts facts = healthy();
    facts.files.configurationTrouble = "line 3: syntax error";
    EXPECT_EQ(section("Files", facts).at(0),
              (Finding{"Files", false, "/h/config.json can't be read: line 3: syntax error",
                       "Mend it or delete it; until then the defaults hold."}));
}

TEST(Doctor_Files, KeptBrokenConfigurationIsPointedOut) {
    DoctorFacts facts = healthy();
    facts.files.brokenConfiguration = "/h/config.json.broken";
    EXPECT_EQ(section("Files", facts).at(1),
              (Finding{"Files", false,
                       "an earlier configuration that could not be read is kept as "
                       "/h/config.json.broken",
                       "Take over from it what you miss, and delete it."}));
}

TEST(Doctor_Files, FolderAndLogThatCantBeWrittenAreToldWithTheReason) {
    DoctorFacts facts = healthy();
    facts.files.folderTrouble = "Permission denied";
    facts.files.logTrouble = "Read-only file system";
    const auto findings = section("Files", facts);
    EXPECT_EQ(findings.at(1), (Finding{"Files", false, "/h can't be written: Permission denied",
                                       "See to whom it belongs: `ls -ld` with this path."}));
    EXPECT_EQ(findings.at(2),
              (Finding{"Files", false, "/h/scan.log can't be written: Read-only file system",
                       "See to whom it belongs: `ls -ld` with this path."}));
}

TEST(Doctor_Versions, AreTheFirstNumberOfTheFirstLine) {
    EXPECT_EQ(versionIn("git version 2.39.5 (Apple Git-154)"), "2.39.5");
    EXPECT_EQ(versionIn("gh version 2.23.0 (2023-02-27)\nhttps://example.com"), "2.23.0");
    EXPECT_EQ(versionIn("11.19.1"), "11.19.1");
    EXPECT_EQ(versionIn("Python 3.11.2"), "3.11.2");
}

TEST(Doctor_Versions, WithoutANumberAreTheFirstLine) {
    EXPECT_EQ(versionIn("unknown version\n2"), "unknown version");
    EXPECT_EQ(versionIn(""), "");
}

}  // namespace
}  // namespace tarnbeck::cli
