#include "QtStatusItem.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "QtMenu.h"
#include "ScreenGeometry.h"
#include "VectorPainter.h"

namespace tarnbeck {
namespace {

constexpr double menuBarThickness = 22;

// The tray tells of a plain click and of one that asks for a menu, no more.
std::optional<ClickEvent> clickOf(QSystemTrayIcon::ActivationReason reason) {
    switch (reason) {
        case QSystemTrayIcon::Trigger:
            return ClickEvent{
                .kind = ClickKind::leftMouseUp,
                .controlKeyIsDown =
                    QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier)};
        case QSystemTrayIcon::Context:
            return ClickEvent{.kind = ClickKind::rightMouseUp};
        case QSystemTrayIcon::DoubleClick:  // comes after the two triggers of its clicks
        case QSystemTrayIcon::MiddleClick:
        case QSystemTrayIcon::Unknown:
            return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

class QtStatusItem::Button : public StatusItemButton {
  public:
    void setAction(std::vector<ClickKind> on, std::function<void()> action) override {
        kinds_ = std::move(on);
        action_ = std::move(action);
    }
    void setImage(const StatusImage& image) override {
        image_ = image;
        icon_.setToolTip(QString::fromStdString(image.toolTip));
        draw();
    }
    std::optional<ScreenSize> screenVisibleFrame() const override {
        return visibleFrameOf(screenOfItem(icon_.geometry()));
    }
    std::optional<menubar_popover::Rect> screenFrame() const override {
        const QRect frame = icon_.geometry();
        if (!frame.isValid()) return std::nullopt;
        return menubar_popover::Rect{static_cast<double>(frame.x()), static_cast<double>(frame.y()),
                                     static_cast<double>(frame.width()),
                                     static_cast<double>(frame.height())};
    }

    QSystemTrayIcon& icon() { return icon_; }
    void draw() {
        if (!image_) return;
        ++drawn_;
        icon_.setIcon(statusIcon(*image_));
        icon_.setVisible(visible_);
    }
    // The system takes no item that has no picture: it comes with the first.
    void setVisible(bool visible) {
        visible_ = visible;
        if (image_) icon_.setVisible(visible_);
    }
    int drawn() const { return drawn_; }

    void click(ClickEvent event) {
        if (std::ranges::find(kinds_, event.kind) == kinds_.end()) return;
        event_ = event;
        action_();
        event_ = std::nullopt;
    }
    std::optional<ClickEvent> event() const { return event_; }

  private:
    QSystemTrayIcon icon_;
    std::vector<ClickKind> kinds_;
    std::function<void()> action_;
    std::optional<StatusImage> image_;
    std::optional<ClickEvent> event_;
    bool visible_ = false;
    int drawn_ = 0;
};

// Sees that the colours or the scale have become others.
class QtStatusItem::AppearanceWatch : public QObject {
  public:
    explicit AppearanceWatch(Button& button) : button_(button) {
        QCoreApplication::instance()->installEventFilter(this);
        connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, [this](QScreen* screen) {
            button_.draw();
            follow(screen);
        });
        follow(QGuiApplication::primaryScreen());
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool concernsAll = watched == QCoreApplication::instance();
        if (concernsAll && event->type() == QEvent::ApplicationPaletteChange) button_.draw();
        return false;
    }

  private:
    // This screen, and no other any more.
    void follow(QScreen* screen) {
        followed_.emplace();
        if (!screen) return;
        const auto drawAgain = [this] { button_.draw(); };
        connect(screen, &QScreen::logicalDotsPerInchChanged, &*followed_, drawAgain);
        connect(screen, &QScreen::physicalDotsPerInchChanged, &*followed_, drawAgain);
    }

    Button& button_;
    std::optional<QObject> followed_;  // connections end with it
};

QtStatusItem::QtStatusItem(QtPopover& popover)
    : popover_(popover),
      button_(std::make_shared<Button>()),
      appearanceWatch_(std::make_unique<AppearanceWatch>(*button_)) {
    QObject::connect(&button_->icon(), &QSystemTrayIcon::activated, appearanceWatch_.get(),
                     [this](auto reason) { activated(reason); });
}

QtStatusItem::~QtStatusItem() {
    button_->icon().hide();
}

std::shared_ptr<StatusItemButton> QtStatusItem::button() const {
    return button_;
}

void QtStatusItem::setVisible(bool visible) {
    button_->setVisible(visible);
}

void QtStatusItem::activated(QSystemTrayIcon::ActivationReason reason) {
    const auto click = clickOf(reason);
    if (!click) return;
    const bool isPlain = click->kind == ClickKind::leftMouseUp && !click->controlKeyIsDown;
    if (isPlain && popover_.hasJustChanged()) return;
    button_->click(*click);
}

void QtStatusItem::popUpMenu(const std::vector<MenuItem>& items,
                             const std::function<void(std::size_t index)>& onChosen) {
    menu_ = makeMenu(items, onChosen);
    QObject::connect(menu_.get(), &QMenu::aboutToShow, appearanceWatch_.get(),
                     [this] { popover_.performClose(nullptr); });
    menu_->popup(QCursor::pos());
    menu_->activateWindow();
}

double QtStatusItem::thickness() const {
    return menuBarThickness;
}

TextMeasurement QtStatusItem::textMeasurement() const {
    return statusTextMeasurement();
}

std::optional<ClickEvent> QtStatusItem::currentEvent() const {
    return button_->event();
}

int QtStatusItem::drawnImages() const {
    return button_->drawn();
}

}  // namespace tarnbeck
