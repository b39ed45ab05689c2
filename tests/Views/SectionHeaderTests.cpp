#include "RepositorySectionHeader.h"
#include "SectionFixture.h"
#include "SectionOutline.h"

namespace tarnbeck::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

SectionHeader headerOf(const GitRepository& repository, const SectionFlags& flags) {
    return sectionContent({repository, SectionState{}, flags}).header;
}

std::vector<std::string> badgesOf(const GitRepository& repository, const SectionFlags& flags) {
    std::vector<std::string> badges;
    for (const StatusBadge& badge : headerOf(repository, flags).badges) {
        badges.push_back(fmt::format("{} {} {}", badge.title, badge.value, rawValue(badge.color)));
    }
    return badges;
}

std::vector<std::string> actionsOf(const GitRepository& repository, const SectionFlags& flags) {
    std::vector<std::string> actions;
    for (const RowAction& action : headerOf(repository, flags).actions) {
        actions.push_back(outline(action));
    }
    return actions;
}

GitRepository behindRepository() {
    GitRepository repository = calmRepository();
    repository.syncStatus = GitSyncStatus::Behind{"origin/main", 3};
    return repository;
}

GitRepository withDependencies(DependencyHealth health) {
    GitRepository repository = calmRepository();
    if (health == DependencyHealth::notApplicable) return repository;
    DependencyEcosystemResult result{.project = ".", .manager = "npm", .status = health};
    const bool isConstrained = health == DependencyHealth::constraints;
    if (isConstrained || health == DependencyHealth::updatesAvailable) {
        result.updates = {{.package = "react",
                           .currentVersion = "1.0.0",
                           .latestVersion = "1.1.0",
                           .updateType = isConstrained ? DependencyUpdateType::constrained
                                                       : DependencyUpdateType::minor}};
    }
    repository.dependencySummary.ecosystems = {result};
    return repository;
}

const std::string fastForward =
    "sync (arrow.triangle.2.circlepath) \"Fetch remote changes and fast-forward this repository\"";
const std::string refreshGit = "refresh (arrow.clockwise) \"Refresh git data for this repository\"";

// --- The name and what stands before it ---

TEST(SectionHeader, TellsHowItStandsOnlyWhereItCanCollapse) {
    SectionFlags flags = gitOnly();
    EXPECT_TRUE(headerOf(calmRepository(), flags).canCollapse);
    EXPECT_EQ(headerOf(calmRepository(), flags).accessibleName, "lake, Git Clean, expanded");
    flags.isExpanded = false;
    EXPECT_EQ(headerOf(calmRepository(), flags).accessibleName, "lake, Git Clean, collapsed");
    flags.canCollapse = false;
    EXPECT_EQ(headerOf(calmRepository(), flags).accessibleName, "lake, Git Clean");
}

TEST(SectionHeader, SymbolIsTheRepositorys) {
    GitRepository repository = calmRepository();
    repository.uncommittedChanges = modifiedFiles(1);
    const SectionHeader header = headerOf(repository, gitOnly());
    EXPECT_EQ(header.statusIcon, "pencil.circle.fill");
    EXPECT_EQ(header.statusColor, StatusColor::red);
}

TEST(SectionHeader, NameIsHighlightedWhereItContainsWhatIsSearchedFor) {
    SectionFlags flags = gitOnly();
    EXPECT_FALSE(headerOf(calmRepository(), flags).isNameHighlighted);
    flags.searchHighlight = "AK";
    EXPECT_TRUE(headerOf(calmRepository(), flags).isNameHighlighted);
    flags.searchHighlight = "river";
    EXPECT_FALSE(headerOf(calmRepository(), flags).isNameHighlighted);
}

TEST(SectionHeader, WithoutGitBadgeItsSymbolIsToldInWords) {
    const SectionFlags flags = flagsOf(DomainMode::issues);
    GitRepository repository = calmRepository();
    EXPECT_EQ(headerOf(repository, flags).accessibleName, "lake, clean, expanded");
    repository.branches = {{"fix", true}};
    EXPECT_EQ(headerOf(repository, flags).accessibleName, "lake, needs attention, expanded");
    repository.uncommittedChanges = modifiedFiles(1);
    EXPECT_EQ(headerOf(repository, flags).accessibleName, "lake, uncommitted changes, expanded");
    repository.isDetachedHead = true;
    EXPECT_EQ(headerOf(repository, flags).accessibleName, "lake, detached HEAD, expanded");
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    EXPECT_EQ(headerOf(repository, flags).accessibleName, "lake, git config issue, expanded");
}

