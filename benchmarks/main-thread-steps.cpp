// How long the main thread is held up by whole refresh cycles of 500 large repositories.
#include <algorithm>
#include <chrono>
#include <memory>

#include "Fixture.h"
#include "Report.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

using std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int repositoryCount = 500;
constexpr int branchCount = 50;
constexpr int tagCount = 200;
constexpr int issueCount = 40;
constexpr int cycles = 8;

// A main loop that notes how long its longest task took.
class MeasuredLoop : public MainLoop {
  public:
    explicit MeasuredLoop(PosixMainLoop& loop) : loop_(loop) {}
    WallTime wallNow() const override { return loop_.wallNow(); }
    SteadyTime steadyNow() const override { return loop_.steadyNow(); }
    void post(Task task) override { loop_.post(measured(std::move(task))); }
    [[nodiscard]] Timer after(std::chrono::nanoseconds delay, Task task) override {
        return loop_.after(delay, measured(std::move(task)));
    }
    double worstStep() const { return worst_; }

  private:
    Task measured(Task task) {
        return [this, task = std::move(task)]() mutable {
            const auto start = steady_clock::now();
            task();
            task = nullptr;  // what it held goes within the step
            worst_ = std::max(worst_, Milliseconds(steady_clock::now() - start).count());
        };
    }

    PosixMainLoop& loop_;
    double worst_ = 0;
};

GitRepository largeRepository(const std::string& path, bool withIssues) {
    GitRepository repository;
    repository.path = path;
    repository.name = path.substr(path.rfind('/') + 1);
    std::vector<GitBranch> branches;
    for (int index = 0; index < branchCount; ++index) {
        branches.push_back({fmt::format("feature/of-some-length-{}", index), index == 0});
    }
    std::vector<std::string> tags;
    for (int index = 0; index < tagCount; ++index) {
        tags.push_back(fmt::format("release/2026.03.{}", index));
    }
    std::vector<GitHubIssue> issues;
    for (int index = 0; withIssues && index < issueCount; ++index) {
        issues.push_back(
            {.id = index, .number = index, .title = fmt::format("An issue {}", index)});
    }
    repository.branches = std::move(branches);
    repository.tags = std::move(tags);
    repository.issues = std::move(issues);
    return repository;
}

}  // namespace

int main() {
    const Folder folder;
    Engine engine(folder.path());
    MeasuredLoop loop(engine.loop);
    AppConfiguration configuration;
    for (int index = 0; index < repositoryCount; ++index) {
        configuration.repoPaths.push_back(fmt::format("{}/repository-{}", folder.path(), index));
    }
    int cycle = 0;
    RepositoryScanner scanner(
        {.loop = loop,
         .queues = engine.queues,
         .log = engine.log,
         .collator = engine.collator,
         .git = [](const GitInvocation&) { return std::nullopt; },
         .home = folder.path()},
        {.configuration = configuration,
         .autoStart = false,
         // Only the first snapshots have issues: all later ones carry them over.
         .scanRepositoryHandler = [&](const std::string& path, ScanCompletion completion) {
             completion(largeRepository(path, cycle == 0));
         }});

    double longestRequest = 0;
    const auto observation = scanner.observe([&](RepositoryScanner::Property property) {
        if (property == RepositoryScanner::Property::isScanning && !scanner.isScanning()) {
            engine.loop.stop();
        }
    });
    for (; cycle < cycles; ++cycle) {
        const auto start = steady_clock::now();
        scanner.requestRefresh(
            {.refreshDependencies = true, .refreshIssues = true, .refreshRemotes = true});
        longestRequest =
            std::max(longestRequest, Milliseconds(steady_clock::now() - start).count());
        engine.loop.run();
    }

    Report report;
    report.note(fmt::format("{} repositories of {} branches, {} tags and {} issues, {} cycles",
                            repositoryCount, branchCount, tagCount, issueCount, cycles));
    report.atMost("worst main-thread step of a cycle, ms", loop.worstStep(), 4);
    report.atMost("requestRefresh, ms", longestRequest, 1);
    report.atMost("worst main-thread step / the limit of 4 ms", loop.worstStep() / 4, 1);
    return report.exitStatus();
}
