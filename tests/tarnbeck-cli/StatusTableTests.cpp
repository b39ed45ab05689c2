#include <set>
#include <sstream>

#include "Snapshots.h"
#include "StatusTable.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

using namespace tarnbeck::testing;

const TableStyle plain;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> tableLines(const std::vector<GitRepository>& repositories,
                                    const TableStyle& style = plain) {
    std::vector<RepositorySnapshot> snapshots;
    for (const GitRepository& repository : repositories) snapshots.push_back(snapshot(repository));
    return linesOf(statusTable(snapshots, style));
}

std::string tableLine(const GitRepository& repository, const TableStyle& style = plain) {
    return tableLines({repository}, style).at(0);
}

// The columns before the first appearance of `text`.
std::size_t columnOf(const std::string& text, const std::string& line) {
    return displayWidth(line.substr(0, line.find(text)));
}

GitRepository ahead(const std::string& path) {
    return withSync(cleanRepository(path), GitSyncStatus::Ahead{.upstream = "o/main", .count = 2});
}
GitRepository behind(const std::string& path) {
    return withSync(cleanRepository(path), GitSyncStatus::Behind{.upstream = "o/main", .count = 3});
}
GitRepository diverged(const std::string& path) {
    return withSync(cleanRepository(path),
                    GitSyncStatus::Diverged{.upstream = "o/main", .ahead = 1, .behind = 2});
}
GitRepository misconfigured(const std::string& path) {
    GitRepository repository = cleanRepository(path);
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    return repository;
}

TEST(StatusTable_Rows, ShowIconNameBranchBadgeAndSummary) {
    EXPECT_EQ(tableLine(withChanges(ahead("/r/name"), 1)),
              "✎ name  main  Ahead 2  1 change · ahead 2");
}

TEST(StatusTable_Rows, EndWithoutBlanks) {
    EXPECT_EQ(tableLines({cleanRepository("/r/a"), withChanges(cleanRepository("/r/b"), 1)}).at(1),
              "✓ a  main  No upstream");
}

TEST(StatusTable_Rows, CellsStandBelowEachOther) {
    const auto lines = tableLines({withChanges(cleanRepository("/r/a"), 1),
                                   withChanges(withBranch(ahead("/r/longer"), "topic/x"), 2)});
    EXPECT_EQ(lines.at(0), "✎ a       main     No upstream  1 change");
    EXPECT_EQ(lines.at(1), "✎ longer  topic/x  Ahead 2      1 branch · 2 changes · ahead 2");
}

TEST(StatusTable_Rows, MissingBranchLeavesItsPlaceEmpty) {
    GitRepository repository = cleanRepository("/r/a");
    repository.currentBranch.reset();
    const auto lines = tableLines({cleanRepository("/r/b"), repository});
    EXPECT_EQ(lines.at(1), "✓ a        No upstream");
}

TEST(StatusTable_Rows, NoRepositoryGivesNoLine) {
    EXPECT_EQ(statusTable({}, plain), "");
}

TEST(StatusTable_Order, RedOrangeYellowGreen) {
    const auto lines = tableLines({cleanRepository("/r/green"), behind("/r/yellow"),
                                   ahead("/r/orange"), withChanges(cleanRepository("/r/red"), 1)});
    EXPECT_THAT(lines, ::testing::ElementsAre(
                           ::testing::HasSubstr("red"), ::testing::HasSubstr("orange"),
                           ::testing::HasSubstr("yellow"), ::testing::HasSubstr("green")));
}

TEST(StatusTable_Order, GivenOrderHoldsAmongEquals) {
    const auto lines = tableLines(
        {ahead("/r/a"), cleanRepository("/r/b"), misconfigured("/r/c"), cleanRepository("/r/d")});
    EXPECT_THAT(lines,
                ::testing::ElementsAre(::testing::HasSubstr(" a "), ::testing::HasSubstr(" c "),
                                       ::testing::HasSubstr(" b "), ::testing::HasSubstr(" d ")));
}

TEST(StatusTable_Icons, EachSymbolHasItsOwnSingleColumnCharacter) {
    const std::vector<GitRepository> oneOfEach = {misconfigured("/r/a"),
                                                  detached(cleanRepository("/r/a")),
                                                  withChanges(cleanRepository("/r/a"), 1),
                                                  ahead("/r/a"),
                                                  behind("/r/a"),
                                                  diverged("/r/a"),
                                                  cleanRepository("/r/a")};
    std::set<std::string_view> symbols;
    std::set<std::string_view> characters;
    for (const GitRepository& repository : oneOfEach) {
        symbols.insert(repository.statusIcon());
        characters.insert(iconCharacter(repository));
        EXPECT_EQ(displayWidth(iconCharacter(repository)), 1U) << repository.statusIcon();
    }
    EXPECT_EQ(symbols.size(), 7U);
    EXPECT_EQ(characters.size(), 7U);
}

