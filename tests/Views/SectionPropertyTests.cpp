// What holds for every repository, state and flags, tried on many that are made at random.
#include <random>
#include <set>

#include "SectionFixture.h"
#include "Symbol.h"
#include "Text.h"

namespace tarnbeck::testing {
namespace {

// A repository with something of everything, now more and now less of it.
class RandomSection {
  public:
    explicit RandomSection(unsigned seed) : random_(seed) {
        makeRepository();
        makeFlags();
        state = {.showBranches = chance(),
                 .showWorktrees = chance(),
                 .showRemoteSection = chance(),
                 .showTagsSection = chance(),
                 .showStashesSection = chance(),
                 .showIssuesSection = chance(),
                 .showPullRequestsSection = chance()};
        for (const GitBranch& branch : repository.branches) {
            state.branchChangesExpanded[branch.name] = chance();
        }
        discardSome();
    }

    SectionInput input() const { return {repository, state, flags}; }

    GitRepository repository;
    SectionState state;
    SectionFlags flags;

  private:
    int upTo(int limit) { return std::uniform_int_distribution(0, limit)(random_); }
    bool chance() { return upTo(1) == 1; }

    template <class Make>
    auto some(int limit, Make make) {
        std::vector<decltype(make(0))> items;
        const int count = upTo(limit);
        for (int number = 1; number <= count; ++number) items.push_back(make(number));
        return items;
    }

    ImmutableList<FileChange> changes() {
        constexpr std::string_view statuses[] = {"M", "A", "D", "??", "UU", "R", "MM"};
        return some(chance() ? 30 : 3, [&](int number) {
            return FileChange{std::string(statuses[static_cast<std::size_t>(upTo(6))]),
                              fmt::format("caf\xE9/{}", number)};
        });
    }

    void makeRepository() {
        repository = calmRepository("/work/caf\xE9");
        repository.branches = some(4, [&](int number) {
            return GitBranch{fmt::format("branch{}", number), number == 2};
        });
        repository.worktrees = some(5, [&](int number) {
            GitWorktree worktree{.path = fmt::format("/work/tree{}", number), .changes = changes()};
            if (chance()) worktree.branch = fmt::format("branch{}", upTo(4));
            if (chance()) worktree.commitHash = "0123456789";
            worktree.isMainWorktree = number == 1;
            worktree.isBare = upTo(5) == 0;
            return worktree;
        });
        repository.remoteBranches =
            some(14, [](int number) { return fmt::format("origin/b{}", number); });
        repository.tags = some(14, [](int number) { return fmt::format("v{}", number); });
        repository.uncommittedChanges = changes();
        repository.stashes = some(3, [](int number) {
            return GitStash{fmt::format("stash@{{{}}}", number), number == 1 ? "" : "work"};
        });
        repository.stashCount = upTo(3);
        repository.isDetachedHead = chance();
        if (chance()) {
            repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
        }
        repository.issues = some(30, [&](int number) { return numberedIssue(number); });
        repository.pullRequests = some(30, [&](int number) { return numberedPullRequest(number); });
    }

    void makeFlags() {
        constexpr DomainMode domains[] = {DomainMode::git, DomainMode::issues,
                                          DomainMode::dependencies, DomainMode::combined};
        flags = flagsOf(domains[upTo(3)]);
        flags.isExpanded = upTo(5) > 0;
        for (bool SectionFlags::*flag :
             {&SectionFlags::canCollapse, &SectionFlags::showRemotes, &SectionFlags::showTags,
              &SectionFlags::showIssues, &SectionFlags::issueScanInProgress,
              &SectionFlags::issueReloadInProgress, &SectionFlags::dependencyReloadInProgress,
              &SectionFlags::gitReloadInProgress, &SectionFlags::canRefreshIssues,
              &SectionFlags::canRefreshDependencies, &SectionFlags::canRefreshGit,
              &SectionFlags::canSyncRepo}) {
            flags.*flag = chance();
        }
        if (chance()) flags.searchHighlight = "1";
    }

