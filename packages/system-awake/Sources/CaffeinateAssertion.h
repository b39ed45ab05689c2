// What the machine is kept from. The texts are the flags of macOS's `caffeinate`.
#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace system_awake {

enum class CaffeinateAssertion {
    preventDisplaySleep,
    preventIdleSystemSleep,
    preventDiskIdleSleep,
    preventSystemSleepOnACPower,
};

inline constexpr std::array allCaffeinateAssertions = {
    CaffeinateAssertion::preventDisplaySleep,
    CaffeinateAssertion::preventIdleSystemSleep,
    CaffeinateAssertion::preventDiskIdleSleep,
    CaffeinateAssertion::preventSystemSleepOnACPower,
};

// The display may still sleep.
inline const std::vector<CaffeinateAssertion> standardCaffeinateAssertions = {
    CaffeinateAssertion::preventIdleSystemSleep,
    CaffeinateAssertion::preventDiskIdleSleep,
    CaffeinateAssertion::preventSystemSleepOnACPower,
};

constexpr std::string_view flag(CaffeinateAssertion assertion) {
    switch (assertion) {
        case CaffeinateAssertion::preventDisplaySleep:
            return "-d";
        case CaffeinateAssertion::preventIdleSystemSleep:
            return "-i";
        case CaffeinateAssertion::preventDiskIdleSleep:
            return "-m";
        case CaffeinateAssertion::preventSystemSleepOnACPower:
            return "-s";
    }
    return {};
}

}  // namespace system_awake
