#include "QtDesktopPlatform.h"

#include <QApplication>
#include <QObject>
#include <QScreen>
#include <QSystemTrayIcon>
#include <algorithm>
#include <utility>

#include "QtStatusItem.h"
#include "ScreenGeometry.h"

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
        if (!window_) makeWindow();
        bringToFront(*window_);
    }
    void setGroup(const WindowGroup& group) { group_ = group; }
    void orderOut() override {
        if (window_) window_->hide();
    }
    bool isVisible() const { return window_ && window_->isVisible(); }

  private:
    void makeWindow() {
        window_ = make_();
        QObject::connect(window_, &QObject::destroyed, &connections_,
                         [this] { window_ = nullptr; });
        window_->setTitle(QString::fromStdString(group_.title));
        QSize size = QSizeF(group_.width, group_.height).toSize();
        if (const QScreen* screen = window_->screen()) {
            size = size.boundedTo(screen->availableSize() - QSize(0, roomForTitleBar));
        }
        window_->resize(size.expandedTo(window_->minimumSize()));
    }

    const std::function<QWindow*()> make_;
    WindowGroup group_;
    QWindow* window_ = nullptr;
    QObject connections_;  // they end with it
};

QtDesktopPlatform::QtDesktopPlatform(std::function<QWindow*()> makeMainWindow, const Clock& clock)
    : mainWindow_(std::make_unique<MainWindow>(std::move(makeMainWindow))),
      popover_(std::make_shared<QtPopover>(clock)) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

QtDesktopPlatform::~QtDesktopPlatform() = default;

void QtDesktopPlatform::attach(ApplicationDelegate& delegate) {
    delegate_ = &delegate;
    QObject::connect(qGuiApp, &QCoreApplication::aboutToQuit, &connections_, [this] {
        if (delegate_) delegate_->applicationWillTerminate();
    });
    QObject::connect(qGuiApp, &QGuiApplication::lastWindowClosed, &connections_,
                     [this] { lastWindowClosed(); });
}

void QtDesktopPlatform::lastWindowClosed() {
    if (!delegate_) return;
    const auto windows = QGuiApplication::topLevelWindows();
    const bool oneIsLeft =
        std::ranges::any_of(windows, [](const QWindow* window) { return isOrdinary(*window); });
    if (!oneIsLeft && delegate_->applicationShouldTerminateAfterLastWindowClosed()) terminate();
}

// One that shows nothing is not made: nobody is to see it.
void QtDesktopPlatform::openWindowGroup(const WindowGroup& group) {
    mainWindow_->setGroup(group);
    if (group.showsMainView) showMainWindow();
}

void QtDesktopPlatform::setActivationPolicy(ActivationPolicy policy) {
    policy_ = policy;
    applyActivationPolicy(policy);
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
    return visibleFrameOf(QGuiApplication::primaryScreen());
}

}  // namespace tarnbeck
