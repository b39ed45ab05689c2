// What the user waits for: the first frame of a popover that is shown again, and each frame while
// 500 repositories are scrolled. Without a display; what is drawn is the same.
#include <QApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <algorithm>
#include <cmath>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "Fixture.h"
#include "Report.h"
#include "SampleRepositories.h"
#include "Studio.h"
#include "Timing.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;
using testing::Studio;

namespace {

constexpr int repositoryCount = 500;
constexpr int rounds = 5;
constexpr int frames = 120;
constexpr double frameLimit = 16;    // milliseconds
constexpr double popoverLimit = 48;  // milliseconds: three frames

// In milliseconds: what the user waits, and what the process did meanwhile. Where others use the
// machine too, the first is more.
struct Time {
    double waited = 0;
    double worked = 0;
};

double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

template <class Work>
Time timeOf(Work work) {
    const double before = processorTime();
    const double waited = 1000 * secondsOf(work);
    return {.waited = waited, .worked = processorTime() - before};
}

std::vector<double> all(const std::vector<Time>& times, double Time::*of) {
    std::vector<double> values;
    for (const Time& time : times) values.push_back(time.*of);
    return values;
}

std::string summary(const std::vector<Time>& times) {
    const auto waited = all(times, &Time::waited);
    const auto worked = all(times, &Time::worked);
    return fmt::format("median {:.1f} ms, worst {:.1f}; of the processor's {:.1f} and {:.1f}",
                       median(waited), std::ranges::max(waited), median(worked),
                       std::ranges::max(worked));
}

// --- The popover ---

// From asking to the first frame.
Time showPopover(Studio& studio, QSize size) {
    return timeOf([&] {
        QEventLoop wait;
        QObject::connect(&studio.window(), &QQuickWindow::frameSwapped, &wait, &QEventLoop::quit);
        studio.make(size, {.usesPopoverAppearance = true});
        studio.window().show();
        wait.exec();
    });
}

// Whether the first frame is what is seen in the end.
bool isFirstFrameComplete(Studio& studio, QSize size) {
    showPopover(studio, size);
    const QImage first = studio.window().grabWindow();
    studio.settle();
    const bool isComplete = studio.window().grabWindow() == first;
    studio.closePopover();
    return isComplete;
}

void measurePopover(Report& report, Studio& studio) {
    // That of a screen of 1920 by 1080.
    const QSize size(1891, 1015);
    studio.make(size, {.usesPopoverAppearance = true});
    studio.show(testing::manySampleRepositories(repositoryCount));
    studio.closePopover();
    report.note(fmt::format("popover, first time: {}", summary({showPopover(studio, size)})));
    studio.closePopover();
    std::vector<Time> times;
    for (int round = 0; round < 20; ++round) {
        studio.settle();
        times.push_back(showPopover(studio, size));
        studio.closePopover();
    }
    report.note(fmt::format("popover shown again: {}", summary(times)));
    report.atMost("popover shown again, first frame, ms", median(all(times, &Time::waited)),
                  popoverLimit);
    report.atLeast("and that frame is complete", isFirstFrameComplete(studio, size) ? 1 : 0, 1);
}

// --- Scrolling ---

double number(const QQuickItem& item, const char* property) {
    return item.property(property).toDouble();
}

// The scrolled area below the item, as deep as it may be, that has most to scroll.
QQuickItem* areaOf(QQuickItem& item, const char* extent) {
    QQuickItem* longest = nullptr;
    for (QQuickItem* child : item.childItems()) {
        for (QQuickItem* each : {child, areaOf(*child, extent)}) {
            if (!each || !each->inherits("QQuickFlickable")) continue;
            if (!longest || number(*each, extent) > number(*longest, extent)) longest = each;
        }
    }
    return longest;
}

struct Scrolling {
    QQuickItem& area;
    const char* position;  // its property
    double distance;       // of one way
};

// Draws what is to be drawn at once, and lets the loop do the rest.
Time drawFrame(QQuickWindow& window, const std::function<void()>& change) {
    return timeOf([&] {
        change();
        QEvent request(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&window, &request);
    });
}

// There and back, as a hand does it that turns the wheel without a pause: each frame one step.
std::vector<Time> scroll(QQuickWindow& window, const Scrolling& scrolling) {
    std::vector<Time> times;
    for (int frame = 0; frame <= frames; ++frame) {
        const double share = 1 - std::abs(2.0 * frame / frames - 1);
        const double place = share * scrolling.distance;
        times.push_back(
            drawFrame(window, [&] { scrolling.area.setProperty(scrolling.position, place); }));
        QCoreApplication::processEvents();
    }
    return times;
}

// Each frame several times, since others use the machine too.
void measureScrolling(Report& report, std::string_view what, Studio& studio,
                      const Scrolling& scrolling) {
    std::vector<std::vector<Time>> passes;
    for (int round = 0; round < rounds; ++round) {
        passes.push_back(scroll(studio.window(), scrolling));
    }
    report.note(fmt::format("{}, the first time: {}", what, summary(passes.front())));
    std::vector<Time> middle;
    for (std::size_t frame = 0; frame < passes.front().size(); ++frame) {
        std::vector<Time> same;
        for (const auto& pass : passes) same.push_back(pass[frame]);
        middle.push_back({.waited = median(all(same, &Time::waited)),
                          .worked = median(all(same, &Time::worked))});
    }
    report.note(fmt::format("{}: {}", what, summary(middle)));
    report.atMost(fmt::format("{}: worst frame, ms", what),
                  std::ranges::max(all(middle, &Time::waited)), frameLimit);
}

// One repository with a long list of everything.
RepositorySnapshot longRepository() {
    GitRepository repository = testing::samples::dirty();
    std::vector<GitBranch> branches = {{.name = "main", .isCurrent = true}};
    for (int index = 0; index < 600; ++index) {
        branches.push_back({.name = fmt::format("feature/berth-planner-{}", index)});
    }
    repository.branches = std::move(branches);
    return std::make_shared<const GitRepository>(std::move(repository));
}

void openAll(MainView& view, const std::string& path) {
    for (const Row& row : view.section(path)->rows) {
        if (row.isExpanded == false) {
            view.perform({.path = path, .rowId = row.id, .kind = RowActionKind::toggle});
        }
    }
}

void measureWindow(Report& report, Studio& studio) {
    MainView& view = studio.open({1200, 760});
    QQuickItem& root = *studio.window().contentItem();
    std::vector<RepositorySnapshot> repositories = testing::manySampleRepositories(500);
    repositories.insert(repositories.begin(), longRepository());
    studio.show(std::move(repositories));
    view.chooseDomain(DomainMode::combined);
    view.chooseFilter(FilterMode::all);
    view.chooseSort(SortMode::name);
    studio.settle();

    // 100 pixels a frame.
    QQuickItem* columns = areaOf(root, "contentWidth");
    measureScrolling(report, "columns", studio, {*columns, "contentX", 6000});

    openAll(view, longRepository()->path);
    studio.settle();
    columns->setProperty("contentX", number(*columns, "contentWidth") - columns->width());
    studio.settle();
    QQuickItem* rows = areaOf(*columns, "contentHeight");
    measureScrolling(report, "one long column", studio, {*rows, "contentY", 6000});

    view.toggleViewMode();
    studio.settle();
    QQuickItem* masonry = areaOf(root, "contentHeight");
    measureScrolling(report, "masonry", studio, {*masonry, "contentY", 6000});
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    const QApplication application(argc, argv);
    const Folder home;
    Report report;
    {
        Studio studio(home.path());
        measurePopover(report, studio);
    }
    {
        Studio studio(home.path());
        measureWindow(report, studio);
    }
    return report.exitStatus();
}
