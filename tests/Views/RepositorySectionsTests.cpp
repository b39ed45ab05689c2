#include "RepositorySectionsHarness.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string subsectionKey = "ui.subsectionExpandedByRepo.v1";
const std::string branchKey = "ui.branchChangesExpandedByRepo.v1";

class RepositorySections_Toggle : public RepositorySectionsHarness {
  protected:
    RepositorySections_Toggle() {
        repository.worktrees = {{.path = "/work/fix", .branch = "fix"}};
        repository.remoteBranches = {"origin/fix"};
        repository.tags = {"v1"};
        repository.stashCount = 1;
        repository.uncommittedChanges = modifiedFiles(1);
    }
};

TEST_F(RepositorySections_Toggle, StateBeginsAsItIsTold) {
    EXPECT_EQ(state(), (SectionState{.showBranches = true,
                                     .showWorktrees = true,
                                     .showRemoteSection = false,
                                     .showTagsSection = false,
                                     .showStashesSection = false,
                                     .showIssuesSection = false,
                                     .showPullRequestsSection = false,
                                     .showDependenciesSection = true}));
}

TEST_F(RepositorySections_Toggle, StateBeginsAsItWasStored) {
    defaults.setData(subsectionKey, R"({"/work/lake":{"remote":true,"stashes":true,"issues":true,)"
                                    R"("pullRequests":true,"tags":true,"branches":false}})");
    defaults.setData(branchKey, R"({"/work/lake":{"main":true,"fix":false}})");
    EXPECT_EQ(state(), (SectionState{.branchChangesExpanded = {{"fix", false}, {"main", true}},
                                     .showRemoteSection = true,
                                     .showStashesSection = true,
                                     .showIssuesSection = true,
                                     .showPullRequestsSection = true}));
}

TEST_F(RepositorySections_Toggle, EachSubsectionOpensAndCloses) {
    for (const char* title :
         {"Branches", "Worktrees", "Remote", "Tags", "Stashes", "Issues", "Pull Requests"}) {
        const bool before = *rowTitled(content().rows, title).isExpanded;
        performOnTitled(title, RowActionKind::toggle);
        EXPECT_EQ(rowTitled(content().rows, title).isExpanded, !before) << title;
        performOnTitled(title, RowActionKind::toggle);
        EXPECT_EQ(rowTitled(content().rows, title).isExpanded, before) << title;
    }
}

TEST_F(RepositorySections_Toggle, BranchOpensAndCloses) {
    performOnTitled("main", RowActionKind::toggle);
    EXPECT_THAT(titles(), Contains("src/file1.cpp"));
    performOnTitled("main", RowActionKind::toggle);
    EXPECT_THAT(titles(), Not(Contains("src/file1.cpp")));
}

TEST_F(RepositorySections_Toggle, TellsTheViewWhichSectionChanged) {
    performOnTitled("Tags", RowActionKind::toggle);
    EXPECT_THAT(changes, ElementsAre("/work/lake"));
}

TEST_F(RepositorySections_Toggle, FourSubsectionsAreStoredAtEachToggle) {
    performOnTitled("Remote", RowActionKind::toggle);
    EXPECT_EQ(defaults.data(subsectionKey), R"({"/work/lake":{"remote":true}})");
    performOnTitled("Stashes", RowActionKind::toggle);
    performOnTitled("Issues", RowActionKind::toggle);
    performOnTitled("Pull Requests", RowActionKind::toggle);
    performOnTitled("Remote", RowActionKind::toggle);
    EXPECT_EQ(
        defaults.data(subsectionKey),
        R"({"/work/lake":{"issues":true,"pullRequests":true,"remote":false,"stashes":true}})");
    EXPECT_EQ(defaults.writeCount(), 5);
}

TEST_F(RepositorySections_Toggle, ThreeSubsectionsAreForgottenWithTheView) {
    performOnTitled("Branches", RowActionKind::toggle);
    performOnTitled("Worktrees", RowActionKind::toggle);
    performOnTitled("Tags", RowActionKind::toggle);
    EXPECT_EQ(defaults.writeCount(), 0);
}

TEST_F(RepositorySections_Toggle, OfABranchStoresTheWholeMapOfTheRepository) {
    defaults.setData(branchKey, R"({"/work/lake":{"fix":true}})");
    performOnTitled("main", RowActionKind::toggle);
    EXPECT_EQ(defaults.data(branchKey), R"({"/work/lake":{"fix":true,"main":true}})");
    performOnTitled("main", RowActionKind::toggle);
    EXPECT_EQ(defaults.data(branchKey), R"({"/work/lake":{"fix":true,"main":false}})");
}

