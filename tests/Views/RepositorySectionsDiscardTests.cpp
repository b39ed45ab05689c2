#include "RepositorySectionsHarness.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr std::size_t cancel = 0;
constexpr std::size_t confirm = 1;

class RepositorySections_Discard : public RepositorySectionsHarness {
  protected:
    RepositorySections_Discard() {
        repository.uncommittedChanges = modifiedFiles(2);
        performOnTitled("main", RowActionKind::toggle);
        changes.clear();
    }

    void ask(std::string_view title) { performOnTitled(title, RowActionKind::discard); }
    void discard(std::string_view title) {
        ask(title);
        sections->answerAlert(confirm);
    }
    // A new snapshot has come.
    void scanned(const ImmutableList<FileChange>& uncommittedChanges) {
        repository.uncommittedChanges = uncommittedChanges;
        sections->repositoryChanged(repository);
    }

    const std::string first = "src/file1.cpp";
    const std::string second = "src/file2.cpp";
};

// --- The question ---

TEST_F(RepositorySections_Discard, AsksFirst) {
    ask(first);
    EXPECT_EQ(sections->alert(),
              (ViewAlert{.title = "Discard changes?",
                         .message = "Discard all uncommitted changes for file1.cpp?",
                         .buttons = {{"Cancel", ViewAlert::Role::cancel},
                                     {"Discard", ViewAlert::Role::destructive}}}));
    EXPECT_THAT(changes, ElementsAre(""));
    simulation.runUntilIdle();
    EXPECT_THAT(discarded, IsEmpty());
}

TEST_F(RepositorySections_Discard, QuestionNamesTheFileAsItIs) {
    repository.uncommittedChanges = {{"M", R"("my folder/caf\303\251.txt")"}};
    ask("my folder/café.txt");
    EXPECT_EQ(sections->alert()->message, "Discard all uncommitted changes for café.txt?");
}

TEST_F(RepositorySections_Discard, CancelledChangesNothing) {
    ask(first);
    sections->answerAlert(cancel);
    simulation.runUntilIdle();
    EXPECT_EQ(sections->alert(), std::nullopt);
    EXPECT_THAT(discarded, IsEmpty());
    EXPECT_THAT(titles(), Contains(first));
}

TEST_F(RepositorySections_Discard, AskedTwiceIsOneQuestion) {
    ask(first);
    ask(first);
    sections->answerAlert(cancel);
    EXPECT_EQ(sections->alert(), std::nullopt);
}

TEST_F(RepositorySections_Discard, QuestionsAboutTwoFilesComeOneAfterTheOther) {
    ask(first);
    ask(second);
    EXPECT_EQ(sections->alert()->message, "Discard all uncommitted changes for file1.cpp?");
    sections->answerAlert(confirm);
    EXPECT_EQ(sections->alert()->message, "Discard all uncommitted changes for file2.cpp?");
    sections->answerAlert(cancel);
    simulation.runUntilIdle();
    EXPECT_THAT(discarded, ElementsAre("/work/lake src/file1.cpp M"));
}

TEST_F(RepositorySections_Discard, ButtonThatIsNotThereIsNoAnswer) {
    sections->answerAlert(confirm);
    ask(first);
    sections->answerAlert(2);
    EXPECT_NE(sections->alert(), std::nullopt);
}

TEST_F(RepositorySections_Discard, QuestionGoesWhenItsChangeHasGone) {
    ask(first);
    scanned({{"M", second}});
    EXPECT_EQ(sections->alert(), std::nullopt);
}

TEST_F(RepositorySections_Discard, QuestionStaysWhileItsChangeIsThere) {
    ask(first);
    scanned({{"M", first}});
    EXPECT_NE(sections->alert(), std::nullopt);
}

TEST_F(RepositorySections_Discard, QuestionGoesWithItsRepository) {
    ask(first);
    sections->forget(repository.path);
    EXPECT_EQ(sections->alert(), std::nullopt);
}

// --- Discarding ---

TEST_F(RepositorySections_Discard, RowIsHiddenAtOnceAndGitIsAskedElsewhere) {
    discard(first);
    EXPECT_THAT(titles(), Not(Contains(first)));
    EXPECT_THAT(titles(), Contains(second));
    EXPECT_THAT(discarded, IsEmpty());
    simulation.runUntilIdle();
    EXPECT_THAT(discarded, ElementsAre("/work/lake src/file1.cpp M"));
}

TEST_F(RepositorySections_Discard, NameIsPassedOnAsGitPrintedIt) {
    repository.uncommittedChanges = {{"??", R"("my file.txt")"}};
    discard("my file.txt");
    simulation.runUntilIdle();
    EXPECT_THAT(discarded, ElementsAre(R"(/work/lake "my file.txt" ??)"));
}