TEST(StatusTable_Icons, FollowTheStatusIcon) {
    EXPECT_EQ(iconCharacter(misconfigured("/r/a")), "▲");
    EXPECT_EQ(iconCharacter(detached(cleanRepository("/r/a"))), "⬢");
    EXPECT_EQ(iconCharacter(withChanges(ahead("/r/a"), 1)), "✎");
    EXPECT_EQ(iconCharacter(ahead("/r/a")), "↑");
    EXPECT_EQ(iconCharacter(behind("/r/a")), "↓");
    EXPECT_EQ(iconCharacter(diverged("/r/a")), "↔");
    EXPECT_EQ(iconCharacter(cleanRepository("/r/a")), "✓");
    EXPECT_EQ(iconCharacter(withBranch(cleanRepository("/r/a"), "topic")), "▲");
}

TEST(StatusTable_Colors, NoneWithoutBeingAsked) {
    EXPECT_THAT(tableLine(withChanges(ahead("/r/a"), 1)),
                ::testing::Not(::testing::HasSubstr("\033")));
    EXPECT_THAT(statusLine(ahead("/r/a"), plain), ::testing::Not(::testing::HasSubstr("\033")));
}

TEST(StatusTable_Colors, IconAndSummaryTakeTheStatusColor) {
    const TableStyle style{.color = true};
    EXPECT_EQ(tableLine(withChanges(cleanRepository("/r/a"), 1), style),
              "\033[31m✎\033[0m a  main  \033[2mNo upstream\033[0m  \033[31m1 change\033[0m");
    EXPECT_THAT(tableLine(ahead("/r/a"), style), ::testing::StartsWith("\033[38;5;208m↑\033[0m"));
    EXPECT_THAT(tableLine(behind("/r/a"), style), ::testing::StartsWith("\033[33m↓\033[0m"));
    EXPECT_THAT(tableLine(cleanRepository("/r/a"), style),
                ::testing::StartsWith("\033[32m✓\033[0m"));
}

TEST(StatusTable_Colors, ChangeNothingButTheColor) {
    const std::vector<GitRepository> repositories = {withChanges(cleanRepository("/r/a"), 1),
                                                     diverged("/r/longer name"), ahead("/r/c")};
    std::string colored;
    for (const auto& line : tableLines(repositories, {.color = true, .columns = 60})) {
        colored += line + "\n";
    }
    std::string stripped;
    for (std::size_t at = 0; at < colored.size(); ++at) {
        if (colored[at] == '\033')
            at = colored.find('m', at);
        else
            stripped += colored[at];
    }
    EXPECT_EQ(linesOf(stripped), tableLines(repositories, {.columns = 60}));
}

TEST(StatusTable_LongTexts, NameOfTwoHundredCharactersIsCutAndMarked) {
    const std::string line = tableLine(cleanRepository("/r/" + std::string(200, 'n')));
    EXPECT_EQ(line, "✓ " + std::string(31, 'n') + "…  main  No upstream");
}

TEST(StatusTable_LongTexts, LongBranchIsCutAndMarked) {
    const std::string line = tableLine(withBranch(cleanRepository("/r/a"), std::string(100, 'b')));
    EXPECT_THAT(line, ::testing::HasSubstr(" " + std::string(39, 'b') + "…  "));
}

class StatusTable_Terminals : public ::testing::TestWithParam<std::size_t> {};

TEST_P(StatusTable_Terminals, LinesFitFromTwentyFiveColumnsOn) {
    GitRepository crowded =
        withBranch(withChanges(diverged("/r/" + std::string(50, 'x')), 12), std::string(60, 'b'));
    crowded.stashCount = 3;
    const auto lines = tableLines(
        {crowded, cleanRepository("/r/日本語のとても長い名前のリポジトリー"), ahead("/r/a")},
        {.columns = GetParam()});
    for (const std::string& line : lines) EXPECT_LE(displayWidth(line), GetParam()) << line;
}

INSTANTIATE_TEST_SUITE_P(Widths, StatusTable_Terminals,
                         ::testing::Values(25, 30, 40, 60, 79, 80, 100, 120, 200));

TEST(StatusTable_Terminals, WhatFitsIsNotCut) {
    const GitRepository repository = withChanges(ahead("/r/name"), 1);
    EXPECT_EQ(tableLine(repository, {.columns = 80}), tableLine(repository));
}

