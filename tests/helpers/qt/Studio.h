// Views in their windows, with nothing of the machine behind them: for pictures and for measuring.
// Needs an application of Qt's.
#pragma once

#include <QEventLoop>
#include <QQuickWindow>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CaffeinateController.h"
#include "InMemoryUserDefaults.h"
#include "MainView.h"
#include "QtMainLoop.h"
#include "QuietServices.h"
#include "RepositoryScanner.h"
#include "ThreadedWorkQueues.h"
#include "ViewWindows.h"

namespace tarnbeck::testing {

class Studio {
  public:
    // `home` is an empty folder that outlives it.
    explicit Studio(std::string home)
        : home_(std::move(home)),
          scanner_({.loop = loop_,
                    .queues = queues_,
                    .log = log_,
                    .collator = collator_,
                    .git = [](const GitInvocation&) { return std::nullopt; },
                    .home = home_},
                   options()) {}

    MainView::Services viewServices() {
        return {.scanner = scanner_,
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
                .onOpenSettings = [] {}};
    }

    // A view in a window of this size that is not on the screen yet.
    MainView& make(QSize size, MainView::Host host = {}) {
        auto view = std::make_unique<MainView>(viewServices(), host);
        MainView& reference = *view;
        if (host.usesPopoverAppearance) {
            window_ = windows_.popoverWindow([] {});
            windows_.setPopoverView(std::move(view));
        } else {
            window_ = windows_.mainWindow(std::move(view));
        }
        window_->resize(size);
        return reference;
    }
    MainView& open(QSize size, MainView::Host host = {}) {
        MainView& view = make(size, host);
        window_->show();
        settle();
        return view;
    }
    // As it is done when a popover has been closed.
    void closePopover() {
        window_->hide();
        windows_.setPopoverView(nullptr);
    }

    void show(const std::vector<GitRepository>& repositories) {
        std::vector<RepositorySnapshot> snapshots;
        for (const GitRepository& repository : repositories) {
            snapshots.push_back(std::make_shared<const GitRepository>(repository));
        }
        show(std::move(snapshots));
    }
    void show(std::vector<RepositorySnapshot> snapshots) {
        scanner_.setRepositories(std::move(snapshots));
        settle();
    }

    // Lets animations end, and what was posted run.
    void settle() {
        QEventLoop wait;
        QTimer::singleShot(350, &wait, &QEventLoop::quit);
        wait.exec();
    }

    QQuickWindow& window() { return *window_; }
    RepositoryScanner& scanner() { return scanner_; }
    QtMainLoop& loop() { return loop_; }
    WorkQueues& queues() { return queues_; }
    ViewWindows& windows() { return windows_; }
    system_awake::CaffeinateController& awake() { return awake_; }

  private:
    // It scans nothing by itself, and finds nothing new when it is told to.
    static RepositoryScanner::Options options() {
        RepositoryScanner::Options options;
        options.autoStart = false;
        options.scanRepositoryHandler = [](const std::string&, const ScanCompletion& completion) {
            completion(std::nullopt);
        };
        return options;
    }

    const std::string home_;
    QtMainLoop loop_;
    ThreadedWorkQueues queues_;
    ScanLog log_{{.home = home_}, loop_, queues_};
    NameCollator collator_{"en_US"};
    InMemoryUserDefaults defaults_;
    NoClipboard clipboard_;
    NoOpener opener_;
    QuietLauncher launcher_;
    system_awake::CaffeinateController awake_{
        launcher_, std::nullopt, {.postToMainThread = [this](auto task) { loop_.post(task); }}};
    RepositoryScanner scanner_;
    ViewWindows windows_;
    QQuickWindow* window_ = nullptr;
};

}  // namespace tarnbeck::testing
