#include <filesystem>

#include "DependencyInstaller.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using DependencyInstaller::resolveUVExecutable;
using ::testing::ElementsAre;

class UvExecutable : public ::testing::Test {
  protected:
    std::string makeExecutable(const std::string& name) {
        const std::string path = folder.write(name, "");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    std::optional<std::string> resolved(const std::vector<std::string>& candidates) {
        return resolveUVExecutable({.runCommand = {}, .uvCandidates = candidates});
    }

    TemporaryFolder folder;
};

TEST_F(UvExecutable, IsLookedForInTheHomeFirstAndThenWhereSystemsHaveIt) {
    EXPECT_THAT(DependencyTools::ordinaryUvCandidates("/home/ann"),
                ElementsAre("/home/ann/.local/bin/uv", "/opt/homebrew/bin/uv", "/usr/local/bin/uv",
                            "/usr/bin/uv"));
}

TEST_F(UvExecutable, IsTheFirstOfTwo) {
    const std::string one = makeExecutable("one/uv");
    const std::string other = makeExecutable("other/uv");
    EXPECT_EQ(resolved({one, other}), one);
    EXPECT_EQ(resolved({other, one}), other);
}

TEST_F(UvExecutable, WhatIsNotThereIsPassedOver) {
    const std::string uv = makeExecutable("uv");
    EXPECT_EQ(resolved({folder / "gone/uv", uv}), uv);
}

TEST_F(UvExecutable, FolderIsPassedOver) {
    const std::string uv = makeExecutable("uv");
    EXPECT_EQ(resolved({folder.makeFolder("folder/uv"), uv}), uv);
}

TEST_F(UvExecutable, FileThatCanNotBeExecutedIsPassedOver) {
    const std::string uv = makeExecutable("uv");
    EXPECT_EQ(resolved({folder.write("plain/uv", ""), uv}), uv);
}

TEST_F(UvExecutable, IsAbsentWhenNoneOfThemIsThere) {
    EXPECT_EQ(resolved({}), std::nullopt);
    EXPECT_EQ(resolved({folder / "gone/uv"}), std::nullopt);
}

}  // namespace
}  // namespace tarnbeck::testing
