#include <deque>
#include <utility>

#include "CaffeinateController.h"

namespace system_awake {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using enum CaffeinateAssertion;
using Assertions = std::vector<CaffeinateAssertion>;

// What is known of a child, whether or not somebody still holds it.
struct Child {
    bool isRunning = true;
    bool wasTerminated = false;
    bool isHeld = true;
    std::function<void()> terminationHandler;
};

class PlayedProcess : public CaffeinateProcess {
  public:
    PlayedProcess(std::string id, std::shared_ptr<Child> child)
        : id_(std::move(id)), child_(std::move(child)) {}
    ~PlayedProcess() override { child_->isHeld = false; }

    const std::string& id() const override { return id_; }
    bool isRunning() const override { return child_->isRunning; }
    void setTerminationHandler(std::function<void()> handler) override {
        child_->terminationHandler = std::move(handler);
    }
    void terminate() override { child_->wasTerminated = true; }

  private:
    std::string id_;
    std::shared_ptr<Child> child_;
};

class PlayedLauncher : public CaffeinateLaunching {
  public:
    std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> start(
        const std::vector<std::string>& arguments,
        std::optional<std::int32_t> boundToProcessID) override {
        lastArguments = arguments;
        lastBoundTo = boundToProcessID;
        if (failure) return *failure;
        children.push_back(std::make_shared<Child>());
        return std::make_unique<PlayedProcess>(std::to_string(children.size()), children.back());
    }

    std::vector<std::shared_ptr<Child>> children;
    std::vector<std::string> lastArguments;
    std::optional<std::int32_t> lastBoundTo;
    std::optional<LaunchFailure> failure;
};

class CaffeinateController_State : public ::testing::Test {
  protected:
    std::unique_ptr<CaffeinateController> makeController(std::optional<std::int32_t> boundTo) {
        return std::make_unique<CaffeinateController>(
            launcher_, boundTo,
            CaffeinateController::Environment{
                .postToMainThread =
                    [this](std::function<void()> task) { posted_.push_back(std::move(task)); },
                .now = [this] { return now_; }});
    }
    void runPosted() {
        while (!posted_.empty()) {
            const auto task = std::move(posted_.front());
            posted_.pop_front();
            task();
        }
    }
    static void end(Child& child) {
        child.isRunning = false;
        child.terminationHandler();
    }
    static CaffeinateState active(WallTime since, Assertions assertions) {
        return {CaffeinateState::Active{since, std::move(assertions)}};
    }

