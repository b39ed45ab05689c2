#include <chrono>

#include "DependencyTools.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;

TEST(DependencyTimeouts, AreThoseOfTheRunningProgram) {
    const DependencyTimeouts timeouts;
    EXPECT_EQ(timeouts.nodeOutdated, 150s);
    EXPECT_EQ(timeouts.expoCheck, 120s);
    EXPECT_EQ(timeouts.pythonOutdated, 90s);
    EXPECT_EQ(timeouts.pythonList, 30s);
    EXPECT_EQ(timeouts.pythonMatchScore, 20s);
    EXPECT_EQ(timeouts.pythonBlocked, 25s);
    EXPECT_EQ(timeouts.pythonOrigins, 20s);
    EXPECT_EQ(timeouts.pypi, 120s);
    EXPECT_EQ(timeouts.installStep, 900s);
}

}  // namespace
}  // namespace tarnbeck::testing
