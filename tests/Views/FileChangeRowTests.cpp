#include "FileChangeRow.h"
#include "SectionOutline.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

Row rowOfChange(const FileChange& change, bool isDiscarding = false) {
    return fileChangeRow({.change = change,
                          .basePath = "/work/lake",
                          .id = "id",
                          .search = CaseInsensitiveSearch("CAFÉ"),
                          .isDiscarding = isDiscarding});
}

TEST(FileChangeRow, ShowsStatusPathCopyAndDiscard) {
    EXPECT_EQ(outline(rowOfChange({"M", "src/a.cpp"})),
              R"(    state <M blue> "src/a.cpp" monospaced elidedInMiddle
        says "Changed file src/a.cpp, modified"
        click openFile "Open file" -> "/work/lake/src/a.cpp"
        copy (doc.on.doc) "Copy file path" -> "src/a.cpp", then "File path copied"
        discard (arrow.uturn.backward.circle orange) "Discard changes in this file"
)");
}

TEST(FileChangeRow, StatusHasTheColorOfTheChange) {
    EXPECT_EQ(rowOfChange({"A", "a"}).statusColor, StatusColor::green);
    EXPECT_EQ(rowOfChange({"D", "a"}).statusColor, StatusColor::red);
    EXPECT_EQ(rowOfChange({"??", "a"}).statusColor, StatusColor::gray);
    EXPECT_EQ(rowOfChange({"UU", "a"}).statusColor, StatusColor::orange);
    EXPECT_EQ(rowOfChange({"MM", "a"}).statusColor, StatusColor::secondary);
}

TEST(FileChangeRow, WhatCantBeDiscardedThroughARowHasNoControlForIt) {
    for (const char* status : {"R", "C", "UU", "AA", "T"}) {
        EXPECT_EQ(rowOfChange({status, "a"}).actions.size(), 1U) << status;
    }
    for (const char* status : {"M", "A", "D", "MM", "AM", "MD", "AD", "??"}) {
        EXPECT_EQ(rowOfChange({status, "a"}).actions.size(), 2U) << status;
    }
}

TEST(FileChangeRow, ProgressStandsInThePlaceOfTheDiscardControl) {
    EXPECT_THAT(outline(rowOfChange({"M", "a"}, true)),
                HasSubstr("\"Discard changes in this file\" in progress"));
    EXPECT_THAT(outline(rowOfChange({"M", "a"})), Not(HasSubstr("in progress")));
}

TEST(FileChangeRow, LettersAreSpelledOutForThoseWhoHearThem) {
    EXPECT_EQ(statusWords("M"), "modified");
    EXPECT_EQ(statusWords("A"), "added");
    EXPECT_EQ(statusWords("D"), "deleted");
    EXPECT_EQ(statusWords("R"), "renamed");
    EXPECT_EQ(statusWords("C"), "copied");
    EXPECT_EQ(statusWords("T"), "changed in type");
    EXPECT_EQ(statusWords("??"), "untracked");
    EXPECT_EQ(statusWords("MM"), "modified");
    EXPECT_EQ(statusWords("AM"), "added and modified");
    EXPECT_EQ(statusWords("RD"), "renamed and deleted");
    EXPECT_EQ(statusWords("X"), "changed");
}

TEST(FileChangeRow, ConflictsAreSpelledOutForThoseWhoHearThem) {
    EXPECT_EQ(statusWords("UU"), "in conflict, modified by both");
    EXPECT_EQ(statusWords("AA"), "in conflict, added by both");
    EXPECT_EQ(statusWords("DD"), "in conflict, deleted by both");
    EXPECT_EQ(statusWords("AU"), "in conflict, added by us");
    EXPECT_EQ(statusWords("UA"), "in conflict, added by them");
    EXPECT_EQ(statusWords("DU"), "in conflict, deleted by us");
    EXPECT_EQ(statusWords("UD"), "in conflict, deleted by them");
}

