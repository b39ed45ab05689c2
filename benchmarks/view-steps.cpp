// How long the main view holds up the main thread, with 500 and with 2,000 repositories: when a
// full scan has replaced them all, when one has changed, when another domain is chosen, and when a
// text is searched for.
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Fixture.h"
#include "InMemoryUserDefaults.h"
#include "LargeRepositories.h"
#include "MainView.h"
#include "QuietServices.h"
#include "Report.h"
#include "Timing.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

constexpr int rounds = 15;

// Runs what is due when it is told to, timers too.
class LoopByHand : public MainLoop {
  public:
    WallTime wallNow() const override { return std::chrono::system_clock::now(); }
    SteadyTime steadyNow() const override { return std::chrono::steady_clock::now(); }
    void post(Task task) override { posted_.push_back(std::move(task)); }
    [[nodiscard]] Timer after(std::chrono::nanoseconds, Task task) override {
        timers_.push_back(std::make_shared<Task>(std::move(task)));
        return Timer(timers_.back());
    }
    void runPosted() {
        for (const Task& task : std::exchange(posted_, {})) task();
    }
    // The newest timer is the one that was asked for last.
    void runNewestTimer() {
        const auto timer = timers_.back();
        if (*timer) (*timer)();
    }

  private:
    std::vector<Task> posted_;
    std::vector<std::shared_ptr<Task>> timers_;
};

// The view over a scanner that scans nothing by itself.
struct Screen {
    explicit Screen(Engine& engine)
        : scanner({.loop = loop,
                   .queues = engine.queues,
                   .log = engine.log,
                   .collator = engine.collator,
                   .git = [](const GitInvocation&) { return std::nullopt; },
                   .home = engine.home},
                  {.autoStart = false}),
          view({.scanner = scanner,
                .caffeinateController = caffeinate,
                .collator = engine.collator,
                .sections = {.loop = loop,
                             .queues = engine.queues,
                             .expansionStore = {.userDefaults = defaults},
                             .clipboard = clipboard,
                             .opener = opener,
                             .discard = [](const DiscardRequest&) { return std::nullopt; },
                             .callbacks = {}},
                .onOpenSettings = {}},
               {}) {
        view.setVisible(true);
        view.chooseFilter(FilterMode::all);
        view.chooseDomain(DomainMode::combined);
        loop.runPosted();
    }

    LoopByHand loop;
    testing::InMemoryUserDefaults defaults;
    testing::NoClipboard clipboard;
    testing::NoOpener opener;
    testing::QuietLauncher launcher;
    system_awake::CaffeinateController caffeinate{
        launcher, std::nullopt, {.postToMainThread = [this](auto task) { loop.post(task); }}};
    RepositoryScanner scanner;
    MainView view;
};

std::vector<RepositorySnapshot> copiesOf(const std::vector<RepositorySnapshot>& repositories) {
    std::vector<RepositorySnapshot> copies;
    for (const auto& one : repositories) copies.push_back(std::make_shared<GitRepository>(*one));
    return copies;
}

// The step of the loop that follows `prepare`; the middle one of some rounds, in milliseconds.
double step(Screen& screen, const std::function<void(int round)>& prepare) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        prepare(round);
        times.push_back(1000 * secondsOf([&] { screen.loop.runPosted(); }));
    }
    return median(times);
}

void measure(Report& report, int count, double limit) {
    const Folder folder;
    Engine engine(folder.path());
    Screen screen(engine);
    const auto repositories = madeUpRepositories(count);
    const auto tell = [&](std::string_view what, double value) {
        report.atMost(fmt::format("{} repositories: {}, ms", count, what), value, limit);
    };
    tell("all replaced",
         step(screen, [&](int) { screen.scanner.setRepositories(copiesOf(repositories)); }));
    tell("one replaced", step(screen, [&](int round) {
             auto list = screen.scanner.repositories();
             auto& one = list[static_cast<std::size_t>(round)];
             one = std::make_shared<GitRepository>(*one);
             screen.scanner.setRepositories(std::move(list));
         }));
    tell("another domain", step(screen, [&](int round) {
             screen.view.chooseDomain(round % 2 == 0 ? DomainMode::issues : DomainMode::combined);
         }));
    const auto search = [&](int round) {
        screen.view.setSearchText(fmt::format("cache {}", round));
        screen.loop.runNewestTimer();
    };
    tell("another text", step(screen, search));
    tell("a text, all replaced", step(screen, [&](int round) {
             screen.scanner.setRepositories(copiesOf(repositories));
             search(round);
         }));
}

// What a user of long standing has stored of each repository.
void fillExpansionStore(UserDefaults& defaults, const std::vector<RepositorySnapshot>& of) {
    const RepositorySectionExpansionStore store{.userDefaults = defaults};
    RepositorySectionExpansionStore::State branches;
    RepositorySectionExpansionStore::State subsections;
    for (const auto& repository : of) {
        subsections[repository->path] = {
            {"remote", true}, {"stashes", false}, {"issues", true}, {"pullRequests", true}};
        for (int index = 0; index < 4; ++index) {
            branches[repository->path][fmt::format("feature/number-{}", index)] = index % 2 == 0;
        }
    }
    store.saveDictionaryState(branches, store.persistedBranchExpansionKey);
    store.saveDictionaryState(subsections, store.persistedSubsectionExpansionKey);
}

// The step in which a view that has just been opened learns how high each section is.
void measureFirstHeights(Report& report, int count, double limit) {
    const Folder folder;
    Engine engine(folder.path());
    const auto repositories = madeUpRepositories(count);
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        Screen screen(engine);
        fillExpansionStore(screen.defaults, repositories);
        screen.view.toggleViewMode();
        screen.scanner.setRepositories(repositories);
        screen.loop.runPosted();
        times.push_back(1000 * secondsOf([&] {
                            for (const auto& one : repositories)
                                screen.view.sectionHeight(one->path);
                        }));
    }
    report.atMost(fmt::format("{} repositories: all heights, first, ms", count), median(times),
                  limit);
}

}  // namespace

int main() {
    Report report;
    measureFirstHeights(report, 500, 4);
    measure(report, 500, 4);
    measure(report, 2000, 50);
    return report.exitStatus();
}
