// How long something takes, and what of several measurements counts.
#pragma once

#include <algorithm>
#include <chrono>
#include <iterator>
#include <vector>

namespace tarnbeck::benchmark {

template <class Work>
double secondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + std::ssize(values) / 2);
    return values[values.size() / 2];
}

}  // namespace tarnbeck::benchmark
