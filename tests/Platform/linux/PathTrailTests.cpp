#include <filesystem>
#include <vector>

#include "PathTrail.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using Steps = std::vector<PathStep>;

class PathTrail_Steps : public ::testing::Test {
  protected:
    // Below the temporary folder; what leads there is left out.
    Steps stepsTo(const std::string& name) {
        Steps steps;
        followTrail(folder_ / name, [&](const PathStep& step) {
            const std::string& base = folder_.path();
            if (step.folder.starts_with(base)) {
                steps.push_back({step.folder.substr(base.size()), step.name});
            }
        });
        return steps;
    }
    testing::TemporaryFolder folder_;
};

TEST_F(PathTrail_Steps, LeadFromFolderToFolder) {
    folder_.makeFolder("a/b/c");
    EXPECT_EQ(stepsTo("a/b/c"), (Steps{{"", "a"}, {"/a", "b"}, {"/a/b", "c"}}));
}

TEST_F(PathTrail_Steps, GiveTheLastOne) {
    folder_.makeFolder("a/b");
    EXPECT_EQ(followTrail(folder_ / "a/b", [](const PathStep&) {}), (PathStep{folder_ / "a", "b"}));
    EXPECT_EQ(followTrail("/", [](const PathStep&) {}), PathStep{});
}

TEST_F(PathTrail_Steps, EndAtWhatIsMissing) {
    folder_.makeFolder("a");
    EXPECT_EQ(stepsTo("a/b/c"), (Steps{{"", "a"}, {"/a", "b"}}));
}

TEST_F(PathTrail_Steps, GoThroughLinks) {
    folder_.makeFolder("real/below");
    fs::create_directory_symlink(folder_ / "real", folder_ / "link");
    const Steps steps = stepsTo("link/below");
    EXPECT_EQ(steps, (Steps{{"", "link"}, {"", "real"}, {"/real", "below"}}));
}

TEST_F(PathTrail_Steps, GoThroughLinksThatAreRelative) {
    folder_.makeFolder("a/b");
    folder_.makeFolder("c/d");
    fs::create_directory_symlink("../.././c", folder_ / "a/b/link");
    EXPECT_EQ(stepsTo("a/b/link/d"),
              (Steps{{"", "a"}, {"/a", "b"}, {"/a/b", "link"}, {"", "c"}, {"/c", "d"}}));
}

TEST_F(PathTrail_Steps, EndWhereLinksLeadToEachOther) {
    fs::create_directory_symlink("two", folder_ / "one");
    fs::create_directory_symlink("one", folder_ / "two");
    EXPECT_LE(stepsTo("one/below").size(), 42);
}

TEST(PathTrail_Root, HasNoSteps) {
    int steps = 0;
    followTrail("/", [&](const PathStep&) { ++steps; });
    EXPECT_EQ(steps, 0);
}

}  // namespace
}  // namespace tarnbeck
