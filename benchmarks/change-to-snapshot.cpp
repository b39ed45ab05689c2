// From the last write of a burst to the new snapshot: what it takes beyond the prescribed waiting
// (the source's batches of 0.5 s and the 1.5 s of quiet) and git's own time.
#include <algorithm>
#include <chrono>
#include <fstream>
#include <mutex>
#include <thread>

#include "Fixture.h"
#include "Report.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using Property = RepositoryScanner::Property;

constexpr int repositoryCount = 20;
constexpr int rounds = 5;
constexpr auto betweenBatches = 500ms;
constexpr auto quiet = 1500ms;

// The file system's events, with the moment of the first delivery of each round.
class TimedFileEvents : public FileEvents {
  public:
    explicit TimedFileEvents(FileEvents& events) : events_(events) {}

    Result<std::unique_ptr<FileEventStream>> open(const Request& request) override {
        Request timed = request;
        timed.deliver = [this, deliver = request.deliver](FileEventBatch batch) {
            {
                const std::lock_guard lock(mutex_);
                last_ = steady_clock::now();
                if (!first_) first_ = last_;
            }
            deliver(std::move(batch));
        };
        return events_.open(timed);
    }

    void forget() {
        const std::lock_guard lock(mutex_);
        first_.reset();
    }
    steady_clock::time_point first() {
        const std::lock_guard lock(mutex_);
        return *first_;
    }

  private:
    FileEvents& events_;
    std::mutex mutex_;
    std::optional<steady_clock::time_point> first_;
    steady_clock::time_point last_;
};

void runUntil(PosixMainLoop& loop, RepositoryScanner& scanner,
              const std::function<bool(Property)>& expected) {
    bool reached = false;
    const auto observation = scanner.observe([&](Property property) {
        if (reached || !expected(property)) return;
        reached = true;
        loop.stop();
    });
    loop.run();
}

// Twenty writes in a fifth of a second; gives the moment of the last one.
steady_clock::time_point writeBurst(const std::string& file, int round) {
    for (int write = 0; write < 20; ++write) {
        std::ofstream(file, std::ios::app) << round << ' ' << write << '\n';
        if (write < 19) std::this_thread::sleep_for(10ms);
    }
    return steady_clock::now();
}

}  // namespace

int main() {
    const Folder folder;
    Engine engine(folder.path());
    TimedFileEvents events(*engine.fileEvents);
    AppConfiguration configuration;
    configuration.repoPaths = makeMixedRepositories(folder.path(), repositoryCount);
    configuration.scanIntervalMinutes = 0;
    configuration.showIssues = false;
    auto options = engine.options(configuration);
    // What it takes beside the waiting is measured; so nothing waits for the refresh before.
    options.fileSystemRefreshMinimumInterval = 0s;
    auto services = engine.services();
    services.fileEvents = &events;

    std::mutex gitMutex;
    std::chrono::nanoseconds gitTime{};
    engine.observeGit = [&](const GitInvocation&, std::chrono::nanoseconds duration) {
        const std::lock_guard lock(gitMutex);
        gitTime += duration;
    };
    RepositoryScanner scanner(services, std::move(options));
    scanner.start();
    runUntil(engine.loop, scanner, [&](Property property) {
        return property == Property::isScanning && !scanner.isScanning();
    });

    std::vector<double> beyond;
    double git = 0;
    for (int round = 0; round < rounds; ++round) {
        events.forget();
        gitTime = {};
        steady_clock::time_point lastWrite;
        std::thread user(
            [&] { lastWrite = writeBurst(configuration.repoPaths[4] + "/file2", round); });
        runUntil(engine.loop, scanner,
                 [](Property property) { return property == Property::repositories; });
        const auto shown = steady_clock::now();
        user.join();
        const auto waiting = (events.first() + betweenBatches - lastWrite) + quiet;
        git = Milliseconds(gitTime).count();
        beyond.push_back(Milliseconds(shown - lastWrite - waiting - gitTime).count());
    }
    std::ranges::sort(beyond);

    Report report;
    report.note(fmt::format("{} repositories, {} bursts of 20 writes; git's own time {:.0f} ms",
                            repositoryCount, rounds, git));
    report.atMost("beyond the waiting and git's own time, median, ms", beyond[rounds / 2], 50);
    report.atMost("the same, worst, ms", beyond.back(), 50);
    return report.exitStatus();
}
