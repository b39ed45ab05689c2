#include "Appearance.h"

#include <QGuiApplication>
#include <QPalette>

#include "PortalSettings.h"

namespace tarnbeck {

class Appearance::Source {
  public:
    explicit Source(Appearance& owner) : owner_(owner) {
        takePalette();
        QObject::connect(qGuiApp, &QGuiApplication::paletteChanged, &owner,
                         [this] { takePalette(); });
        QObject::connect(&portal_, &PortalSettings::colorSchemeTold, &owner,
                         [this](unsigned int scheme) {
                             portalDecides_ = true;
                             owner_.set(scheme != 2, false);
                         });
    }

  private:
    void takePalette() {
        // Without a desktop's theme the toolkit's own palette means nothing.
        if (portalDecides_ || qEnvironmentVariableIsEmpty("XDG_CURRENT_DESKTOP")) return;
        owner_.set(QGuiApplication::palette().color(QPalette::Window).lightness() < 128, false);
    }

    Appearance& owner_;
    PortalSettings portal_;
    bool portalDecides_ = false;
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
