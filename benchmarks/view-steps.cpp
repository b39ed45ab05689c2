// How long the main view holds up the main thread, with 500 and with 2,000 repositories: when a
// full scan has replaced them all, when one has changed, when another domain is chosen, and when a
// text is searched for.
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Fixture.h"
#include "LargeRepositories.h"
#include "MainView.h"
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

struct NoDefaults : UserDefaults {
    std::optional<bool> boolean(std::string_view) const override { return std::nullopt; }
    std::optional<double> number(std::string_view) const override { return std::nullopt; }
    std::optional<std::string> data(std::string_view) const override { return std::nullopt; }
    void setBoolean(std::string_view, bool) override {}
    void setNumber(std::string_view, double) override {}
    void setData(std::string_view, std::string_view) override {}
};

struct NoClipboard : Clipboard {
    void setString(std::string_view) override {}
};

struct NoOpener : ExternalOpener {
    void openFile(std::string_view) override {}
    void openUrl(std::string_view) override {}
};

struct NoCaffeinate : system_awake::CaffeinateLaunching {
    std::variant<std::unique_ptr<system_awake::CaffeinateProcess>, system_awake::LaunchFailure>
    start(const std::vector<std::string>&, std::optional<std::int32_t>) override {
        return system_awake::LaunchFailure{"none"};
    }
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
    NoDefaults defaults;
    NoClipboard clipboard;
    NoOpener opener;
    NoCaffeinate launcher;
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

}  // namespace

int main() {
    Report report;
    measure(report, 500, 4);
    measure(report, 2000, 50);
    return report.exitStatus();
}
