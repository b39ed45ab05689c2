// Where git by itself would destroy more than the named file, or nothing at all.
#include <filesystem>
#include <fstream>

#include "DiscardFixture.h"

namespace tarnbeck::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
namespace fs = std::filesystem;

class Discard_Safety : public DiscardTest {
  protected:
    // The words of a discard that leaves everything as it was.
    std::string refusalOf(const std::string& filePath, const std::string& status) {
        const Tree tree = treeAt(repository);
        const auto changes = changesIn(repository);
        const auto words = discard(filePath, status);
        EXPECT_EQ(treeAt(repository), tree);
        EXPECT_EQ(changesIn(repository), changes);
        return words.value_or("(discarded)");
    }
};
using Discard_Nothing = Discard_Safety;
using Discard_Submodule = Discard_Safety;

TEST_F(Discard_Safety, FolderOfNewWorkInPlaceOfADeletedFileStays) {
    fs::remove(in("file.txt"));
    write("file.txt/work.txt", "precious");
    EXPECT_EQ(refusalOf("file.txt", "D"), "file.txt has become a folder");
}

TEST_F(Discard_Safety, RepositoryInPlaceOfAFileStays) {
    fs::remove(in("file.txt"));
    makeRepository(in("file.txt"));
    EXPECT_EQ(refusalOf("file.txt", "T"), "file.txt has become a folder");
}

TEST_F(Discard_Safety, FileInPlaceOfADeletedFolderStays) {
    commit("folder/a.txt", "a");
    fs::remove_all(in("folder"));
    write("folder", "precious");
    EXPECT_EQ(refusalOf("folder/a.txt", "D"),
              "folder/a.txt lies behind what is no folder any more");
}

TEST_F(Discard_Safety, LinkInPlaceOfADeletedFolderStaysAndNothingBehindItIsTouched) {
    commit("folder/a.txt", "a");
    fs::remove_all(in("folder"));
    folder.write("outside/a.txt", "precious");
    fs::create_directory_symlink(folder / "outside", in("folder"));
    EXPECT_EQ(refusalOf("folder/a.txt", "D"),
              "folder/a.txt lies behind what is no folder any more");
    EXPECT_EQ(contentOf(folder / "outside/a.txt"), "precious");
}

TEST_F(Discard_Safety, UntrackedFileBehindALinkStays) {
    folder.write("outside/a.txt", "precious");
    fs::create_directory_symlink(folder / "outside", in("link"));
    EXPECT_EQ(refusalOf("link/a.txt", "??"), "link/a.txt lies behind what is no folder any more");
    EXPECT_EQ(contentOf(folder / "outside/a.txt"), "precious");
}

TEST_F(Discard_Safety, FilesOfAFolderThatAStagedFileReplacedAreNotBroughtBack) {
    commit("folder/a.txt", "a");
    fs::remove_all(in("folder"));
    write("folder", "added");
    gitHere({"add", "-A"});
    EXPECT_EQ(refusalOf("folder", "A"),
              "folder can't be discarded alone, because git means other files by it too");
}

TEST_F(Discard_Safety, NewWorkBelowADeletedAddedFileStays) {
    commit("folder/a.txt", "a");
    fs::remove_all(in("folder"));
    write("folder", "added");
    gitHere({"add", "-A"});
    fs::remove(in("folder"));
    write("folder/a.txt", "precious");
    EXPECT_EQ(refusalOf("folder", "AD"),
              "folder can't be discarded alone, because git means other files by it too");
}

TEST_F(Discard_Safety, StagedFilesOfAFolderThatReplacedAFileStay) {
    fs::remove(in("file.txt"));
    write("file.txt/work.txt", "precious");
    gitHere({"add", "-A"});
    EXPECT_EQ(refusalOf("file.txt", "D"),
              "file.txt can't be discarded alone, because git means other files by it too");
}

TEST_F(Discard_Safety, FilesThatAreStagedOnlyBelowAFormerFileStay) {
    fs::remove(in("file.txt"));
    write("file.txt/work.txt", "precious");
    gitHere({"add", "-A"});
    fs::remove_all(in("file.txt"));
    EXPECT_EQ(refusalOf("file.txt", "D"),
              "file.txt can't be discarded alone, because git means other files by it too");
}

