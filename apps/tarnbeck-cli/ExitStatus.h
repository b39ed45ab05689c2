#pragma once

namespace tarnbeck::cli {

inline constexpr int exitSuccess = 0;
inline constexpr int exitFailure = 1;  // something could not be done; standard error says what
inline constexpr int exitUsage = 2;

}  // namespace tarnbeck::cli
