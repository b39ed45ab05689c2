#include "QtDesktopPlatform.h"

#include <QApplication>
#include <QScreen>
#include <QSystemTrayIcon>
#include <algorithm>
#include <utility>

#include "QtStatusItem.h"

namespace tarnbeck {
namespace {

// What a window manager takes of the height, in device-independent pixels.
constexpr int roomForTitleBar = 40;

// The popover and what hangs from it don't keep the application.
bool isOrdinary(const QWindow& window) {
    return window.isVisible() && window.type() == Qt::Window;
}

}  // namespace

class QtDesktopPlatform::MainWindow : public DesktopWindow {
  public:
    explicit MainWindow(std::function<QWindow*()> make) : make_(std::move(make)) {}

    std::string title() const override {
        return window_ ? window_->title().toStdString() : std::string();
    }
    void makeKeyAndOrderFront() override {
        if (!window_) make();
        if (window_->windowStates().testFlag(Qt::WindowMinimized)) {
            window_->showNormal();
        } else {
            window_->show();
        }
        window_->raise();
        window_->requestActivate();
    }
    void orderOut() override {
        if (window_) window_->hide();
    }
    bool isVisible() const { return window_ && window_->isVisible(); }

  private:
    void make() {
        window_ = make_();
        const QSize room = window_->screen()->availableSize() - QSize(0, roomForTitleBar);
        window_->resize(window_->size().boundedTo(room).expandedTo(window_->minimumSize()));
    }

    const std::function<QWindow*()> make_;
    QWindow* window_ = nullptr;
};

QtDesktopPlatform::QtDesktopPlatform(std::function<QWindow*()> makeMainWindow)
    : mainWindow_(std::make_unique<MainWindow>(std::move(makeMainWindow))),
      popover_(std::make_shared<QtPopover>()) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

QtDesktopPlatform::~QtDesktopPlatform() = default;

void QtDesktopPlatform::attach(ApplicationDelegate& delegate) {
    delegate_ = &delegate;
    QObject::connect(qGuiApp, &QCoreApplication::aboutToQuit, &connections_,
                     [this] { delegate_->applicationWillTerminate(); });
    QObject::connect(qGuiApp, &QGuiApplication::lastWindowClosed, &connections_,
                     [this] { lastWindowClosed(); });
}

void QtDesktopPlatform::lastWindowClosed() {
    const auto windows = QGuiApplication::topLevelWindows();
    const bool oneIsLeft =
        std::ranges::any_of(windows, [](const QWindow* window) { return isOrdinary(*window); });
    if (!oneIsLeft && delegate_->applicationShouldTerminateAfterLastWindowClosed()) terminate();
}

// One that shows nothing is not made: nobody is to see it.
void QtDesktopPlatform::openWindowGroup(const WindowGroup& group) {
    if (group.showsMainView) showMainWindow();
}

void QtDesktopPlatform::setActivationPolicy(ActivationPolicy policy) {
    policy_ = policy;
    applyActivationPolicy(policy);
}

void QtDesktopPlatform::activateIgnoringOtherApps() {
    if (mainWindow_->isVisible() || policy_ == ActivationPolicy::regular) {
        mainWindow_->makeKeyAndOrderFront();
    }
}

std::vector<DesktopWindow*> QtDesktopPlatform::windows() {
    if (!mainWindow_->isVisible()) return {};
    return {mainWindow_.get()};
}

void QtDesktopPlatform::terminate() {
    QCoreApplication::exit();
}

bool QtDesktopPlatform::hasStatusArea() const {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void QtDesktopPlatform::showMainWindow() {
    mainWindow_->makeKeyAndOrderFront();
}

std::unique_ptr<StatusItem> QtDesktopPlatform::makeStatusItem() {
    auto item = std::make_unique<QtStatusItem>(*popover_);
    statusItem_ = item.get();
    return item;
}

std::shared_ptr<menubar_popover::Popover> QtDesktopPlatform::makePopover() {
    return popover_;
}

std::optional<ClickEvent> QtDesktopPlatform::currentEvent() const {
    return statusItem_ ? statusItem_->currentEvent() : std::nullopt;
}

std::optional<ScreenSize> QtDesktopPlatform::mainScreenVisibleFrame() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) return std::nullopt;
    const QSize size = screen->availableGeometry().size();
    return ScreenSize{static_cast<double>(size.width()), static_cast<double>(size.height())};
}

}  // namespace tarnbeck