TEST(SectionHeader, ArrowsAndAbbreviationsAreSpelledOutForThoseWhoHearThem) {
    GitRepository repository = calmRepository();
    repository.syncStatus = GitSyncStatus::Diverged{"origin/main", 2, 3};
    EXPECT_EQ(headerOf(repository, flagsOf(DomainMode::dependencies)).accessibleName,
              "lake, Sync Diverged, 2 ahead, 3 behind, Dependencies not applicable, expanded");
}

// --- The summary ---

TEST(SectionHeader_Summary, OfGitLeavesOutHowItStandsToTheUpstream) {
    for (const GitSyncStatus& status : {GitSyncStatus{GitSyncStatus::Ahead{"o/m", 2}},
                                        GitSyncStatus{GitSyncStatus::Behind{"o/m", 3}},
                                        GitSyncStatus{GitSyncStatus::Diverged{"o/m", 2, 3}}}) {
        GitRepository repository = calmRepository();
        repository.uncommittedChanges = modifiedFiles(1);
        repository.syncStatus = status;
        EXPECT_THAT(headerOf(repository, gitOnly()).summaryParts, ElementsAre("1 change"));
    }
}

TEST(SectionHeader_Summary, OfIssuesCountsAllWithoutSingular) {
    GitRepository repository = calmRepository();
    repository.uncommittedChanges = modifiedFiles(1);
    repository.issues = numbered(1, numberedIssue);
    repository.pullRequests = numbered(1, numberedPullRequest);
    EXPECT_THAT(headerOf(repository, flagsOf(DomainMode::issues)).summaryParts,
                ElementsAre("1 issues", "1 PRs"));
}

TEST(SectionHeader_Summary, OfIssuesIsEmptyWhereThereAreNone) {
    EXPECT_THAT(headerOf(calmRepository(), flagsOf(DomainMode::issues)).summaryParts, IsEmpty());
}

TEST(SectionHeader_Summary, OfDependenciesIsTheirInlineSummary) {
    const GitRepository repository = withDependencies(DependencyHealth::updatesAvailable);
    ASSERT_TRUE(repository.dependencySummary.inlineSummary());
    EXPECT_THAT(headerOf(repository, flagsOf(DomainMode::dependencies)).summaryParts,
                ElementsAre(*repository.dependencySummary.inlineSummary()));
}

TEST(SectionHeader_Summary, OfDependenciesIsEmptyWhereThereIsNothingToDependOn) {
    EXPECT_THAT(headerOf(calmRepository(), flagsOf(DomainMode::dependencies)).summaryParts,
                IsEmpty());
}

TEST(SectionHeader_Summary, CombinedIsThatOfGitAndThenOfDependencies) {
    GitRepository repository = withDependencies(DependencyHealth::updatesAvailable);
    repository.issues = numbered(1, numberedIssue);
    EXPECT_THAT(headerOf(repository, flagsOf(DomainMode::combined)).summaryParts,
                ElementsAre("1 issue", *repository.dependencySummary.inlineSummary()));
}

// --- Badges ---

TEST(SectionHeader_Badges, OfGitIsTheFirstThatHolds) {
    GitRepository repository = calmRepository();
    EXPECT_THAT(badgesOf(repository, gitOnly()), ElementsAre("Git Clean green"));
    repository.branches = {{"fix", true}};
    EXPECT_THAT(badgesOf(repository, gitOnly()), ElementsAre("Git Attention orange"));
    repository.uncommittedChanges = modifiedFiles(1);
    EXPECT_THAT(badgesOf(repository, gitOnly()), ElementsAre("Git Dirty red"));
    repository.isDetachedHead = true;
    EXPECT_THAT(badgesOf(repository, gitOnly()), ElementsAre("Git Detached red"));
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    EXPECT_THAT(badgesOf(repository, gitOnly()), ElementsAre("Git Config orange"));
}

TEST(SectionHeader_Badges, DetachedAndCleanRepositoryIsDetachedInRed) {
    GitRepository repository = calmRepository();
    repository.isDetachedHead = true;
    EXPECT_THAT(badgesOf(repository, gitOnly()), ElementsAre("Git Detached red"));
}

