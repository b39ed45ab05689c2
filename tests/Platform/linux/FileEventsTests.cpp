#include <filesystem>

#include "ObservedEvents.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::ObservedEvents;
using testing::TemporaryFolder;

class FileEvents_Contents : public ::testing::Test {
  protected:
    void watch(const ObservedEvents::Excludes& excludes = {}) {
        ASSERT_EQ(events_.open({root_}, excludes), std::nullopt);
    }
    // All that happened before has been told when this is.
    void waitForMark() {
        const std::string mark = folder_.write("root/mark" + std::to_string(marks_++), "");
        ASSERT_TRUE(events_.waitFor(mark));
    }
    std::string at(const std::string& name) const { return root_ + "/" + name; }

    TemporaryFolder folder_;
    std::string root_ = folder_.makeFolder("root");
    ObservedEvents events_;
    int marks_ = 0;
};

TEST_F(FileEvents_Contents, FileThatIsMadeIsTold) {
    watch();
    EXPECT_TRUE(events_.waitFor(folder_.write("root/file", "text")));
}

TEST_F(FileEvents_Contents, FileThatIsWrittenDeepBelowIsTold) {
    folder_.write("root/a/b/c/file", "before");
    watch();
    EXPECT_TRUE(events_.waitFor(folder_.write("root/a/b/c/file", "after")));
}

TEST_F(FileEvents_Contents, FileThatIsRemovedIsTold) {
    const std::string path = folder_.write("root/a/file", "text");
    watch();
    fs::remove(path);
    EXPECT_TRUE(events_.waitFor(path));
}

TEST_F(FileEvents_Contents, RenameTellsTheOldPlaceAndTheNewOne) {
    folder_.write("root/a/old", "text");
    folder_.makeFolder("root/b");
    watch();
    fs::rename(at("a/old"), at("b/new"));
    EXPECT_TRUE(events_.waitFor(at("a/old")));
    EXPECT_TRUE(events_.waitFor(at("b/new")));
}

TEST_F(FileEvents_Contents, ChangeOfTheModeIsTold) {
    const std::string path = folder_.write("root/file", "text");
    watch();
    fs::permissions(path, fs::perms::owner_all);
    EXPECT_TRUE(events_.waitFor(path));
}

TEST_F(FileEvents_Contents, ReadingTellsNothing) {
    const std::string path = folder_.write("root/a/file", "text");
    watch();
    EXPECT_EQ(testing::contentOf(path), "text");
    fs::directory_iterator(at("a"));
    waitForMark();
    EXPECT_EQ(events_.paths(), std::set<std::string>{at("mark0")});
}

TEST_F(FileEvents_Contents, NameThatIsNoUnicodeComesByteForByte) {
    const std::string name = "b\xFFr\xC3";
    folder_.makeFolder("root/" + name);
    watch();
    EXPECT_TRUE(events_.waitFor(folder_.write("root/" + name + "/\xFE", "text")));
}

TEST_F(FileEvents_Contents, WhatIsBelowAnExcludedFolderIsNotTold) {
    folder_.makeFolder("root/node_modules/package");
    watch({"node_modules"});
    folder_.write("root/node_modules/package/file", "text");
    waitForMark();
    EXPECT_FALSE(events_.wasTold(at("node_modules/package/file")));
    EXPECT_EQ(events_.losses(), 0);
}

}  // namespace
}  // namespace tarnbeck
