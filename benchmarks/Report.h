// How a benchmark tells its result: one line a figure, and a verdict.
#pragma once

#include <string_view>

#include <fmt/format.h>

namespace tarnbeck::benchmark {

class Report {
  public:
    // `value` must not be above `limit`.
    void atMost(std::string_view what, double value, double limit) {
        tell(what, value, "at most", limit, value <= limit);
    }
    // `value` must not be below `limit`.
    void atLeast(std::string_view what, double value, double limit) {
        tell(what, value, "at least", limit, value >= limit);
    }
    void note(std::string_view text) { fmt::print("  {}\n", text); }

    int exitStatus() const { return failed_ ? 1 : 0; }

  private:
    void tell(std::string_view what, double value, std::string_view word, double limit, bool good) {
        fmt::print("{:<58} {:>9.3f}  {} {:g}{}\n", what, value, word, limit,
                   good ? "" : "  BROKEN");
        failed_ = failed_ || !good;
    }

    bool failed_ = false;
};

}  // namespace tarnbeck::benchmark
