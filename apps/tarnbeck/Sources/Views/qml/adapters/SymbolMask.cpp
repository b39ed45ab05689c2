#include "SymbolMask.h"

#include <QPainter>
#include <QRectF>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>
#include <string>

#include "Symbol.h"

namespace tarnbeck {
namespace {

// What all symbols are drawn on; see `symbols/`.
constexpr double grid = 24;
constexpr double stroke = 1.75;
constexpr double inkWidth = 20;  // of the widest, in the middle of the grid

// Qt draws a stroke of about a pixel by a shortcut that is dimmer in some directions than in
// others; so small pictures are drawn larger, and brought to their size by the mean of their
// pixels.
constexpr int largestSmallSide = 64;
constexpr int samples = 8;

// Where the grid lies in a square of `side` pixels.
QRectF fittedGrid(int side) {
    const double pixelsOfStroke = std::max(1.0, std::round(stroke * side / grid));
    const int parity = static_cast<int>(pixelsOfStroke) % 2;
    const double ink = inkWidth * side / grid;
    const double fittedInk = 2 * std::floor((ink - parity) / 2 + 0.5) + parity;
    const double middle = std::floor(side / 2.0) + parity / 2.0;
    const double length = grid * fittedInk / inkWidth;
    return {middle - length / 2, middle - length / 2, length, length};
}

}  // namespace

QImage drawnSymbolMask(const QString& name, QSize size) {
    if (!isSymbol(name.toStdString())) return {};
    QSvgRenderer renderer(":/symbols/" + name + ".svg");
    if (!renderer.isValid()) return {};
    const int side = std::min(size.width(), size.height());
    const int fine = side <= largestSmallSide ? samples : 1;
    QImage image(size * fine, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(fine, fine);
    const QPoint corner((size.width() - side) / 2, (size.height() - side) / 2);
    renderer.render(&painter, fittedGrid(side).translated(corner));
    painter.end();
    return fine == 1 ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace tarnbeck
