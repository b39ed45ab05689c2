#include "MainLoopPromises.h"
#include "PosixMainLoop.h"

namespace tarnbeck {

INSTANTIATE_TYPED_TEST_SUITE_P(Posix, MainLoop_Post, PosixMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, MainLoop_Timers, PosixMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, MainLoop_Stop, PosixMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, MainLoop_Signals, PosixMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, MainLoop_Rest, PosixMainLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, MainLoop_Clock, PosixMainLoop);

}  // namespace tarnbeck
