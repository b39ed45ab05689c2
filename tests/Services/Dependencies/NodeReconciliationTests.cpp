#include "DependencyScanner+NodeReport.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

NodeOutdatedPackage outdatedP(std::string current, std::optional<std::string> wanted,
                              std::optional<std::string> latest) {
    return {.package = "p",
            .currentVersion = std::move(current),
            .wantedVersion = std::move(wanted),
            .latestVersion = std::move(latest)};
}

NodeReconciliation reconciledP(std::string current, std::optional<std::string> wanted,
                               std::optional<std::string> latest) {
    return reconcileNodeOutdatedPackages(
        {outdatedP(std::move(current), std::move(wanted), std::move(latest))});
}

DependencyUpdate updateOfP(std::string current, std::string latest, DependencyUpdateType type) {
    return {.ecosystem = DependencyEcosystem::node,
            .package = "p",
            .currentVersion = std::move(current),
            .latestVersion = std::move(latest),
            .updateType = type,
            .origin = DependencyUpdateOrigin::unknown};
}

NodeReconciliation onlyUpdateOfP(std::string current, std::string latest,
                                 DependencyUpdateType type) {
    return {.updates = {updateOfP(std::move(current), std::move(latest), type)}};
}

const NodeReconciliation nothingToDo;

TEST(ReconcileNodePackages, NeitherWantedNorLatestIsPassedOver) {
    EXPECT_EQ(reconciledP("1.0.0", std::nullopt, std::nullopt), nothingToDo);
}

TEST(ReconcileNodePackages, WithoutWantedTheLatestIsOffered) {
    EXPECT_EQ(reconciledP("2.9.9", std::nullopt, "3.0.0"),
              onlyUpdateOfP("2.9.9", "3.0.0", DependencyUpdateType::major));
}

TEST(ReconcileNodePackages, WithoutWantedTheSameVersionIsNoUpdate) {
    EXPECT_EQ(reconciledP("1.0.0", std::nullopt, "1.0.0"), nothingToDo);
}

TEST(ReconcileNodePackages, WithoutWantedAnOlderLatestIsNoUpdate) {
    EXPECT_EQ(reconciledP("2.0.0", std::nullopt, "1.9.0"), nothingToDo);
}

TEST(ReconcileNodePackages, LatestBehindWhatIsInstalledIsPassedOver) {
    EXPECT_EQ(reconciledP("2.0.0", "2.0.0", "1.9.0"), nothingToDo);
    EXPECT_EQ(reconciledP("2.0.0", "2.1.0", "1.9.0"), nothingToDo);
}

TEST(ReconcileNodePackages, BehindARangeThatStopsShortOfTheLatestIsASyncWithAReason) {
    EXPECT_EQ(reconciledP("1.0.0", "1.2.0", "2.0.0"),
              (NodeReconciliation{.syncPackages = {"p"},
                                  .constrainedReasons = {
                                      "p@2.0.0 limited by current constraints (wanted 1.2.0)"}}));
}

TEST(ReconcileNodePackages, HeldBackByItsRangeIsAConstrainedUpdateWithAReason) {
    EXPECT_EQ(
        reconciledP("1.2.0", "1.2.0", "2.0.0"),
        (NodeReconciliation{
            .updates = {updateOfP("1.2.0", "2.0.0", DependencyUpdateType::constrained)},
            .constrainedReasons = {"p@2.0.0 limited by current constraints (wanted 1.2.0)"}}));
}

TEST(ReconcileNodePackages, RangeBehindWhatIsInstalledLimitsNothing) {
    EXPECT_EQ(reconciledP("2.0.0", "1.9.0", "2.1.0"),
              onlyUpdateOfP("2.0.0", "2.1.0", DependencyUpdateType::minor));
}

TEST(ReconcileNodePackages, WantedThatIsTheLatestIsOnlyASync) {
    EXPECT_EQ(reconciledP("1.0.0", "1.2.0", "1.2.0"), (NodeReconciliation{.syncPackages = {"p"}}));
}

TEST(ReconcileNodePackages, WantedWithoutALatestIsOnlyASync) {
    EXPECT_EQ(reconciledP("1.0.0", "1.2.0", std::nullopt),
              (NodeReconciliation{.syncPackages = {"p"}}));
}

