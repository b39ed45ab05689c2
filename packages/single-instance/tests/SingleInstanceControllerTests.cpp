#include "DuplicateLaunchRequestStore.h"
#include "PlayedSurroundings.h"
#include "SingleInstanceController.h"
#include "TemporaryFolder.h"

namespace single_instance::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Result = SingleInstanceStartupResult;
using Requests = std::vector<DuplicateLaunchRequest>;

// One process stands in for several copies: a lock belongs to the open file.
class SingleInstanceController_Copies : public ::testing::Test {
  protected:
    SingleInstanceConfiguration configuration(bool allowsMultiple = false) const {
        const auto boolean = [allowsMultiple](const std::string& key) {
            return allowsMultiple && key == "allow";
        };
        return SingleInstanceConfiguration(
            {.bundleIdentifier = "org.example.App",
             .policy = {SingleInstancePolicy::UserDefaults{boolean, "allow"}},
             .lockLocation = {SingleInstanceLockLocation::Directory{base_}},
             .activationSignalName = "wake"});
    }
    Result start(const SingleInstanceConfiguration& configuration,
                 const DuplicateLaunchRequest& request) {
        return SingleInstanceController::start(
            configuration, request,
            {.fileManager = files_, .signals = signals_, .postToMainThread = mainThread_.post()});
    }
    std::unique_ptr<SingleInstanceController> run(bool allowsMultiple = false) {
        auto result = start(configuration(allowsMultiple), nothing_);
        auto* running = std::get_if<Result::Run>(&result.value);
        EXPECT_TRUE(running);
        return running ? std::move(running->controller) : nullptr;
    }
    // A second copy, whose signal reaches the first one's main thread.
    void launchAgain(const DuplicateLaunchRequest& request) {
        const auto result = start(configuration(), request);
        EXPECT_TRUE(std::holds_alternative<Result::AlreadyRunning>(result.value));
        signals_.deliver();
        mainThread_.run();
    }
    auto noteRequests() {
        return [this](const Requests& requests) { calls_.push_back(requests); };
    }

    const DuplicateLaunchRequest nothing_{{}, {}, noon};
    const DuplicateLaunchRequest something_{{"--new"}, {"file:///a"}, noon};
    tarnbeck::testing::TemporaryFolder folder_;
    std::string base_ = folder_.path();
    SystemFileManager files_;
    PlayedSignals signals_;
    PlayedMainThread mainThread_;
    std::vector<Requests> calls_;
};

TEST_F(SingleInstanceController_Copies, FirstOneRunsWithTheLockAndListens) {
    const auto first = run();
    EXPECT_TRUE(first->holdsLock());
    EXPECT_THAT(signals_.observed, ElementsAre("wake"));
    EXPECT_THAT(signals_.posted, IsEmpty());
}

TEST_F(SingleInstanceController_Copies, SecondOneSignalsAndDoesNotRun) {
    const auto first = run();
    const auto second = start(configuration(), nothing_);
    EXPECT_TRUE(std::holds_alternative<Result::AlreadyRunning>(second.value));
    EXPECT_THAT(signals_.posted, ElementsAre("wake"));
}

TEST_F(SingleInstanceController_Copies, NextOneRunsWhenTheFirstHasGone) {
    run().reset();
    EXPECT_FALSE(signals_.isObserved());
    EXPECT_TRUE(run()->holdsLock());
}

TEST_F(SingleInstanceController_Copies, WhereSeveralMayRunNoneLocksOrListens) {
    const auto first = run(true);
    const auto second = run(true);
    EXPECT_FALSE(first->holdsLock());
    EXPECT_FALSE(second->holdsLock());
    EXPECT_THAT(signals_.observed, IsEmpty());
    EXPECT_THAT(signals_.posted, IsEmpty());
}

TEST_F(SingleInstanceController_Copies, RequestReachesTheHandler) {
    const auto first = run();
    first->setDuplicateLaunchHandler(noteRequests());
    launchAgain(something_);
    EXPECT_THAT(calls_, ElementsAre(ElementsAre(something_)));
}

TEST_F(SingleInstanceController_Copies, SignalWithoutARequestReachesTheHandlerToo) {
    const auto first = run();
    first->setDuplicateLaunchHandler(noteRequests());
    launchAgain(nothing_);
    EXPECT_THAT(calls_, ElementsAre(IsEmpty()));
}

