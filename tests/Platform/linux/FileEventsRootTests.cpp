// Roots that go and come back, that are links, and that lie in each other.
#include <algorithm>

#include <fcntl.h>

#include "MachineRights.h"
#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::ObservedEvents;
using testing::ownWatches;

class FileEvents_Roots : public testing::WatchedRoot {
  protected:
    void watch(std::vector<std::string> roots, const ObservedEvents::Excludes& excludes = {}) {
        ASSERT_EQ(events_.open(std::move(roots), excludes), std::nullopt);
    }
};

TEST_F(FileEvents_Roots, ThatIsRemovedAndMadeAgainIsWatchedAgain) {
    makeFolder("a/b");
    watch({at("a/b")});
    fs::remove_all(at("a"));
    ASSERT_TRUE(events_.waitFor(at("a/b")));
    events_.forget();
    makeFolder("a/b");
    ASSERT_TRUE(events_.waitFor(at("a/b")));
    EXPECT_TRUE(events_.waitFor(write("a/b/file")));
}

TEST_F(FileEvents_Roots, ThatIsMissingIsWatchedOnceItIsThere) {
    watch({at("a/b/c")});
    makeFolder("a");
    makeFolder("a/b");
    makeFolder("a/b/c");
    ASSERT_TRUE(events_.waitFor(at("a/b/c")));
    EXPECT_TRUE(events_.waitFor(write("a/b/c/file")));
}

TEST_F(FileEvents_Roots, ThatVanishesIsTold) {
    makeFolder("a/b");
    watch({at("a/b")});
    fs::remove(at("a/b"));
    EXPECT_TRUE(events_.waitFor(at("a/b")));
}

TEST_F(FileEvents_Roots, ThatVanishesWhileSomebodyIsInItIsTold) {
    makeFolder("a/b");
    watch({at("a/b")});
    const fs::path before = fs::current_path();
    fs::current_path(at("a/b"));
    fs::remove(at("a/b"));
    EXPECT_TRUE(events_.waitFor(at("a/b")));
    events_.forget();
    makeFolder("a/b");
    EXPECT_TRUE(events_.waitFor(at("a/b")));
    EXPECT_TRUE(events_.waitFor(write("a/b/file")));
    fs::current_path(before);
}

TEST_F(FileEvents_Roots, ThatIsRenamedAwayIsToldAndNoMoreWatched) {
    makeFolder("a/b");
    watch({at("a/b"), at("marks")});
    fs::rename(at("a/b"), at("a/away"));
    ASSERT_TRUE(events_.waitFor(at("a/b")));
    events_.forget();
    write("a/away/file");
    makeFolder("marks");
    ASSERT_TRUE(events_.waitFor(at("marks")));
    EXPECT_EQ(told(), std::set<std::string>());
}

TEST_F(FileEvents_Roots, ThatComesBackByRenameIsWatchedAgain) {
    write("a/b/c/file");
    watch({at("a/b")});
    fs::rename(at("a/b"), at("a/away"));
    ASSERT_TRUE(events_.waitFor(at("a/b")));
    events_.forget();
    fs::rename(at("a/away"), at("a/b"));
    ASSERT_TRUE(events_.waitFor(at("a/b")));
    EXPECT_TRUE(events_.waitFor(write("a/b/c/file", "other")));
}

TEST_F(FileEvents_Roots, WhoseParentIsRenamedAwayIsTold) {
    makeFolder("a/b/c/d");
    watch({at("a/b/c/d")});
    fs::rename(at("a"), at("away"));
    EXPECT_TRUE(events_.waitFor(at("a/b/c/d")));
}

TEST_F(FileEvents_Roots, WhoseParentsComeBackIsWatchedAgain) {
    makeFolder("a/b/c/d");
    watch({at("a/b/c/d")});
    fs::rename(at("a"), at("away"));
    ASSERT_TRUE(events_.waitFor(at("a/b/c/d")));
    events_.forget();
    makeFolder("a");
    fs::rename(at("away/b"), at("a/b"));
    ASSERT_TRUE(events_.waitFor(at("a/b/c/d")));
    EXPECT_TRUE(events_.waitFor(write("a/b/c/d/file")));
}