TEST(SectionHeader_Badges, OfSyncTellsOnlyWhatDiffersFromTheUpstream) {
    const auto badges = [](GitSyncStatus status) {
        GitRepository repository = calmRepository();
        repository.syncStatus = std::move(status);
        return badgesOf(repository, flagsOf(DomainMode::issues));
    };
    EXPECT_THAT(badges(GitSyncStatus::Ahead{"o/m", 2}), ElementsAre("Sync Ahead 2 orange"));
    EXPECT_THAT(badges(GitSyncStatus::Behind{"o/m", 3}), ElementsAre("Sync Behind 3 yellow"));
    EXPECT_THAT(badges(GitSyncStatus::Diverged{"o/m", 2, 3}),
                ElementsAre("Sync Diverged 2↑ 3↓ yellow"));
    EXPECT_THAT(badges(GitSyncStatus::UpToDate{"o/m"}), IsEmpty());
    EXPECT_THAT(badges(GitSyncStatus::NoUpstream{}), IsEmpty());
    EXPECT_THAT(badges(GitSyncStatus::Unknown{}), IsEmpty());
}

TEST(SectionHeader_Badges, OfDependenciesHasAWordAndAColorForEachStatus) {
    const auto badges = [](DependencyHealth health) {
        return badgesOf(withDependencies(health), flagsOf(DomainMode::dependencies));
    };
    EXPECT_THAT(badges(DependencyHealth::checking), ElementsAre("Deps Checking blue"));
    EXPECT_THAT(badges(DependencyHealth::upToDate), ElementsAre("Deps Up to date green"));
    EXPECT_THAT(badges(DependencyHealth::syncNeeded), ElementsAre("Deps Sync needed yellow"));
    EXPECT_THAT(badges(DependencyHealth::constraints), ElementsAre("Deps Constraints yellow"));
    EXPECT_THAT(badges(DependencyHealth::updatesAvailable), ElementsAre("Deps Updates orange"));
    EXPECT_THAT(badges(DependencyHealth::notApplicable), ElementsAre("Deps n/a secondary"));
    EXPECT_THAT(badges(DependencyHealth::unknown), ElementsAre("Deps Unknown gray"));
    EXPECT_THAT(badges(DependencyHealth::error), ElementsAre("Deps Error red"));
}

TEST(SectionHeader_Badges, StandInTheOrderGitSyncDependencies) {
    EXPECT_THAT(badgesOf(behindRepository(), flagsOf(DomainMode::combined)),
                ElementsAre("Git Clean green", "Sync Behind 3 yellow", "Deps n/a secondary"));
}

TEST(SectionHeader_Badges, InDependenciesThatOfSyncAndTheFastForwardStayWithoutThatOfGit) {
    const SectionFlags flags = flagsOf(DomainMode::dependencies);
    EXPECT_THAT(badgesOf(behindRepository(), flags),
                ElementsAre("Sync Behind 3 yellow", "Deps n/a secondary"));
    EXPECT_EQ(actionsOf(behindRepository(), flags).front(), fastForward);
}

// --- Actions ---

TEST(SectionHeader_Actions, FastForwardStandsBeforeTheRefresh) {
    EXPECT_THAT(actionsOf(behindRepository(), gitOnly()), ElementsAre(fastForward, refreshGit));
}

TEST(SectionHeader_Actions, FastForwardIsOfferedOnlyWhereNothingIsInItsWay) {
    const auto actions = [](auto change) {
        GitRepository repository = behindRepository();
        change(repository);
        return actionsOf(repository, gitOnly());
    };
    EXPECT_THAT(actions([](GitRepository& repository) {
                    repository.gitConfigurationIssue =
                        GitConfigurationIssue::coreBareWorktreeMismatch;
                }),
                ElementsAre(refreshGit));
    EXPECT_THAT(actions([](GitRepository& repository) { repository.isDetachedHead = true; }),
                ElementsAre(refreshGit));
    EXPECT_THAT(actions([](GitRepository& repository) {
                    repository.syncStatus = GitSyncStatus::Diverged{"o/m", 1, 3};
                }),
                ElementsAre(refreshGit));
    EXPECT_THAT(actions([](GitRepository& repository) {
                    repository.syncStatus = GitSyncStatus::Ahead{"o/m", 1};
                }),
                ElementsAre(refreshGit));
}