TEST_F(SingleInstanceController_Copies, HandlerIsNotCalledBeforeASignal) {
    const auto first = run();
    first->setDuplicateLaunchHandler(noteRequests());
    EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(SingleInstanceController_Copies, SignalBeforeTheHandlerIsRemembered) {
    const auto first = run();
    launchAgain(nothing_);
    first->setDuplicateLaunchHandler(noteRequests());
    EXPECT_THAT(calls_, ElementsAre(IsEmpty()));
}

TEST_F(SingleInstanceController_Copies, SignalsBeforeTheHandlerAreOneCallWithAllRequests) {
    const auto first = run();
    launchAgain({{"late"}, {}, noon + 1s});
    launchAgain({{"early"}, {}, noon});
    first->setDuplicateLaunchHandler(noteRequests());
    EXPECT_THAT(calls_, ElementsAre(ElementsAre(DuplicateLaunchRequest{{"early"}, {}, noon},
                                                DuplicateLaunchRequest{{"late"}, {}, noon + 1s})));
}

TEST_F(SingleInstanceController_Copies, RememberedSignalIsForOneHandlerOnly) {
    const auto first = run();
    launchAgain(nothing_);
    first->setActivationHandler([] {});
    first->setDuplicateLaunchHandler(noteRequests());
    EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(SingleInstanceController_Copies, HandlerWithoutArgumentsIsCalledOnceForASignal) {
    const auto first = run();
    int count = 0;
    first->setActivationHandler([&] { ++count; });
    launchAgain(something_);
    EXPECT_EQ(count, 1);
}

TEST_F(SingleInstanceController_Copies, SecondHandlerReplacesTheFirst) {
    const auto first = run();
    int count = 0;
    first->setActivationHandler([&] { ++count; });
    first->setDuplicateLaunchHandler(noteRequests());
    launchAgain(something_);
    EXPECT_EQ(count, 0);
    EXPECT_THAT(calls_, ElementsAre(ElementsAre(something_)));
}

TEST_F(SingleInstanceController_Copies, HandlerMayReplaceItself) {
    const auto first = run();
    first->setActivationHandler([&] { first->setDuplicateLaunchHandler(noteRequests()); });
    launchAgain(nothing_);
    launchAgain(something_);
    EXPECT_THAT(calls_, ElementsAre(ElementsAre(something_)));
}

TEST_F(SingleInstanceController_Copies, SignalTouchesNothingUntilTheMainThreadTurnsToIt) {
    const auto first = run();
    first->setDuplicateLaunchHandler(noteRequests());
    signals_.deliver();
    EXPECT_THAT(calls_, IsEmpty());
    mainThread_.run();
    EXPECT_THAT(calls_, ElementsAre(IsEmpty()));
}

TEST_F(SingleInstanceController_Copies, SignalThatComesAfterTheControllerIsLost) {
    auto first = run();
    first->setDuplicateLaunchHandler(noteRequests());
    signals_.deliver();
    first.reset();
    mainThread_.run();
    EXPECT_THAT(calls_, IsEmpty());
}

class SingleInstanceController_WithoutLock : public SingleInstanceController_Copies {
  protected:
    SingleInstanceController_WithoutLock() { base_ = folder_.write("file", "") + "/below"; }
};

TEST_F(SingleInstanceController_WithoutLock, CopyFailsAndStillSignals) {
    const auto result = start(configuration(), something_);
    ASSERT_TRUE(std::holds_alternative<Result::Failed>(result.value));
    EXPECT_EQ(std::get<Result::Failed>(result.value).error.description(),
              "the folder of the lock can't be made: Not a directory");
    EXPECT_THAT(signals_.posted, ElementsAre("wake"));
    EXPECT_THAT(signals_.observed, IsEmpty());
}

class SingleInstanceStartup_Start : public SingleInstanceController_Copies {
  protected:
    std::unique_ptr<SingleInstanceController> startUp() {
        return SingleInstanceStartup::start(
            configuration(), nothing_,
            {.fileManager = files_, .signals = signals_, .postToMainThread = mainThread_.post()},
            [this](const AcquireError& error) { failures_.push_back(error.description()); });
    }

    std::vector<std::string> failures_;
};

TEST_F(SingleInstanceStartup_Start, ReturnsTheControllerOfTheFirstCopy) {
    EXPECT_TRUE(startUp());
    EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(SingleInstanceStartup_Start, ReturnsNothingForASecondCopy) {
    const auto first = run();
    EXPECT_FALSE(startUp());
    EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(SingleInstanceStartup_Start, TellsOfAFailure) {
    base_ = folder_.write("file", "");
    EXPECT_FALSE(startUp());
    EXPECT_THAT(failures_, ElementsAre("the folder of the lock can't be made: Not a directory"));
}

}  // namespace
}  // namespace single_instance::testing