TEST_F(RepositorySections_Discard, OfAWorktreesChangeRunsInTheWorktree) {
    repository.branches = {{"fix", false}, {"main", true}};
    repository.worktrees = {
        {.path = "/work/lake-fix", .branch = "fix", .changes = {{"D", "gone.txt"}}}};
    perform("/work/lake\nbranches\nfix", RowActionKind::toggle);
    discard("gone.txt");
    simulation.runUntilIdle();
    EXPECT_THAT(discarded, ElementsAre("/work/lake-fix gone.txt D"));
    EXPECT_THAT(calls, ElementsAre("git /work/lake"));
}

TEST_F(RepositorySections_Discard, SuccessRefreshesGitAndKeepsTheRowHidden) {
    discard(first);
    simulation.runUntilIdle();
    EXPECT_THAT(calls, ElementsAre("git /work/lake"));
    EXPECT_EQ(sections->alert(), std::nullopt);
    EXPECT_THAT(titles(), Not(Contains(first)));
}

TEST_F(RepositorySections_Discard, SuccessAsksForAFullRefreshWhereGitAloneCantBeRefreshed) {
    RepositorySections::Callbacks callbacks = allCallbacks();
    callbacks.onRefreshGit = nullptr;
    makeSections(callbacks);
    discard(first);
    simulation.runUntilIdle();
    EXPECT_THAT(calls, ElementsAre("request"));
}

TEST_F(RepositorySections_Discard, FailureBringsTheRowBackWithTheAlertOnIt) {
    discardError = "fatal: Unable to create index.lock\nanother git runs";
    discard(first);
    changes.clear();
    simulation.runUntilIdle();
    EXPECT_THAT(titles(), Contains(first));
    EXPECT_EQ(sections->alert(),
              (ViewAlert{.title = "Discard failed",
                         .message = "fatal: Unable to create index.lock\nanother git runs",
                         .buttons = {{"OK", ViewAlert::Role::plain}}}));
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_THAT(changes, ElementsAre("", "/work/lake"));
}

TEST_F(RepositorySections_Discard, FailureThatWasReadCanBeTriedAgain) {
    discardError = "no";
    discard(first);
    simulation.runUntilIdle();
    sections->answerAlert(0);
    EXPECT_EQ(sections->alert(), std::nullopt);
    discardError = std::nullopt;
    discard(first);
    simulation.runUntilIdle();
    EXPECT_EQ(discarded.size(), 2U);
    EXPECT_THAT(calls, ElementsAre("git /work/lake"));
}

TEST_F(RepositorySections_Discard, TwoFailuresAreBothTold) {
    discardError = "no";
    discard(first);
    discard(second);
    simulation.runUntilIdle();
    sections->answerAlert(0);
    EXPECT_NE(sections->alert(), std::nullopt);
    sections->answerAlert(0);
    EXPECT_EQ(sections->alert(), std::nullopt);
}

TEST_F(RepositorySections_Discard, AskedAgainWhileItRunsIsOneRun) {
    const SectionContent before = content();
    const std::string row = rowTitled(before.rows, first).id;
    for (int round = 0; round < 2; ++round) {
        sections->perform({before, flags, row, RowActionKind::discard});
        sections->answerAlert(confirm);
    }
    simulation.runUntilIdle();
    EXPECT_EQ(discarded.size(), 1U);
}

// --- What becomes of it later ---

TEST_F(RepositorySections_Discard, IsForgottenWhenTheNextSnapshotHasNoSuchChange) {
    discard(first);
    simulation.runUntilIdle();
    scanned({{"M", second}});
    EXPECT_THAT(state().discards, IsEmpty());
    scanned(modifiedFiles(2));
    EXPECT_THAT(titles(), Contains(first));
}

TEST_F(RepositorySections_Discard, SnapshotFromBeforeDoesNotBringTheRowBack) {
    discard(first);
    simulation.runUntilIdle();
    scanned(modifiedFiles(2));
    EXPECT_THAT(titles(), Not(Contains(first)));
}

TEST_F(RepositorySections_Discard, ChangeThatSnapshotsStillHaveLongAfterwardsIsShownAgain) {
    discard(first);
    simulation.advance(10s);
    scanned(modifiedFiles(2));
    EXPECT_THAT(titles(), Contains(first));
}

TEST_F(RepositorySections_Discard, UnderWayIsRememberedHoweverLongItTakes) {
    discard(first);
    simulation.loop.hold(60s);
    scanned({{"M", second}});
    scanned(modifiedFiles(2));
    EXPECT_THAT(titles(), Not(Contains(first)));
}

TEST_F(RepositorySections_Discard, OfARepositoryThatHasGoneMeanwhileEndsQuietly) {
    discardError = "no";
    discard(first);
    sections->forget(repository.path);
    changes.clear();
    simulation.runUntilIdle();
    EXPECT_EQ(discarded.size(), 1U);
    EXPECT_EQ(sections->alert(), std::nullopt);
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_THAT(changes, IsEmpty());
}

TEST_F(RepositorySections_Discard, OfAViewThatHasGoneMeanwhileEndsQuietly) {
    discard(first);
    sections.reset();
    simulation.runUntilIdle();
    EXPECT_EQ(discarded.size(), 1U);
    EXPECT_THAT(calls, IsEmpty());
}

}  // namespace
}  // namespace tarnbeck::testing
