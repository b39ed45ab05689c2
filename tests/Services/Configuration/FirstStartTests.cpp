#include "ConfigurationFixture.h"
#include "RepositoryDiscovery.h"

namespace tarnbeck {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class FirstStart : public testing::ConfigurationFixture {
  protected:
    AppConfiguration start() const { return loadConfigurationDiscoveringRepos(place_); }
};

TEST_F(FirstStart, FindsTheRepositoriesAndSavesThem) {
    home_.makeFolder("projects/b/.git");
    home_.makeFolder("projects/a/.git");
    const std::vector<std::string> expected = {home_ / "projects/a", home_ / "projects/b"};
    EXPECT_EQ(start().repoPaths, expected);
    EXPECT_EQ(load().repoPaths, expected);
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(FirstStart, SavesEvenWhenNothingIsFound) {
    EXPECT_THAT(start().repoPaths, IsEmpty());
    EXPECT_TRUE(isFile(fileName));
}

TEST_F(FirstStart, SearchesTheStoredFoldersAndPassesOverTheIgnoredOnes) {
    home_.makeFolder("work/a/.git");
    home_.makeFolder("work/old/b/.git");
    home_.makeFolder("projects/c/.git");
    write(R"({"scanDirectories": ["~/work"], "discoveryIgnorePaths": ["~/work/old"]})");
    EXPECT_THAT(start().repoPaths, ElementsAre(home_ / "work/a"));
}

TEST_F(FirstStart, KeepsTheOtherStoredValues) {
    write(R"({"showTags": false})");
    start();
    EXPECT_FALSE(load().showTags);
}

TEST_F(FirstStart, StoredRepositoriesLeaveTheFileAlone) {
    home_.makeFolder("projects/a/.git");
    const std::string stored = R"({"repoPaths": ["~/r"]})";
    write(stored);
    EXPECT_THAT(start().repoPaths, ElementsAre("~/r"));
    EXPECT_EQ(contentOf(place_.file()), stored);
}

TEST_F(FirstStart, RepositoriesThatStandThereTwiceCountOnce) {
    write(R"({"repoPaths": ["~/r", ")" + (home_ / "r") + R"(", "/s", "~/r/"]})");
    EXPECT_THAT(start().repoPaths, ElementsAre("~/r", "/s"));
}

TEST_F(FirstStart, CorruptFileLeadsToDiscoveryAndIsKeptBeside) {
    home_.makeFolder("projects/a/.git");
    write("{ half a");
    EXPECT_THAT(start().repoPaths, ElementsAre(home_ / "projects/a"));
    EXPECT_THAT(load().repoPaths, ElementsAre(home_ / "projects/a"));
    EXPECT_EQ(contentOf(place_.brokenFile()), "{ half a");
    EXPECT_THAT(messages_, ElementsAre(StartsWith("Failed to load config: ")));
}

TEST_F(FirstStart, RepositoryWhosePathCantBeStoredIsLeftOutWithAWord) {
    home_.makeFolder("projects/a\xFF/.git");
    home_.makeFolder("projects/b/.git");
    EXPECT_THAT(start().repoPaths, ElementsAre(home_ / "projects/b"));
    EXPECT_THAT(messages_, ElementsAre("Left out, its path is not valid UTF-8: " +
                                       (home_ / "projects/a\uFFFD")));
}

TEST_F(FirstStart, GivesWhatItFoundThoughItCantBeSaved) {
    home_.makeFolder("projects/a/.git");
    home_.write(".config", "in the way");
    EXPECT_THAT(start().repoPaths, ElementsAre(home_ / "projects/a"));
    EXPECT_THAT(messages_, ElementsAre(StartsWith("Failed to save config: ")));
}

}  // namespace
}  // namespace tarnbeck