TEST(StatusTable_Terminals, NarrowOneLosesTheBadgeThatTheSummaryRepeats) {
    const GitRepository repository = withChanges(ahead("/r/some-name"), 1);
    EXPECT_EQ(tableLine(repository, {.columns = 40}), "✎ some-name  main  1 change · ahead 2");
}

TEST(StatusTable_Terminals, BrokenWidthStillNamesTheRepository) {
    EXPECT_THAT(tableLine(ahead("/r/name"), {.columns = 1}), ::testing::StartsWith("↑ name"));
}

TEST(StatusTable_WideCharacters, KeepTheColumnsAligned) {
    const auto lines = tableLines({cleanRepository("/r/名前"), cleanRepository("/r/abcdef"),
                                   cleanRepository("/r/e\u0301te\u0301")});
    for (const std::string& line : lines) EXPECT_EQ(columnOf("main", line), 10U) << line;
}

TEST(StatusTable_WideCharacters, AreNeverCutInHalf) {
    const std::string line =
        tableLine(cleanRepository("/r/日本語のとても長い名前のリポジトリーです"));
    EXPECT_THAT(line, ::testing::StartsWith("✓ 日本語のとても長い名前のリポジ…  "));
    EXPECT_TRUE(isValidUtf8(line));
}

TEST(StatusTable_Names, ControlCharactersAreMadeHarmless) {
    const std::string line = tableLine(cleanRepository("/r/a\033[31mred\r\n\u202Eb"));
    EXPECT_EQ(line, "✓ a\uFFFD[31mred\uFFFD\uFFFD\uFFFDb  main  No upstream");
}

TEST(StatusTable_Names, BrokenUtf8IsMadeHarmless) {
    EXPECT_EQ(tableLine(cleanRepository("/r/a\xFF")), "✓ a\uFFFD  main  No upstream");
}

TEST(StatusTable_Names, JoinedEmojiStayWhole) {
    EXPECT_THAT(tableLine(cleanRepository("/r/👨\u200D👩")), ::testing::HasSubstr("👨\u200D👩"));
}

TEST(StatusTable_Names, EqualOnesHaveTheirFolderBeforeThem) {
    const auto lines = tableLines(
        {cleanRepository("/work/app"), cleanRepository("/play/app"), cleanRepository("/play/b")});
    EXPECT_THAT(lines, ::testing::ElementsAre(::testing::StartsWith("✓ work/app  "),
                                              ::testing::StartsWith("✓ play/app  "),
                                              ::testing::StartsWith("✓ b  ")));
}

TEST(StatusTable_Line, OfOneRepositoryHasTheSameCells) {
    EXPECT_EQ(statusLine(withChanges(ahead("/r/name"), 1), plain),
              "✎ name  main  Ahead 2  1 change · ahead 2");
    EXPECT_EQ(statusLine(cleanRepository("/r/name"), plain), "✓ name  main  No upstream");
}

TEST(StatusTable_Counts, TellWhatNeedsWorkWhatIsCleanAndWhatFailed) {
    EXPECT_EQ(statusCounts({snapshot(cleanRepository("/r/a")), snapshot(cleanRepository("/r/b")),
                            snapshot(withChanges(cleanRepository("/r/c"), 1)),
                            snapshot(detached(cleanRepository("/r/d")))},
                           1),
              "4 repositories · 2 need work · 2 clean · 1 could not be scanned");
}

TEST(StatusTable_Counts, OneIsSingular) {
    EXPECT_EQ(statusCounts({snapshot(withChanges(cleanRepository("/r/c"), 1))}, 0),
              "1 repository · 1 needs work");
}

TEST(StatusTable_Counts, LeaveOutWhatIsZero) {
    EXPECT_EQ(statusCounts({snapshot(cleanRepository("/r/a"))}, 0), "1 repository · 1 clean");
    EXPECT_EQ(statusCounts({}, 2), "0 repositories · 2 could not be scanned");
}

TEST(StatusTable_Counts, BehindButCleanCountsAsClean) {
    EXPECT_EQ(statusCounts({snapshot(behind("/r/a"))}, 0), "1 repository · 1 clean");
}

TEST(StatusTable_NothingFound, NamesTheFoldersAndTheWayOn) {
    const std::string text = nothingFoundText({"~/projects", "~/work"});
    EXPECT_THAT(text, ::testing::StartsWith("No repositories found below ~/projects, ~/work.\n"));
    EXPECT_THAT(text, ::testing::HasSubstr("tarnbeck-cli add PATH"));
    EXPECT_THAT(nothingFoundText({}), ::testing::StartsWith("No repositories found.\n"));
}

}  // namespace
}  // namespace tarnbeck::cli
