// Paints a `VectorImage`. Main thread.
#pragma once

#include <QImage>
#include <QPainter>

#include "VectorImage.h"

namespace tarnbeck {

// Scaled as a whole into `target`, device-independent pixels of the painter.
void paint(const VectorImage& image, QPainter& painter, const QRectF& target);

// On nothing, `pixels` high.
QImage painted(const VectorImage& image, int pixels);

// In the font of the status item.
TextMeasurement statusTextMeasurement();

// What `ink` looks like.
QColor colorOf(const VectorImage::Color& color);

}  // namespace tarnbeck