TEST(SectionHeader_Actions, BehindWithADirtyWorkTreeHasNoFastForward) {
    GitRepository repository = behindRepository();
    repository.uncommittedChanges = modifiedFiles(1);
    EXPECT_THAT(actionsOf(repository, gitOnly()), ElementsAre(refreshGit));
}

TEST(SectionHeader_Actions, FastForwardIsNotOfferedWhereNothingWouldDoIt) {
    SectionFlags flags = gitOnly();
    flags.canSyncRepo = false;
    EXPECT_THAT(actionsOf(behindRepository(), flags), ElementsAre(refreshGit));
}

TEST(SectionHeader_Actions, RefreshSaysWhatItRefreshesInTheDomain) {
    const auto help = [](DomainMode domain) {
        return headerOf(calmRepository(), flagsOf(domain)).actions.front().help;
    };
    EXPECT_EQ(help(DomainMode::git), "Refresh git data for this repository");
    EXPECT_EQ(help(DomainMode::issues), "Reload issues and pull requests");
    EXPECT_EQ(help(DomainMode::dependencies), "Refresh dependencies for this repository");
    EXPECT_EQ(help(DomainMode::combined),
              "Refresh git, issues, and dependencies for this repository");
}

struct DomainFlag {
    DomainMode domain;
    bool SectionFlags::*flag;
};

constexpr DomainFlag reloadOfDomain[] = {
    {DomainMode::git, &SectionFlags::gitReloadInProgress},
    {DomainMode::issues, &SectionFlags::issueReloadInProgress},
    {DomainMode::dependencies, &SectionFlags::dependencyReloadInProgress},
};
constexpr DomainFlag functionOfDomain[] = {
    {DomainMode::git, &SectionFlags::canRefreshGit},
    {DomainMode::issues, &SectionFlags::canRefreshIssues},
    {DomainMode::dependencies, &SectionFlags::canRefreshDependencies},
};

bool isInProgress(const SectionFlags& flags) {
    return headerOf(calmRepository(), flags).actions.front().isInProgress;
}

TEST(SectionHeader_Actions, RefreshIsInProgressWhileItsOwnDomainReloads) {
    for (const DomainFlag& reload : reloadOfDomain) {
        for (const DomainFlag& shown : reloadOfDomain) {
            SectionFlags flags = flagsOf(shown.domain);
            flags.*reload.flag = true;
            EXPECT_EQ(isInProgress(flags), reload.domain == shown.domain);
        }
    }
}

TEST(SectionHeader_Actions, CombinedRefreshIsInProgressWhileAnyReloads) {
    EXPECT_FALSE(isInProgress(flagsOf(DomainMode::combined)));
    for (const DomainFlag& reload : reloadOfDomain) {
        SectionFlags flags = flagsOf(DomainMode::combined);
        flags.*reload.flag = true;
        EXPECT_TRUE(isInProgress(flags));
    }
}

TEST(SectionHeader_Actions, RefreshInProgressStandsAlone) {
    SectionFlags flags = gitOnly();
    flags.gitReloadInProgress = true;
    EXPECT_THAT(actionsOf(behindRepository(), flags), ElementsAre(refreshGit + " in progress"));
}

TEST(SectionHeader_Actions, RefreshIsOfferedWhereItsFunctionIsThere) {
    for (const DomainFlag& function : functionOfDomain) {
        SectionFlags flags = flagsOf(function.domain);
        flags.*function.flag = false;
        EXPECT_THAT(headerOf(calmRepository(), flags).actions, IsEmpty());
    }
}

TEST(SectionHeader_Actions, CombinedRefreshIsOfferedWhereAnyFunctionIsThere) {
    SectionFlags none = flagsOf(DomainMode::combined);
    for (const DomainFlag& function : functionOfDomain) none.*function.flag = false;
    EXPECT_THAT(headerOf(calmRepository(), none).actions, IsEmpty());
    for (const DomainFlag& function : functionOfDomain) {
        SectionFlags flags = none;
        flags.*function.flag = true;
        EXPECT_EQ(headerOf(calmRepository(), flags).actions.size(), 1U);
    }
}

TEST(SectionHeader, DomainFollowsFromTheFlags) {
    for (const DomainMode domain :
         {DomainMode::git, DomainMode::issues, DomainMode::dependencies, DomainMode::combined}) {
        EXPECT_EQ(domainOf(flagsOf(domain)), domain);
    }
}

}  // namespace
}  // namespace tarnbeck::testing