TEST_F(RepositorySections_Toggle, EntriesOfOtherRepositoriesStayUntouched) {
    const std::string others = R"("/work/a":{"remote":true},"/work/z":{"remote":false})";
    defaults.setData(subsectionKey, "{" + others + "}");
    defaults.setData(branchKey, "{" + others + "}");
    performOnTitled("Remote", RowActionKind::toggle);
    performOnTitled("main", RowActionKind::toggle);
    EXPECT_EQ(defaults.data(subsectionKey),
              R"({"/work/a":{"remote":true},"/work/lake":{"remote":true},)"
              R"("/work/z":{"remote":false}})");
    EXPECT_EQ(defaults.data(branchKey), R"({"/work/a":{"remote":true},"/work/lake":{"main":true},)"
                                        R"("/work/z":{"remote":false}})");
}

TEST_F(RepositorySections_Toggle, KeepsWhatAnotherViewStoredMeanwhile) {
    state();
    defaults.setData(subsectionKey, R"({"/work/lake":{"stashes":true},"/work/new":{}})");
    performOnTitled("Remote", RowActionKind::toggle);
    EXPECT_EQ(defaults.data(subsectionKey),
              R"({"/work/lake":{"remote":true,"stashes":true},"/work/new":{}})");
}

TEST_F(RepositorySections_Toggle, ReplacesBrokenDataWhole) {
    defaults.setData(subsectionKey, "{broken");
    EXPECT_FALSE(state().showRemoteSection);
    performOnTitled("Remote", RowActionKind::toggle);
    EXPECT_EQ(defaults.data(subsectionKey), R"({"/work/lake":{"remote":true}})");
}

TEST_F(RepositorySections_Toggle, PathThatIsNotUtf8FindsItsStateAgain) {
    repository.path = "/work/caf\xE9";
    performOnTitled("Remote", RowActionKind::toggle);
    makeSections(allCallbacks());
    EXPECT_TRUE(state().showRemoteSection);
}

TEST_F(RepositorySections_Toggle, ForgottenRepositoryBeginsAnewFromWhatIsStored) {
    performOnTitled("Remote", RowActionKind::toggle);
    performOnTitled("Tags", RowActionKind::toggle);
    sections->forget(repository.path);
    EXPECT_TRUE(state().showRemoteSection);
    EXPECT_FALSE(state().showTagsSection);
}

// --- Copying and opening ---

class RepositorySections_Copy : public RepositorySectionsHarness {};

TEST_F(RepositorySections_Copy, PutsTheReferenceOnTheClipboardAndSaysSo) {
    performOnTitled("main", RowActionKind::copy);
    EXPECT_THAT(clipboard.texts, ElementsAre("main"));
    EXPECT_EQ(sections->toast().message, "Branch name copied");
    EXPECT_TRUE(sections->toast().isVisible);
    EXPECT_THAT(changes, ElementsAre(""));
}

TEST_F(RepositorySections_Copy, ToastGoesAfter1600Milliseconds) {
    sections->copyReferenceToClipboard("main", "Copied");
    simulation.advance(1599ms);
    EXPECT_TRUE(sections->toast().isVisible);
    simulation.advance(1ms);
    EXPECT_FALSE(sections->toast().isVisible);
    EXPECT_EQ(sections->toast().message, "Copied");
    EXPECT_THAT(changes, ElementsAre("", ""));
}

TEST_F(RepositorySections_Copy, OnlyTheLatestToastHidesItself) {
    sections->copyReferenceToClipboard("a", "First");
    simulation.advance(1s);
    sections->copyReferenceToClipboard("b", "Second");
    simulation.advance(1599ms);
    EXPECT_TRUE(sections->toast().isVisible);
    EXPECT_EQ(sections->toast().message, "Second");
    simulation.advance(1ms);
    EXPECT_FALSE(sections->toast().isVisible);
}

TEST_F(RepositorySections_Copy, SameMessageTwiceIsShownAgain) {
    sections->copyReferenceToClipboard("a", "Copied");
    const std::uint64_t first = sections->toast().token;
    sections->copyReferenceToClipboard("a", "Copied");
    EXPECT_NE(sections->toast().token, first);
    EXPECT_EQ(changes.size(), 2U);
}

TEST_F(RepositorySections_Copy, ToastOfAViewThatHasGoneIsLeftAlone) {
    sections->copyReferenceToClipboard("a", "Copied");
    sections.reset();
    simulation.advance(2s);
    EXPECT_THAT(changes, ElementsAre(""));
}

