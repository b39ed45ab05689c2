// What is done anew when one of 100 repositories has changed: one section is worked out and drawn,
// nothing outside it, and the icon only when what it shows has changed. Without a display.
#include <QApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QRegularExpression>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "Fixture.h"
#include "MainViewAdapter.h"
#include "MenuBarController.h"
#include "QtDesktopPlatform.h"
#include "QtPopoverPlatform.h"
#include "QtStatusItem.h"
#include "Report.h"
#include "SampleRepositories.h"
#include "Studio.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;
using testing::Studio;

namespace {

constexpr std::size_t repositoryCount = 100;

// --- What the renderer says of each frame ---

// What the frames drew, since it was set up: the rectangle around it all.
std::optional<QRect> drawnRect;
int drawnFrames = 0;

// "render QRegion(size=2, bounds=(17,71 424x195) - […]) …", or "render QRegion(17,71 8x8) …".
void noteDrawing(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
    static const QRegularExpression form(QStringLiteral(R"((\d+),(\d+) (\d+)x(\d+))"));
    if (!text.startsWith(QLatin1String("render QRegion("))) return;
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) return;  // nothing was drawn
    ++drawnFrames;
    const auto number = [&](int index) { return match.captured(index).toInt(); };
    drawnRect = drawnRect.value_or(QRect()).united({number(1), number(2), number(3), number(4)});
}

void listenToRenderer() {
    qputenv("QT_LOGGING_RULES", "qt.scenegraph.softwarecontext.renderer=true");
    qInstallMessageHandler(noteDrawing);
}

void forgetDrawing() {
    drawnRect.reset();
    drawnFrames = 0;
}

// --- What the models say ---

// Counts the steps of a model, by the section it belongs to.
class Listener {
  public:
    explicit Listener(SectionListModel& sections) {
        listen(sections, [this](int count) { entries_ += count; });
        for (int index = 0; index < sections.rowCount(); ++index) {
            const QModelIndex at = sections.index(index);
            const int role = sections.roleNames().key("section");
            auto* section = at.data(role).value<SectionAdapter*>();
            const auto note = [this, section] { changed_.insert(section); };
            QObject::connect(section, &SectionAdapter::headerChanged, &connections_, note);
            listen(*section->rows(), [note](int) { note(); });
        }
    }

    int changedEntries() const { return entries_; }
    std::size_t changedSections() const { return changed_.size(); }

  private:
    template <class Note>
    void listen(QAbstractItemModel& model, Note note) {
        using Model = QAbstractItemModel;
        const auto rows = [note](const QModelIndex&, int first, int last) {
            note(last - first + 1);
        };
        QObject::connect(&model, &Model::rowsInserted, &connections_, rows);
        QObject::connect(&model, &Model::rowsRemoved, &connections_, rows);
        QObject::connect(&model, &Model::rowsMoved, &connections_, rows);
        QObject::connect(&model, &Model::modelReset, &connections_,
                         [&model, note] { note(model.rowCount()); });
        QObject::connect(&model, &Model::dataChanged, &connections_,
                         [note](const QModelIndex& from, const QModelIndex& to) {
                             note(to.row() - from.row() + 1);
                         });
    }

    QObject connections_;
    int entries_ = 0;
    std::set<const SectionAdapter*> changed_;
};

MainViewAdapter& adapterOf(QQuickWindow& window) {
    const QVariant view = static_cast<QQuickView&>(window).rootObject()->property("view");
    return *view.value<MainViewAdapter*>();
}

// The list with other changes in one of its repositories.
std::vector<RepositorySnapshot> withChange(std::vector<RepositorySnapshot> list,
                                           const std::string& path) {
    for (RepositorySnapshot& each : list) {
        if (each->path != path) continue;
        GitRepository changed = *each;
        changed.uncommittedChanges = {{.status = "M", .filePath = "src/another.cpp"}};
        each = std::make_shared<const GitRepository>(std::move(changed));
    }
    return list;
}

double sectionWidth(const SectionListModel& sections, ViewMode mode) {
    if (mode == ViewMode::columns) return sections.columnWidth();
    return sections.index(0).data(sections.roleNames().key("placeWidth")).toDouble();
}

void measureSections(Report& report, Studio& studio, ViewMode mode) {
    MainViewAdapter& adapter = adapterOf(studio.window());
    const auto list = testing::manySampleRepositories(repositoryCount);
    studio.show(list);
    const std::string path = adapter.view().filteredRepos().front()->path;
    const Listener listener(*adapter.sections());
    forgetDrawing();
    studio.show(withChange(list, path));
    const auto tell = [&](std::string_view what, double value, double limit) {
        report.atMost(fmt::format("{}, one changed: {}", rawValue(mode), what), value, limit);
    };
    tell("entries of the list told of", listener.changedEntries(), 1);
    tell("sections refreshed", static_cast<double>(listener.changedSections()), 1);
    const double width = sectionWidth(*adapter.sections(), mode);
    const QRect drawn = drawnRect.value_or(QRect());
    report.note(
        fmt::format("{} frames drew within {}x{}", drawnFrames, drawn.width(), drawn.height()));
    tell("width drawn, of a section's", drawn.width() / width, 1);
    report.atLeast("and something was drawn", drawnFrames, 1);
}

// --- The icon ---

class CountingPlatform : public QtDesktopPlatform {
  public:
    using QtDesktopPlatform::QtDesktopPlatform;
    std::unique_ptr<StatusItem> makeStatusItem() override {
        auto item = QtDesktopPlatform::makeStatusItem();
        item_ = static_cast<const QtStatusItem*>(item.get());
        return item;
    }
    int drawnImages() const { return item_->drawnImages(); }

  private:
    const QtStatusItem* item_ = nullptr;
};

void measureIcon(Report& report, Studio& studio) {
    CountingPlatform platform([] { return nullptr; }, studio.loop());
    QtPopoverPlatform popoverPlatform(studio.loop());
    MenuBarController controller({.scanner = studio.scanner(),
                                  .caffeinateController = studio.awake(),
                                  .loop = studio.loop(),
                                  .platform = platform,
                                  .popoverPlatform = popoverPlatform,
                                  .makeHost = [](auto&) { return nullptr; },
                                  .onOpenSettings = [] {}});
    const auto list = testing::manySampleRepositories(repositoryCount);
    studio.show(list);
    controller.installStatusItem();
    const int before = platform.drawnImages();
    // Each repository is scanned again, and one has other branches.
    for (int round = 0; round < 50; ++round) {
        studio.scanner().setRepositories(list);
        studio.scanner().setRepositories(withChange(list, testing::samples::dirty().path));
        QCoreApplication::processEvents();
    }
    report.atMost("icon drawn in 100 changes that it does not show",
                  platform.drawnImages() - before, 0);
    studio.show(std::vector<RepositorySnapshot>());
    report.atMost("icon drawn in one that it shows", platform.drawnImages() - before, 1);
    report.atLeast("icon drawn in one that it shows", platform.drawnImages() - before, 1);
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    listenToRenderer();
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    const QApplication application(argc, argv);
    const Folder home;
    Report report;
    Studio studio(home.path());
    MainView& view = studio.open({1600, 760});
    view.chooseFilter(FilterMode::all);
    measureSections(report, studio, ViewMode::columns);
    view.toggleViewMode();
    studio.settle();
    measureSections(report, studio, ViewMode::list);
    measureIcon(report, studio);
    return report.exitStatus();
}
