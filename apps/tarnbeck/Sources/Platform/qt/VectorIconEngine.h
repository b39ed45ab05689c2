// An icon that is drawn at whatever size it is asked for. Main thread.
#pragma once

#include <QIconEngine>

#include "VectorImage.h"

namespace tarnbeck {

class VectorIconEngine : public QIconEngine {
  public:
    explicit VectorIconEngine(VectorImage image) : image_(std::move(image)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    // Those that a tray of D-Bus is told, which can't ask for one.
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override { return new VectorIconEngine(image_); }

  private:
    VectorImage image_;
};

}  // namespace tarnbeck
