#include "Appearance.h"

#import <AppKit/AppKit.h>

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace tarnbeck {

class Appearance::Source : public QObject {
  public:
    explicit Source(Appearance& owner) : owner_(owner) {
        take();
        qGuiApp->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) take();
        return false;
    }

  private:
    void take() {
        owner_.set(QGuiApplication::palette().color(QPalette::Window).lightness() < 128,
                   [[NSWorkspace sharedWorkspace] accessibilityDisplayShouldReduceMotion]);
    }

    Appearance& owner_;
};

Appearance::Appearance(QObject* parent)
    : QObject(parent), source_(std::make_unique<Source>(*this)) {}

Appearance::~Appearance() = default;

}  // namespace tarnbeck