    PlayedLauncher launcher_;
    std::deque<std::function<void()>> posted_;
    WallTime now_{std::chrono::hours(24)};
    std::unique_ptr<CaffeinateController> controller_ = makeController(4711);
};

const CaffeinateState inactive{CaffeinateState::Inactive{}};

TEST(CaffeinateAssertion_Standard, LeavesTheDisplayAlone) {
    EXPECT_THAT(
        standardCaffeinateAssertions,
        ElementsAre(preventIdleSystemSleep, preventDiskIdleSleep, preventSystemSleepOnACPower));
}

TEST(CaffeinateAssertion_Flag, IsTheOneOfTheTool) {
    std::vector<std::string_view> flags;
    for (const auto assertion : allCaffeinateAssertions) flags.push_back(flag(assertion));
    EXPECT_THAT(flags, ElementsAre("-d", "-i", "-m", "-s"));
}

TEST_F(CaffeinateController_State, IsInactiveAtFirst) {
    EXPECT_EQ(controller_->state(), inactive);
    EXPECT_FALSE(controller_->isActive());
}

TEST_F(CaffeinateController_State, IsActiveSinceTheStart) {
    controller_->start(standardCaffeinateAssertions);
    EXPECT_EQ(controller_->state(), active(now_, standardCaffeinateAssertions));
    EXPECT_TRUE(controller_->isActive());
}

TEST_F(CaffeinateController_State, ChildGetsTheFlagsInTheirOrderAndTheProcess) {
    controller_->start({preventSystemSleepOnACPower, preventDisplaySleep});
    EXPECT_THAT(launcher_.lastArguments, ElementsAre("-s", "-d"));
    EXPECT_EQ(launcher_.lastBoundTo, 4711);
}

TEST_F(CaffeinateController_State, WithoutAProcessTheLauncherIsGivenNone) {
    makeController(std::nullopt)->start(standardCaffeinateAssertions);
    EXPECT_THAT(launcher_.lastArguments, ElementsAre("-i", "-m", "-s"));
    EXPECT_EQ(launcher_.lastBoundTo, std::nullopt);
}

TEST_F(CaffeinateController_State, SecondStartWithTheSameListKeepsChildAndTime) {
    controller_->start(standardCaffeinateAssertions);
    const WallTime first = std::exchange(now_, now_ + std::chrono::hours(1));
    controller_->start(standardCaffeinateAssertions);
    EXPECT_THAT(launcher_.children, SizeIs(1));
    EXPECT_EQ(controller_->state(), active(first, standardCaffeinateAssertions));
}

TEST_F(CaffeinateController_State, ListInAnotherOrderReplacesTheChild) {
    controller_->start({preventDisplaySleep, preventIdleSystemSleep});
    now_ += std::chrono::hours(1);
    controller_->start({preventIdleSystemSleep, preventDisplaySleep});
    ASSERT_THAT(launcher_.children, SizeIs(2));
    EXPECT_TRUE(launcher_.children[0]->wasTerminated);
    EXPECT_FALSE(launcher_.children[1]->wasTerminated);
    EXPECT_EQ(controller_->state(), active(now_, {preventIdleSystemSleep, preventDisplaySleep}));
}

TEST_F(CaffeinateController_State, ReplacementThatFailsLeavesNothingRunning) {
    controller_->start({preventDisplaySleep});
    launcher_.failure = {"Access denied"};
    controller_->start({preventIdleSystemSleep});
    EXPECT_TRUE(launcher_.children[0]->wasTerminated);
    EXPECT_EQ(controller_->state(), CaffeinateState{CaffeinateState::Failed{"Access denied"}});
}

TEST_F(CaffeinateController_State, StopEndsTheChild) {
    controller_->start(standardCaffeinateAssertions);
    controller_->stop();
    EXPECT_TRUE(launcher_.children[0]->wasTerminated);
    EXPECT_EQ(controller_->state(), inactive);
}

TEST_F(CaffeinateController_State, StopWithoutAChildIsNoError) {
    controller_->stop();
    EXPECT_EQ(controller_->state(), inactive);
}

TEST_F(CaffeinateController_State, LaunchThatFailsIsToldInTheSystemsWords) {
    launcher_.failure = {"No such file or directory"};
    controller_->start(standardCaffeinateAssertions);
    EXPECT_EQ(controller_->state(),
              CaffeinateState{CaffeinateState::Failed{"No such file or directory"}});
    EXPECT_FALSE(controller_->isActive());
}

TEST_F(CaffeinateController_State, StopClearsAFailure) {
    launcher_.failure = {"Access denied"};
    controller_->start(standardCaffeinateAssertions);
    controller_->stop();
    EXPECT_EQ(controller_->state(), inactive);
}

TEST_F(CaffeinateController_State, ToggleAfterAFailureTriesAgain) {
    launcher_.failure = {"Access denied"};
    controller_->start(standardCaffeinateAssertions);
    launcher_.failure.reset();
    controller_->toggle(standardCaffeinateAssertions);
    EXPECT_TRUE(controller_->isActive());
}

TEST_F(CaffeinateController_State, ToggleStopsWhatIsActive) {
    controller_->toggle(standardCaffeinateAssertions);
    controller_->toggle(standardCaffeinateAssertions);
    EXPECT_TRUE(launcher_.children[0]->wasTerminated);
    EXPECT_EQ(controller_->state(), inactive);
}

TEST_F(CaffeinateController_State, ChildThatEndsByItselfLeavesItOff) {
    controller_->start(standardCaffeinateAssertions);
    end(*launcher_.children[0]);
    runPosted();
    EXPECT_EQ(controller_->state(), inactive);
    EXPECT_THAT(launcher_.children, SizeIs(1));
    EXPECT_FALSE(launcher_.children[0]->isHeld);
}

TEST_F(CaffeinateController_State, IsActiveEndsWithTheChildAndNotWithTheCallback) {
    controller_->start(standardCaffeinateAssertions);
    end(*launcher_.children[0]);
    EXPECT_FALSE(controller_->isActive());
    EXPECT_TRUE(controller_->state().isActive());
}

TEST_F(CaffeinateController_State, CallbackTouchesNothingUntilTheMainThreadTurnsToIt) {
    controller_->start(standardCaffeinateAssertions);
    end(*launcher_.children[0]);
    EXPECT_THAT(posted_, SizeIs(1));
    EXPECT_TRUE(launcher_.children[0]->isHeld);
}

TEST_F(CaffeinateController_State, LateCallbackOfAnEarlierChildChangesNothing) {
    controller_->start(standardCaffeinateAssertions);
    controller_->stop();
    controller_->start(standardCaffeinateAssertions);
    end(*launcher_.children[0]);
    runPosted();
    EXPECT_TRUE(controller_->isActive());
    EXPECT_TRUE(launcher_.children[1]->isHeld);
    EXPECT_FALSE(launcher_.children[1]->wasTerminated);
}

TEST_F(CaffeinateController_State, ToggleAfterADeathThatWasNotToldYetStartsANewChild) {
    controller_->start(standardCaffeinateAssertions);
    end(*launcher_.children[0]);
    controller_->toggle(standardCaffeinateAssertions);
    runPosted();
    ASSERT_THAT(launcher_.children, SizeIs(2));
    EXPECT_TRUE(controller_->isActive());
}

TEST_F(CaffeinateController_State, FailureOutlivesTheCallbackOfAChildThatWasDeadAlready) {
    controller_->start(standardCaffeinateAssertions);
    end(*launcher_.children[0]);
    launcher_.failure = {"Access denied"};
    controller_->start(standardCaffeinateAssertions);
    runPosted();
    EXPECT_EQ(controller_->state(), CaffeinateState{CaffeinateState::Failed{"Access denied"}});
}

TEST_F(CaffeinateController_State, CallbackThatComesAfterTheControllerIsLost) {
    controller_->start(standardCaffeinateAssertions);
    end(*launcher_.children[0]);
    controller_.reset();
    runPosted();
    EXPECT_THAT(posted_, IsEmpty());
}

TEST_F(CaffeinateController_State, GoingAwayLeavesTheChildToItsBinding) {
    controller_->start(standardCaffeinateAssertions);
    controller_.reset();
    EXPECT_FALSE(launcher_.children[0]->wasTerminated);
}

TEST_F(CaffeinateController_State, EachWriteIsTold) {
    int told = 0;
    const auto token = controller_->observe([&] { ++told; });
    controller_->start(standardCaffeinateAssertions);
    EXPECT_EQ(told, 1);
    controller_->start(standardCaffeinateAssertions);
    EXPECT_EQ(told, 2);
    controller_->stop();
    EXPECT_EQ(told, 3);
}

TEST_F(CaffeinateController_State, ObserverSeesTheNewState) {
    std::vector<CaffeinateState> seen;
    const auto token = controller_->observe([&] { seen.push_back(controller_->state()); });
    controller_->start({preventDisplaySleep});
    EXPECT_THAT(seen, ElementsAre(active(now_, {preventDisplaySleep})));
}

TEST_F(CaffeinateController_State, WhoLetsTheTokenGoIsToldNoMore) {
    int told = 0;
    auto token = controller_->observe([&] { ++told; });
    token.reset();
    controller_->stop();
    EXPECT_EQ(told, 0);
}

}  // namespace
}  // namespace system_awake