TEST_F(FileEvents_Roots, ThatIsReplacedAtOnceIsWatched) {
    write("a/file");
    write("b/file");
    watch({at("a")});
    ASSERT_EQ(renameat2(AT_FDCWD, at("a").c_str(), AT_FDCWD, at("b").c_str(), RENAME_EXCHANGE), 0);
    ASSERT_TRUE(events_.waitFor(at("a")));
    events_.forget();
    write("b/file", "not watched");
    EXPECT_TRUE(events_.waitFor(write("a/file", "other")));
    EXPECT_FALSE(events_.wasTold(at("b/file")));
}

TEST_F(FileEvents_Roots, ThatIsAFileCountsAsMissing) {
    const std::string path = write("a");
    watch({path});
    fs::remove(path);
    makeFolder("a");
    ASSERT_TRUE(events_.waitFor(path));
    EXPECT_TRUE(events_.waitFor(write("a/file")));
}

TEST_F(FileEvents_Roots, ThatMayNotBeReadIsWatchedOnceItMay) {
    const testing::WithoutRootRights meetingModes;  // the reader's thread takes after this one
    makeFolder("a");
    fs::permissions(at("a"), fs::perms::none);
    watch({at("a")});
    fs::permissions(at("a"), fs::perms::owner_all);
    ASSERT_TRUE(events_.waitFor(at("a")));
    EXPECT_TRUE(events_.waitFor(write("a/file")));
}

TEST_F(FileEvents_Roots, ThatGoesAndComesManyTimesIsWatchedInTheEnd) {
    makeFolder("a/b");
    watch({at("a/b")});
    for (int count = 0; count < 300; ++count) {
        fs::rename(at("a"), at("away"));
        makeFolder("a/b");
        fs::remove_all(at("a"));
        fs::rename(at("away"), at("a"));
    }
    // Where a write is not seen because it came too early, the root is still to be told.
    for (std::string file; !events_.wasTold(file);) {
        events_.forget();
        file = write("a/b/file");
        ASSERT_TRUE(events_.waitUntilTold(
            [&](const auto& paths) { return paths.contains(file) || paths.contains(at("a/b")); }));
    }
}

TEST_F(FileEvents_Roots, ThatIsALinkIsWatchedUnderItsOwnName) {
    const std::string real = makeFolder("real");
    fs::create_directory_symlink(real, at("link"));
    watch({at("link")});
    write("real/below/file");
    EXPECT_TRUE(events_.waitFor(at("link/below/file")));
    EXPECT_FALSE(events_.wasTold(at("real/below/file")));
}

TEST_F(FileEvents_Roots, FollowALinkThatIsPointedElsewhere) {
    makeFolder("first");
    makeFolder("second");
    fs::create_directory_symlink("first", at("link"));
    watch({at("link")});
    fs::create_directory_symlink("second", at("link.new"));
    fs::rename(at("link.new"), at("link"));
    ASSERT_TRUE(events_.waitFor(at("link")));
    events_.forget();
    write("first/not-told");
    write("second/file");
    EXPECT_TRUE(events_.waitFor(at("link/file")));
    EXPECT_FALSE(events_.wasTold(at("link/not-told")));
}

TEST_F(FileEvents_Roots, BehindALinkInTheMiddleFollowItsTarget) {
    makeFolder("real/below");
    fs::create_directory_symlink(at("real"), at("link"));
    watch({at("link/below")});
    fs::rename(at("real"), at("away"));
    ASSERT_TRUE(events_.waitFor(at("link/below")));
    events_.forget();
    fs::rename(at("away"), at("real"));
    ASSERT_TRUE(events_.waitFor(at("link/below")));
    write("real/below/file");
    EXPECT_TRUE(events_.waitFor(at("link/below/file")));
}