TEST(ReconcileNodePackages, AllTheSameVersionIsNothing) {
    EXPECT_EQ(reconciledP("1.0.0", "1.0.0", "1.0.0"), nothingToDo);
    EXPECT_EQ(reconciledP("1.0.0", "1.0.0", std::nullopt), nothingToDo);
}

TEST(ReconcileNodePackages, WantedAndLatestBehindWhatIsInstalledAreNothing) {
    EXPECT_EQ(reconciledP("2.0.0", "1.0.0", "1.0.0"), nothingToDo);
    EXPECT_EQ(reconciledP("2.0.0", "1.0.0", std::nullopt), nothingToDo);
}

TEST(ReconcileNodePackages, InstalledTextWithoutDigitsIsNeverOlderAndListedAsUnknown) {
    EXPECT_EQ(reconciledP("linked", std::nullopt, "2.0.0"),
              onlyUpdateOfP("linked", "2.0.0", DependencyUpdateType::unknown));
    EXPECT_EQ(reconciledP("linked", "linked", "2.0.0").updates,
              onlyUpdateOfP("linked", "2.0.0", DependencyUpdateType::constrained).updates);
}

TEST(ReconcileNodePackages, WantedWithoutDigitsIsNeverOlder) {
    EXPECT_EQ(reconciledP("1.0.0", "git", "git"), (NodeReconciliation{.syncPackages = {"p"}}));
}

TEST(ReconcileNodePackages, DifferenceBehindTheThirdNumberIsListedAsUnknown) {
    EXPECT_EQ(reconciledP("1.0.0-beta.1", std::nullopt, "1.0.0"),
              onlyUpdateOfP("1.0.0-beta.1", "1.0.0", DependencyUpdateType::unknown));
}

TEST(ReconcileNodePackages, WhiteSpaceAroundVersionsDoesNotCount) {
    EXPECT_EQ(reconciledP(" 1.2.0\n", "\t1.2.0", "2.0.0\r\n"),
              reconciledP("1.2.0", "1.2.0", "2.0.0"));
}

TEST(ReconcileNodePackages, StepTellsItsType) {
    EXPECT_EQ(reconciledP("1.0.0", std::nullopt, "1.0.1"),
              onlyUpdateOfP("1.0.0", "1.0.1", DependencyUpdateType::patch));
    EXPECT_EQ(reconciledP("1.0.0", std::nullopt, "1.1.0"),
              onlyUpdateOfP("1.0.0", "1.1.0", DependencyUpdateType::minor));
    EXPECT_EQ(reconciledP("1.0.0", std::nullopt, "2.0.0"),
              onlyUpdateOfP("1.0.0", "2.0.0", DependencyUpdateType::major));
}

TEST(ReconcileNodePackages, UpdatesStayInTheirOrderAndTheRestIsSortedAndEachOnce) {
    std::vector<NodeOutdatedPackage> packages;
    for (const auto* name : {"c", "a", "b", "c"}) {
        for (const auto& versions :
             {outdatedP("1.0.0", "1.2.0", "2.0.0"), outdatedP("1.0.0", std::nullopt, "1.0.1")}) {
            packages.push_back(versions);
            packages.back().package = name;
        }
    }
    const auto facts = reconcileNodeOutdatedPackages(packages);
    EXPECT_THAT(facts.syncPackages, ElementsAre("a", "b", "c"));
    EXPECT_THAT(facts.constrainedReasons,
                ElementsAre("a@2.0.0 limited by current constraints (wanted 1.2.0)",
                            "b@2.0.0 limited by current constraints (wanted 1.2.0)",
                            "c@2.0.0 limited by current constraints (wanted 1.2.0)"));
    std::string order;
    for (const auto& found : facts.updates) order += found.package;
    EXPECT_EQ(order, "cabc");
}

TEST(NormalizedNodeUpdates, FirstOfTwoUpdatesOfAPackageStays) {
    EXPECT_THAT(normalizedNodeUpdates({updateOfP("1.0.0", "2.0.0", DependencyUpdateType::major),
                                       updateOfP("1.0.0", "1.0.1", DependencyUpdateType::patch)}),
                ElementsAre(updateOfP("1.0.0", "2.0.0", DependencyUpdateType::major)));
}

