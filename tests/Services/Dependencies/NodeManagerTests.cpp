#include "NodeProjectFixture.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;

class DetectNodeManager : public ::testing::Test {
  protected:
    std::string manager() const { return detectNodeManager(folder.path()); }
    std::string managerDeclaredAs(const std::string& value) const {
        folder.write("package.json", R"({"packageManager": )" + value + "}");
        return manager();
    }

    TemporaryFolder folder;
};

TEST_F(DetectNodeManager, DeclaredManagerIsIt) {
    EXPECT_EQ(managerDeclaredAs(R"("pnpm@9.1.0")"), "pnpm");
    EXPECT_EQ(managerDeclaredAs(R"("npm@10")"), "npm");
    EXPECT_EQ(managerDeclaredAs(R"("yarn@4.0.0+sha512.abc")"), "yarn");
    EXPECT_EQ(managerDeclaredAs(R"("bun@")"), "bun");
}

TEST_F(DetectNodeManager, DeclaredManagerOutranksAllLockfiles) {
    for (const auto* lockfile : {"pnpm-lock.yaml", "package-lock.json", "bun.lock"}) {
        folder.write(lockfile, "");
    }
    EXPECT_EQ(managerDeclaredAs(R"("yarn@1.22.0")"), "yarn");
}

TEST_F(DetectNodeManager, OtherDeclarationsLeaveTheWordToTheLockfiles) {
    folder.write("yarn.lock", "");
    for (const auto* value : {R"("deno@1")", R"("pnpm")", R"(" pnpm@9")", R"("PNPM@9")", R"("")",
                              "9", "null", R"(["pnpm@9"])", R"({"name": "pnpm@9"})"}) {
        EXPECT_EQ(managerDeclaredAs(value), "yarn") << value;
    }
}

TEST_F(DetectNodeManager, LockfilesCountInTheirOrder) {
    const std::vector<std::pair<std::string, std::string>> lastFirst = {
        {"bun.lock", "bun"},          {"bun.lockb", "bun"},
        {"yarn.lock", "yarn"},        {"npm-shrinkwrap.json", "npm"},
        {"package-lock.json", "npm"}, {"pnpm-lock.yaml", "pnpm"},
    };
    for (const auto& [lockfile, expected] : lastFirst) {
        folder.write(lockfile, "");
        EXPECT_EQ(manager(), expected) << lockfile;
    }
}

TEST_F(DetectNodeManager, LockfileOfNpmComesBeforeThatOfYarn) {
    folder.write("yarn.lock", "");
    folder.write("package-lock.json", "{}");
    EXPECT_EQ(manager(), "npm");
}

TEST_F(DetectNodeManager, EachLockfileByItselfTellsItsManager) {
    for (const auto& [lockfile, expected] : std::vector<std::pair<std::string, std::string>>{
             {"bun.lock", "bun"}, {"npm-shrinkwrap.json", "npm"}}) {
        const TemporaryFolder alone;
        alone.write("yarn.lock.old", "");
        alone.write(lockfile, "");
        EXPECT_EQ(detectNodeManager(alone.path()), expected);
    }
}

TEST_F(DetectNodeManager, WithoutAnyHintItIsNpm) {
    EXPECT_EQ(manager(), "npm");
    EXPECT_EQ(detectNodeManager("/nonexistent"), "npm");
}

class PackageManagerField : public ::testing::Test {
  protected:
    std::optional<std::string> fieldIn(std::string_view manifest) const {
        folder.write("package.json", manifest);
        return packageManagerField(folder.path());
    }

    TemporaryFolder folder;
};

TEST_F(PackageManagerField, TextIsReturnedAsItStands) {
    EXPECT_EQ(fieldIn(R"({"packageManager": " any thing "})"), " any thing ");
    EXPECT_EQ(fieldIn(R"({"packageManager": ""})"), "");
}

TEST_F(PackageManagerField, ValueThatIsNoTextIsAbsent) {
    EXPECT_EQ(fieldIn(R"({"packageManager": 3})"), std::nullopt);
    EXPECT_EQ(fieldIn(R"({"packageManager": null})"), std::nullopt);
}

TEST_F(PackageManagerField, ManifestThatIsNoObjectIsAbsent) {
    for (const auto* manifest : {"", "[]", "\"pnpm@9\"", "{", "{} x"}) {
        EXPECT_EQ(fieldIn(manifest), std::nullopt) << manifest;
    }
}