TEST_F(FileEvents_Roots, ThatLieInEachOtherTellAnEventOnce) {
    makeFolder("outer/inner");
    watch({at("outer"), at("outer/inner")});
    const std::string file = write("outer/inner/file");
    ASSERT_TRUE(events_.waitFor(file));
    for (const auto& batch : events_.batches()) {
        EXPECT_LE(std::count(batch.content.paths.begin(), batch.content.paths.end(), file), 1);
    }
    EXPECT_EQ(events_.paths(), std::set<std::string>{file});
}

TEST_F(FileEvents_Roots, ThatLieInEachOtherAreWatchedInAnyOrder) {
    makeFolder("outer/between/inner/below");
    makeFolder("outer/other");
    watch({at("outer/between/inner"), at("outer")});
    EXPECT_TRUE(events_.waitFor(write("outer/between/inner/below/file")));
    EXPECT_TRUE(events_.waitFor(write("outer/other/file")));
    EXPECT_TRUE(events_.waitFor(write("outer/between/file")));
}

TEST_F(FileEvents_Roots, InnerOneThatMovesWithinTheOuterOneHasItsNewPath) {
    makeFolder("outer/inner");
    watch({at("outer"), at("outer/inner")});
    fs::rename(at("outer/inner"), at("outer/moved"));
    ASSERT_TRUE(events_.waitFor(at("outer/moved")));
    ASSERT_TRUE(events_.waitFor(at("outer/inner")));
    const std::string mark = write("outer/mark");
    ASSERT_TRUE(events_.waitFor(mark));
    events_.forget();
    EXPECT_TRUE(events_.waitFor(write("outer/moved/file")));
    EXPECT_FALSE(events_.wasTold(at("outer/inner/file")));
}

TEST_F(FileEvents_Roots, InnerOneStaysWatchedWhenTheOuterOneIsRenamedAndMadeAgain) {
    makeFolder("outer/inner");
    watch({at("outer"), at("outer/inner")});
    fs::rename(at("outer"), at("away"));
    ASSERT_TRUE(events_.waitFor(at("outer/inner")));
    events_.forget();
    makeFolder("outer/inner");
    ASSERT_TRUE(events_.waitFor(at("outer/inner")));
    EXPECT_TRUE(events_.waitFor(write("outer/inner/file")));
}

TEST_F(FileEvents_Roots, ThatAreTheSameFolderTellAnEventUnderEachName) {
    makeFolder("real/below");
    fs::create_directory_symlink(at("real"), at("link"));
    watch({at("real"), at("link")});
    write("real/below/file");
    EXPECT_TRUE(events_.waitFor(at("real/below/file")));
    EXPECT_TRUE(events_.waitFor(at("link/below/file")));
}

TEST_F(FileEvents_Roots, LinkIntoAnotherRootTellsAnEventUnderEachName) {
    makeFolder("real/below");
    fs::create_directory_symlink(at("real/below"), at("link"));
    watch({at("link"), at("real")});
    write("real/below/file");
    EXPECT_TRUE(events_.waitFor(at("real/below/file")));
    EXPECT_TRUE(events_.waitFor(at("link/file")));
}

TEST_F(FileEvents_Roots, LinkThatGoesLeavesTheFolderWatchedUnderItsOtherName) {
    makeFolder("real");
    fs::create_directory_symlink(at("real"), at("link"));
    watch({at("link"), at("real")});
    fs::remove(at("link"));
    ASSERT_TRUE(events_.waitFor(at("link")));
    events_.forget();
    EXPECT_TRUE(events_.waitFor(write("real/file")));
    EXPECT_FALSE(events_.wasTold(at("link/file")));
}

TEST_F(FileEvents_Roots, BelowAnExcludedFolderGetNoWatch) {
    makeFolder("node_modules/package");
    const std::size_t before = ownWatches();
    watch({at("node_modules/package")}, {"node_modules"});
    EXPECT_EQ(ownWatches(), before);
}

TEST_F(FileEvents_Roots, NoneAtAllOpenAQuietStream) {
    watch(std::vector<std::string>{});
    EXPECT_EQ(events_.losses(), 0);
}

}  // namespace
}  // namespace tarnbeck