TEST(FileChangeRow, NameThatGitPutInQuotesIsShownOpenedAndCopiedAsItIs) {
    const Row row = rowOfChange({"M", R"("caf\303\251 menu.txt")"});
    EXPECT_EQ(row.title, "café menu.txt");
    EXPECT_EQ(row.click->reference, "/work/lake/café menu.txt");
    EXPECT_EQ(row.actions.front().reference, "café menu.txt");
    EXPECT_TRUE(row.isTitleHighlighted);
}

TEST(FileChangeRow, NameThatIsNotUtf8IsShownWithReplacementsAndOpenedByItsBytes) {
    const Row row = rowOfChange({"M", R"("caf\351.txt")"});
    EXPECT_EQ(row.title, "caf\uFFFD.txt");
    EXPECT_EQ(row.click->reference, "/work/lake/caf\xE9.txt");
    EXPECT_FALSE(row.isTitleHighlighted);
}

TEST(FileChangeRow, LineFeedInANameStaysOneLine) {
    EXPECT_EQ(rowOfChange({"??", R"("two\nlines")"}).title, "two\uFFFDlines");
}

TEST(FileChangeRow, RenameShowsBothNamesAndOpensTheNewOne) {
    const Row row = rowOfChange({"R", "old.cpp -> new.cpp"});
    EXPECT_EQ(row.title, "old.cpp -> new.cpp");
    EXPECT_EQ(row.click->reference, "/work/lake/new.cpp");
    EXPECT_EQ(row.actions.front().reference, "new.cpp");
}

TEST(FileChangeRow, RenameFindsItsNamesAlsoWhereTheyStandInQuotes) {
    EXPECT_EQ(fileNameOf({"R", R"("a b" -> "c d")"}), "c d");
    EXPECT_EQ(fileNameOf({"R", R"(a -> "c -> d")"}), "c -> d");
    EXPECT_EQ(fileNameOf({"RM", R"("a -> b" -> c)"}), "c");
    EXPECT_EQ(fileNameOf({"R", R"("a -> " -> "b -> \"c")"}), "b -> \"c");
}

TEST(FileChangeRow, ArrowInTheNameOfAFileThatIsNotRenamedIsPartOfIt) {
    EXPECT_EQ(fileNameOf({"M", R"("a -> b")"}), "a -> b");
}

TEST(FileChangeRow, FileAtTheRootOfTheSystemIsJoinedByOneSlash) {
    const FileChange change{"M", "a"};
    const Row row =
        fileChangeRow({.change = change, .basePath = "/", .search = CaseInsensitiveSearch("")});
    EXPECT_EQ(row.click->reference, "/a");
}

TEST(FileChangeRow, IdentityReadsBackFromTheId) {
    const FileChangeIdentity identity{"fix/x", "/work/lake\nfix", "src/a.cpp"};
    const std::string id = fileChangeRowId("/work/lake", identity);
    EXPECT_EQ(id, "/work/lake\nbranches\nfix/x\n/work/lake\nfix\nsrc/a.cpp");
    EXPECT_EQ(fileChangeIdentity("/work/lake", id), identity);
}

TEST(FileChangeRow, IdsOfOtherRowsNameNoFile) {
    EXPECT_EQ(fileChangeIdentity("/work/lake", "/work/lake\nbranches"), std::nullopt);
    EXPECT_EQ(fileChangeIdentity("/work/lake", "/work/lake\nbranches\nmain"), std::nullopt);
    EXPECT_EQ(fileChangeIdentity("/work/lake", "/work/lake\ntags\na\nb\nc"), std::nullopt);
    EXPECT_EQ(fileChangeIdentity("/work/lake", "/work/pond\nbranches\na\nb\nc"), std::nullopt);
    EXPECT_EQ(fileChangeIdentity("/work/lake", ""), std::nullopt);
}

}  // namespace
}  // namespace tarnbeck::testing
