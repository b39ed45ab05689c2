#include <memory>
#include <optional>

#include "RepeatingTimer.h"
#include "Simulation.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::Simulation;

// The moments, counted from the start, at which a timer called.
struct Calls {
    explicit Calls(Simulation& running) : simulation(running) {}
    void note() { at.push_back((simulation.loop.steadyNow() - start) / 1ms); }

    Simulation& simulation;
    SteadyTime start = simulation.loop.steadyNow();
    std::vector<std::int64_t> at;
};

TEST(RepeatingTimer_Calls, FirstComesAfterOneIntervalAndNotAtOnce) {
    Simulation simulation;
    int calls = 0;
    const RepeatingTimer timer(simulation.loop, 100ms, [&] { ++calls; });
    simulation.advance(99ms);
    EXPECT_EQ(calls, 0);
    simulation.advance(1ms);
    EXPECT_EQ(calls, 1);
}

TEST(RepeatingTimer_Calls, ComeEachOneIntervalAfterTheOneBefore) {
    Simulation simulation;
    Calls calls(simulation);
    const RepeatingTimer timer(simulation.loop, 100ms, [&] { calls.note(); });
    simulation.advance(450ms);
    EXPECT_THAT(calls.at, ElementsAre(100, 200, 300, 400));
}

TEST(RepeatingTimer_Calls, LateOneDoesNotMoveTheNext) {
    Simulation simulation;
    Calls calls(simulation);
    const RepeatingTimer timer(simulation.loop, 100ms, [&] { calls.note(); });
    const Timer busy = simulation.loop.after(90ms, [&] { simulation.loop.hold(40ms); });
    simulation.advance(350ms);
    EXPECT_THAT(calls.at, ElementsAre(130, 200, 300));
}

TEST(RepeatingTimer_Calls, TimeThatATaskTakesDoesNotMoveTheNext) {
    Simulation simulation;
    Calls calls(simulation);
    const RepeatingTimer timer(simulation.loop, 100ms, [&] {
        calls.note();
        simulation.loop.hold(30ms);
    });
    simulation.advance(350ms);
    EXPECT_THAT(calls.at, ElementsAre(100, 200, 300));
}

TEST(RepeatingTimer_Calls, ThoseThatWereMissedAreNotMadeUpFor) {
    Simulation simulation;
    Calls calls(simulation);
    const RepeatingTimer timer(simulation.loop, 100ms, [&] { calls.note(); });
    const Timer asleep = simulation.loop.after(50ms, [&] { simulation.loop.hold(1s); });
    simulation.advance(1300ms);
    EXPECT_THAT(calls.at, ElementsAre(1050, 1150, 1250));
}

TEST(RepeatingTimer_End, NoCallComesAfterIt) {
    Simulation simulation;
    int calls = 0;
    std::optional<RepeatingTimer> timer;
    timer.emplace(simulation.loop, 100ms, [&] { ++calls; });
    simulation.advance(150ms);
    timer.reset();
    simulation.advance(1s);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(simulation.loop.pendingTimers(), 0U);
}

TEST(RepeatingTimer_End, MayComeFromItsOwnTask) {
    Simulation simulation;
    int calls = 0;
    std::optional<RepeatingTimer> timer;
    // What the task holds must outlive the call that ends it.
    timer.emplace(simulation.loop, 100ms, [&calls, &timer, held = std::make_shared<int>(1)] {
        timer.reset();
        calls += *held;
    });
    simulation.advance(1s);
    EXPECT_EQ(calls, 1);
}

TEST(RepeatingTimer_End, MayBeFollowedByAnotherFromItsOwnTask) {
    Simulation simulation;
    Calls calls(simulation);
    std::optional<RepeatingTimer> timer;
    timer.emplace(simulation.loop, 100ms,
                  [&] { timer.emplace(simulation.loop, 10ms, [&] { calls.note(); }); });
    simulation.advance(125ms);
    EXPECT_THAT(calls.at, ElementsAre(110, 120));
}

}  // namespace
}  // namespace tarnbeck
