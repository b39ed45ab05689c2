#include "MainLoopPromises.h"
#include "QtMainLoop.h"

namespace tarnbeck {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Post, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Timers, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Stop, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Signals, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Rest, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Clock, QtMainLoop);

TEST(QtMainLoop_End, SignalsDoWhatTheyDoByDefaultAgain) {
    QtMainLoop loop;
    loop.onSignals({SIGUSR1}, [](int) {});
    loop.forgetSignals();
    struct sigaction action {};
    ASSERT_EQ(sigaction(SIGUSR1, nullptr, &action), 0);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
}

TEST(QtMainLoop_End, DropsWhatWasPosted) {
    QtMainLoop loop;
    bool isRun = false;
    const auto held = std::make_shared<int>();
    loop.post([&isRun, held] { isRun = true; });
    loop.dropPosted();
    EXPECT_EQ(held.use_count(), 1);
    loop.stop();
    loop.run();
    EXPECT_FALSE(isRun);
}

TEST(QtMainLoop_End, DropsWhatIsPostedByWhatItDrops) {
    QtMainLoop loop;
    const auto later = std::make_shared<int>();
    std::shared_ptr<void> poster(nullptr, [&](void*) { loop.post([held = later] {}); });
    loop.post([held = std::move(poster)] {});
    loop.dropPosted();
    EXPECT_EQ(later.use_count(), 1);
}

}  // namespace tarnbeck