TEST_F(Discard_Safety, AddedFileInWhosePlaceAFolderStandsGoesFromTheIndexOnly) {
    write("added", "added");
    gitHere({"add", "added"});
    fs::remove(in("added"));
    write("added/work.txt", "precious");
    EXPECT_EQ(discardRow("added", "AD"), std::nullopt);
    EXPECT_EQ(contentOf(in("added/work.txt")), "precious");
    EXPECT_THAT(changesIn(repository),
                ElementsAre(FileChange{.status = "??", .filePath = "added/work.txt"}));
}

TEST_F(Discard_Safety, UntrackedFileThatBecameAFolderStays) {
    write("new/work.txt", "precious");
    EXPECT_EQ(refusalOf("new", "??"), "new has become a folder");
}

TEST_F(Discard_Safety, FileInConflictIsResetAloneWhenItIsDiscardedAllTheSame) {
    commit("other.txt", "base\n");
    gitHere({"checkout", "-q", "-b", "side"});
    commit("file.txt", "side\n");
    commit("other.txt", "side\n");
    gitHere({"checkout", "-q", "main"});
    commit("file.txt", "main\n");
    commit("other.txt", "main\n");
    git(repository, {"merge", "-q", "side"}, true);
    const std::string other = contentOf(in("other.txt"));
    EXPECT_FALSE(changeOf(repository, "file.txt").canDiscard());
    EXPECT_EQ(discardRow("file.txt", "UU"), std::nullopt);
    EXPECT_EQ(contentOf(in("file.txt")), "main\n");
    EXPECT_EQ(contentOf(in("other.txt")), other);
    EXPECT_EQ(changeOf(repository, "other.txt").status, "UU");
}

TEST_F(Discard_Safety, RenameRowReachesNoFile) {
    gitHere({"mv", "file.txt", "renamed.txt"});
    const FileChange row = changesIn(repository).at(0);
    EXPECT_EQ(row.filePath, "file.txt -> renamed.txt");
    EXPECT_FALSE(row.canDiscard());
    EXPECT_EQ(refusalOf(row.filePath, row.status),
              "file.txt -> renamed.txt has no changes any more");
}

class Discard_NoName : public Discard_Safety, public ::testing::WithParamInterface<std::string> {};

