#include "WatchTree.h"

namespace tarnbeck {
namespace {

using Paths = std::vector<std::string>;

class WatchTree_Paths : public ::testing::Test {
  protected:
    WatchTree_Paths() { tree_.addRootPath(root_, "/root"); }
    void remove(WatchTree::Folder folder) {
        tree_.remove(folder, [this](auto each) { removed_.push_back(tree_.watch(each)); });
    }

    WatchTree tree_;
    WatchTree::Folder root_ = tree_.add(1, WatchTree::none, {});
    WatchTree::Folder a_ = tree_.add(2, root_, "a");
    WatchTree::Folder b_ = tree_.add(3, a_, "b");
    std::vector<int> removed_;
};

TEST_F(WatchTree_Paths, LeadThroughTheParents) {
    EXPECT_EQ(tree_.paths(b_, "file"), Paths{"/root/a/b/file"});
    EXPECT_EQ(tree_.paths(root_, ""), Paths{"/root"});
    EXPECT_EQ(tree_.path(b_), "/root/a/b");
}

TEST_F(WatchTree_Paths, FollowAMoveOfAFolderAbove) {
    tree_.move(a_, root_, "other");
    EXPECT_EQ(tree_.path(b_), "/root/other/b");
}

TEST_F(WatchTree_Paths, AreToldForEachRootThatLeadsThere) {
    tree_.addRootPath(a_, "/link");
    EXPECT_EQ(tree_.paths(b_, "file"), (Paths{"/link/b/file", "/root/a/b/file"}));
}

TEST_F(WatchTree_Paths, OfARootInARootAreToldOnce) {
    tree_.addRootPath(a_, "/root/a");
    EXPECT_EQ(tree_.paths(b_, "file"), Paths{"/root/a/b/file"});
}

TEST_F(WatchTree_Paths, OfTheRootOfAllHaveOneSlash) {
    const auto all = tree_.add(4, WatchTree::none, {});
    tree_.addRootPath(all, "/");
    const auto child = tree_.add(5, all, "etc");
    EXPECT_EQ(tree_.paths(child, "passwd"), Paths{"/etc/passwd"});
    EXPECT_EQ(tree_.path(child), "/etc");
}

TEST_F(WatchTree_Paths, AreNoneWithoutARoot) {
    const auto guard = tree_.add(4, WatchTree::none, {});
    EXPECT_EQ(tree_.paths(guard, "file"), Paths());
    EXPECT_EQ(tree_.path(guard), "");
}

TEST_F(WatchTree_Paths, StayWithAHeldFolderThatWasRemoved) {
    tree_.hold(b_);
    remove(a_);
    EXPECT_EQ(tree_.paths(b_, "file"), Paths{"/root/a/b/file"});
    EXPECT_EQ(tree_.find(3), WatchTree::none);
    tree_.release(b_);
}

TEST_F(WatchTree_Paths, RemovalTellsTheDeepestFirst) {
    remove(root_);
    EXPECT_EQ(removed_, (std::vector<int>{3, 2, 1}));
    EXPECT_EQ(tree_.size(), 0);
}

TEST_F(WatchTree_Paths, NumbersOfRemovedFoldersAreUsedAgain) {
    remove(a_);
    const auto first = tree_.add(4, root_, "c");
    const auto second = tree_.add(5, root_, "d");
    EXPECT_EQ((std::set{first, second}), (std::set{a_, b_}));
}

TEST_F(WatchTree_Paths, NumberOfAHeldFolderIsNotUsedAgain) {
    tree_.hold(b_);
    remove(a_);
    EXPECT_NE(tree_.add(4, root_, "c"), b_);
    EXPECT_NE(tree_.add(5, root_, "d"), a_) << "which the path of the held one leads through";
    tree_.release(b_);
    EXPECT_EQ((std::set{tree_.add(6, root_, "e"), tree_.add(7, root_, "f")}), (std::set{a_, b_}));
}

TEST_F(WatchTree_Paths, ParentThatWasRemovedIsFreedWithTheLastFolderThatMovedAway) {
    tree_.move(b_, root_, "b");
    remove(a_);
    EXPECT_EQ(tree_.path(b_), "/root/b");
    EXPECT_EQ(tree_.add(4, root_, "c"), a_);
}

}  // namespace
}  // namespace tarnbeck
