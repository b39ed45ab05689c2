#include "DependencyStatus.h"

namespace tarnbeck {
namespace {

using Type = DependencyUpdateType;
using Health = DependencyHealth;

template <class Enumeration>
std::vector<std::string> wordsOf() {
    std::vector<std::string> words;
    for (const auto& [value, word] : rawValues(Enumeration{})) words.emplace_back(word);
    return words;
}

TEST(DependencyWords, EcosystemsStandInTheirOrder) {
    EXPECT_THAT(wordsOf<DependencyEcosystem>(), ::testing::ElementsAre("Node", "Python"));
}

TEST(DependencyWords, HealthsStandInTheirOrder) {
    EXPECT_THAT(wordsOf<Health>(),
                ::testing::ElementsAre("checking", "upToDate", "syncNeeded", "constraints",
                                       "updatesAvailable", "notApplicable", "unknown", "error"));
}

TEST(DependencyWords, UpdateTypesStandInTheirOrder) {
    EXPECT_THAT(wordsOf<Type>(), ::testing::ElementsAre("major", "minor", "patch", "constrained",
                                                        "blocked", "unknown"));
}

TEST(DependencyWords, OriginsStandInTheirOrder) {
    EXPECT_THAT(
        wordsOf<DependencyUpdateOrigin>(),
        ::testing::ElementsAre("unknown", "manifestDirect", "manifestTransitive", "venvOnly"));
}

TEST(DependencyWords, EachWordLeadsBackToItsCase) {
    EXPECT_EQ(fromRawValue<DependencyEcosystem>("Python"), DependencyEcosystem::python);
    EXPECT_EQ(rawValue(DependencyEcosystem::python), "Python");
    EXPECT_EQ(fromRawValue<Health>("notApplicable"), Health::notApplicable);
    EXPECT_EQ(rawValue(Health::syncNeeded), "syncNeeded");
    EXPECT_EQ(fromRawValue<Type>("constrained"), Type::constrained);
    EXPECT_EQ(rawValue(DependencyUpdateOrigin::venvOnly), "venvOnly");
}

TEST(DependencyWords, UnknownWordLeadsNowhere) {
    EXPECT_EQ(fromRawValue<Health>("fine"), std::nullopt);
    EXPECT_EQ(fromRawValue<Health>(""), std::nullopt);
}

TEST(DependencyId, OfAnUpdateIsItsEcosystemAndItsPackage) {
    EXPECT_EQ((DependencyUpdate{.ecosystem = DependencyEcosystem::python, .package = "pip"}.id()),
              "Python-pip");
}

TEST(DependencyId, OfAResultIsItsEcosystemItsProjectAndItsManager) {
    EXPECT_EQ((DependencyEcosystemResult{.project = "apps/web", .manager = "npm"}.id()),
              "Node-apps/web-npm");
}

TEST(DependencyId, OfAResultWithoutAProjectCountsItsUpdatesAndQuotesItsMessage) {
    const DependencyEcosystemResult result{
        .manager = "npm", .updates = {{}, {}}, .message = "no lockfile"};
    EXPECT_EQ(result.id(), "Node-npm-2-no lockfile");
}

TEST(DependencyId, EmptyProjectCountsAsNone) {
    EXPECT_EQ((DependencyEcosystemResult{.project = "", .manager = "npm", .message = "m"}.id()),
              "Node-npm-0-m");
}

TEST(DependencyId, AbsentMessageIsEmpty) {
    EXPECT_EQ((DependencyEcosystemResult{.manager = "npm"}.id()), "Node-npm-0-");
}

DependencyEcosystemResult resultOf(Health status, const std::vector<Type>& types = {}) {
    std::vector<DependencyUpdate> updates;
    for (const Type type : types) updates.push_back({.updateType = type});
    return {.manager = "npm", .status = status, .updates = std::move(updates)};
}

Health statusOf(std::vector<DependencyEcosystemResult> results) {
    return DependencySummary{.ecosystems = std::move(results)}.status();
}

TEST(DependencyCounts, UpdateOfUnknownTypeIsActionable) {
    const auto result = resultOf(
        Health::updatesAvailable,
        {Type::unknown, Type::major, Type::minor, Type::patch, Type::constrained, Type::blocked});
    EXPECT_EQ(result.actionableUpdateCount(), 4);
}

TEST(DependencyCounts, LimitedAndBlockedAreCountedApart) {
    const auto result =
        resultOf(Health::constraints, {Type::constrained, Type::constrained, Type::blocked});
    EXPECT_EQ(result.actionableUpdateCount(), 0);
    EXPECT_EQ(result.limitedUpdateCount(), 2);
    EXPECT_EQ(result.blockedUpdateCount(), 1);
}

TEST(DependencyCounts, SummaryAddsUpItsResults) {
    const DependencySummary summary{
        .ecosystems = {resultOf(Health::updatesAvailable, {Type::major, Type::blocked}),
                       resultOf(Health::updatesAvailable, {Type::minor, Type::constrained})}};
    EXPECT_EQ(summary.actionableUpdateCount(), 2);
    EXPECT_EQ(summary.constraintCount(), 2);
}

TEST(DependencySummary_NotApplicable, HasNoEcosystemsAndNoDate) {
    EXPECT_TRUE(DependencySummary::notApplicable.ecosystems.empty());
    EXPECT_EQ(DependencySummary::notApplicable.checkedAt, std::nullopt);
}

TEST(DependencySummary_Status, NoEcosystemsAreNotApplicable) {
    EXPECT_EQ(statusOf({}), Health::notApplicable);
}

TEST(DependencySummary_Status, OneErrorOutweighsEveryUpdate) {
    EXPECT_EQ(
        statusOf({resultOf(Health::updatesAvailable, {Type::major}), resultOf(Health::error)}),
        Health::error);
}

TEST(DependencySummary_Status, UpdatesOutweighConstraints) {
    EXPECT_EQ(statusOf({resultOf(Health::constraints, {Type::constrained}),
                        resultOf(Health::updatesAvailable, {Type::patch})}),
              Health::updatesAvailable);
}

TEST(DependencySummary_Status, ConstraintsOutweighANeedToSync) {
    EXPECT_EQ(
        statusOf({resultOf(Health::syncNeeded), resultOf(Health::constraints, {Type::blocked})}),
        Health::constraints);
}

TEST(DependencySummary_Status, NeedToSyncOutweighsARunningCheck) {
    EXPECT_EQ(statusOf({resultOf(Health::checking), resultOf(Health::syncNeeded)}),
              Health::syncNeeded);
}

TEST(DependencySummary_Status, MessageThatAsksForAnInstallIsANeedToSync) {
    auto result = resultOf(Health::upToDate);
    result.message = "Lockfile is newer. Run install to sync. Then go on.";
    EXPECT_EQ(statusOf({result}), Health::syncNeeded);
}

TEST(DependencySummary_Status, RunningCheckOutweighsAnUnknownResult) {
    EXPECT_EQ(statusOf({resultOf(Health::unknown), resultOf(Health::checking)}), Health::checking);
}

TEST(DependencySummary_Status, UnknownResultOutweighsGoodNews) {
    EXPECT_EQ(statusOf({resultOf(Health::upToDate), resultOf(Health::unknown)}), Health::unknown);
}

TEST(DependencySummary_Status, ResultsThatDoNotApplyOrAreUpToDateHaveNoEffect) {
    EXPECT_EQ(statusOf({resultOf(Health::notApplicable)}), Health::upToDate);
    EXPECT_EQ(statusOf({resultOf(Health::notApplicable), resultOf(Health::upToDate)}),
              Health::upToDate);
}

TEST(DependencySummary_Status, CountsDecideNotTheWordOfTheResult) {
    EXPECT_EQ(statusOf({resultOf(Health::upToDate, {Type::minor})}), Health::updatesAvailable);
    EXPECT_EQ(statusOf({resultOf(Health::updatesAvailable)}), Health::upToDate);
}

}  // namespace
}  // namespace tarnbeck
