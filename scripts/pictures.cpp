// Draws the screens of the application, in every state, into a folder: what the README shows, and
// what one looks at after a change. `pictures FOLDER [light]`, without a display.
#include <QGuiApplication>
#include <QImage>
#include <QPalette>
#include <QQuickWindow>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "SampleRepositories.h"
#include "SettingsView.h"
#include "Studio.h"
#include "TemporaryFolder.h"

namespace tarnbeck {

namespace {

using namespace testing;

// A studio with a camera.
class Scene : public Studio {
  public:
    Scene(std::string folder, std::string home)
        : Studio(std::move(home)), folder_(std::move(folder)) {}

    void save(const std::string& name) { save(name, window()); }
    void save(const std::string& name, QQuickWindow& shown) {
        settle();
        const QString file = QString::fromStdString(folder_ + "/" + name + ".png");
        const QImage picture = shown.grabWindow();
        if (!picture.save(file)) qFatal("%s can't be written", qPrintable(file));
        // What was drawn bit by bit must be what is drawn at once.
        const QSize size = shown.size();
        shown.resize(size + QSize(1, 1));
        settle();
        shown.resize(size);
        settle();
        const QImage whole = shown.grabWindow();
        if (whole == picture) return;
        qWarning("%s is drawn otherwise at once", name.c_str());
        whole.save(QString::fromStdString(folder_ + "/" + name + "-at-once.png"));
    }

  private:
    const std::string folder_;
};

// The row of the dirty repository that a picture needs, opened if need be.
std::string rowWith(MainView& view, const std::string& path, RowActionKind kind) {
    for (const Row& row : view.section(path)->rows) {
        for (const RowAction& action : row.actions) {
            if (action.kind == kind) return row.id;
        }
    }
    return {};
}

void openBranches(MainView& view, const std::string& path) {
    for (const Row& row : view.section(path)->rows) {
        if (row.kind == Row::Kind::branch && row.isExpanded == false) {
            view.perform({.path = path, .rowId = row.id, .kind = RowActionKind::toggle});
        }
    }
}

void openAll(MainView& view, const std::string& path) {
    const auto section = view.section(path);
    if (!section) return;  // not listed now
    for (const Row& row : section->rows) {
        if (row.isExpanded == false) {
            view.perform({.path = path, .rowId = row.id, .kind = RowActionKind::toggle});
        }
    }
}

void drawWindow(Scene& studio) {
    const std::string dirty = samples::dirty().path;
    MainView& view = studio.open({1460, 850});
    studio.save("empty");
    studio.show(sampleRepositories());
    openBranches(view, dirty);
    openBranches(view, samples::worktrees().path);
    studio.save("columns");
    for (const GitRepository& repository : sampleRepositories()) openAll(view, repository.path);
    studio.awake().start(system_awake::standardCaffeinateAssertions);
    studio.save("columns-open");
    view.setSearchText("ti");
    studio.save("search");
    view.setSearchText("");
    studio.settle();
    view.perform({.path = dirty,
                  .rowId = rowWith(view, dirty, RowActionKind::discard),
                  .kind = RowActionKind::discard});
    studio.save("discard");
    view.answerAlert(0);
    view.perform({.path = dirty,
                  .rowId = rowWith(view, dirty, RowActionKind::copy),
                  .kind = RowActionKind::copy});
    studio.save("toast");
    view.chooseDomain(DomainMode::issues);
    studio.save("issues");
    view.chooseDomain(DomainMode::combined);
    view.chooseFilter(FilterMode::all);
    view.toggleViewMode();
    studio.window().resize(1640, 900);
    studio.save("masonry");
    studio.window().resize(760, 700);
    studio.save("narrow");
    studio.window().resize(1460, 850);
    view.chooseDomain(DomainMode::git);
    view.chooseFilter(FilterMode::dirty);
    view.toggleViewMode();
    studio.show({samples::tidy("dotfiles"), samples::tidy("anchorage-api")});
    studio.save("all-clean");
}

void drawPopover(Scene& studio) {
    MainView& view = studio.open({1000, 640}, {.usesPopoverAppearance = true});
    studio.show(sampleRepositories());
    openBranches(view, samples::dirty().path);
    studio.save("popover");
}

void drawSettings(Scene& studio, const std::string& home) {
    AppConfiguration configuration;
    for (const GitRepository& repository : sampleRepositories()) {
        configuration.repoPaths.push_back(repository.path);
    }
    studio.scanner().setConfiguration(configuration);
    auto view = std::make_unique<SettingsView>(SettingsView::Services{.scanner = studio.scanner(),
                                                                      .loop = studio.loop(),
                                                                      .queues = studio.queues(),
                                                                      .home = home,
                                                                      .dismiss = [] {}});
    SettingsView& settings = *view;
    const auto window = studio.windows().settingsWindow(std::move(view));
    window->resize(920, 620);
    window->show();
    for (const auto& [pane, name] : rawValues(SettingsPane{})) {
        settings.selectPane(pane);
        studio.save("settings-" + std::string(name), *window);
    }
}

}  // namespace

}  // namespace tarnbeck

int main(int argumentCount, char** arguments) {
    using namespace tarnbeck;
    if (argumentCount < 2) qFatal("Usage: pictures FOLDER [light]");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    const bool isLight = argumentCount > 2 && std::string_view(arguments[2]) == "light";
    if (isLight) qputenv("XDG_CURRENT_DESKTOP", "pictures");
    QGuiApplication application(argumentCount, arguments);
    if (isLight) QGuiApplication::setPalette(QPalette(Qt::white));
    const tarnbeck::testing::TemporaryFolder home;
    Scene studio(arguments[1], home.path());
    drawWindow(studio);
    drawPopover(studio);
    drawSettings(studio, home.path());
    return EXIT_SUCCESS;
}
