// The figures and the line that stand beside a repository.
#include "DependencyStatus.h"

namespace tarnbeck {
namespace {

using Type = DependencyUpdateType;
using Health = DependencyHealth;
using Results = std::vector<DependencyEcosystemResult>;
using ::testing::Optional;

constexpr auto asksForInstall = "Local install lags behind. Run install to sync.";

DependencyEcosystemResult resultWith(Health status, std::vector<std::pair<int, Type>> updates = {},
                                     std::optional<std::string> message = std::nullopt) {
    std::vector<DependencyUpdate> all;
    for (const auto& [count, type] : updates) {
        all.insert(all.end(), static_cast<std::size_t>(count), {.updateType = type});
    }
    return {.manager = "npm",
            .status = status,
            .updates = std::move(all),
            .message = std::move(message)};
}

std::optional<std::string> textOf(Results results) {
    return DependencySummary{.ecosystems = std::move(results)}.inlineSummary();
}

TEST(DependencyHeadline_OfAResult, IsItsActionableUpdates) {
    EXPECT_EQ(resultWith(Health::updatesAvailable, {{3, Type::minor}, {2, Type::blocked}})
                  .headlineCount(),
              3);
}

TEST(DependencyHeadline_OfAResult, IsElseItsConstraints) {
    EXPECT_EQ(resultWith(Health::constraints, {{1, Type::constrained}, {2, Type::blocked}})
                  .headlineCount(),
              3);
}

TEST(DependencyHeadline_OfAResult, IsElseOneForANeededInstall) {
    EXPECT_EQ(resultWith(Health::syncNeeded).headlineCount(), 1);
    EXPECT_EQ(resultWith(Health::upToDate).headlineCount(), 0);
    EXPECT_EQ(resultWith(Health::upToDate, {}, asksForInstall).headlineCount(), 0);
}

TEST(DependencyHeadline_OfASummary, IsItsActionableUpdates) {
    const DependencySummary summary{
        .ecosystems = {
            resultWith(Health::updatesAvailable, {{2, Type::unknown}}),
            resultWith(Health::updatesAvailable, {{1, Type::major}, {4, Type::blocked}})}};
    EXPECT_EQ(summary.headlineCount(), 3);
}

TEST(DependencyHeadline_OfASummary, IsElseItsConstraints) {
    const DependencySummary summary{
        .ecosystems = {resultWith(Health::constraints, {{2, Type::constrained}}),
                       resultWith(Health::syncNeeded)}};
    EXPECT_EQ(summary.headlineCount(), 2);
}

TEST(DependencyHeadline_OfASummary, IsElseItsProjectsThatNeedAnInstall) {
    const DependencySummary summary{.ecosystems = {resultWith(Health::syncNeeded),
                                                   resultWith(Health::upToDate, {}, asksForInstall),
                                                   resultWith(Health::syncNeeded)}};
    EXPECT_EQ(summary.headlineCount(), 2);
}

TEST(DependencyHeadline_OfASummary, IsZeroWhereOnlyAMessageTellsOfTheNeededInstall) {
    const DependencySummary summary{
        .ecosystems = {resultWith(Health::upToDate, {}, asksForInstall)}};
    EXPECT_EQ(summary.headlineCount(), 0);
    EXPECT_EQ(summary.status(), Health::syncNeeded);
}

TEST(DependencyHeadline_OfASummary, OneErrorBesideTenUpdatesStillCountsThem) {
    const DependencySummary summary{
        .ecosystems = {resultWith(Health::error),
                       resultWith(Health::updatesAvailable, {{10, Type::patch}})}};
    EXPECT_EQ(summary.headlineCount(), 10);
    EXPECT_EQ(summary.status(), Health::error);
    EXPECT_THAT(summary.inlineSummary(), Optional(std::string("dependency check failed")));
}

TEST(DependencyHeadline_OfASummary, CountsMajorUpdatesOfAllResults) {
    const DependencySummary summary{
        .ecosystems = {resultWith(Health::updatesAvailable, {{2, Type::major}, {1, Type::minor}}),
                       resultWith(Health::updatesAvailable, {{1, Type::major}})}};
    EXPECT_EQ(summary.majorUpdateCount(), 3);
}

TEST(DependencyLine, WithoutEcosystemsIsAbsentWhetherCheckedOrNot) {
    EXPECT_EQ(DependencySummary{}.inlineSummary(), std::nullopt);
    EXPECT_EQ(DependencySummary{}.headlineCount(), 0);
    const DependencySummary checked{.checkedAt = Date{}};
    EXPECT_EQ(checked.inlineSummary(), std::nullopt);
    EXPECT_EQ(checked.status(), Health::notApplicable);
    EXPECT_EQ(checked.headlineCount(), 0);
}

TEST(DependencyLine, OfEachStatusThatIsOneSentence) {
    EXPECT_EQ(textOf({resultWith(Health::checking)}), "checking dependencies…");
    EXPECT_EQ(textOf({resultWith(Health::upToDate)}), "dependencies up to date");
    EXPECT_EQ(textOf({resultWith(Health::syncNeeded)}), "install sync needed");
    EXPECT_EQ(textOf({resultWith(Health::unknown)}), "dependency state unknown");
    EXPECT_EQ(textOf({resultWith(Health::error)}), "dependency check failed");
}

TEST(DependencyLine, OfUpdatesTellsMajorsBlockedAndTheNeededInstall) {
    EXPECT_EQ(textOf({resultWith(Health::updatesAvailable,
                                 {{3, Type::minor}, {2, Type::major}, {1, Type::blocked}},
                                 asksForInstall)}),
              "5 updateable (2 major) · 1 blocked · sync needed");
}

TEST(DependencyLine, OfUpdatesTellsBlockedBeforeLimited) {
    EXPECT_EQ(textOf({resultWith(Health::updatesAvailable,
                                 {{1, Type::patch}, {2, Type::constrained}, {3, Type::blocked}})}),
              "1 updateable · 3 blocked · 2 limited");
}

TEST(DependencyLine, OfUpdatesWithoutMajorsLeavesThemOut) {
    EXPECT_EQ(textOf({resultWith(Health::updatesAvailable, {{1, Type::unknown}})}), "1 updateable");
}

TEST(DependencyLine, OfConstraintsTellsBlockedBeforeLimited) {
    EXPECT_EQ(textOf({resultWith(Health::constraints, {{3, Type::constrained}})}), "3 limited");
    EXPECT_EQ(textOf({resultWith(Health::constraints, {{3, Type::constrained}, {1, Type::blocked}}),
                      resultWith(Health::syncNeeded)}),
              "1 blocked · 3 limited · sync needed");
}

TEST(DependencyLine, OfBlockedUpdatesOnlyIsAConstraintWhateverTheResultCallsItself) {
    const DependencySummary summary{
        .ecosystems = {resultWith(Health::updatesAvailable, {{2, Type::blocked}})}};
    EXPECT_EQ(summary.status(), Health::constraints);
    EXPECT_EQ(summary.inlineSummary(), "2 blocked");
}

TEST(DependencyLine, OfAnUpToDateResultThatAsksForAnInstallIsANeededInstall) {
    EXPECT_EQ(textOf({resultWith(Health::upToDate, {}, asksForInstall)}), "install sync needed");
}

}  // namespace
}  // namespace tarnbeck