TEST_F(RepositorySections_Copy, FileOpensByItsRealName) {
    repository.uncommittedChanges = {{"M", R"("a \"b\".txt")"}};
    performOnTitled("main", RowActionKind::toggle);
    performOnTitled("a \"b\".txt", RowActionKind::openFile);
    EXPECT_THAT(opener.files, ElementsAre("/work/lake/a \"b\".txt"));
}

TEST_F(RepositorySections_Copy, IssueOpensInTheBrowser) {
    repository.issues = numbered(1, numberedIssue);
    performOnTitled("Issues", RowActionKind::toggle);
    performOnTitled("Issue 1", RowActionKind::openUrl);
    EXPECT_THAT(opener.urls, ElementsAre("https://example.org/issues/1"));
}

// --- What the header and the subsections call ---

class RepositorySections_Refresh : public RepositorySectionsHarness {};

TEST_F(RepositorySections_Refresh, OfTheHeaderCallsWhatTheDomainIsAbout) {
    for (const DomainMode domain :
         {DomainMode::git, DomainMode::issues, DomainMode::dependencies}) {
        flags = flagsOf(domain);
        performOnHeader(RowActionKind::refresh);
    }
    EXPECT_THAT(calls,
                ElementsAre("git /work/lake", "issues /work/lake", "dependencies /work/lake"));
}

TEST_F(RepositorySections_Refresh, OfTheCombinedHeaderCallsAllThreeInTheirOrder) {
    flags = flagsOf(DomainMode::combined);
    performOnHeader(RowActionKind::refresh);
    EXPECT_THAT(calls,
                ElementsAre("git /work/lake", "issues /work/lake", "dependencies /work/lake"));
}

TEST_F(RepositorySections_Refresh, OfTheCombinedHeaderLeavesOutWhatIsNotThere) {
    RepositorySections::Callbacks callbacks = allCallbacks();
    callbacks.onRefreshIssues = nullptr;
    makeSections(callbacks);
    flags = flagsOf(DomainMode::combined);
    performOnHeader(RowActionKind::refresh);
    EXPECT_THAT(calls, ElementsAre("git /work/lake", "dependencies /work/lake"));
}

TEST_F(RepositorySections_Refresh, InProgressIsNotAskedForAgain) {
    flags.gitReloadInProgress = true;
    performOnHeader(RowActionKind::refresh);
    performOnTitled("Branches", RowActionKind::refreshGit);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(RepositorySections_Refresh, OfASubsectionCallsItsOwn) {
    performOnTitled("Branches", RowActionKind::refreshGit);
    performOnTitled("Issues", RowActionKind::refreshIssues);
    performOnTitled("Pull Requests", RowActionKind::refreshIssues);
    EXPECT_THAT(calls, ElementsAre("git /work/lake", "issues /work/lake", "issues /work/lake"));
}

TEST_F(RepositorySections_Refresh, FastForwardIsCalledOnlyWhereItIsOffered) {
    performOnHeader(RowActionKind::sync);
    EXPECT_THAT(calls, IsEmpty());
    repository.syncStatus = GitSyncStatus::Behind{"origin/main", 2};
    performOnHeader(RowActionKind::sync);
    EXPECT_THAT(calls, ElementsAre("sync /work/lake"));
}

TEST_F(RepositorySections_Refresh, WhatTheContentDoesNotOfferIsNotDone) {
    perform("/work/lake\nnowhere", RowActionKind::toggle);
    perform("/work/lake\nbranches", RowActionKind::refreshIssues);
    perform("/work/lake\nbranches", RowActionKind::toggle, 1);
    perform("/work/lake\nbranches\nmain", RowActionKind::toggle);
    performOnHeader(RowActionKind::toggle);
    performOnHeader(RowActionKind::refreshGit);
    performOnHeader(RowActionKind::discard);
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_THAT(changes, IsEmpty());
}

using RepositorySections_StoredStates = RepositorySectionsHarness;

TEST_F(RepositorySections_StoredStates, AreReadOnceForAllThatIsAskedForInATurnOfTheLoop) {
    const int before = defaults.dataReadCount();
    for (int index = 0; index < 10; ++index) sections->stateOf("/work/" + std::to_string(index));
    EXPECT_EQ(defaults.dataReadCount() - before, 2);  // branches and subsections
}

TEST_F(RepositorySections_StoredStates, AreReadAgainInALaterTurn) {
    sections->stateOf("/work/lake");
    simulation.runUntilIdle();
    const RepositorySectionExpansionStore store{defaults};  // that of another view
    store.saveDictionaryState({{"/work/river", {{"remote", true}}}},
                              store.persistedSubsectionExpansionKey);
    EXPECT_TRUE(sections->stateOf("/work/river").showRemoteSection);
}

TEST_F(RepositorySections_StoredStates, AreReadAgainAfterAChangeInTheSameTurn) {
    repository.remoteBranches = {"origin/fix"};
    performOnTitled("Remote", RowActionKind::toggle);
    sections->forget(repository.path);
    EXPECT_TRUE(state().showRemoteSection);
}

}  // namespace
}  // namespace tarnbeck::testing
