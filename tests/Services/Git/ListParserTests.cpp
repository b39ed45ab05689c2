#include "GitOutputParsers.h"

namespace tarnbeck::GitOutputParsers {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ParseLocalBranches, MarksTheCurrentOne) {
    EXPECT_THAT(
        parseLocalBranches("main\t*\nfix\t \ntry\t"),
        ElementsAre(GitBranch{"main", true}, GitBranch{"fix", false}, GitBranch{"try", false}));
}

TEST(ParseLocalBranches, NothingGivesNone) {
    EXPECT_THAT(parseLocalBranches(""), IsEmpty());
}

TEST(ParseLocalBranches, EmptyLinesAreDropped) {
    EXPECT_THAT(parseLocalBranches("\n\nmain\t*\n\n"), ElementsAre(GitBranch{"main", true}));
}

TEST(ParseLocalBranches, LineWithoutAMarkerIsNotCurrent) {
    EXPECT_THAT(parseLocalBranches("main"), ElementsAre(GitBranch{"main", false}));
}

TEST(ParseLocalBranches, LineOfTabsAloneIsSkipped) {
    EXPECT_THAT(parseLocalBranches("\t\n\t\t\nmain\t*"), ElementsAre(GitBranch{"main", true}));
}

TEST(ParseLocalBranches, EmptyNameIsDroppedAndTheMarkerTakesItsPlace) {
    EXPECT_THAT(parseLocalBranches("\t*"), ElementsAre(GitBranch{"*", false}));
}

TEST(ParseLocalBranches, OnlyAMarkerOfExactlyOneStarCounts) {
    EXPECT_THAT(parseLocalBranches("a\t* \nb\t**\nc\t*\t"),
                ElementsAre(GitBranch{"a", false}, GitBranch{"b", false}, GitBranch{"c", false}));
}

TEST(ParseLocalBranches, DetachedHeadIsListedAsGitPrintsIt) {
    EXPECT_THAT(
        parseLocalBranches("(HEAD detached at 1a2b3c4)\t*\nmain\t "),
        ElementsAre(GitBranch{"(HEAD detached at 1a2b3c4)", true}, GitBranch{"main", false}));
}

TEST(ParseLocalBranches, LinesEndAtLineFeedsOnly) {
    EXPECT_THAT(parseLocalBranches("a\u2028b\t*\r\n"), ElementsAre(GitBranch{"a\u2028b", false}));
}

TEST(ParseRemoteBranches, KeepsTheOrderAndTheRemote) {
    EXPECT_THAT(parseRemoteBranches("origin/z\norigin/a/b\nfork/main"),
                ElementsAre("origin/z", "origin/a/b", "fork/main"));
}

TEST(ParseRemoteBranches, NothingGivesNone) {
    EXPECT_THAT(parseRemoteBranches("\n\n"), IsEmpty());
}

TEST(ParseRemoteBranches, LineWithoutASlashIsDropped) {
    EXPECT_THAT(parseRemoteBranches("origin\norigin/main"), ElementsAre("origin/main"));
}

TEST(ParseRemoteBranches, WhatHoldsHeadAnywhereIsDropped) {
    EXPECT_THAT(parseRemoteBranches("origin/HEAD\norigin/HEADER\nAHEAD/fix\norigin/head"),
                ElementsAre("origin/head"));
}

TEST(ParseChanges, TakesStatusAndPathApart) {
    EXPECT_THAT(parseChanges(" M src/a.cpp\nMM b.cpp\n?? new\nA  c.cpp"),
                ElementsAre(FileChange{"M", "src/a.cpp"}, FileChange{"MM", "b.cpp"},
                            FileChange{"??", "new"}, FileChange{"A", "c.cpp"}));
}

TEST(ParseChanges, NothingGivesNone) {
    EXPECT_THAT(parseChanges("\n"), IsEmpty());
}

TEST(ParseChanges, LeadingBlankOfTheFirstLineBelongsToTheStatus) {
    EXPECT_THAT(parseChanges(" D gone"), ElementsAre(FileChange{"D", "gone"}));
}

TEST(ParseChanges, LineOfFewerThanThreeCharactersIsSkipped) {
    EXPECT_THAT(parseChanges("M\nMM\n M a"), ElementsAre(FileChange{"M", "a"}));
}

TEST(ParseChanges, LineOfThreeCharactersHasAnEmptyPath) {
    EXPECT_THAT(parseChanges(" M "), ElementsAre(FileChange{"M", ""}));
}

TEST(ParseChanges, BlankStatusIsAQuestionMark) {
    EXPECT_THAT(parseChanges("   a"), ElementsAre(FileChange{"?", "a"}));
}

TEST(ParseChanges, RenameKeepsBothNamesAndTheArrow) {
    EXPECT_THAT(parseChanges("R  old.txt -> new.txt"),
                ElementsAre(FileChange{"R", "old.txt -> new.txt"}));
}

TEST(ParseChanges, QuotedNameKeepsItsQuotes) {
    EXPECT_THAT(parseChanges(R"(?? "caf\303\251 \"x\"")"),
                ElementsAre(FileChange{"??", R"("caf\303\251 \"x\"")"}));
}

TEST(ParseChanges, BlanksOfTheNameStay) {
    EXPECT_THAT(parseChanges("??  two words "), ElementsAre(FileChange{"??", " two words "}));
}

TEST(ParseChanges, NameInAnotherScriptStaysWhole) {
    EXPECT_THAT(parseChanges(" M 資料/表.txt"), ElementsAre(FileChange{"M", "資料/表.txt"}));
}

TEST(ParseChanges, CarriageReturnBelongsToTheName) {
    EXPECT_THAT(parseChanges(" M a\r\n M b"),
                ElementsAre(FileChange{"M", "a\r"}, FileChange{"M", "b"}));
}

TEST(ParseStashes, TakesReferenceAndSubjectApart) {
    EXPECT_THAT(
        parseStashes("stash@{0}\x1FWIP on main\nstash@{1}\x1FOn fix: try"),
        ElementsAre(GitStash{"stash@{0}", "WIP on main"}, GitStash{"stash@{1}", "On fix: try"}));
}

TEST(ParseStashes, NothingGivesNone) {
    EXPECT_THAT(parseStashes("\n\n"), IsEmpty());
}

TEST(ParseStashes, LineWithoutASeparatorHasNoSubject) {
    EXPECT_THAT(parseStashes("stash@{0}"), ElementsAre(GitStash{"stash@{0}", ""}));
}

TEST(ParseStashes, EmptySubjectStaysEmpty) {
    EXPECT_THAT(parseStashes("stash@{0}\x1F"), ElementsAre(GitStash{"stash@{0}", ""}));
}

TEST(ParseStashes, LineWithoutAReferenceIsSkipped) {
    EXPECT_THAT(parseStashes("\x1FWIP\nstash@{1}\x1Fx"), ElementsAre(GitStash{"stash@{1}", "x"}));
}

TEST(ParseStashes, OnlyTheFirstSeparatorSplits) {
    EXPECT_THAT(parseStashes("stash@{0}\x1F"
                             "a\x1F"
                             "b"),
                ElementsAre(GitStash{"stash@{0}",
                                     "a\x1F"
                                     "b"}));
}

TEST(ParseTags, KeepsTheOrderOfGit) {
    EXPECT_THAT(parseTags("v2\n\nv10\nv1\n"), ElementsAre("v2", "v10", "v1"));
}

TEST(ParseTags, NothingGivesNone) {
    EXPECT_THAT(parseTags(""), IsEmpty());
}

}  // namespace
}  // namespace tarnbeck::GitOutputParsers
