#include "MainLoopPromises.h"
#include "QtMainLoop.h"

namespace tarnbeck {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Post, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Timers, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Stop, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Signals, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Rest, QtMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainLoop_Clock, QtMainLoop);

}  // namespace tarnbeck
