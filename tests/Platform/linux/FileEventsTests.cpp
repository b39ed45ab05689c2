#include "MachineRights.h"
#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;

class FileEvents_Contents : public testing::WatchedRoot {};

TEST_F(FileEvents_Contents, FileThatIsMadeIsTold) {
    watch();
    EXPECT_TRUE(events_.waitFor(write("file")));
}

TEST_F(FileEvents_Contents, FileThatIsWrittenDeepBelowIsTold) {
    write("a/b/c/file", "before");
    watch();
    EXPECT_TRUE(events_.waitFor(write("a/b/c/file", "after")));
}

TEST_F(FileEvents_Contents, FileThatIsRemovedIsTold) {
    const std::string path = write("a/file");
    watch();
    fs::remove(path);
    EXPECT_TRUE(events_.waitFor(path));
}

TEST_F(FileEvents_Contents, RenameTellsTheOldPlaceAndTheNewOne) {
    write("a/old");
    makeFolder("b");
    watch();
    fs::rename(at("a/old"), at("b/new"));
    EXPECT_TRUE(events_.waitFor(at("a/old")));
    EXPECT_TRUE(events_.waitFor(at("b/new")));
}

TEST_F(FileEvents_Contents, ChangeOfTheModeIsTold) {
    const std::string path = write("file");
    watch();
    fs::permissions(path, fs::perms::owner_all);
    EXPECT_TRUE(events_.waitFor(path));
}

TEST_F(FileEvents_Contents, LinkThatIsMadeIsTold) {
    watch();
    fs::create_symlink("/nowhere", at("link"));
    EXPECT_TRUE(events_.waitFor(at("link")));
}

TEST_F(FileEvents_Contents, ReadingTellsNothing) {
    const std::string path = write("a/file");
    watch();
    EXPECT_EQ(testing::contentOf(path), "text");
    EXPECT_EQ(std::distance(fs::directory_iterator(at("a")), {}), 1);
    waitUntilTold();
    EXPECT_EQ(told(), std::set<std::string>());
}

TEST_F(FileEvents_Contents, NameThatIsNoUnicodeComesByteForByte) {
    const std::string name = "b\xFFr\xC3";
    makeFolder(name);
    watch();
    EXPECT_TRUE(events_.waitFor(write(name + "/\xFE")));
}

TEST_F(FileEvents_Contents, WhatIsBelowALinkIsNotTold) {
    const std::string elsewhere = folder_.makeFolder("elsewhere");
    fs::create_directory_symlink(elsewhere, at("link"));
    watch();
    fs::create_directory_symlink(elsewhere, at("later"));
    ASSERT_TRUE(events_.waitFor(at("later")));
    folder_.write("elsewhere/file", "text");
    waitUntilTold();
    EXPECT_EQ(told(), std::set<std::string>{at("later")});
}

TEST_F(FileEvents_Contents, FolderThatCannotBeReadIsPassedOver) {
    const testing::WithoutRootRights meetingModes;
    makeFolder("closed/below");
    fs::permissions(at("closed"), fs::perms::none);
    watch();
    EXPECT_TRUE(events_.waitFor(write("open/file")));
    fs::permissions(at("closed"), fs::perms::owner_all);
}

TEST_F(FileEvents_Contents, DeepTreeIsWatchedToItsEnd) {
    std::string deep = "d";
    for (int depth = 1; depth < 1000; ++depth) deep += "/d";
    makeFolder(deep);
    watch();
    EXPECT_TRUE(events_.waitFor(write(deep + "/file")));
}

TEST_F(FileEvents_Contents, WhatIsTooDeepToHaveAPathDoesNoHarm) {
    const fs::path before = fs::current_path();
    fs::current_path(root_);
    for (int depth = 0; depth < 30; ++depth) {
        const std::string name(200, 'd');
        fs::create_directory(name);
        fs::current_path(name);
    }
    fs::current_path(before);
    watch();
    EXPECT_TRUE(events_.waitFor(write("file")));
    EXPECT_EQ(events_.losses(), 0);
}

}  // namespace
}  // namespace tarnbeck
