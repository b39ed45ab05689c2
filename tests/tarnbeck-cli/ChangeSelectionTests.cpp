#include <filesystem>

#include "ChangeSelection.h"
#include "TemporaryFolder.h"

namespace tarnbeck::cli {
namespace {

class ChangeSelectionTest : public ::testing::Test {
  protected:
    // The path of the row that is meant, or the words why there is none.
    std::string selected(const std::string& typed, const std::string& currentFolder = "/") const {
        const auto change = selectedChange({.changes = changes,
                                            .workTree = workTree,
                                            .typed = typed,
                                            .currentFolder = currentFolder});
        return change ? change->filePath : change.error();
    }
    std::string nothing() const { return "is no uncommitted change in " + workTree; }
    std::string ambiguous() const {
        return "means more than one file: write " + workTree + "/… for the one meant";
    }

    testing::TemporaryFolder folder;
    std::string workTree = folder.makeFolder("work");
    ImmutableList<FileChange> changes;
};

TEST_F(ChangeSelectionTest, PathAsGitPrintsItIsMeant) {
    changes = {{"M", "src/a.txt"}, {"??", R"("\303\244 b.txt")"}};
    EXPECT_EQ(selected("src/a.txt"), "src/a.txt");
    EXPECT_EQ(selected(R"("\303\244 b.txt")"), R"("\303\244 b.txt")");
}

TEST_F(ChangeSelectionTest, NameThatGitQuotesIsMeantWithoutQuotesToo) {
    changes = {{"??", R"("\303\244 b.txt")"}};
    EXPECT_EQ(selected("ä b.txt"), R"("\303\244 b.txt")");
}

TEST_F(ChangeSelectionTest, NameWithQuotesOfItsOwnIsMeantAsItIs) {
    changes = {{"??", R"("\"a\"")"}};
    EXPECT_EQ(selected(R"("a")"), R"("\"a\"")");
}

TEST_F(ChangeSelectionTest, DotsInThePathAreTidiedUp) {
    changes = {{"M", "src/a.txt"}};
    EXPECT_EQ(selected("./src/../src//a.txt"), "src/a.txt");
}

TEST_F(ChangeSelectionTest, AbsolutePathInsideTheWorkTreeIsMeant) {
    changes = {{"M", "src/a.txt"}};
    EXPECT_EQ(selected(workTree + "/src/a.txt"), "src/a.txt");
}

TEST_F(ChangeSelectionTest, AbsolutePathIsNotLookedForInside) {
    changes = {{"M", "src/a.txt"}};
    EXPECT_EQ(selected("/src/a.txt"), nothing());
    EXPECT_EQ(selected(workTree + "2/src/a.txt"), nothing());
}

TEST_F(ChangeSelectionTest, PathFromTheCurrentFolderIsMeantWhereThatLiesInside) {
    changes = {{"M", "src/a.txt"}, {"M", "b.txt"}};
    EXPECT_EQ(selected("a.txt", workTree + "/src"), "src/a.txt");
    EXPECT_EQ(selected("../b.txt", workTree + "/src"), "b.txt");
    EXPECT_EQ(selected("work/b.txt", folder.path()), "b.txt");
}

TEST_F(ChangeSelectionTest, CurrentFolderCountsAlsoWhereTheWorkTreeIsNamedThroughALink) {
    changes = {{"M", "src/a.txt"}, {"M", "a.txt"}};
    const std::string real = workTree;
    workTree = folder / "link";
    std::filesystem::create_directory_symlink(real, workTree);
    EXPECT_EQ(selected("a.txt", real + "/src"), ambiguous());
    changes = {{"M", "src/a.txt"}};
    EXPECT_EQ(selected("a.txt", real + "/src"), "src/a.txt");
}

TEST_F(ChangeSelectionTest, WordThatMeansTwoChangesMeansNone) {
    changes = {{"M", "a.txt"}, {"M", "src/a.txt"}};
    EXPECT_EQ(selected("a.txt", workTree + "/src"), ambiguous());
    EXPECT_EQ(selected("./a.txt", workTree + "/src"), ambiguous());
    EXPECT_EQ(selected(workTree + "/a.txt", workTree + "/src"), "a.txt");
    EXPECT_EQ(selected("../a.txt", workTree + "/src"), "a.txt");
}

TEST_F(ChangeSelectionTest, FileHereWithoutChangesIsNotTakenForOneFromTheTop) {
    folder.write("work/src/a.txt", "no changes");
    changes = {{"M", "a.txt"}};
    EXPECT_EQ(selected("a.txt", workTree + "/src"), ambiguous());
    EXPECT_EQ(selected("a.txt", workTree + "/other"), "a.txt");
}

TEST_F(ChangeSelectionTest, QuotedAndUnquotedFileOfOneWordMeanNone) {
    changes = {{"??", "a"}, {"??", R"("\"a\"")"}};
    EXPECT_EQ(selected(R"("a")"), ambiguous());
    EXPECT_EQ(selected("a"), "a");
}

TEST_F(ChangeSelectionTest, FolderEntryIsMeantWithAndWithoutItsSlash) {
    changes = {{"??", "inner/"}};
    EXPECT_EQ(selected("inner"), "inner/");
    EXPECT_EQ(selected("inner/"), "inner/");
}

TEST_F(ChangeSelectionTest, FolderAboveAChangeIsNoChange) {
    changes = {{"M", "src/a.txt"}};
    EXPECT_EQ(selected("src"), nothing());
    EXPECT_EQ(selected("."), nothing());
    EXPECT_EQ(selected("*"), nothing());
}

TEST_F(ChangeSelectionTest, RenameIsNamedByEitherName) {
    changes = {{"R", R"(old.txt -> "new name.txt")"}};
    for (const char* typed : {"old.txt", "new name.txt", R"("new name.txt")"}) {
        EXPECT_EQ(selected(typed), "is renamed, which can't be discarded here") << typed;
    }
}

TEST_F(ChangeSelectionTest, ArrowInAnOrdinaryNameIsNoRename) {
    changes = {{"??", R"("old.txt -> new.txt")"}};
    EXPECT_EQ(selected("old.txt"), nothing());
    EXPECT_EQ(selected("old.txt -> new.txt"), R"("old.txt -> new.txt")");
}

TEST_F(ChangeSelectionTest, EachStatusThatCantBeDiscardedHasItsWord) {
    changes = {{"UU", "a"}, {"AA", "b"}, {"DU", "c"}, {"C", "x -> d"}, {"T", "e"}};
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_EQ(selected(name), "is in conflict, which has to be resolved") << name;
    }
    EXPECT_EQ(selected("d"), "is a copy, which can't be discarded here");
    EXPECT_EQ(selected("e"), "has the status T, which can't be discarded here");
}

TEST(ShownName, IsUnquotedAndHarmless) {
    EXPECT_EQ(shownName({"??", R"("\303\244\033[31m")"}), "ä\uFFFD[31m");
}

}  // namespace
}  // namespace tarnbeck::cli