TEST_P(Discard_NoName, ReachesNothing) {
    write("new.txt", "new");
    write("folder/new.txt", "new");
    write("file.txt", "changed");
    for (const char* status : {"??", "M"}) {
        EXPECT_EQ(refusalOf(GetParam(), status),
                  GetParam() + " is not the path of a file in the work tree");
    }
    EXPECT_THAT(launcher.launches, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Any, Discard_NoName,
                         ::testing::Values("", ".", "./", "/", "//", "..", "./new.txt",
                                           "../repository/new.txt", "folder/../new.txt",
                                           "folder//new.txt", "folder//", "folder/.", "/etc/passwd",
                                           R"("new.txt\000x")", R"(".")", R"("")"));

TEST_F(Discard_Nothing, FileThatHasGoneIsSaid) {
    EXPECT_EQ(refusalOf("gone.txt", "??"), "gone.txt is no longer there");
}

TEST_F(Discard_Nothing, IgnoredFileIsSaid) {
    commit(".gitignore", "*.o\n");
    write("a.o", "object");
    EXPECT_EQ(refusalOf("a.o", "??"),
              "git deleted nothing, because a.o is ignored, or no longer untracked");
}

TEST_F(Discard_Nothing, FileThatWasAddedMeanwhileIsSaid) {
    write("new.txt", "new");
    gitHere({"add", "new.txt"});
    EXPECT_EQ(refusalOf("new.txt", "??"),
              "git deleted nothing, because new.txt is ignored, or no longer untracked");
}

TEST_F(Discard_Nothing, RepositoryInsideIsSaid) {
    makeRepository(in("inner"));
    const FileChange row = changeOf(repository, "inner/");
    EXPECT_EQ(refusalOf(row.filePath, row.status),
              "git deleted nothing, because inner/ is a repository of its own");
}

TEST_F(Discard_Nothing, FileWithoutChangesIsSaid) {
    EXPECT_EQ(refusalOf("file.txt", "M"), "file.txt has no changes any more");
}

TEST_F(Discard_Nothing, FileThatNoRestoringMakesCleanIsSaid) {
    commit("lines.txt", "one\r\n");
    write(".gitattributes", "*.txt eol=crlf\n");
    write("lines.txt", "one\r\n");
    const FileChange row = changeOf(repository, "lines.txt");
    EXPECT_EQ(discard(row.filePath, row.status),
              "git changed nothing, because lines.txt differs again as soon as it is restored");
}

TEST_F(Discard_Nothing, FolderOfWhichSomethingWentIsNoFailure) {
    commit(".gitignore", "*.o\n");
    write("folder/a.o", "object");
    write("folder/b.c", "source");
    EXPECT_EQ(discard("folder/", "??"), std::nullopt);
    EXPECT_TRUE(fs::exists(in("folder/a.o")));
    EXPECT_FALSE(fs::exists(in("folder/b.c")));
}

TEST_F(Discard_Nothing, WritesNoLine) {
    refusalOf("gone.txt", "??");
    refusalOf("file.txt", "M");
    EXPECT_THAT(lines, IsEmpty());
}

void addSubmodule(const std::string& repository, const std::string& origin) {
    git(repository, {"submodule", "--quiet", "add", origin, "inner"});
    git(repository, {"commit", "-q", "-m", "Add a submodule"});
}

TEST_F(Discard_Submodule, ChangesInsideStayAndThatIsSaid) {
    addSubmodule(repository, makeRepository(folder / "origin"));
    write("inner/file.txt", "precious");
    write("inner/new.txt", "precious too");
    EXPECT_EQ(refusalOf("inner", "M"),
              "git changed nothing, because inner is a submodule, and the changes are inside it");
}

TEST_F(Discard_Submodule, StagedCommitGoesFromTheIndexAndTheWorkInsideStays) {
    addSubmodule(repository, makeRepository(folder / "origin"));
    commitFile(in("inner"), "file.txt", "committed inside\n");
    gitHere({"add", "inner"});
    write("inner/new.txt", "precious");
    const Tree before = treeAt(in("inner"));
    EXPECT_EQ(discardRow("inner", "MM"), std::nullopt);
    EXPECT_EQ(gitHere({"diff", "--cached", "--name-only"}), "");
    EXPECT_EQ(treeAt(in("inner")), before);
}

TEST_F(Discard_Submodule, WorkInsideStaysWhereGitWouldReachIntoIt) {
    addSubmodule(repository, makeRepository(folder / "origin"));
    gitHere({"config", "submodule.recurse", "true"});
    write("inner/file.txt", "precious");
    EXPECT_EQ(refusalOf("inner", "M"),
              "inner is a submodule, and by `submodule.recurse` the work inside it would go too");
}

TEST_F(Discard_Submodule, NewOneGoesFromTheIndexAndItsFilesStay) {
    git(repository, {"submodule", "--quiet", "add", makeRepository(folder / "origin"), "inner"});
    EXPECT_EQ(discardRow("inner", "A"), std::nullopt);
    EXPECT_EQ(contentOf(in("inner/file.txt")), "content\n");
}

TEST_F(Discard_Submodule, FileInsideIsServedByTheSubmodulesOwnPath) {
    addSubmodule(repository, makeRepository(folder / "origin"));
    write("inner/file.txt", "changed");
    EXPECT_EQ(discardIn({.repoPath = in("inner"), .filePath = "file.txt", .status = "M"}),
              std::nullopt);
    EXPECT_EQ(contentOf(in("inner/file.txt")), "content\n");
}

TEST_F(Discard_Safety, RefusalIsLoggedUnderTheNameAsItWasGiven) {
    write("new/work.txt", "precious");
    refusalOf("\"new\"", "??");
    EXPECT_THAT(lines, ElementsAre("Discard failed for \"new\": \"new\" has become a folder"));
}

}  // namespace
}  // namespace tarnbeck::testing
