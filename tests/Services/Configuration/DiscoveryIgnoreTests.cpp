#include "FileSystemWatcher.h"
#include "RepositoryDiscovery.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;

TEST(ShouldIgnorePath, IgnoresThePathItself) {
    EXPECT_TRUE(shouldIgnorePath("/a/b", {"/a/b"}));
}

TEST(ShouldIgnorePath, IgnoresWhatLiesBelow) {
    EXPECT_TRUE(shouldIgnorePath("/a/b/c", {"/a/b"}));
    EXPECT_TRUE(shouldIgnorePath("/a/b/c/d", {"/x", "/a/b"}));
}

TEST(ShouldIgnorePath, NameThatOnlyBeginsAlikeIsNotIgnored) {
    EXPECT_FALSE(shouldIgnorePath("/a/bc", {"/a/b"}));
}

TEST(ShouldIgnorePath, ParentIsNotIgnored) {
    EXPECT_FALSE(shouldIgnorePath("/a", {"/a/b"}));
}

TEST(ShouldIgnorePath, EmptyListIgnoresNothing) {
    EXPECT_FALSE(shouldIgnorePath("/a", {}));
}

TEST(ShouldIgnorePath, CaseCounts) {
    EXPECT_FALSE(shouldIgnorePath("/A/b", {"/a/b"}));
}

TEST(NormalizeDiscoveryPaths, ExpandsTheTilde) {
    EXPECT_THAT(normalizeDiscoveryPaths({"~", "~/p"}, "/home/ann"),
                ElementsAre("/home/ann", "/home/ann/p"));
}

TEST(NormalizeDiscoveryPaths, RemovesDotsAndDoubledAndTrailingSlashes) {
    EXPECT_THAT(normalizeDiscoveryPaths({"/a/./b/../c//d/", "/../x", "~/../bob/."}, "/home/ann"),
                ElementsAre("/a/c/d", "/x", "/home/bob"));
}

TEST(NormalizeDiscoveryPaths, KeepsOrderAndRepetitions) {
    EXPECT_THAT(normalizeDiscoveryPaths({"/b", "/a", "/b/"}, "/home/ann"),
                ElementsAre("/b", "/a", "/b"));
}

TEST(DiscoveryExcludes, AreTheSharedNamesAndGitsFolder) {
    EXPECT_THAT(FileSystemWatcher::defaultExcludes(),
                ::testing::UnorderedElementsAre(
                    "index.lock", "node_modules", ".build", ".swiftpm", "DerivedData", ".DS_Store",
                    "Pods", ".gradle", "__pycache__", ".pytest_cache", ".mypy_cache", ".tox",
                    ".venv", "venv", ".env", "dist", "build", ".next", ".nuxt", ".output", ".cache",
                    ".turbo", ".vercel", "coverage", ".nyc_output", "tmp", "temp", ".tmp"));
    auto withGit = FileSystemWatcher::defaultExcludes();
    withGit.insert(".git");
    EXPECT_EQ(discoveryTraversalExcludes(), withGit);
}

TEST(DiscoveryRequest_Defaults, SearchTheProjectsFolderAndIgnoreNothing) {
    const DiscoveryRequest request;
    EXPECT_THAT(request.in, ElementsAre("~/projects"));
    EXPECT_THAT(request.ignoring, ::testing::IsEmpty());
}

}  // namespace
}  // namespace tarnbeck
