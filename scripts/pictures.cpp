// Draws the screens of the application, in every state, into a folder: what the README shows, and
// what one looks at after a change. `pictures FOLDER [light]`, without a display.
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QPalette>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CaffeinateController.h"
#include "InMemoryUserDefaults.h"
#include "MainView.h"
#include "QtMainLoop.h"
#include "RepositoryScanner.h"
#include "SampleRepositories.h"
#include "TemporaryFolder.h"
#include "ThreadedWorkQueues.h"
#include "ViewWindows.h"

namespace tarnbeck {

namespace {

using namespace testing;

class NoClipboard : public Clipboard {
    void setString(std::string_view /*text*/) override {}
};
class NoOpener : public ExternalOpener {
    void openFile(std::string_view /*path*/) override {}
    void openUrl(std::string_view /*url*/) override {}
};
class QuietProcess : public system_awake::CaffeinateProcess {
  public:
    const std::string& id() const override { return id_; }
    bool isRunning() const override { return true; }
    void setTerminationHandler(std::function<void()> /*handler*/) override {}
    void terminate() override {}

  private:
    const std::string id_ = "1";
};
class QuietLauncher : public system_awake::CaffeinateLaunching {
    std::variant<std::unique_ptr<system_awake::CaffeinateProcess>, system_awake::LaunchFailure>
    start(const std::vector<std::string>& /*arguments*/,
          std::optional<std::int32_t> /*boundToProcessID*/) override {
        return std::make_unique<QuietProcess>();
    }
};

// All that a view stands on, with nothing of the machine behind it.
class Studio {
  public:
    explicit Studio(std::string folder) : folder_(std::move(folder)) {
        RepositoryScanner::Options options;
        options.autoStart = false;
        options.scanRepositoryHandler = [](const std::string&, const ScanCompletion& completion) {
            completion(std::nullopt);
        };
        scanner_ = std::make_unique<RepositoryScanner>(
            RepositoryScanner::Services{.loop = loop_,
                                        .queues = queues_,
                                        .log = log_,
                                        .collator = collator_,
                                        .git = [](const GitInvocation&) { return std::nullopt; },
                                        .home = home_.path()},
            std::move(options));
    }

    MainView& open(QSize size, MainView::Host host = {}) {
        auto view = std::make_unique<MainView>(
            MainView::Services{
                .scanner = *scanner_,
                .caffeinateController = awake_,
                .collator = collator_,
                .sections = {.loop = loop_,
                             .queues = queues_,
                             .expansionStore = {.userDefaults = defaults_},
                             .clipboard = clipboard_,
                             .opener = opener_,
                             .discard =
                                 [](const DiscardRequest&) { return std::optional<std::string>(); },
                             .callbacks = {}},
                .onOpenSettings = [] {}},
            host);
        MainView& reference = *view;
        if (host.usesPopoverAppearance) {
            window_ = windows_.popoverWindow([] {});
            windows_.setPopoverView(std::move(view));
        } else {
            window_ = windows_.mainWindow(std::move(view));
        }
        window_->resize(size);
        window_->show();
        settle();
        return reference;
    }

    void show(const std::vector<GitRepository>& repositories) {
        std::vector<RepositorySnapshot> snapshots;
        for (const GitRepository& repository : repositories) {
            snapshots.push_back(std::make_shared<const GitRepository>(repository));
        }
        show(std::move(snapshots));
    }
    void show(std::vector<RepositorySnapshot> snapshots) {
        scanner_->setRepositories(std::move(snapshots));
        settle();
    }

    void save(const std::string& name) {
        settle();
        const QString file = QString::fromStdString(folder_ + "/" + name + ".png");
        const QImage picture = window_->grabWindow();
        if (!picture.save(file)) qFatal("%s can't be written", qPrintable(file));
        // What was drawn bit by bit must be what is drawn at once.
        const QSize size = window_->size();
        window_->resize(size + QSize(1, 1));
        settle();
        window_->resize(size);
        settle();
        const QImage whole = window_->grabWindow();
        if (whole == picture) return;
        qWarning("%s is drawn otherwise at once", name.c_str());
        whole.save(QString::fromStdString(folder_ + "/" + name + "-at-once.png"));
    }

    // Lets animations end, and what was posted run.
    void settle() {
        QEventLoop wait;
        QTimer::singleShot(350, &wait, &QEventLoop::quit);
        wait.exec();
    }

    QQuickWindow& window() { return *window_; }
    system_awake::CaffeinateController& awake() { return awake_; }

  private:
    const std::string folder_;
    testing::TemporaryFolder home_;
    QtMainLoop loop_;
    ThreadedWorkQueues queues_;
    ScanLog log_{{.home = home_.path()}, loop_, queues_};
    NameCollator collator_{"en_US"};
    testing::InMemoryUserDefaults defaults_;
    NoClipboard clipboard_;
    NoOpener opener_;
    QuietLauncher launcher_;
    system_awake::CaffeinateController awake_{
        launcher_, std::nullopt, {.postToMainThread = [this](auto task) { loop_.post(task); }}};
    std::unique_ptr<RepositoryScanner> scanner_;
    ViewWindows windows_;
    QQuickWindow* window_ = nullptr;
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

void drawWindow(Studio& studio) {
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
    studio.show({samples::tidy("dotfiles"), samples::tidy("harbor-api")});
    studio.save("all-clean");
}

void drawPopover(Studio& studio) {
    MainView& view = studio.open({1000, 640}, {.usesPopoverAppearance = true});
    studio.show(sampleRepositories());
    openBranches(view, samples::dirty().path);
    studio.save("popover");
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
    Studio studio(arguments[1]);
    drawWindow(studio);
    drawPopover(studio);
    return EXIT_SUCCESS;
}