TEST_F(PackageManagerField, ManifestThatIsNotUtf8IsAbsent) {
    EXPECT_EQ(fieldIn("{\"packageManager\": \"pnpm@9\", \"name\": \"\xFF\"}"), std::nullopt);
}

TEST_F(PackageManagerField, DeeplyNestedManifestIsAbsent) {
    EXPECT_EQ(fieldIn(R"({"packageManager": "pnpm@9", "x": )" + std::string(100'000, '[') +
                      std::string(100'000, ']') + "}"),
              std::nullopt);
}

TEST_F(PackageManagerField, ManifestThatIsAFolderOrMissingIsAbsent) {
    EXPECT_EQ(packageManagerField(folder.path()), std::nullopt);
    folder.makeFolder("package.json");
    EXPECT_EQ(packageManagerField(folder.path()), std::nullopt);
}

TEST_F(PackageManagerField, IsFoundInAManifestOfFiftyMegabytes) {
    EXPECT_EQ(fieldIn(R"({"filler": ")" + std::string(std::size_t{50} << 20, 'x') +
                      R"(", "packageManager": "pnpm@9"})"),
              "pnpm@9");
}

class NodeInvocation : public ::testing::Test {
  protected:
    NodeOutdatedInvocation of(const std::string& manager, const std::string& project) const {
        return nodeOutdatedInvocation({.manager = manager,
                                       .repoPath = repo.path(),
                                       .projectPath = repo / project,
                                       .project = project});
    }

    TemporaryFolder repo;
};

TEST_F(NodeInvocation, MemberOfAPnpmWorkspaceIsFilteredFromTheRoot) {
    repo.write("pnpm-workspace.yaml", "");
    EXPECT_EQ(of("pnpm", "apps/my web"),
              (NodeOutdatedInvocation{
                  .args = {"pnpm", "outdated", "--json", "--filter", "./apps/my web..."},
                  .cwd = repo.path()}));
}

TEST_F(NodeInvocation, RootOfAPnpmWorkspaceIsAskedThere) {
    repo.write("pnpm-lock.yaml", "");
    EXPECT_EQ(of("pnpm", "."),
              (NodeOutdatedInvocation{.args = {"pnpm", "outdated", "--json"}, .cwd = repo / "."}));
}

TEST_F(NodeInvocation, PnpmOutsideOfAWorkspaceIsAskedInTheProject) {
    EXPECT_EQ(of("pnpm", "web"), (NodeOutdatedInvocation{.args = {"pnpm", "outdated", "--json"},
                                                         .cwd = repo / "web"}));
}

TEST_F(NodeInvocation, NpmIsAskedInTheProject) {
    EXPECT_EQ(of("npm", "web"),
              (NodeOutdatedInvocation{.args = {"npm", "outdated", "--json"}, .cwd = repo / "web"}));
}

TEST_F(NodeInvocation, AnyOtherManagerIsAskedThroughNpmAtLength) {
    EXPECT_EQ(of("yarn", "web"),
              (NodeOutdatedInvocation{.args = {"npm", "outdated", "--json", "--long"},
                                      .cwd = repo / "web"}));
}

TEST(InitialNodeSummaries, EachProjectIsBeingCheckedByItsOwnManagerInOrderOfThePaths) {
    const TemporaryFolder repo;
    repo.write("web/yarn.lock", "");
    repo.write("api/package.json", R"({"packageManager": "pnpm@9"})");
    EXPECT_THAT(
        initialNodeSummaries({.projectPaths = {repo / "web/", repo.path(), repo / "web/../api"},
                              .repoPath = repo.path()}),
        ElementsAre(
            DependencyEcosystemResult{
                .project = ".", .manager = "npm", .status = DependencyHealth::checking},
            DependencyEcosystemResult{
                .project = "api", .manager = "pnpm", .status = DependencyHealth::checking},
            DependencyEcosystemResult{
                .project = "web", .manager = "yarn", .status = DependencyHealth::checking}));
}

TEST(InitialNodeSummaries, MemberOfAPnpmWorkspaceIsStillShownUnderItsOwnLockfile) {
    const TemporaryFolder repo;
    repo.write("pnpm-lock.yaml", "");
    repo.write("web/yarn.lock", "");
    EXPECT_EQ(
        initialNodeSummaries({.projectPaths = {repo / "web"}, .repoPath = repo.path()})[0].manager,
        "yarn");
}

}  // namespace
}  // namespace tarnbeck::testing
