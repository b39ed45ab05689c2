#include "Appearance.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include "PortalSettings.h"

namespace tarnbeck {

class Appearance::Source : public QObject {
  public:
    explicit Source(Appearance& owner) : owner_(owner) {
        takePalette();
        qGuiApp->installEventFilter(this);
        connect(&portal_, &PortalSettings::colorSchemeTold, this, [this](unsigned int scheme) {
            portalDecides_ = true;
            owner_.set(scheme != 2, false);
        });
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) takePalette();
        return false;
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

}  // namespace tarnbeck
