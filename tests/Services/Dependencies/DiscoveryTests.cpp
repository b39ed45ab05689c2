#include "DependencyScanner+Discovery.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Discovery : public ::testing::Test {
  protected:
    std::vector<std::string> nodeProjects() const {
        return discoverProjects(folder.path(), nodeManifestNames());
    }

    TemporaryFolder folder;
};

TEST_F(Discovery, ManifestSixFoldersDownIsFound) {
    folder.write("a/b/c/d/e/f/package.json", "{}");
    EXPECT_THAT(nodeProjects(), ElementsAre(folder / "a/b/c/d/e/f"));
}

}  // namespace
}  // namespace tarnbeck::testing