    void discardSome() {
        for (const Row& row : sectionContent(input()).rows) {
            if (row.kind == Row::Kind::fileChange && upTo(3) == 0) {
                const bool isDiscarding = chance();
                state.discards[row.id] = {isDiscarding, isDiscarding || chance()};
            }
        }
    }

    std::mt19937 random_;
};

template <class Check>
void onMany(Check check) {
    for (unsigned seed = 0; seed < 500; ++seed) {
        SCOPED_TRACE(seed);
        check(RandomSection(seed));
        if (::testing::Test::HasFailure()) return;
    }
}

TEST(SectionProperties, KindsAreThoseOfTheRows) {
    onMany([](const RandomSection& section) {
        std::vector<Row::Kind> kinds;
        for (const Row& row : sectionContent(section.input()).rows) kinds.push_back(row.kind);
        EXPECT_EQ(sectionRowKinds(section.input()), kinds);
    });
}

TEST(SectionProperties, IdsAreUniqueAndBeginWithTheRepository) {
    onMany([](const RandomSection& section) {
        std::set<std::string> ids;
        for (const Row& row : sectionContent(section.input()).rows) {
            EXPECT_TRUE(row.id.starts_with(section.repository.path + "\n")) << row.id;
            EXPECT_TRUE(ids.insert(row.id).second) << row.id;
        }
    });
}

TEST(SectionProperties, SymbolsAreThoseThatAreDrawn) {
    const auto isDrawn = [](std::string_view name) { return name.empty() || isSymbol(name); };
    onMany([&](const RandomSection& section) {
        const SectionContent content = sectionContent(section.input());
        EXPECT_TRUE(isSymbol(content.header.statusIcon));
        for (const RowAction& action : content.header.actions) EXPECT_TRUE(isDrawn(action.symbol));
        for (const Row& row : content.rows) {
            EXPECT_TRUE(isDrawn(row.symbol)) << row.symbol;
            for (const RowAction& action : row.actions) EXPECT_TRUE(isSymbol(action.symbol));
        }
    });
}

TEST(SectionProperties, EveryRowAndActionHasAName) {
    onMany([](const RandomSection& section) {
        const SectionContent content = sectionContent(section.input());
        EXPECT_FALSE(content.header.accessibleName.empty());
        for (const RowAction& action : content.header.actions) EXPECT_FALSE(action.help.empty());
        for (const Row& row : content.rows) {
            EXPECT_FALSE(row.accessibleName.empty()) << row.id;
            EXPECT_FALSE(row.click && row.click->help.empty());
            for (const RowAction& action : row.actions) EXPECT_FALSE(action.help.empty());
        }
    });
}

TEST(SectionProperties, WhatIsShownIsUtf8) {
    onMany([](const RandomSection& section) {
        const SectionContent content = sectionContent(section.input());
        EXPECT_TRUE(isValidUtf8(content.header.name + content.header.accessibleName));
        for (const Row& row : content.rows) {
            EXPECT_TRUE(isValidUtf8(row.title + row.accessibleName + row.help)) << row.title;
        }
    });
}

TEST(SectionProperties, RowsBelowASubsectionAreThereOnlyWhileItIsOpen) {
    onMany([](const RandomSection& section) {
        bool isOpen = false;
        for (const Row& row : sectionContent(section.input()).rows) {
            if (row.kind == Row::Kind::subsection) isOpen = *row.isExpanded;
            EXPECT_TRUE(isOpen || row.depth == 0) << row.id;
        }
    });
}

TEST(SectionProperties, ClosedSectionHasNoRows) {
    onMany([](RandomSection section) {
        section.flags.isExpanded = false;
        EXPECT_TRUE(sectionContent(section.input()).rows.empty());
    });
}

}  // namespace
}  // namespace tarnbeck::testing
