// What the engine costs beyond git itself: a full scan of 100 mixed repositories against a bare
// loop that runs the very same commands.
#include <algorithm>
#include <chrono>
#include <vector>

#include <sys/resource.h>

#include "BareLoop.h"
#include "Fixture.h"
#include "Report.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

constexpr int repositoryCount = 100;
constexpr int rounds = 7;

struct Cost {
    double wall = 1e9;       // seconds
    double processor = 1e9;  // seconds of this process alone, children excluded

    void keepLeast(const Cost& other) {
        wall = std::min(wall, other.wall);
        processor = std::min(processor, other.processor);
    }
};

double ownProcessorTime() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

template <class Work>
Cost costOf(Work work) {
    const double processor = ownProcessorTime();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {wall.count(), ownProcessorTime() - processor};
}

void scanAll(RepositoryScanner& scanner, PosixMainLoop& loop) {
    const auto observation = scanner.observe([&](RepositoryScanner::Property property) {
        if (property == RepositoryScanner::Property::isScanning && !scanner.isScanning()) {
            loop.stop();
        }
    });
    scanner.requestRefresh({});
    loop.run();
}

}  // namespace

int main() {
    const Folder folder;
    Engine engine(folder.path());
    AppConfiguration configuration;
    configuration.repoPaths = makeMixedRepositories(folder.path(), repositoryCount);

    std::vector<std::vector<std::string>> commands;
    {
        engine.observeGit = [&](const GitInvocation& invocation, auto) {
            commands.push_back(invocation.executableArgs);
        };
        RepositoryScanner recording(engine.services(), engine.options(configuration));
        scanAll(recording, engine.loop);
        engine.observeGit = nullptr;
    }

    RepositoryScanner scanner(engine.services(), engine.options(configuration));
    Cost bare;
    Cost own;
    for (int round = 0; round < rounds; ++round) {
        bare.keepLeast(costOf([&] { runBareLoop(commands, folder.path()); }));
        own.keepLeast(costOf([&] { scanAll(scanner, engine.loop); }));
    }

    Report report;
    report.note(
        fmt::format("{} repositories, {} git commands; bare loop {:.0f} ms wall, {:.1f} ms "
                    "own processor time; engine {:.0f} ms, {:.1f} ms",
                    scanner.repositories().size(), commands.size(), bare.wall * 1e3,
                    bare.processor * 1e3, own.wall * 1e3, own.processor * 1e3));
    report.atMost("scan, wall time, engine / bare loop", own.wall / bare.wall, 1.03);
    report.atMost("scan, own processor time, engine / bare loop", own.processor / bare.processor,
                  1.25);
    return report.exitStatus();
}
