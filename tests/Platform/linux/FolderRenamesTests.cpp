#include "FolderRenames.h"

namespace tarnbeck {
namespace {

TEST(FolderRenames_Events, BelongTogetherByTheirCookie) {
    FolderRenames renames;
    renames.left(1, 10, "a");
    renames.left(2, 10, "b");
    EXPECT_TRUE(renames.arrived(1, 20, "c"));
    const FolderRename* rename = renames.from(10, "a");
    ASSERT_NE(rename, nullptr);
    EXPECT_EQ(rename->toWatch, 20);
    EXPECT_EQ(rename->toName, "c");
    EXPECT_LT(renames.from(10, "b")->toWatch, 0);
}

TEST(FolderRenames_Events, ArrivalFromElsewhereIsNone) {
    FolderRenames renames;
    EXPECT_FALSE(renames.arrived(1, 20, "c"));
    EXPECT_TRUE(renames.isEmpty());
}

TEST(FolderRenames_Events, LatestRenameOfAPlaceCounts) {
    FolderRenames renames;
    renames.left(1, 10, "a");
    renames.left(2, 10, "a");
    renames.arrived(2, 20, "second");
    EXPECT_EQ(renames.from(10, "a")->toName, "second");
}

TEST(FolderRenames_Untold, ArrivalIsGivenOnceAndThenForgotten) {
    FolderRenames renames;
    renames.left(1, 10, "a");
    renames.arrived(1, 20, "b");
    EXPECT_EQ(renames.takeUntold().size(), 1);
    EXPECT_NE(renames.from(10, "a"), nullptr) << "its folder may still tell that it moved";
    EXPECT_EQ(renames.takeUntold().size(), 0);
    EXPECT_TRUE(renames.isEmpty());
}

TEST(FolderRenames_Untold, DepartureWaitsOnceAndIsForgottenThen) {
    FolderRenames renames;
    renames.left(1, 10, "a");
    EXPECT_EQ(renames.takeUntold().size(), 0);
    EXPECT_FALSE(renames.isEmpty());
    EXPECT_EQ(renames.takeUntold().size(), 0);
    EXPECT_TRUE(renames.isEmpty());
}

}  // namespace
}  // namespace tarnbeck
