#include "QtContentWindow.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMargins>
#include <QScreen>
#include <algorithm>
#include <optional>
#include <utility>

#include "ScreenGeometry.h"
#include "WindowPositionStore.h"
#include "WindowSizeStore.h"

namespace tarnbeck {
namespace {

using settings_window::WindowFrame;
using settings_window::WindowPositionStore;
using settings_window::WindowSize;
using settings_window::WindowSizeStore;

constexpr double largestSide = 16000;

Qt::WindowFlags flagsOf(settings_window::WindowStyleMask mask) {
    Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint;
    if (mask.titled) flags |= Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    if (mask.closable) flags |= Qt::WindowCloseButtonHint;
    if (mask.miniaturizable) flags |= Qt::WindowMinimizeButtonHint;
    if (mask.resizable) flags |= Qt::WindowMaximizeButtonHint;
    return flags;
}

// Qt counts downwards, the stores upwards.
WindowFrame upwards(const QRect& rect) {
    return {
        .origin = {static_cast<double>(rect.x()), -static_cast<double>(rect.y() + rect.height())},
        .size = {static_cast<double>(rect.width()), static_cast<double>(rect.height())}};
}

QRect downwards(const WindowFrame& frame) {
    return QRectF(frame.left(), -frame.top(), frame.size.width, frame.size.height).toRect();
}

class ContentWindow : public QObject, public settings_window::Window {
  public:
    ContentWindow(const WindowFrame& frame, settings_window::WindowStyleMask styleMask,
                  UserDefaults& userDefaults)
        : frame_(frame), flags_(flagsOf(styleMask)), userDefaults_(userDefaults) {}
    ~ContentWindow() override { saveFrame(); }

    void setTitle(std::string_view title) override {
        title_ = QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
    }
    void setReleasedWhenClosed(bool /*isReleased*/) override {}  // it never is
    void center() override {
        const QScreen* screen = QGuiApplication::primaryScreen();
        if (!screen) return;
        QRect centred = downwards(frame_);
        centred.moveCenter(screen->availableGeometry().center());
        frame_ = upwards(centred);
    }
    void setContentView(std::shared_ptr<settings_window::WindowContent> content) override {
        if (content) take(std::move(content));
    }
    void setContentViewController(
        std::shared_ptr<settings_window::WindowContent> controller) override {
        if (controller) take(std::move(controller));
    }
    void setDelegate(settings_window::WindowDelegate* delegate) override { delegate_ = delegate; }
    void setFrameAutosaveName(std::string_view name) override {
        autosaveName_ = name;
        frame_.size = sizeStore().load(frame_.size);
        const auto saved = positionStore().savedValues();
        if (saved) {
            frame_.origin = {.x = saved->x, .y = saved->topY - frame_.size.height};
            moveIntoScreen();
        } else {
            center();
        }
        applyFrame();
    }
    void makeKeyAndOrderFront() override {
        if (!content_) return;
        bringToFront(*content_->window);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Expose) makeRoomForBorders();
        if (event->type() == QEvent::Close) {
            saveFrame();
            if (delegate_) delegate_->windowWillClose();
        }
        return false;
    }

  private:
    void moveIntoScreen() {
        const auto area = areaOfWindow(downwards(frame_), screenAreas());
        if (!area) return;
        frame_.origin = WindowPositionStore::clamped(frame_.origin, frame_.size, upwards(*area));
    }

    void take(std::shared_ptr<settings_window::WindowContent> content) {
        content_ = std::static_pointer_cast<QtWindowContent>(std::move(content));
        QWindow& window = *content_->window;
        window.setFlags(flags_);
        window.setTitle(title_);
        window.setMinimumSize(content_->minimumSize);
        window.installEventFilter(this);
        applyFrame();
    }
    void applyFrame() {
        if (!content_) return;
        const QRect frame = downwards(frame_);
        content_->window->resize(frame.size());
        content_->window->setFramePosition(frame.topLeft());
    }
    // How wide the window manager's borders are is known only when the window is there.
    void makeRoomForBorders() {
        QWindow& window = *content_->window;
        if (window.frameMargins() == borders_) return;
        borders_ = window.frameMargins();
        const QRect frame = window.frameGeometry();
        const auto area = areaOfWindow(frame, screenAreas());
        if (!area) return;
        const QRect& room = *area;
        const QPoint last(std::max(room.left(), room.right() + 1 - frame.width()),
                          std::max(room.top(), room.bottom() + 1 - frame.height()));
        const QPoint inside(std::clamp(frame.left(), room.left(), last.x()),
                            std::clamp(frame.top(), room.top(), last.y()));
        if (inside != frame.topLeft()) window.setFramePosition(inside);
    }
    void saveFrame() {
        if (autosaveName_.empty() || !content_ || !content_->window->isVisible()) return;
        const QWindow& window = *content_->window;
        const WindowFrame frame = upwards(QRect(window.framePosition(), window.size()));
        sizeStore().save(frame.size);
        positionStore().save(frame);
    }

    settings_window::WindowDefaults defaults() const {
        return {.number = [this](const std::string& key) { return userDefaults_.number(key); },
                .setNumber = [this](const std::string& key,
                                    double value) { userDefaults_.setNumber(key, value); }};
    }
    WindowSizeStore sizeStore() const {
        const QSize smallest = content_ ? content_->minimumSize : QSize(1, 1);
        return {.defaults = defaults(),
                .widthKey = autosaveName_ + ".width",
                .heightKey = autosaveName_ + ".height",
                .minWidth = static_cast<double>(smallest.width()),
                .maxWidth = largestSide,
                .minHeight = static_cast<double>(smallest.height()),
                .maxHeight = largestSide};
    }
    WindowPositionStore positionStore() const {
        return {.defaults = defaults(),
                .xKey = autosaveName_ + ".x",
                .topYKey = autosaveName_ + ".topY"};
    }

    WindowFrame frame_;
    Qt::WindowFlags flags_;
    UserDefaults& userDefaults_;
    QString title_;
    std::string autosaveName_;
    settings_window::WindowDelegate* delegate_ = nullptr;
    std::shared_ptr<QtWindowContent> content_;
    QMargins borders_;
};

}  // namespace

std::shared_ptr<settings_window::Window> QtWindowPlatform::makeWindow(
    const WindowFrame& frame, settings_window::WindowStyleMask styleMask) {
    return std::make_shared<ContentWindow>(frame, styleMask, userDefaults_);
}

}  // namespace tarnbeck
