// The parsers of long outputs, in bytes a second, and against the least that can be done: copying
// each line into a list.
#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "GitOutputParsers.h"
#include "Report.h"
#include "Text.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

constexpr int rounds = 15;

template <class Work>
double leastSeconds(Work work) {
    double least = 1e9;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        const auto result = work();
        const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
        if (result.empty()) std::abort();
        least = std::min(least, duration.count());
    }
    return least;
}

std::vector<std::string> copiedLines(const std::string& output) {
    std::vector<std::string> lines;
    forEachLine(output, [&](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

template <class Parser>
void measure(Report& report, const std::string& name, const std::string& output, Parser parse) {
    const double bare = leastSeconds([&] { return copiedLines(output); });
    const double parsed = leastSeconds([&] { return parse(output); });
    report.atLeast(name + ", MB/s", static_cast<double>(output.size()) / parsed / 1e6, 300);
    report.note(fmt::format("{:.2f} of the time of copying each line into a list", parsed / bare));
}

}  // namespace

int main() {
    std::string changes;
    for (int index = 0; index < 100'000; ++index) {
        changes += fmt::format(" M src/components/folder{}/file{}.cpp\n", index % 100, index);
    }
    std::string branches;
    for (int index = 0; index < 10'000; ++index) {
        branches += fmt::format("feature/team-{}/topic-{}\t{}\n", index % 50, index,
                                index == 77 ? '*' : ' ');
    }
    Report report;
    measure(report, "parseChanges, 100,000 lines", changes, GitOutputParsers::parseChanges);
    measure(report, "parseLocalBranches, 10,000 lines", branches,
            GitOutputParsers::parseLocalBranches);
    return report.exitStatus();
}
