#include "Appearance.h"

#import <AppKit/AppKit.h>

#include <QGuiApplication>
#include <QPalette>

namespace tarnbeck {

class Appearance::Source {
  public:
    explicit Source(Appearance& owner) : owner_(owner) {
        take();
        QObject::connect(qGuiApp, &QGuiApplication::paletteChanged, &owner, [this] { take(); });
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

void Appearance::set(bool isDark, bool reducesMotion) {
    if (isDark == isDark_ && reducesMotion == reducesMotion_) return;
    isDark_ = isDark;
    reducesMotion_ = reducesMotion;
    emit changed();
}

}  // namespace tarnbeck