TEST(NormalizedNodeUpdates, FirstOfTwoUpdatesCountsEvenWhereItIsDropped) {
    EXPECT_THAT(normalizedNodeUpdates({updateOfP("2.0.0", "1.0.0", DependencyUpdateType::unknown),
                                       updateOfP("1.0.0", "1.0.1", DependencyUpdateType::patch)}),
                IsEmpty());
}

TEST(NormalizedNodeUpdates, BlockedOnesStayWhateverTheirVersionsSay) {
    const std::vector<DependencyUpdate> same = {
        updateOfP("1.0.0", "1.0.0", DependencyUpdateType::blocked)};
    const std::vector<DependencyUpdate> back = {
        updateOfP("2.0.0", "1.0.0", DependencyUpdateType::blocked)};
    EXPECT_EQ(normalizedNodeUpdates(same), same);
    EXPECT_EQ(normalizedNodeUpdates(back), back);
}

TEST(NormalizedNodeUpdates, OneThatLeadsNowhereIsDropped) {
    EXPECT_THAT(normalizedNodeUpdates({updateOfP("1.0.0", "1.0.0", DependencyUpdateType::unknown)}),
                IsEmpty());
    EXPECT_THAT(
        normalizedNodeUpdates({updateOfP("linked", "linked", DependencyUpdateType::unknown)}),
        IsEmpty());
}

TEST(NormalizedNodeUpdates, OneThatLeadsBackIsDropped) {
    EXPECT_THAT(
        normalizedNodeUpdates({updateOfP("2.0.0", "1.0.0", DependencyUpdateType::constrained)}),
        IsEmpty());
}

TEST(NormalizedNodeUpdates, OneThatCannotBeComparedStays) {
    const std::vector<DependencyUpdate> odd = {
        updateOfP("linked", "1.0.0", DependencyUpdateType::unknown)};
    EXPECT_EQ(normalizedNodeUpdates(odd), odd);
}

TEST(NormalizedNodeUpdates, OneWithTheSameThreeNumbersStays) {
    const std::vector<DependencyUpdate> step = {
        updateOfP("1.0.0-rc.1", "1.0.0", DependencyUpdateType::unknown)};
    EXPECT_EQ(normalizedNodeUpdates(step), step);
}

TEST(NodeSyncMessage, NoPackagesIsAbsent) {
    EXPECT_EQ(nodeSyncMessage({}), std::nullopt);
}

TEST(NodeSyncMessage, OnePackageIsNamed) {
    EXPECT_EQ(
        nodeSyncMessage({"a"}),
        "Local install lags behind wanted versions for 1 package(s): a. Run install to sync.");
}

TEST(NodeSyncMessage, TwoPackagesAreNamed) {
    EXPECT_EQ(nodeSyncMessage({"a", "b"}),
              "Local install lags behind wanted versions for 2 package(s): a, b. Run install to "
              "sync.");
}

TEST(NodeSyncMessage, OfThreePackagesTwoAreNamedAndOneIsCounted) {
    EXPECT_EQ(nodeSyncMessage({"a", "b", "c"}),
              "Local install lags behind wanted versions for 3 package(s): a, b, +1 more. "
              "Run install to sync.");
}

TEST(NodeSyncMessage, OfFourPackagesTwoAreNamedAndTheRestIsCounted) {
    EXPECT_EQ(nodeSyncMessage({"a", "b", "c", "d"}),
              "Local install lags behind wanted versions for 4 package(s): a, b, +2 more. Run "
              "install to sync.");
}

TEST(NodeConstraintLimitedMessage, NoReasonsIsAbsent) {
    EXPECT_EQ(nodeConstraintLimitedMessage({}), std::nullopt);
}

TEST(NodeConstraintLimitedMessage, TwoReasonsAreTold) {
    EXPECT_EQ(nodeConstraintLimitedMessage({"a", "b"}),
              "2 update(s) limited by current constraints: a | b");
}

TEST(NodeConstraintLimitedMessage, OfThreeReasonsTwoAreToldAndTheRestIsCounted) {
    EXPECT_EQ(nodeConstraintLimitedMessage({"a", "b", "c"}),
              "3 update(s) limited by current constraints: a | b | +1 more");
}

}  // namespace
}  // namespace tarnbeck::testing
